# SPDX-License-Identifier: MIT
"""Single states of water, steam and natural gas."""

from __future__ import annotations

import math
from ctypes import byref, c_double, c_short
from dataclasses import dataclass
from typing import Any

from ._checks import choice, number, reading
from ._native import Library, default_library
from .gas_channel import Gas

_SATURATED = "saturated vapour"


@dataclass(slots=True)
class WaterState:
    """A state of water or steam by IAPWS-95, viscosity by the formulation of 1985. Refused: the numbers are None."""

    status: str  #: computed or refused
    reason: str
    phase: str  #: water, steam, saturated, saturated vapour; empty where it is not decided
    t_C: float
    p_MPa: float | None
    rho_kg_m3: float | None = None
    mu_uPa_s: float | None = None
    h_kJ_kg: float | None = None
    kappa: float | None = None
    ps_MPa: float | None = None  #: saturation pressure at t; None above the critical temperature
    ts_C: float | None = None  #: saturation temperature at p; None where there is none


@dataclass(slots=True)
class GasState:
    """A state of natural gas. Refused: what the method came to, the rest None."""

    status: str  #: computed or refused
    reason: str
    t_C: float
    p_MPa: float
    heat_unit: str
    rho_c_kg_m3: float | None = None  #: density at 20 degC and 101.325 kPa
    K: float | None = None  #: compressibility coefficient Z/Zc
    rho_kg_m3: float | None = None
    mu_uPa_s: float | None = None
    kappa: float | None = None
    lower_heat: float | None = None
    higher_heat: float | None = None


def water(*, t: float, p: float | None = None, saturated: bool = False, phase_by: str = "channel", dp: float = 0.001,
          dt: float = 0.5, library: Library | None = None) -> WaterState:
    """The state at t (0..800 degC) and the absolute pressure p (0..100 MPa), or with `saturated` that of saturated vapour
    at t (up to 371.85 degC), without p. Outside these ranges it is refused.

    phase_by  whose phase is told, of which the other numbers do not depend: channel (as mt_param_tn decides, from 0.001 MPa
              up) or t_phase_1
    dp, dt    so close to the saturation line it is saturated, 0..100 MPa and, by channel alone, 0..100 K
    """
    lib = library if library is not None else default_library()
    t = reading("t", t, "degC")
    if saturated == (p is not None):
        raise ValueError("p: saturated vapour has the saturation pressure; leave p out" if saturated else
                         "p: give the absolute pressure within 0..100 MPa, or saturated=True")
    pressure = reading("p", p, "MPa") if p is not None else 1.0
    exported = choice("phase_by", phase_by, ("channel", "t_phase_1")) == 1
    dp, dt = number("dp", dp, 0, 100, "MPa"), number("dt", dt, 0, 100, "K")
    phase, ps, ts, out = c_short(), c_double(), c_double(), [c_double() for _ in range(4)]
    with lib.lock:
        decided = lib.call("Param_tn", lib.spare_heat, t, pressure * 1e6, 0.0, 0.0, dp * 1e6, dt, byref(phase), byref(ps),
                           byref(ts)) == 1
        if exported:
            phase.value = lib.call("t_phase_1", pressure, t, dp, byref(ps))
        # Below the limit of the phase decision the saturation pressure is still wanted; it depends on t alone.
        lib.call("t_phase_1", 1.0, t, 0.0, byref(ps))
        refused = lib.call("t_param_1", t, pressure, 3 if saturated else 1, *map(byref, out)) != 0
        highest_p = lib.double("p_kr")
    if refused:
        highest = 371.85 if saturated else 800.0
        reason = (f"t {t:.10g} degC outside 0..{highest:g} degC" if not 0.0 <= t <= highest else
                  f"p {pressure:.10g} MPa outside 0..100 MPa")
        return WaterState("refused", reason, "", t, p)
    saturation = ps.value if math.isfinite(ps.value) else None
    ts_C = t if saturated else ts.value if decided and pressure <= highest_p else None
    word = _SATURATED if saturated else ("", "water", "steam", "saturated")[phase.value if decided or exported else 0]
    return WaterState("computed", "", word, t, saturation if saturated else pressure, out[0].value, out[1].value,
                      out[2].value, out[3].value, saturation, ts_C)


def gas(*, t: float, p: float, library: Library | None = None, **keys: Any) -> GasState:
    """The state at t (degC) and the absolute pressure p (MPa) of a gas with these keys of Gas: method; rho_c_kg_m3,
    nitrogen_pct and carbon_dioxide_pct, or composition; vapour_kg_m3, heat_unit, heat_basis_C. In double precision."""
    t, p = reading("t", t, "degC"), reading("p", p, "MPa")
    channel = Gas(device="meter_volume", library=library, **keys)
    channel.take_doubles()
    p_Pa = p * 1e6
    state = GasState("refused", "", t, p, channel.heat_unit)
    with channel.library.lock:
        good = channel._find_state(t, p_Pa)
        _, K, rho_c = channel._results.doubles[:]
        state.K, state.rho_c_kg_m3 = K or None, rho_c or None
        if not good:
            state.reason = channel._why_no_state(t, p_Pa, K)
        elif not channel._find_heats():
            state.reason = channel._why_no_properties(p_Pa)
        else:
            state.status = "computed"
            (state.rho_kg_m3, state.mu_uPa_s, state.kappa, state.lower_heat,
             state.higher_heat) = channel._properties.doubles[:]
    return state
