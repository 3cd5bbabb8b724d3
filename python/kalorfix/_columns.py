# SPDX-License-Identifier: MIT
"""Columns of readings, a quantity with its unit in the name, as `kalorfix run` reads them."""

from __future__ import annotations

from collections.abc import Iterable
from typing import NamedTuple

_KGF_N, _INCH_MM, _POUND_KG, _K_PER_F = 9.80665, 25.4, 0.45359237, 5.0 / 9.0

#: Factor and offset to degC, Pa, t/h, m3/h and GJ/h.
TEMPERATURES = {"C": (1.0, 0.0), "degC": (1.0, 0.0), "K": (1.0, -273.15), "F": (_K_PER_F, -32.0 * _K_PER_F),
                "degF": (_K_PER_F, -32.0 * _K_PER_F)}
_PRESSURES = {"Pa": 1.0, "hPa": 1e2, "kPa": 1e3, "MPa": 1e6, "mbar": 1e2, "bar": 1e5, "kgf_cm2": _KGF_N * 1e4, "kgf_m2": _KGF_N,
              "atm": 101325.0, "psi": _POUND_KG * _KGF_N / (_INCH_MM * _INCH_MM * 1e-6), "mmHg": 133.322387415}
_MASS_FLOWS = {"t_h": 1.0, "kg_h": 1e-3, "kg_s": 3600.0 * 1e-3, "t_d": 1.0 / 24.0}
_VOLUME_FLOWS = {"m3_h": 1.0, "m3_s": 3600.0, "m3_d": 1.0 / 24.0, "l_s": 3600.0 * 1e-3}
_STANDARD_FLOWS = {"m3_h": 1.0, "m3_h-std": 1.0, "m3_s-std": 3600.0, "m3_d-std": 1.0 / 24.0}
_HEAT_FLOWS = {"GJ_h": 1.0, "Gcal_h": 4.1868, "MW": 3.6, "kW": 3.6 * 1e-3}


def _plain(factors: dict[str, float]) -> dict[str, tuple[float, float]]:
    return {unit: (factor, 0.0) for unit, factor in factors.items()}


#: Names of the columns of a quantity, and their units.
QUANTITIES: dict[str, tuple[str, dict[str, tuple[float, float]]]] = {
    "t": ("t", TEMPERATURES), "p": ("p", _plain(_PRESSURES)), "gauge": ("p_gauge", _plain(_PRESSURES)),
    "barometer": ("barometer", _plain(_PRESSURES)), "dp": ("dp", _plain(_PRESSURES)), "q in t/h": ("q", _plain(_MASS_FLOWS)),
    "q in m3/h": ("q", _plain(_VOLUME_FLOWS)), "mass": ("mass", _plain(_MASS_FLOWS)),
    "volume": ("volume", _plain(_VOLUME_FLOWS)), "standard_volume": ("standard_volume", _plain(_STANDARD_FLOWS)),
    "energy": ("energy", _plain(_HEAT_FLOWS)), "heat": ("heat", _plain(_HEAT_FLOWS)),
}


class Column(NamedTuple):
    name: str
    factor: float
    offset: float


def names_of(quantity: str) -> str:
    """For messages: t_C, t_degC, t_K, ..."""
    prefix, units = QUANTITIES[quantity]
    return ", ".join(f"{prefix}_{unit}" for unit in units)


def find_column(columns: Iterable[object], quantity: str) -> Column | None:
    """The column of a quantity. Raises ValueError for two of them."""
    prefix, units = QUANTITIES[quantity]
    given = [(name, units[name[len(prefix) + 1:]]) for name in columns
             if isinstance(name, str) and name.startswith(prefix + "_") and name[len(prefix) + 1:] in units]
    if len(given) > 1:
        raise ValueError(f"expected one of the columns {names_of(quantity)}, not {', '.join(name for name, _ in given)}")
    return Column(given[0][0], *given[0][1]) if given else None


def mistaken(columns: Iterable[object], quantities: Iterable[str]) -> str | None:
    """A column that looks like a flow of these and has no unit of theirs; it would be taken for one that is not given."""
    for name in map(str, columns):
        for quantity in quantities:
            prefix, units = QUANTITIES[quantity]
            unit = name.lower().removeprefix(prefix + "_")
            if unit != name.lower() and unit.endswith(("_h", "_s", "_d", "-std", "kw", "mw")) and not (
                    name.startswith(prefix + "_") and name[len(prefix) + 1:] in units):
                return name
    return None
