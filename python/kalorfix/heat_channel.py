# SPDX-License-Identifier: MIT
"""Water and steam: state and phase, properties, the channel."""

from __future__ import annotations

import math
import warnings
from ctypes import byref, c_short
from typing import Any

from . import _limits
from ._checks import choice, number, single
from ._native import Library
from .channels import PIPE_KEYS, Channel, Results, finite
from .cycle import AT_H, AT_PS, AT_RHO, AT_T

PHASES = ("from_state", "water", "steam", "wet_steam")
_PHASE_TITLES = ("undecided", "water", "superheated steam", "wet steam")


class Heat(Channel):
    """A channel of water or steam. The keys of pipe and device are those of Gas (no meter_standard_volume), and

    phase    from_state, water, steam or wet_steam
    x        wet_steam (from_state: 0 without it): share of the single-phase state in the mixture, 0..1
    saturation_tolerance_Pa, saturation_tolerance_K  so close to the saturation line it is wet steam, 0..1e6 Pa, 0..100 K
    barometer_kPa, longest_step_s, contract_hour  as those of Gas
    mass_exponent ...  of mass, volume, heat: the register counts in 10^N of its unit, -9..9

    Raises ValueError for what is outside its limits, missing, or without meaning here.
    """

    integrators = ("mass", "volume", "heat")
    flow_columns = ("q_m_t_h", "q_v_m3_h", "q_h_GJ_h")
    _make, _flow_name = "make_heat", "heat_flow"

    def __init__(self, *, device: str, phase: str, metering_class: int = 1, pipe_material: int | None = None,
                 device_material: int | None = None, pipe_expansion_1_C: float | None = None,
                 device_expansion_1_C: float | None = None, D20_mm: float | None = None, d20_mm: float | None = None,
                 roughness_mm: float | None = None, edge_radius_mm: float | None = None, edge_radius: str | None = None,
                 check_interval_years: float | None = None, alpha_eps: float | None = None,
                 cut_off_kPa: float | None = None, column_height_m: float = 0.0, column_density_kg_m3: float = 0.0,
                 x: float | None = None, saturation_tolerance_Pa: float = 1000.0, saturation_tolerance_K: float = 0.5,
                 library: Library | None = None, **accounting: float) -> None:
        if device == "meter_standard_volume":
            raise ValueError("device: meter_standard_volume meters standard volume, which a heat carrier has not")
        pipe = {key: value for key, value in locals().items() if key in PIPE_KEYS}
        super().__init__(library, device, metering_class, pipe, edge_radius, (column_height_m, column_density_kg_m3),
                         accounting)
        self.phase = choice("phase", phase, PHASES)
        wet_steam = 3
        if x is None and self.phase == wet_steam:
            raise ValueError("lacks x (accepted: 0..1)")
        if x is not None and self.phase not in (0, wet_steam):
            raise ValueError(f"x has no meaning with phase {phase}; leave it out")
        self.x = single(number("x", x, 0, 1)) if x is not None else 0.0
        if self.phase == wet_steam and self.x > 0.0:
            warnings.warn("the density of wet steam is mixed linearly: with water in it too high, and so is the flow", stacklevel=2)
        self._tolerances = (single(number("saturation_tolerance_Pa", saturation_tolerance_Pa, 0, 1e6, "Pa")),
                            single(number("saturation_tolerance_K", saturation_tolerance_K, 0, 100, "K")))
        self._phase, self._saturation = c_short(), Results(2)

    def _state(self, t_C: float, p_Pa: float, row: list[Any]) -> str | None:
        self._phase.value = 0
        self._saturation.clear()
        good = self.library.call("Param_tn", self._calculator, t_C, p_Pa, self.column_height_m, self.column_density,
                                 *self._tolerances, byref(self._phase), *self._saturation.pointers) == 1
        if not good:
            return _limits.heat_state(t_C, self._corrected_pressure_Pa(p_Pa), self._pressure_name, p_Pa)
        # Above the critical point there is no saturation pressure.
        row[AT_PS:AT_PS + 2] = (value if math.isfinite(value) else None for value in self._saturation.narrowed())
        row[3] = _PHASE_TITLES[self.phase or self._phase.value]
        return None

    def _find_properties(self, row: list[Any]) -> str | None:
        results = self._properties
        results.clear()
        good = self.library.call("heat_tf", self._calculator, int(self.phase != 0), self.phase, self.x,
                                 *results.pointers[:4]) == 1
        values = results.narrowed()
        if not (good and finite(values)):
            return _limits.heat_properties(row[AT_T], self.phase or self._phase.value)
        rho, mu, h, kappa, _ = values
        row[AT_RHO:AT_H + 1] = rho, mu, kappa, h
        return None

    def _host_factors(self, row: list[Any]) -> tuple[float, ...]:
        return (row[AT_H],)
