"""The composition of a gas: components by name, or a file; its sum is looked at."""

from __future__ import annotations

import csv
import math
import os
import warnings
from collections.abc import Mapping
from typing import Any

from ._checks import number

#: The 15 components in the order of the library.
COMPONENTS = ("methane", "ethane", "propane", "n-butane", "i-butane", "n-pentane", "i-pentane", "hexanes", "heptanes",
              "octanes", "nitrogen", "carbon_dioxide", "hydrogen_sulphide", "helium", "carbon_monoxide")
NITROGEN, CARBON_DIOXIDE = 10, 11

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


def read_composition(given: Composition, volume_fractions: bool) -> tuple[list[float], bool]:
    """The 15 contents, and whether they are volume fractions (a file says so itself) and not mole per cent.

    Raises ValueError for an unknown component, a content outside 0..100 mol % (0..1 as a fraction), and a sum outside
    99..101 (0.99..1.01); a sum outside 99.99..100.01 is remarked upon."""
    if isinstance(given, (str, os.PathLike)):
        given, volume_fractions = _read(given)
    if not isinstance(given, Mapping):
        raise ValueError(f"composition: expected components with their content, or a file, not {given!r}")
    whole, unit, other = (1.0, "", "per cent") if volume_fractions else (100.0, " mol %", "fractions")
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
        x[k] = number(f"composition: {name}", content, 0.0, whole, unit.strip())
    total = math.fsum(x)
    apart = abs(total - whole) / whole
    if apart > 0.01 * (1 + 1e-9):
        accepted = f"{0.99 * whole:g}..{1.01 * whole:g}{unit}"
        # The sum that the other way of giving a composition would have.
        if abs(total * whole / 100.0 - 1.0) <= 0.01:
            raise ValueError(f"the composition sums to {total:.6g}: are these {other}? Accepted: {accepted}")
        raise ValueError(f"the composition sums to {total:.6g}{unit}, accepted: {accepted}")
    if apart > 0.0001 * (1 + 1e-9):
        warnings.warn(f"the composition sums to {total:.6g}{unit}, which is used as it is given", stacklevel=4)
    return x, volume_fractions
