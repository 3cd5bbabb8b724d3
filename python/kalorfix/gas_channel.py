# SPDX-License-Identifier: MIT
"""Natural gas: its state by four methods, its properties, its channel."""

from __future__ import annotations

import warnings
from collections.abc import Callable
from ctypes import byref, c_double
from typing import Any

from . import _limits, _stops
from ._checks import choice, number, single
from ._native import Library
from .channels import PIPE_KEYS, Channel, Results, finite
from .composition import CARBON_DIOXIDE, NITROGEN, Composition, judge_contents, read_composition, scaled
from .cycle import AT_K, AT_LOWER, AT_P, AT_RHO, AT_SUM

METHODS = ("nx19", "gerg91", "aga8", "vnic")
_METHOD_TITLES = ("NX19 mod.", "GERG-91 mod.", "AGA8-92DC", "VNIC SMV")
_GERG91, _AGA8, _VNIC = 1, 2, 3


class Gas(Channel):
    """A natural-gas channel.

    device                 orifice_corner, orifice_d_d2, orifice_flange, nozzle_isa1932, nozzle_long_radius, venturi_nozzle,
                           venturi_cast, venturi_machined, venturi_welded, averaging_10 .. averaging_18,
                           configured_coefficient, meter_mass, meter_volume, meter_standard_volume, external
    metering_class         1 solves the flow to 1e-5, 0 to 1e-3
    pipe_material, device_material            codes 1..39 of GOST 8.586.1, annex G; or both of
    pipe_expansion_1_C, device_expansion_1_C  linear expansion, 0..0.001 1/degC
    D20_mm, d20_mm         pipe and device at 20 degC, 0..10000 mm
    roughness_mm           equivalent uniform roughness of the pipe, 0..100 mm
    edge_radius_mm, edge_radius, check_interval_years
                           orifice plates: initial radius of the edge, 0..10 mm; mean (as without it) or at_end of the
                           interval between checks, 0..100 years
    alpha_eps              configured_coefficient: its flow coefficient, 0..100. Meters take none of the pipe's keys
    cut_off_kPa            0..1000: a lower differential pressure is no flow, and its time counts; without it none
    column_height_m, column_density_kg_m3  liquid column between tap and transmitter, -1000..1000 m, 0..20000 kg/m3
    method                 nx19, gerg91 (by density); aga8, vnic (by composition)
    rho_c_kg_m3, nitrogen_pct, carbon_dioxide_pct  nx19, gerg91: density at 20 degC and 101.325 kPa, 0..1; mol %
    composition            aga8, vnic: components with their mol %, or a file such as examples/natural_gas.csv
    volume_fractions       aga8: the composition is given in fractions, 0..1
    composition_sum        aga8, vnic: 100 (as without it) refuses what sums to less than 99 or more than 101 %; any
    normalise              aga8, vnic: yes scales the composition to 100 %; no
    contents               aga8: nitrogen and carbon dioxide behind viscosity and exponent: own (as without it), or as_left
                           by the last calculation by density of this library, as a controller without a spare channel
    vapour_kg_m3           water vapour in the working cubic metre, 0..1000
    energy_by              lower_heat or higher_heat: behind the energy
    heat_unit, heat_basis_C  vnic: heats of combustion in kJ or kcal, per cubic metre at 0 or 20 degC
    barometer_kPa          atmospheric pressure beside readings of gauge pressure, 50..120
    longest_step_s         longer steps between two readings are not counted, 0..1e8; 0 (as without it) counts any
    contract_hour          at which a day of the calendar begins, 0..23; 0
    mass_exponent ...      of mass, volume, standard_volume, energy: the register counts in 10^N of its unit, -9..9; a day
                           must stay below 10^6
    library                a Library; without it the default one

    Raises ValueError for what is outside its limits, missing, or without meaning here.
    """

    integrators = ("mass", "volume", "standard_volume", "energy")
    flow_columns = ("q_m_t_h", "q_v_m3_h", "q_c_m3_h", "q_e_GJ_h")
    _make, _flow_name = "make_gas", "gas_flow"

    def __init__(self, *, device: str, method: str, metering_class: int = 1, pipe_material: int | None = None,
                 device_material: int | None = None, pipe_expansion_1_C: float | None = None,
                 device_expansion_1_C: float | None = None, D20_mm: float | None = None, d20_mm: float | None = None,
                 roughness_mm: float | None = None, edge_radius_mm: float | None = None, edge_radius: str | None = None,
                 check_interval_years: float | None = None, alpha_eps: float | None = None,
                 cut_off_kPa: float | None = None, column_height_m: float = 0.0, column_density_kg_m3: float = 0.0,
                 rho_c_kg_m3: float | None = None, nitrogen_pct: float | None = None,
                 carbon_dioxide_pct: float | None = None, composition: Composition | None = None,
                 volume_fractions: bool = False, composition_sum: str | int | None = None, normalise: str | None = None,
                 contents: str | None = None, vapour_kg_m3: float = 0.0, energy_by: str = "lower_heat",
                 heat_unit: str | None = None, heat_basis_C: int | None = None, library: Library | None = None,
                 **accounting: float) -> None:
        self.method = choice("method", method, METHODS)
        self.vapour = number("vapour_kg_m3", vapour_kg_m3, 0, 1000, "kg/m3")
        self.by_higher_heat = choice("energy_by", energy_by, ("lower_heat", "higher_heat")) == 1
        self._heats(heat_unit, heat_basis_C)
        pipe = {key: value for key, value in locals().items() if key in PIPE_KEYS}
        super().__init__(library, device, metering_class, pipe, edge_radius, (column_height_m, column_density_kg_m3),
                         accounting)
        self._results = Results(3)
        densities = {"rho_c_kg_m3": rho_c_kg_m3, "nitrogen_pct": nitrogen_pct, "carbon_dioxide_pct": carbon_dioxide_pct}
        self._contents_pct: tuple[float, float] | None = None
        self._own_contents = self.method == _AGA8
        self._x, self._rho_c, self._fractions, self._normalise = [0.0] * 15, 0.0, 0, False
        insisted = {"composition_sum": composition_sum, "normalise": normalise, "contents": contents}
        if self.method <= _GERG91:
            self._by_density(densities, {"composition": composition, **insisted})
        else:
            self._by_composition(densities, composition, volume_fractions, insisted)
        self._given = self._x, self._rho_c, self.vapour
        self._take([single(value) for value in self._x], single(self._rho_c), single(self.vapour), single)

    def _heats(self, unit: str | None, basis_C: int | None) -> None:
        if self.method != _VNIC and (unit is not None or basis_C is not None):
            raise ValueError("heat_unit, heat_basis_C: only vnic has a choice; the others give MJ/m3 at 20 degC")
        self._kcal = 0 if unit is None else choice("heat_unit", unit, ("kJ", "kcal"))
        self._at_20_C = 1 if basis_C is None else choice("heat_basis_C", str(basis_C), ("0", "20"))

    def _by_density(self, densities: dict[str, Any], of_a_composition: dict[str, Any]) -> None:
        for key, value in of_a_composition.items():
            if value is not None:
                raise ValueError(f"{key}: {METHODS[self.method]} takes density, nitrogen and carbon dioxide")
        for key, value in densities.items():
            if value is None:
                raise ValueError(f"lacks {key} (accepted: {'0..1 kg/m3' if key == 'rho_c_kg_m3' else '0..100 mol %'})")
        self._rho_c = number("rho_c_kg_m3", densities["rho_c_kg_m3"], 0, 1, "kg/m3")
        for key, k in (("nitrogen_pct", NITROGEN), ("carbon_dioxide_pct", CARBON_DIOXIDE)):
            self._x[k] = number(key, densities[key], 0, 100, "mol %")
        judge_contents(self._x[NITROGEN], self._x[CARBON_DIOXIDE], self._rho_c)

    def _by_composition(self, densities: dict[str, Any], composition: Composition | None, fractions: bool,
                        insisted: dict[str, Any]) -> None:
        title = METHODS[self.method]
        for key, value in densities.items():
            if value is not None:
                raise ValueError(f"{key} has no meaning with {title}, which takes a composition; leave it out")
        if composition is None:
            raise ValueError(f"lacks composition: {title} takes components in mol %, or a file")
        self.library.require_gas_data(title)
        given = {key: value for key, value in insisted.items() if value is not None}
        any_sum = choice("composition_sum", str(given.get("composition_sum", "100")), ("100", "any")) == 1
        self._normalise = choice("normalise", given.get("normalise", "no"), ("no", "yes")) == 1
        if self.method != _AGA8 and "contents" in given:
            raise ValueError("contents has no meaning with vnic, which takes them from the composition")
        as_left = choice("contents", given.get("contents", "own"), ("own", "as_left")) == 1
        self._own_contents = self.method == _AGA8 and not as_left
        x, fractions = read_composition(composition, fractions, any_sum, self._normalise)
        if fractions and self.method == _VNIC:
            raise ValueError("volume_fractions: VNIC SMV takes its heats from mole per cent; give mol %")
        if fractions:
            warnings.warn("the heats of combustion of AGA8-92DC take volume fractions for mole per cent; energy is wrong, give"
                          " mol %", stacklevel=4)
        self._x, self._fractions, self._rho_c = x, int(fractions), 0.0

    def _take(self, x: list[float], rho_c: float, vapour: float, narrow: Callable[[float], float] = float) -> None:
        """The gas with which it computes; shares that are scaled become what `narrow` makes of them."""
        self._rho_c, self.vapour = rho_c, vapour
        self._x = [narrow(share) for share in scaled(x, bool(self._fractions))] if self._normalise else x
        if not self._own_contents:
            return
        pct = self._x
        if self._fractions:
            # The state makes mole fractions of the volume fractions.
            with self.library.lock:
                self._find_state(20.0, 1e6)
                pct = [100.0 * share for share in self.library.floats("Xi", 15)]
        self._contents_pct = pct[NITROGEN], pct[CARBON_DIOXIDE]

    def take_doubles(self) -> None:
        """Computes with the gas as it was given; a channel has it in single precision."""
        self._take(*self._given)

    @property
    def by_density(self) -> bool:
        """Whether the method takes density, nitrogen and carbon dioxide."""
        return self.method <= _GERG91

    @property
    def contents(self) -> str:
        """own or as_left: with which nitrogen and carbon dioxide AGA8-92DC takes viscosity and exponent; empty for the other
        methods."""
        return "" if self.method != _AGA8 else "own" if self._own_contents else "as_left"

    @property
    def contents_pct(self) -> tuple[float, float] | None:
        """These, mol %; None where the method takes none, or those that were left."""
        return self._contents_pct

    def _stops_of_medium(self) -> list[str]:
        return [] if self.by_density else _stops.of_composition(self._x, bool(self._fractions))

    def prime(self) -> None:
        """Leaves the contents of a gas by density, as a controller that has started did with all its channels."""
        with self.library.lock:
            self._find_state(20.0, 1e6)

    @property
    def heat_unit(self) -> str:
        if self.method != _VNIC:
            return "MJ/m3 at 20 degC"
        return f"{'kcal' if self._kcal else 'kJ'}/m3 at {20 if self._at_20_C else 0} degC"

    def _find_state(self, t_C: float, p_Pa: float) -> bool:
        """Status of the state; sum, K and the density at standard conditions in `_results`."""
        self.library.leave_contents(self._contents_pct)
        self._results.clear()
        return bool(self.library.call("Param_gs", self._calculator, t_C, p_Pa, self.column_density, self.column_height_m,
                                      self.method, self._fractions, *self._x, self._rho_c, *self._results.pointers) == 1)

    def _find_heats(self) -> bool:
        self._properties.clear()
        return bool(self.library.call("gas_tf", self._calculator, self._kcal, self._at_20_C, self.vapour,
                                      *self._properties.pointers) == 1)

    def _why_no_state(self, t_C: float, p_Pa: float, K: float) -> str:
        return _limits.gas_state(t_C, self._corrected_pressure_Pa(p_Pa), self._pressure_name, K, _METHOD_TITLES[self.method])

    def _why_no_properties(self, p_Pa: float) -> str:
        ps = c_double()
        self.library.call("t_phase_1", 0.1, 645.0 - 273.15, 0.0, byref(ps))
        return _limits.gas_properties(self._corrected_pressure_Pa(p_Pa), self.vapour, ps.value)

    def _state(self, t_C: float, p_Pa: float, row: list[Any]) -> str | None:
        good = self._find_state(t_C, p_Pa)
        sum_, K, rho_c = values = self._results.narrowed()
        if not (good and finite(values)):
            return self._why_no_state(t_C, p_Pa, K)
        if not self.by_density:
            row[AT_SUM] = sum_
        row[AT_K:AT_K + 2] = K, rho_c
        return None

    def _find_properties(self, row: list[Any]) -> str | None:
        good = self._find_heats()
        values = self._properties.narrowed()
        if not (good and finite(values)):
            return self._why_no_properties(row[AT_P])
        row[AT_RHO:AT_RHO + 3] = values[:3]
        row[AT_LOWER:AT_LOWER + 2] = values[3:]
        return None

    def _host_factors(self, row: list[Any]) -> tuple[float, ...]:
        """Density at standard conditions, and the heat in MJ per cubic metre of the standard volume: with the 0.001 of the
        flow it makes GJ. In single precision, step by step, as a controller has it."""
        heat = float(row[AT_LOWER + self.by_higher_heat])
        if self.method == _VNIC:
            if self._kcal:
                heat = single(heat * single(4.1868))
            if not self._at_20_C:
                heat = single(heat / single(single(293.15) / single(273.15)))
            heat = single(heat * single(0.001))
        return row[AT_K + 1], heat
