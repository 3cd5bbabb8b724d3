"""Metering channels: natural gas, and water or steam, through a device of GOST 8.586 / ISO 5167, a meter or another."""

from __future__ import annotations

import math
from collections.abc import Mapping
from ctypes import addressof, byref, c_byte, c_double, c_float, c_short
from dataclasses import dataclass
from typing import TYPE_CHECKING, Any

from . import _limits
from ._checks import choice, number, reading, single, whole
from ._native import Library, default_library
from .composition import CARBON_DIOXIDE, NITROGEN, Composition, read_composition
from .totals import Registers

if TYPE_CHECKING:
    import pandas

DEVICES = ("orifice_corner", "orifice_d_d2", "orifice_flange", "nozzle_isa1932", "nozzle_long_radius", "venturi_nozzle",
           "venturi_cast", "venturi_machined", "venturi_welded", *(f"averaging_{k}" for k in range(10, 19)),
           "configured_coefficient", "meter_mass", "meter_volume", "meter_standard_volume", "external")
METHODS = ("nx19", "gerg91", "aga8", "vnic")
PHASES = ("from_state", "water", "steam", "wet_steam")
_METHOD_TITLES = ("NX19 mod.", "GERG-91 mod.", "AGA8-92DC", "VNIC SMV")
_PHASE_TITLES = ("undecided", "water", "superheated steam", "wet steam")
_GERG91, _AGA8, _VNIC = 1, 2, 3
_LAST_ORIFICE, _LAST_STANDARD, _CONFIGURED, _METER_MASS, _METER_STANDARD, _EXTERNAL = 3, 9, 19, 20, 22, 23
TEXTS = ("status", "step", "reason", "phase", "heat_unit")

# Numbers that describe a pipe and its device: limits, unit, and which devices take them.
_PIPE_KEYS: dict[str, tuple[float, float, str]] = {
    "pipe_material": (1, 39, ""), "device_material": (1, 39, ""),
    "pipe_expansion_1_C": (0, 1e-3, "1/degC"), "device_expansion_1_C": (0, 1e-3, "1/degC"),
    "D20_mm": (0, 10000, "mm"), "d20_mm": (0, 10000, "mm"), "roughness_mm": (0, 100, "mm"),
    "edge_radius_mm": (0, 10, "mm"), "check_interval_years": (0, 100, "years"), "alpha_eps": (0, 100, ""),
}


@dataclass(slots=True)
class Cycle:
    """What a cycle gave, as a line of `kalorfix run --format csv`; the unit is in the name. A number that does not exist
    for this medium and device, or that the refused step did not come to, is None."""

    status: str  #: computed or refused
    step: str  #: the step that refused: state, properties, geometry, flow
    reason: str  #: why: the limit, and the value that broke it
    phase: str  #: water, superheated steam, wet steam
    heat_unit: str  #: of the heats of combustion
    t_C: float
    p_Pa: float
    dp_Pa: float | None = None
    ps_MPa: float | None = None
    ts_C: float | None = None
    K: float | None = None
    rho_c_kg_m3: float | None = None
    rho_kg_m3: float | None = None
    mu_uPa_s: float | None = None
    kappa: float | None = None
    h_kJ_kg: float | None = None
    lower_heat: float | None = None
    higher_heat: float | None = None
    D_mm: float | None = None
    d_mm: float | None = None
    beta: float | None = None
    E: float | None = None
    K_p: float | None = None
    Re: float | None = None
    C: float | None = None
    K_sh: float | None = None
    epsilon: float | None = None
    q_m_t_h: float | None = None
    q_v_m3_h: float | None = None
    q_c_m3_h: float | None = None
    q_e_GJ_h: float | None = None
    q_h_GJ_h: float | None = None

    @property
    def computed(self) -> bool:
        """Whether all steps of the cycle succeeded."""
        return self.status == "computed"


COLUMNS = tuple(Cycle.__dataclass_fields__)


class Results:
    """Doubles that a member writes, and the same in single precision, as the channel functions hand them out."""

    def __init__(self, count: int) -> None:
        self.doubles = (c_double * count)()
        self.singles = (c_float * count)()
        self.pointers = [addressof(self.doubles) + 8 * k for k in range(count)]
        self._zeros: list[Any] = [0.0] * count

    def clear(self) -> None:
        """Every call starts from zeros, so that nothing of the cycle before can show."""
        self.doubles[:] = self._zeros

    def narrowed(self) -> list[float]:
        """The results in single precision."""
        values: list[Any] = self.doubles[:]
        self.singles[:] = values
        return self.singles[:]


def _finite(values: list[float]) -> bool:
    return all(map(math.isfinite, values))


class Channel:
    """What gas and heat-carrier channels have in common: pipe, device, flow, frames."""

    integrators: tuple[str, ...]  #: names, in the order of the library
    flow_columns: tuple[str, ...]
    _make: str
    _flow_name: str

    def __init__(self, library: Library | None, device: str, metering_class: int, pipe: dict[str, Any], edge_radius: str | None,
                 column: tuple[float, float], accounting: dict[str, Any]) -> None:
        self.library = library if library is not None else default_library()
        self.device = choice("device", device, DEVICES) + 1
        self.metering_class = whole("metering_class", metering_class, 0, 1)
        self._pipe(pipe, edge_radius)
        self.column_height_m = single(number("column_height_m", column[0], -1000, 1000, "m"))
        self.column_density = single(number("column_density_kg_m3", column[1], 0, 20000, "kg/m3"))
        self._accounting(accounting)
        self._calculator = self.library.calculator(self._make)
        self._properties, self._geometry = Results(5), Results(5)
        self._flows, self._integration = Results(8), Results(3)
        with self.library.lock:
            status = self.library.call(
                "Init_TR", self._calculator, self.metering_class, self.device, int(self._materials is not None),
                *self._constants, int(edge_radius == "at_end"), self._interval_years, self._alpha_eps, byref(c_byte()))
        if status != 1:
            raise ValueError("the library refuses the constants of this channel")

    def _pipe(self, pipe: dict[str, Any], edge_radius: str | None) -> None:
        expansions = pipe["pipe_expansion_1_C"] is not None or pipe["device_expansion_1_C"] is not None
        kind = "expansion_1_C" if expansions else "material"
        wanted = [f"pipe_{kind}", f"device_{kind}", "D20_mm", "d20_mm", "roughness_mm"]
        if self.device <= _LAST_ORIFICE:
            wanted += ["edge_radius_mm", "check_interval_years"]
        wanted += ["alpha_eps"] * (self.device == _CONFIGURED)
        if self.device >= _METER_MASS:
            wanted = []
        unwanted = [key for key, value in pipe.items() if value is not None and key not in wanted]
        unwanted += ["edge_radius"] * (edge_radius is not None and self.device > _LAST_ORIFICE)
        if unwanted:
            raise ValueError(f"{unwanted[0]} has no meaning with device {DEVICES[self.device - 1]}; leave it out")
        if edge_radius is not None:
            choice("edge_radius", edge_radius, ("mean", "at_end"))
        values = dict.fromkeys(pipe, 0.0)
        for key in wanted:
            low, high, unit = _PIPE_KEYS[key]
            if pipe[key] is None:
                raise ValueError(f"lacks {key} (accepted: {low:g}..{high:g} {unit}".rstrip() + ")")
            values[key] = single(whole(key, pipe[key], int(low), int(high)) if key.endswith("material") else
                                 number(key, pipe[key], low, high, unit))
        parts = values[f"pipe_{kind}"], values[f"device_{kind}"]
        self._materials = parts if wanted and not expansions else None
        self._roughness_mm = values["roughness_mm"]
        self._constants = (*parts, values["D20_mm"], values["d20_mm"], values["roughness_mm"], values["edge_radius_mm"])
        self._interval_years, self._alpha_eps = values["check_interval_years"], values["alpha_eps"]

    def _accounting(self, accounting: dict[str, Any]) -> None:
        """Exponents of the registers. Flows that fill a downtime are checked, and of no use to an archive."""
        exponents = {f"{name}_exponent": 0 for name in self.integrators}
        substitutes = [f"{name}_substitute_{flow.removeprefix(flow[:4])}"
                       for name, flow in zip(self.integrators, self.flow_columns)]
        for key, value in accounting.items():
            if key in exponents:
                exponents[key] = whole(key, value, -9, 9)
            elif key in substitutes:
                number(key, value, 0, 1e9)
            else:
                raise TypeError(f"unexpected keyword argument {key!r}; beside those of the signature there are "
                                + ", ".join([*exponents, *substitutes]))
        self.exponents = tuple(exponents.values())

    # ---- A cycle ------------------------------------------------------------------------------------------------

    def cycle(self, t: float, p: float, dp: float | None = None, *, q: float | Mapping[str, float] | None = None) -> Cycle:
        """State, properties, geometry and flow.

        t   temperature, degC
        p   absolute pressure, MPa
        dp  differential pressure, kPa
        q   with a meter in place of dp its reading: meter_mass t/h, meter_volume m3/h, meter_standard_volume m3/h at
            standard conditions (20 degC, 101.325 kPa). With device external the flows: mass_t_h, volume_m3_h,
            standard_volume_m3_h, energy_GJ_h or heat_GJ_h, as far as they are known

        A cycle that the library refuses has status "refused" and its reason. Raises ValueError for what is no number.
        """
        measured, flows = self._measured(dp, q)
        row, _ = self.run(single(reading("t", t, "degC")), single(reading("p", p, "MPa") * 1e6), measured, flows)
        return Cycle(*row)

    def _measured(self, dp: Any, q: Any) -> tuple[float, list[float]]:
        if self.device < _METER_MASS:
            if q is not None:
                raise ValueError(f"q: the device {DEVICES[self.device - 1]} takes dp, in kPa")
            return single(reading("dp", dp, "kPa") * 1e3), []
        if dp is not None:
            raise ValueError(f"dp: the device {DEVICES[self.device - 1]} takes q")
        if not self.external:
            return single(reading("q", q, "t/h" if self.device == _METER_MASS else "m3/h")), []
        names = self.external_columns()
        if not isinstance(q, Mapping) or not set(q) <= set(names):
            raise ValueError(f"q: expected flows by name, of {', '.join(names)}, not {q!r}")
        return 0.0, [single(reading(name, q.get(name, 0.0), "")) for name in names]

    def external_columns(self) -> list[str]:
        """Names of the flows that a channel of device external is given."""
        return [f"{name}_{flow[4:]}" for name, flow in zip(self.integrators, self.flow_columns)]

    def _state(self, t_C: float, p_Pa: float, row: list[Any]) -> str | None:
        """State: None when it is good, else the reason. Writes into the row."""
        raise NotImplementedError

    def _find_properties(self, row: list[Any]) -> str | None:
        raise NotImplementedError

    def _host_factors(self, row: list[Any]) -> tuple[float, ...]:
        """What the host hands over to the flow beside dp and the density."""
        raise NotImplementedError

    def run(self, t_C: float, p_Pa: float, measured: float, external: list[float]) -> tuple[list[Any], list[float] | None]:
        """A cycle of values as the library takes them (degC, Pa; Pa or the reading of a meter): the row in the order of
        COLUMNS, and the flows of the integrators in double precision where it was computed."""
        row: list[Any] = [None] * len(COLUMNS)
        row[:5] = "computed", "", "", "", self.heat_unit
        row[_T], row[_P] = t_C, p_Pa
        if self.device < _METER_MASS:
            row[_DP] = measured
        with self.library.lock:
            if self.library.closed:
                raise ValueError("the library is closed")
            step, reason = "state", self._state(t_C, p_Pa, row)
            if reason is None:
                step, reason = "properties", self._find_properties(row)
            if reason is None:
                step, reason = "geometry", self._find_geometry(row)
            if reason is None:
                step, reason = "flow", self._find_flow(row, measured)
            if reason is not None:
                row[:2] = "refused", step
                row[2] = reason or f"the library refused the {step}; no documented limit explains it"
                return row, external or None
            flows = self._flows.doubles[:len(self.integrators)]
        if external:
            flows, row[_Q:] = external, [None] * 5
            for k, value in zip(self._flow_places(), external):
                row[k] = value
        return row, flows

    def _flow_places(self) -> list[int]:
        return [COLUMNS.index(name) for name in self.flow_columns]

    def _find_geometry(self, row: list[Any]) -> str | None:
        results = self._geometry
        results.clear()
        good = self.library.call("Param_tr", self._calculator, *results.pointers) == 1
        values = results.narrowed()
        if not (good and _finite(values)):
            return _limits.geometry(self.device, self._materials, row[_T], values[0], values[1], self._roughness_mm)
        if self.device < _METER_MASS:
            row[_D:_D + 2] = values[:2]
        if self.device <= _LAST_STANDARD:
            row[_D + 2:_D + 5] = values[2:]
        return None

    def _find_flow(self, row: list[Any], measured: float) -> str | None:
        results, count = self._flows, len(self.integrators)
        results.clear()
        good = self.library.call(self._flow_name, self._calculator, 1, measured, row[_RHO], *self._host_factors(row),
                                 *results.pointers[:count + 4]) == 1
        values = results.narrowed()
        K_sh, C, Re, epsilon = values[count:count + 4]
        if self.device < _METER_MASS and Re != 0.0 and math.isfinite(Re):
            row[_RE] = Re
        if not (good and _finite(values)):
            if self.device == _METER_STANDARD and not isinstance(self, Gas):
                return "a meter of standard volume has no meaning for a heat carrier"
            return _limits.flow(self.device, row[3] == "water", measured, self._flow_pressure_Pa(row), row[_D] or 0.0,
                                row[_D + 2] or 0.0, Re, self._roughness_mm)
        if self.device <= _LAST_STANDARD:
            row[_RE + 1:_RE + 3] = C, K_sh
        if self.device < _METER_MASS:
            row[_RE + 3] = epsilon
        for place, value in zip(self._flow_places(), values):
            row[place] = value
        return None

    def _corrected_pressure_Pa(self, p_Pa: float) -> float:
        return p_Pa - 9.80665 * self.column_density * self.column_height_m

    def _flow_pressure_Pa(self, row: list[Any]) -> float:
        # Wet steam flows at the saturation pressure.
        wet = row[3] == "wet steam" and row[_PS] is not None
        return float(row[_PS]) * 1e6 if wet else self._corrected_pressure_Pa(row[_P])

    @property
    def _pressure_name(self) -> str:
        return "p less the column's" if self.column_height_m and self.column_density else "p"

    @property
    def heat_unit(self) -> str:
        """Unit of the heats of combustion; empty for a heat carrier."""
        return ""

    @property
    def measured(self) -> str:
        """What the device measures beside t and p."""
        return "dp" if self.device < _METER_MASS else "q in t/h" if self.device == _METER_MASS else "q in m3/h"

    @property
    def external(self) -> bool:
        """Whether the flow is given and not measured."""
        return self.device == _EXTERNAL

    def integrate(self, member: str, *arguments: float) -> tuple[int, list[float]]:
        """A step of the library's integration: status and results. The caller holds the lock."""
        results = self._integration
        status = self.library.call(member, self._calculator, *arguments, *results.pointers)
        return status, results.doubles[:]

    # ---- Frames --------------------------------------------------------------------------------------------------

    def registers(self) -> Registers:
        """New registers at 0, to be handed from frame to frame."""
        return Registers(self.integrators)

    def frame(self, df: pandas.DataFrame, registers: Registers | None = None) -> pandas.DataFrame:
        """The cycle of each row, with the index of `df`; see kalorfix.frames for the columns. Needs pandas."""
        from .frames import run_frame
        return run_frame(self, df, registers)


_T, _P, _DP, _PS, _RHO = (COLUMNS.index(name) for name in ("t_C", "p_Pa", "dp_Pa", "ps_MPa", "rho_kg_m3"))
_K, _H, _LOWER, _D, _RE, _Q = (COLUMNS.index(name) for name in ("K", "h_kJ_kg", "lower_heat", "D_mm", "Re", "q_m_t_h"))


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
    column_height_m, column_density_kg_m3  liquid column between tap and transmitter, -1000..1000 m, 0..20000 kg/m3
    method                 nx19, gerg91 (by density); aga8, vnic (by composition)
    rho_c_kg_m3, nitrogen_pct, carbon_dioxide_pct  nx19, gerg91: density at 20 degC and 101.325 kPa, 0..1; mol %
    composition            aga8, vnic: components with their mol %, or a file such as examples/natural_gas.csv
    volume_fractions       aga8: the composition is given in fractions, 0..1
    contents_pct           aga8: nitrogen and carbon dioxide, mol %, with which viscosity and exponent are taken (by the
                           formulas of density); without it those of the composition
    vapour_kg_m3           water vapour in the working cubic metre, 0..1000
    energy_by              lower_heat or higher_heat: behind the energy
    heat_unit, heat_basis_C  vnic: heats of combustion in kJ or kcal, per cubic metre at 0 or 20 degC
    mass_exponent ...      of mass, volume, standard_volume, energy: the register counts in 10^N of its unit, -9..9
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
                 check_interval_years: float | None = None, alpha_eps: float | None = None, column_height_m: float = 0.0,
                 column_density_kg_m3: float = 0.0, rho_c_kg_m3: float | None = None, nitrogen_pct: float | None = None,
                 carbon_dioxide_pct: float | None = None, composition: Composition | None = None,
                 volume_fractions: bool = False, contents_pct: tuple[float, float] | None = None, vapour_kg_m3: float = 0.0,
                 energy_by: str = "lower_heat", heat_unit: str | None = None, heat_basis_C: int | None = None,
                 library: Library | None = None, **accounting: float) -> None:
        self.method = choice("method", method, METHODS)
        self.vapour = single(number("vapour_kg_m3", vapour_kg_m3, 0, 1000, "kg/m3"))
        self.by_higher_heat = choice("energy_by", energy_by, ("lower_heat", "higher_heat")) == 1
        self._heats(heat_unit, heat_basis_C)
        pipe = {key: value for key, value in locals().items() if key in _PIPE_KEYS}
        super().__init__(library, device, metering_class, pipe, edge_radius, (column_height_m, column_density_kg_m3), accounting)
        self._results = Results(3)
        densities = {"rho_c_kg_m3": rho_c_kg_m3, "nitrogen_pct": nitrogen_pct, "carbon_dioxide_pct": carbon_dioxide_pct}
        self._contents_pct: tuple[float, float] | None = None
        if self.method <= _GERG91:
            self._by_density(densities, composition, contents_pct)
        else:
            self._by_composition(densities, composition, volume_fractions, contents_pct)

    def _heats(self, unit: str | None, basis_C: int | None) -> None:
        if self.method != _VNIC and (unit is not None or basis_C is not None):
            raise ValueError("heat_unit, heat_basis_C: only vnic has a choice; the others give MJ/m3 at 20 degC")
        self._kcal = 0 if unit is None else choice("heat_unit", unit, ("kJ", "kcal"))
        self._at_20_C = 1 if basis_C is None else choice("heat_basis_C", str(basis_C), ("0", "20"))

    def _by_density(self, densities: dict[str, Any], composition: Any, contents: Any) -> None:
        if composition is not None or contents is not None:
            raise ValueError(f"composition, contents_pct: {METHODS[self.method]} takes density, nitrogen and carbon dioxide")
        for key, value in densities.items():
            if value is None:
                raise ValueError(f"lacks {key} (accepted: {'0..1 kg/m3' if key == 'rho_c_kg_m3' else '0..100 mol %'})")
        self._x, self._fractions = [0.0] * 15, 0
        self._rho_c = single(number("rho_c_kg_m3", densities["rho_c_kg_m3"], 0, 1, "kg/m3"))
        for key, k in (("nitrogen_pct", NITROGEN), ("carbon_dioxide_pct", CARBON_DIOXIDE)):
            self._x[k] = single(number(key, densities[key], 0, 100, "mol %"))

    def _by_composition(self, densities: dict[str, Any], composition: Composition | None, fractions: bool, contents: Any) -> None:
        title = METHODS[self.method]
        for key, value in densities.items():
            if value is not None:
                raise ValueError(f"{key} has no meaning with {title}, which takes a composition; leave it out")
        if composition is None:
            raise ValueError(f"lacks composition: {title} takes components in mol %, or a file")
        if self.library.gas_data is None:
            raise ValueError(f"{title} needs gas data, and there is no gas.dat beside the library; give Library gas_data")
        x, fractions = read_composition(composition, fractions)
        if fractions and self.method == _VNIC:
            raise ValueError("volume_fractions: VNIC SMV takes its heats from mole per cent; give mol %")
        self._x, self._fractions, self._rho_c = [single(value) for value in x], int(fractions), 0.0
        if self.method != _AGA8:
            if contents is not None:
                raise ValueError("contents_pct has no meaning with vnic, which takes them from the composition")
        elif contents is not None:
            self.contents_pct = contents
        elif fractions:
            # The state makes mole fractions of the volume fractions.
            with self.library.lock:
                self._find_state(20.0, 1e6)
                moles = self.library.floats("Xi", 15)
            self._contents_pct = 100.0 * moles[NITROGEN], 100.0 * moles[CARBON_DIOXIDE]
        else:
            self._contents_pct = self._x[NITROGEN], self._x[CARBON_DIOXIDE]

    @property
    def contents_pct(self) -> tuple[float, float] | None:
        """Nitrogen and carbon dioxide, mol %, with which AGA8-92DC takes viscosity and exponent; None for other methods.
        `kalorfix run` and a controller take those that another channel by density left."""
        return self._contents_pct

    @contents_pct.setter
    def contents_pct(self, contents: tuple[float, float]) -> None:
        if self.method != _AGA8:
            raise ValueError("contents_pct: only AGA8-92DC takes them")
        if not isinstance(contents, (tuple, list)) or len(contents) != 2:
            raise ValueError(f"contents_pct: expected nitrogen and carbon dioxide, 0..100 mol % each, not {contents!r}")
        nitrogen, carbon_dioxide = contents
        self._contents_pct = (single(number("contents_pct: nitrogen", nitrogen, 0, 100, "mol %")),
                              single(number("contents_pct: carbon_dioxide", carbon_dioxide, 0, 100, "mol %")))

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
        _, K, rho_c = values = self._results.narrowed()
        if not (good and _finite(values)):
            return self._why_no_state(t_C, p_Pa, K)
        row[_K:_K + 2] = K, rho_c
        return None

    def _find_properties(self, row: list[Any]) -> str | None:
        good = self._find_heats()
        values = self._properties.narrowed()
        if not (good and _finite(values)):
            return self._why_no_properties(row[_P])
        row[_RHO:_RHO + 3] = values[:3]
        row[_LOWER:_LOWER + 2] = values[3:]
        return None

    def _host_factors(self, row: list[Any]) -> tuple[float, ...]:
        """Density at standard conditions, and the heat in MJ per cubic metre of the standard volume: with the 0.001 of the
        flow it makes GJ. In single precision, step by step, as a controller has it."""
        heat = float(row[_LOWER + self.by_higher_heat])
        if self.method == _VNIC:
            if self._kcal:
                heat = single(heat * single(4.1868))
            if not self._at_20_C:
                heat = single(heat / single(single(293.15) / single(273.15)))
            heat = single(heat * single(0.001))
        return row[_K + 1], heat


class Heat(Channel):
    """A channel of water or steam. The keys of pipe and device are those of Gas (no meter_standard_volume), and

    phase    from_state, water, steam or wet_steam
    x        wet_steam (from_state: 0 without it): share of the single-phase state in the mixture, 0..1
    saturation_tolerance_Pa, saturation_tolerance_K  so close to the saturation line it is wet steam, 0..1e6 Pa, 0..100 K
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
                 check_interval_years: float | None = None, alpha_eps: float | None = None, column_height_m: float = 0.0,
                 column_density_kg_m3: float = 0.0, x: float | None = None, saturation_tolerance_Pa: float = 1000.0,
                 saturation_tolerance_K: float = 0.5, library: Library | None = None, **accounting: float) -> None:
        if device == "meter_standard_volume":
            raise ValueError("device: meter_standard_volume meters standard volume, which a heat carrier has not")
        pipe = {key: value for key, value in locals().items() if key in _PIPE_KEYS}
        super().__init__(library, device, metering_class, pipe, edge_radius, (column_height_m, column_density_kg_m3), accounting)
        self.phase = choice("phase", phase, PHASES)
        wet_steam = 3
        if x is None and self.phase == wet_steam:
            raise ValueError("lacks x (accepted: 0..1)")
        if x is not None and self.phase not in (0, wet_steam):
            raise ValueError(f"x has no meaning with phase {phase}; leave it out")
        self.x = single(number("x", x, 0, 1)) if x is not None else 0.0
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
        row[_PS:_PS + 2] = (value if math.isfinite(value) else None for value in self._saturation.narrowed())
        row[3] = _PHASE_TITLES[self.phase or self._phase.value]
        return None

    def _find_properties(self, row: list[Any]) -> str | None:
        results = self._properties
        results.clear()
        good = self.library.call("heat_tf", self._calculator, int(self.phase != 0), self.phase, self.x,
                                 *results.pointers[:4]) == 1
        values = results.narrowed()
        if not (good and _finite(values)):
            return _limits.heat_properties(row[_T], self.phase or self._phase.value)
        rho, mu, h, kappa, _ = values
        row[_RHO:_H + 1] = rho, mu, kappa, h
        return None

    def _host_factors(self, row: list[Any]) -> tuple[float, ...]:
        return (row[_H],)
