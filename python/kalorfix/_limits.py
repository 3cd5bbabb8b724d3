# SPDX-License-Identifier: MIT
"""The limits of use that a refused cycle may have broken, in the words of `kalorfix run`."""

from __future__ import annotations

import math
from collections.abc import Callable
from typing import NamedTuple

_NO = math.inf
_ZERO_CELSIUS_K = 273.15

Reynolds = Callable[[float, float], tuple[float, float]]  # of the diameter ratio and the pipe diameter in m


def _plate(beta: float, _: float) -> tuple[float, float]:
    return (5000.0 if beta <= 0.56 else 16000.0 * beta * beta), _NO


def _flange(beta: float, D_m: float) -> tuple[float, float]:
    return max(5000.0, 170000.0 * beta * beta * D_m), _NO


def _isa1932(beta: float, _: float) -> tuple[float, float]:
    return (70000.0 if beta < 0.44 else 20000.0), 5e7


def _machined(beta: float, _: float) -> tuple[float, float]:
    return 40000.0 * beta, 1e8 * beta


def _from_to(low: float, high: float = _NO) -> Reynolds:
    return lambda *_: (low, high)


class Device(NamedTuple):
    """Bounds of a device: diameters in mm at the working temperature, d/D, R_a/D."""

    D_mm: tuple[float, float]
    d_min_mm: float
    beta: tuple[float, float]
    R_a_max: float
    reynolds: Reynolds
    clause: str


STANDARD_DEVICES = {
    1: Device((50, 3000), 12.5, (0.1, 0.75), _NO, _plate, "GOST 8.586.2-2005, 5.3.1"),
    2: Device((50, 1000), 12.5, (0.1, 0.75), _NO, _plate, "GOST 8.586.2-2005, 5.3.1"),
    3: Device((50, 1000), 12.5, (0.1, 0.75), _NO, _flange, "GOST 8.586.2-2005, 5.3.1"),
    4: Device((50, 1000), 0, (0.3, 0.8), _NO, _isa1932, "GOST 8.586.3-2005, 5.1.6.1"),
    5: Device((50, 630), 0, (0.2, 0.8), 0.00032, _from_to(1e4, 1e7), "GOST 8.586.3-2005, 5.2.6.1"),
    6: Device((65, 500), 50, (0.316, 0.775), _NO, _from_to(150000, 2e6), "GOST 8.586.3-2005, 5.3.4.1"),
    7: Device((100, 800), 0, (0.3, 0.75), _NO, _from_to(40000), "GOST 8.586.4-2005, 5.5.2"),
    8: Device((50, 250), 0, (0.4, 0.75), _NO, _machined, "GOST 8.586.4-2005, 5.5.3"),
    9: Device((200, 1200), 0, (0.4, 0.7), _NO, _from_to(40000), "GOST 8.586.4-2005, 5.5.4"),
}
# Least Reynolds numbers of the averaging devices 10..18, by their makers.
_AVERAGING = (4000, 2300, 6500, 10000, 15000, 25000, 6500, 12500, 25000)
# Temperatures of the materials 1..39, degC: GOST 8.586.1-2005, annex G, table G.1.
_MATERIAL_LOW = {code: -200 for code in (9, 10, 11, 12, 17, 18, 19, 22, 31)}
_MATERIAL_HIGH = (700, 100, 600, 700, 600, 400, 600, 500, 700, 700, 700, 700, 700, 400, 600, 700, 700, 500, 700, 600, 600,
                  700, 600, 700, 800, 800, 600, 800, 900, 500, 700, 900, 700, 300, 100, 1000, 600, 700, 500)


def material_range(code: int) -> tuple[float, float]:
    """Temperatures of a material, degC."""
    return _MATERIAL_LOW.get(code, -40), _MATERIAL_HIGH[code - 1]


def broken(what: str, value: float, relation: str, bound: float, unit: str = "") -> str:
    """A sentence such as "T 249 K not above 250 K", with as many digits as tell value and bound apart."""
    for digits in range(5, 18):
        texts = f"{value:.{digits}g}", f"{bound:.{digits}g}"
        if texts[0] != texts[1] or value == bound:
            break
    suffix = f" {unit}" if unit else ""
    return f"{what} {texts[0]}{suffix} {relation} {texts[1]}{suffix}"


def outside(what: str, value: float, bounds: tuple[float, float], unit: str = "") -> str:
    """The sentence for a value below or above its bounds; empty for one that is within."""
    if value < bounds[0]:
        return broken(what, value, "below", bounds[0], unit)
    return broken(what, value, "above", bounds[1], unit) if value > bounds[1] else ""


def gas_state(t_C: float, p_Pa: float, p_name: str, K: float, method: str) -> str:
    """250..340 K and 0.001..30 MPa without their ends; K below 0.9999. GOST 30319.2-96."""
    T, p = t_C + _ZERO_CELSIUS_K, p_Pa * 1e-6
    if not T > 250.0:
        return broken("T", T, "not above", 250.0, "K")
    if not T < 340.0:
        return broken("T", T, "not below", 340.0, "K")
    if not p > 0.001:
        return broken(p_name, p, "not above", 0.001, "MPa")
    if not p < 30.0:
        return broken(p_name, p, "not below", 30.0, "MPa")
    if not K < 0.9999:
        return broken("compressibility K", K, "not below", 0.9999)
    return f"{method} finds no compressibility at this state" if K == 0.0 else ""


def heat_state(t_C: float, p_Pa: float, p_name: str, p_measured_Pa: float) -> str:
    """0..1000 degC, 0.001..100 MPa."""
    if t_C < 0.0:
        return broken("t", t_C, "below", 0.0, "degC")
    if p_measured_Pa < 0.0:
        return broken("p", p_measured_Pa, "below", 0.0, "Pa")
    return outside("t", t_C, (0.0, 1000.0), "degC") or outside(p_name, p_Pa * 1e-6, (0.001, 100.0), "MPa")


def gas_properties(p_Pa: float, vapour: float, ps_645K_MPa: float) -> str:
    """Humid gas needs saturated vapour at its pressure, which the formulation gives up to 645 K."""
    p = p_Pa * 1e-6
    if not (vapour > 0.0 and p > ps_645K_MPa):
        return ""
    return (f"with water vapour in the gas, {broken('p', p, 'above', ps_645K_MPa, 'MPa')},"
            " where the saturation temperature is 645 K")


def heat_properties(t_C: float, phase: int) -> str:
    """Up to 800 degC; wet steam up to 645 K."""
    if phase == 0:
        return "the phase is undecided at this state"
    if t_C > 800.0:
        return broken("t", t_C, "above", 800.0, "degC")
    T = t_C + _ZERO_CELSIUS_K
    return "wet steam: " + broken("T", T, "above", 645.0, "K") if phase == 3 and T > 645.0 else ""


def geometry(device: int, materials: tuple[float, float] | None, t_C: float, D_mm: float, d_mm: float,
             roughness_mm: float) -> str:
    """Temperatures of the materials (pipe, device), then diameters, roughness and ratio."""
    for of, code in zip(("device", "pipe"), reversed(materials or ())):
        text = outside(f"t of the {of} (material {code:g})", t_C, material_range(int(code)), "degC")
        if text:
            return text
    row = STANDARD_DEVICES.get(device)
    if not row or not D_mm > 0.0:
        return ""
    R_a_D = roughness_mm / math.pi / D_mm
    return (outside("pipe diameter", D_mm, row.D_mm, "mm")
            or (outside("device diameter", d_mm, (row.d_min_mm, _NO), "mm") if row.d_min_mm else "")
            or outside("roughness R_a/D", R_a_D, (0.0, row.R_a_max))
            or outside("diameter ratio", d_mm / D_mm, row.beta))


def flow(device: int, liquid: bool, dp_Pa: float, p_Pa: float, D_mm: float, beta: float, Re: float,
         roughness_mm: float) -> str:
    """dp/p, dp, Reynolds number, roughness; what is left is a flow that does not settle."""
    if device >= 20:
        return ""
    row = STANDARD_DEVICES.get(device)
    if row and not liquid and dp_Pa / p_Pa > 0.25:
        return broken("dp/p", dp_Pa / p_Pa, "exceeds", 0.25)
    if dp_Pa < 0.0:
        return broken("dp", dp_Pa, "below", 0.0, "Pa")
    if dp_Pa == 0.0:
        return "dp is 0: there is no flow to solve for"
    if not row:
        least = _AVERAGING[device - 10] if device < 19 else 0
        return broken("Re", Re, "below", least) + " for this device" if Re <= least else ""
    low, high = row.reynolds(beta, D_mm * 1e-3)
    # The Reynolds number is known in single precision.
    if Re < low * (1.0 + 1e-7) or Re > high * (1.0 - 1e-7):
        return (broken("Re", Re, "below", low) if Re < 2.0 * low else
                broken("Re", Re, "above", high)) + " for this device and beta"
    if device in (4, 6) and roughness_mm > 0.003 * D_mm:
        return broken("roughness R/D", roughness_mm / D_mm, "above", 0.003)
    if (device == 1 and D_mm > 1000.0) or (device == 4 and D_mm > 500.0):
        return "roughness correction above 1.03"
    return f"the flow does not settle within 100 passes, the last at Re {Re:.5g}"
