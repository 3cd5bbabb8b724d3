# SPDX-License-Identifier: MIT
"""What stops a device whatever is measured, in the words of `kalorfix run`."""

from __future__ import annotations

import math
from ctypes import Structure, c_double, c_ubyte, c_void_p

from ._limits import STANDARD_DEVICES, material_range


class BaseFields(Structure):
    """The first fields of a calculator (cCommon2005, kalorfix_calculators.h)."""

    _fields_ = [("table", c_void_p), ("metering_class", c_ubyte), ("device_type", c_ubyte), ("by_material", c_ubyte),
                ("constants", c_double * 6), ("r_n_at_end", c_ubyte), ("tau", c_double), ("alpha_eps", c_double),
                ("valid", c_ubyte), ("t", c_double)]


def _rule(what: str, value: float, bounds: tuple[float, float], unit: str, clause: str) -> list[str]:
    if bounds[0] <= value <= bounds[1]:
        return []
    suffix = f" {unit}" if unit else ""
    limit = f"above {bounds[1]:.6g}" if value > bounds[1] else f"below {bounds[0]:.6g}"
    return [f"{what}: {value:.6g}{suffix} {limit}{suffix} ({clause})"]


def of_materials(materials: tuple[float, float], t_C: float) -> list[str]:
    """Temperature ranges of the materials of pipe and device. GOST 8.586.1-2005, annex G."""
    return [stop for part, code in zip(("pipe", "device"), materials)
            for stop in _rule(f"material {code:g} of the {part}", t_C, material_range(int(code)), "degC",
                              "GOST 8.586.1-2005, annex G")]


def of_sizes(device: int, t_C: float, D_mm: float, d_mm: float, roughness_mm: float) -> list[str]:
    """Diameters at t, their ratio, roughness."""
    row, at = STANDARD_DEVICES[device], f" at {t_C:g} degC"
    stops = _rule("pipe" + at, D_mm, row.D_mm, "mm", row.clause)
    if row.d_min_mm:
        stops += _rule("device" + at, d_mm, (row.d_min_mm, math.inf), "mm", row.clause)
    stops += _rule("beta" + at, d_mm / D_mm, row.beta, "", row.clause)
    if math.isfinite(row.R_a_max):
        stops += _rule("roughness R_a/D" + at, roughness_mm / math.pi / D_mm, (0.0, row.R_a_max), "", row.clause)
    return stops


def of_composition(contents: list[float], fractions: bool) -> list[str]:
    """A sum apart from the whole by more than a hundredth."""
    whole, total = 1.0 if fractions else 100.0, 0.0
    for share in contents:
        total += share
    return _rule("sum of the composition", total, (whole * 0.99, whole * 1.01), "" if fractions else "mol %",
                 "normalised" if fractions else "not normalised")
