# SPDX-License-Identifier: MIT
"""What channels of gas and of water or steam have in common: pipe and device, the steps of a cycle, frames."""

from __future__ import annotations

import math
from collections.abc import Mapping
from ctypes import addressof, byref, c_byte, c_double, c_float
from typing import TYPE_CHECKING, Any

from . import _limits, _stops
from ._checks import LEAST_BAROMETER_KPA, MOST_BAROMETER_KPA, choice, measured, number, single, whole
from ._native import Library, default_library
from .cycle import AT_D, AT_DP, AT_P, AT_PS, AT_Q, AT_RE, AT_RHO, AT_T, COLUMNS, Cycle
from .totals import Registers

if TYPE_CHECKING:
    import pandas

DEVICES = ("orifice_corner", "orifice_d_d2", "orifice_flange", "nozzle_isa1932", "nozzle_long_radius", "venturi_nozzle",
           "venturi_cast", "venturi_machined", "venturi_welded", *(f"averaging_{k}" for k in range(10, 19)),
           "configured_coefficient", "meter_mass", "meter_volume", "meter_standard_volume", "external")
_LAST_ORIFICE, _LAST_STANDARD, _CONFIGURED, _METER_MASS, _EXTERNAL = 3, 9, 19, 20, 23

# Numbers that describe a pipe and its device: limits and unit.
PIPE_KEYS: dict[str, tuple[float, float, str]] = {
    "pipe_material": (1, 39, ""), "device_material": (1, 39, ""),
    "pipe_expansion_1_C": (0, 1e-3, "1/degC"), "device_expansion_1_C": (0, 1e-3, "1/degC"),
    "D20_mm": (0, 10000, "mm"), "d20_mm": (0, 10000, "mm"), "roughness_mm": (0, 100, "mm"),
    "edge_radius_mm": (0, 10, "mm"), "check_interval_years": (0, 100, "years"), "alpha_eps": (0, 100, ""),
    "cut_off_kPa": (0, 1000, "kPa"),
}


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


def _or_none(value: float) -> float | None:
    return None if math.isnan(value) else value


def _unexplained(step: str) -> str:
    return f"the library refused the {step}; no documented limit explains it"


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
        self._at_end = int(edge_radius == "at_end")
        with self.library.lock:
            self._set_up(self._calculator)

    def _set_up(self, calculator: Any) -> None:
        """Hands the constants to a calculator. The caller holds the lock."""
        status = self.library.call(
            "Init_TR", calculator, self.metering_class, self.device, int(self._materials is not None),
            *self._constants, self._at_end, self._interval_years, self._alpha_eps, byref(c_byte()))
        if status != 1:
            raise ValueError("the library refuses the constants of this channel")

    def _pipe(self, pipe: dict[str, Any], edge_radius: str | None) -> None:
        expansions = pipe["pipe_expansion_1_C"] is not None or pipe["device_expansion_1_C"] is not None
        kind = "expansion_1_C" if expansions else "material"
        wanted = [f"pipe_{kind}", f"device_{kind}", "D20_mm", "d20_mm", "roughness_mm"]
        if self.device <= _LAST_ORIFICE:
            wanted += ["edge_radius_mm", "check_interval_years"]
        wanted += ["alpha_eps"] * (self.device == _CONFIGURED)
        accepted = [*wanted, "cut_off_kPa"]
        if self.device >= _METER_MASS:
            wanted = accepted = []
        unwanted = [key for key, value in pipe.items() if value is not None and key not in accepted]
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
        cut_off = pipe["cut_off_kPa"]
        self._cut_off_Pa = -math.inf if cut_off is None else single(1e3 * single(number("cut_off_kPa", cut_off,
                                                                                        *PIPE_KEYS["cut_off_kPa"])))

    def _accounting(self, accounting: dict[str, Any]) -> None:
        """What counts, and in which unit. Flows that fill a downtime are checked, and of no use to an archive."""
        accounting = dict(accounting)
        #: Longer steps between two readings are not counted; 0 counts any.
        self.longest_step_s = single(number("longest_step_s", accounting.pop("longest_step_s", 0.0), 0, 1e8, "s"))
        #: Atmospheric pressure beside readings of gauge pressure, Pa.
        self.barometer_Pa: float | None = None
        if "barometer_kPa" in accounting:
            self.barometer_Pa = 1e3 * number("barometer_kPa", accounting.pop("barometer_kPa"), LEAST_BAROMETER_KPA,
                                             MOST_BAROMETER_KPA, "kPa")
        #: Offset of the station's clock from UTC, for dates that tell theirs.
        self.zone_s: int | None = None
        #: At which a day of the calendar begins.
        self.contract_hour = whole("contract_hour", accounting.pop("contract_hour", 0), 0, 23)
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
                                + ", ".join(["longest_step_s", "contract_hour", "barometer_kPa", *exponents, *substitutes]))
        self.exponents = tuple(exponents.values())

    # ---- A cycle ------------------------------------------------------------------------------------------------

    def cycle(self, t: float, p: float, dp: float | None = None, *, q: float | Mapping[str, float] | None = None) -> Cycle:
        """State, properties, geometry and flow, and whether the totals would take them.

        t   temperature, degC
        p   absolute pressure, MPa
        dp  differential pressure, kPa
        q   with a meter in place of dp its reading: meter_mass t/h, meter_volume m3/h, meter_standard_volume m3/h at
            standard conditions (20 degC, 101.325 kPa). With device external the flows: mass_t_h, volume_m3_h,
            standard_volume_m3_h, energy_GJ_h or heat_GJ_h, as far as they are known

        A cycle that the library refuses has status "refused" and its reason; a NaN is a transmitter that failed, and
        refused as well. Raises ValueError for an infinity and for what is no number.
        """
        reading, flows_given = self._measured(dp, q)
        row, flows = self.run(single(measured("t", t, "degC")), single(measured("p", p, "MPa") * 1e6), reading, flows_given)
        self.judge_flows(row, flows)
        return Cycle(*row)

    def _measured(self, dp: Any, q: Any) -> tuple[float, list[float]]:
        if self.device < _METER_MASS:
            if q is not None:
                raise ValueError(f"q: the device {DEVICES[self.device - 1]} takes dp, in kPa")
            return single(measured("dp", dp, "kPa") * 1e3), []
        if dp is not None:
            raise ValueError(f"dp: the device {DEVICES[self.device - 1]} takes q")
        if not self.external:
            return single(measured("q", q, "t/h" if self.device == _METER_MASS else "m3/h")), []
        names = self.external_columns()
        if not isinstance(q, Mapping) or not set(q) <= set(names):
            raise ValueError(f"q: expected flows by name, of {', '.join(names)}, not {q!r}")
        return 0.0, [single(measured(name, q.get(name, 0.0), "")) for name in names]

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

    def run(self, t_C: float, p_Pa: float, reading: float,
            external: list[float]) -> tuple[list[Any], list[float] | None]:
        """A cycle of values as the library takes them (degC, Pa; Pa or the reading of a meter): the row in the order of
        COLUMNS, and the flows of the integrators in double precision where it was computed."""
        row: list[Any] = [None] * len(COLUMNS)
        row[:5] = "computed", "", "", "", self.heat_unit
        row[AT_T], row[AT_P], row[AT_DP] = _or_none(t_C), _or_none(p_Pa), None
        if self.device < _METER_MASS:
            row[AT_DP] = _or_none(reading)
        with self.library.lock:
            if self.library.closed:
                raise ValueError("the library is closed")
            step, reason = "state", self._state(t_C, p_Pa, row)
            if reason is None:
                step, reason = "properties", self._find_properties(row)
            if reason is None:
                step, reason = "geometry", self._find_geometry(row)
            if reason is None:
                step, reason = "flow", self._find_flow(row, reading)
            if reason is not None:
                row[:2] = "refused", step
                row[2] = self._missing(step, t_C, p_Pa, reading) or reason or _unexplained(step)
                return row, external or None
            flows = self._flows.doubles[:len(self.integrators)]
        if external:
            flows, row[AT_Q:] = external, [None] * 5
            for k, value in zip(self._flow_places(), external):
                row[k] = _or_none(value)
        return row, flows

    def _missing(self, step: str, t_C: float, p_Pa: float, reading: float) -> str:
        """What a transmitter failed to give to the step that was refused; empty when it is not for that."""
        if step == "state" and (math.isnan(t_C) or math.isnan(p_Pa)):
            return f"no reading of the {'temperature' if math.isnan(t_C) else 'pressure'}"
        if step == "flow" and math.isnan(reading):
            return f"no reading of the {'meter' if self.device >= _METER_MASS else 'differential pressure'}"
        return ""

    def judge_flows(self, row: list[Any], flows: list[float] | None, taken: list[bool] | None = None,
                    not_counted: str = "") -> None:
        """Makes a row that was computed a refused one when integrators do not take its flows: those with False in `taken`,
        without it what is negative or no number. `not_counted` is the reason where nothing else is."""
        if flows is None or row[0] != "computed":
            return
        taken = [flow >= 0.0 for flow in flows] if taken is None else taken
        if all(taken):
            return
        k = taken.index(False)
        name, unit, flow = self.integrators[k], self.flow_columns[k][4:].replace("_", "/"), single(flows[k])
        row[:3] = "refused", "totals", (f"no reading of the {name} flow" if math.isnan(flow) else not_counted or (
            _limits.broken(f"{name} flow", flow, "below", 0.0, unit) if flow < 0.0 else _unexplained("totals")))

    def _flow_places(self) -> list[int]:
        return [COLUMNS.index(name) for name in self.flow_columns]

    def stops(self, t_low: float, t_high: float | None = None) -> list[str]:
        """What refuses this device at the ends of these temperatures (degC), whatever is measured: materials, sizes, diameter
        ratio, roughness, sum of the composition. As `kalorfix run` tells it before it computes; `frame` warns of it."""
        low = number("t_low", t_low, -1e12, 1e12, "degC")
        high = low if t_high is None else number("t_high", t_high, low, 1e12, "degC")
        found: list[str] = []
        for t_C in dict.fromkeys((low, high)):
            if self._materials:
                found += _stops.of_materials(self._materials, t_C)
            if self.device <= _LAST_STANDARD:
                D_mm, d_mm = self._diameters_at(t_C)
                found += _stops.of_sizes(self.device, t_C, D_mm, d_mm, self._roughness_mm) if D_mm > 0.0 else []
        return found + self._stops_of_medium()

    def _stops_of_medium(self) -> list[str]:
        return []

    def _diameters_at(self, t_C: float) -> tuple[float, float]:
        """Of pipe and device, mm; zeros where a material refuses the temperature. No state is needed, and none disturbed."""
        memory, results = self.library.calculator(self._make), Results(5)
        fields = _stops.BaseFields.from_buffer(memory)
        with self.library.lock:
            self._set_up(memory)
            fields.valid, fields.t = 1, t_C
            self.library.call("Param_tr", memory, *results.pointers)
        return results.doubles[0], results.doubles[1]

    def _find_geometry(self, row: list[Any]) -> str | None:
        results = self._geometry
        results.clear()
        good = self.library.call("Param_tr", self._calculator, *results.pointers) == 1
        values = results.narrowed()
        if not (good and finite(values)):
            # Limits are told with the digits that the library compares.
            return _limits.geometry(self.device, self._materials, row[AT_T], results.doubles[0], results.doubles[1],
                                    self._roughness_mm)
        if self.device < _METER_MASS:
            row[AT_D:AT_D + 2] = values[:2]
        if self.device <= _LAST_STANDARD:
            row[AT_D + 2:AT_D + 5] = values[2:]
        return None

    def _find_flow(self, row: list[Any], reading: float) -> str | None:
        results, count = self._flows, len(self.integrators)
        results.clear()
        # Below the cut-off the library is told not to compute: flows of 0, and no factors.
        at_rest = self.device < _METER_MASS and reading < self._cut_off_Pa
        good = self.library.call(self._flow_name, self._calculator, int(not at_rest), reading, row[AT_RHO],
                                 *self._host_factors(row), *results.pointers[:count + 4]) == 1 or at_rest
        values = results.narrowed()
        K_sh, C, Re, epsilon = values[count:count + 4]
        if self.device < _METER_MASS and Re != 0.0 and math.isfinite(Re) and not at_rest and not math.isnan(reading):
            row[AT_RE] = Re
        if not (good and finite(values)):
            D_mm, _, beta = self._geometry.doubles[:3]
            return _limits.flow(self.device, row[3] == "water", reading, self._flow_pressure_Pa(row), D_mm, beta, Re,
                                self._roughness_mm)
        if self.device <= _LAST_STANDARD and not at_rest:
            row[AT_RE + 1:AT_RE + 3] = C, K_sh
        if self.device < _METER_MASS and not at_rest:
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
        return Registers(self.integrators, self.contract_hour)

    def frame(self, df: pandas.DataFrame, registers: Registers | None = None) -> pandas.DataFrame:
        """The cycle of each row, with the index of `df`; see kalorfix.frames for the columns. Needs pandas."""
        from .frames import run_frame
        return run_frame(self, df, registers)
