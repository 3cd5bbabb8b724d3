# SPDX-License-Identifier: MIT
"""The composition of a gas: components by name, or a file; its sum is looked at."""

from __future__ import annotations

import csv
import os
import warnings
from collections.abc import Mapping
from typing import Any

from ._checks import number

#: The 15 components in the order of the library.
COMPONENTS = ("methane", "ethane", "propane", "n-butane", "i-butane", "n-pentane", "i-pentane", "hexanes", "heptanes",
              "octanes", "nitrogen", "carbon_dioxide", "hydrogen_sulphide", "helium", "carbon_monoxide")
NITROGEN, CARBON_DIOXIDE = 10, 11
_ROUNDING_PCT = 1e-5
_NITROGEN_KG_M3, _CARBON_DIOXIDE_KG_M3 = 1.16455, 1.82954  # of the pure gases at 20 degC and 101.325 kPa, GOST 30319.1-96, table 1

#: Components and their content, or a file with the heading component,mole_percent or component,volume_fraction.
Composition = Mapping[str, float] | str | os.PathLike[str]


def _read(path: str | os.PathLike[str]) -> tuple[dict[str, Any], bool]:
    with open(path, encoding="utf-8-sig", newline="") as file:
        lines = [line for line in file if line.strip() and not line.lstrip().startswith("#")]
    rows = [[cell.strip() for cell in row] for row in csv.reader(lines)]
    if not rows or rows[0] not in (["component", "mole_percent"], ["component", "volume_fraction"]):
        raise ValueError(f"{path}: expected the heading component,mole_percent or component,volume_fraction")
    content: dict[str, Any] = {}
    for row in rows[1:]:
        if len(row) != 2 or row[0] in content:
            raise ValueError(f"{path}: expected a line a component, such as methane,96.5, not {','.join(row)}")
        try:
            content[row[0]] = float(row[1])
        except ValueError:
            raise ValueError(f"{path}: {row[0]}: expected a number, not {row[1]!r}") from None
    return content, rows[0][1] == "volume_fraction"


def _sums_to(x: list[float]) -> float:
    """Added one by one, as the tool does."""
    total = 0.0
    for share in x:
        total += share
    return total


def scaled(x: list[float], fractions: bool) -> list[float]:
    """Contents that sum to 100 %."""
    total_pct = (100.0 if fractions else 1.0) * _sums_to(x)
    return [share * (100.0 / total_pct) for share in x]


def judge_contents(nitrogen_pct: float, carbon_dioxide_pct: float, rho_c: float | None = None) -> None:
    """Raises ValueError for nitrogen and carbon dioxide above 100 % together, or heavier than a gas of this density, kg/m3."""
    both = nitrogen_pct + carbon_dioxide_pct
    if both > 100.0 + _ROUNDING_PCT:
        raise ValueError(f"nitrogen and carbon dioxide are {both:.7g} % together, more than the gas")
    alone = (nitrogen_pct * _NITROGEN_KG_M3 + carbon_dioxide_pct * _CARBON_DIOXIDE_KG_M3) / 100.0
    if rho_c is not None and alone > rho_c:
        raise ValueError(f"nitrogen and carbon dioxide alone weigh {alone:.4g} kg/m3, more than the gas with its {rho_c:.7g} kg/m3")


def _judge_sum(x: list[float], fractions: bool, any_sum: bool, normalise: bool) -> None:
    unit = 100.0 if fractions else 1.0
    total_pct = unit * _sums_to(x)
    if total_pct == 0.0:
        raise ValueError("the composition is empty; give the components in mol %")
    apart = abs(total_pct - 100.0)
    sums = f"the composition sums to {total_pct:.7g} %"
    if apart > 1.0 + _ROUNDING_PCT and not any_sum and not normalise:
        guess = ("are these fractions?" if abs(total_pct - 1.0) < 0.02 else
                 "is a component missing?" if total_pct < 100.0 else "is a share wrong?")
        raise ValueError(f"{sums}, not to 100 %: {guess} (composition_sum any or normalise yes insists)")
    kept = scaled(x, fractions) if normalise else x
    judge_contents(unit * kept[NITROGEN], unit * kept[CARBON_DIOXIDE])
    if apart > 0.01 + _ROUNDING_PCT:
        warnings.warn(f"{sums}, {'scaled to 100 %' if normalise else 'which is used as it is given'}", stacklevel=5)


def read_composition(given: Composition, volume_fractions: bool, any_sum: bool,
                     normalise: bool) -> tuple[list[float], bool]:
    """The 15 contents as given, and whether they are volume fractions (a file says so itself) and not mole per cent.

    Raises ValueError for an unknown component, a content outside 0..100 mol % (0..1 as a fraction), and a sum outside
    99..101 % unless any sum is accepted or it is to be normalised; a sum outside 99.99..100.01 % is remarked upon."""
    if isinstance(given, (str, os.PathLike)):
        given, volume_fractions = _read(given)
    if not isinstance(given, Mapping):
        raise ValueError(f"composition: expected components with their content, or a file, not {given!r}")
    whole, unit = (1.0, "") if volume_fractions else (100.0, "mol %")
    x = [0.0] * len(COMPONENTS)
    seen = set()
    known = {component.replace("-", "_"): k for k, component in enumerate(COMPONENTS)}
    for name, content in given.items():
        k = known.get(str(name).replace("-", "_"))
        if k is None:
            raise ValueError(f"composition: no such component: {name!r}; there are {', '.join(COMPONENTS)}")
        if k in seen:
            raise ValueError(f"composition: {COMPONENTS[k]} stands there for the second time")
        seen.add(k)
        x[k] = number(f"composition: {name}", content, 0.0, whole, unit)
    _judge_sum(x, volume_fractions, any_sum, normalise)
    return x, volume_fractions
