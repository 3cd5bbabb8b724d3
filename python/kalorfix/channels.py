"""What channels of gas and of water or steam have in common: pipe and device, the cycle and its results, frames."""

from __future__ import annotations

import math
from collections.abc import Mapping
from ctypes import addressof, byref, c_byte, c_double, c_float
from dataclasses import dataclass
from typing import TYPE_CHECKING, Any

from . import _limits
from ._checks import choice, number, reading, single, whole
from ._native import Library, default_library
from .totals import Registers

if TYPE_CHECKING:
    import pandas

DEVICES = ("orifice_corner", "orifice_d_d2", "orifice_flange", "nozzle_isa1932", "nozzle_long_radius", "venturi_nozzle",
           "venturi_cast", "venturi_machined", "venturi_welded", *(f"averaging_{k}" for k in range(10, 19)),
           "configured_coefficient", "meter_mass", "meter_volume", "meter_standard_volume", "external")
_LAST_ORIFICE, _LAST_STANDARD, _CONFIGURED, _METER_MASS, _EXTERNAL = 3, 9, 19, 20, 23
TEXTS = ("status", "step", "reason", "phase", "heat_unit")

# Numbers that describe a pipe and its device: limits and unit.
PIPE_KEYS: dict[str, tuple[float, float, str]] = {
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
# Places in a row.
AT_T, AT_P, AT_DP, AT_PS, AT_RHO = (
    COLUMNS.index(name) for name in ("t_C", "p_Pa", "dp_Pa", "ps_MPa", "rho_kg_m3"))
AT_K, AT_H, AT_LOWER, AT_D, AT_RE, AT_Q = (
    COLUMNS.index(name) for name in ("K", "h_kJ_kg", "lower_heat", "D_mm", "Re", "q_m_t_h"))


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


def finite(values: list[float]) -> bool:
    return all(map(math.isfinite, values))


class Channel:
    """What gas and heat-carrier channels have in common: pipe, device, flow, frames."""

    integrators: tuple[str, ...]  #: names, in the order of the library
    flow_columns: tuple[str, ...]
    _make: str
    _flow_name: str

    def __init__(self, library: Library | None, device: str, metering_class: int, pipe: dict[str, Any],
                 edge_radius: str | None, column: tuple[float, float], accounting: dict[str, Any]) -> None:
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
            low, high, unit = PIPE_KEYS[key]
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
        row[AT_T], row[AT_P] = t_C, p_Pa
        if self.device < _METER_MASS:
            row[AT_DP] = measured
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
            flows, row[AT_Q:] = external, [None] * 5
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
        if not (good and finite(values)):
            return _limits.geometry(self.device, self._materials, row[AT_T], values[0], values[1], self._roughness_mm)
        if self.device < _METER_MASS:
            row[AT_D:AT_D + 2] = values[:2]
        if self.device <= _LAST_STANDARD:
            row[AT_D + 2:AT_D + 5] = values[2:]
        return None

    def _find_flow(self, row: list[Any], measured: float) -> str | None:
        results, count = self._flows, len(self.integrators)
        results.clear()
        good = self.library.call(self._flow_name, self._calculator, 1, measured, row[AT_RHO], *self._host_factors(row),
                                 *results.pointers[:count + 4]) == 1
        values = results.narrowed()
        K_sh, C, Re, epsilon = values[count:count + 4]
        if self.device < _METER_MASS and Re != 0.0 and math.isfinite(Re):
            row[AT_RE] = Re
        if not (good and finite(values)):
            return _limits.flow(self.device, row[3] == "water", measured, self._flow_pressure_Pa(row), row[AT_D] or 0.0,
                                row[AT_D + 2] or 0.0, Re, self._roughness_mm)
        if self.device <= _LAST_STANDARD:
            row[AT_RE + 1:AT_RE + 3] = C, K_sh
        if self.device < _METER_MASS:
            row[AT_RE + 3] = epsilon
        for place, value in zip(self._flow_places(), values):
            row[place] = value
        return None

    def _corrected_pressure_Pa(self, p_Pa: float) -> float:
        return p_Pa - 9.80665 * self.column_density * self.column_height_m

    def _flow_pressure_Pa(self, row: list[Any]) -> float:
        # Wet steam flows at the saturation pressure.
        wet = row[3] == "wet steam" and row[AT_PS] is not None
        return float(row[AT_PS]) * 1e6 if wet else self._corrected_pressure_Pa(row[AT_P])

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
