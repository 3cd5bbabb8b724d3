# SPDX-License-Identifier: MIT
"""Arguments: each is checked once, and a wrong one is a ValueError that names its limit."""

from __future__ import annotations

import ctypes
import math
import numbers
from collections.abc import Iterable
from decimal import Decimal
from typing import Any

#: Atmospheric pressure.
LEAST_BAROMETER_KPA, MOST_BAROMETER_KPA = 50.0, 120.0


def single(value: float) -> float:
    """The nearest number of single precision, which is what the channel functions take and give."""
    return ctypes.c_float(value).value


def plain(value: float) -> str:
    """All digits without an exponent."""
    return format(Decimal(repr(value)), "f").removesuffix(".0")


def number(name: str, value: Any, low: float, high: float, unit: str = "") -> float:
    """A finite number within low..high, both included."""
    accepted = f"{low:g}..{high:g} {unit}".rstrip()
    if isinstance(value, bool) or not isinstance(value, (numbers.Real, Decimal)):
        raise ValueError(f"{name}: expected a number within {accepted}, not {value!r}")
    try:
        result = float(value)
    except OverflowError:
        result = math.inf
    if not low <= result <= high:
        raise ValueError(f"{name} must lie within {accepted}, not {result:.10g}")
    return result


def reading(name: str, value: Any, unit: str) -> float:
    """A temperature or pressure: any finite number up to 1e12; whether it can be computed with the state decides."""
    return number(name, value, -1e12, 1e12, unit)


def measured(name: str, value: Any, unit: str) -> float:
    """The same of a transmitter, which may have failed and then gives NaN."""
    if isinstance(value, (numbers.Real, Decimal)) and value != value:
        return math.nan
    return reading(name, value, unit)


def whole(name: str, value: Any, low: int, high: int) -> int:
    """A whole number within low..high."""
    result = number(name, value, low, high)
    if result != math.floor(result):
        raise ValueError(f"{name} must be a whole number within {low}..{high}, not {result:g}")
    return int(result)


def choice(name: str, value: Any, words: Iterable[str]) -> int:
    """The place of a word among those that are accepted."""
    accepted = list(words)
    if value not in accepted:
        raise ValueError(f"{name}: expected one of {', '.join(accepted)}, not {value!r}")
    return accepted.index(value)
