# SPDX-License-Identifier: MIT
"""Readings in a pandas.DataFrame through a channel.

Columns that are read are those of `kalorfix run`, the unit in the name: t_C, t_K, t_F; p_Pa, p_MPa, p_bar, ..., absolute, or
p_gauge_kPa, ... beside barometer_kPa, ... or the key barometer_kPa; dp_Pa, dp_kPa, ..., or with a meter q_t_h, q_m3_h, ..., or
with device external mass_t_h, volume_m3_h, standard_volume_m3_h, energy_GJ_h, heat_GJ_h, .... Others are passed over. With
time_s (seconds) or time (dates as text or datetime64, by the clock of the station) the result has registers too. What stops
the device at the lowest or highest temperature is a warning.

A NaN (an empty cell of a file) is a transmitter that failed, and a refused row.

Columns of the result, as those of `kalorfix run --format csv`: the time, what a Cycle has, and with a time total_mass_t and
so on (registers, in the unit that the name says whatever their exponent), hour_mass_t, day_mass_t and so on (what the hour or
day held that closed with this row), hour_length_s, day_length_s (how long it was, in seconds of computed time; a NaN where
those of external flows differ). A number that does not exist is a NaN. All numbers have single
precision, in columns of double precision.
"""

from __future__ import annotations

import copy
import math
import warnings
from collections.abc import Iterable
from typing import Any, Protocol

import pandas

from ._checks import LEAST_BAROMETER_KPA, MOST_BAROMETER_KPA, measured, plain, single
from ._columns import Column, find_column, mistaken, names_of
from ._native import Library
from .times import seconds_of, time_column
from .cycle import COLUMNS, TEXTS
from .room import Peaks
from .totals import AMOUNTS, Accounted, Interval, Registers

_LONGEST_GAP_S = 400.0 * 86400.0  # the 32-bit ticks tell 497 days apart
_SHORTEST_STEP_S = 0.02  # two ticks: an interval does not bear two cycles within one
_TICK_S = 0.01  # lengths that differ by less are the same
_LENGTHS = ["hour_length_s", "day_length_s"]


class Computed(Accounted, Protocol):
    """What a frame needs of a channel."""

    library: Library
    integrators: tuple[str, ...]
    flow_columns: tuple[str, ...]
    barometer_Pa: float | None
    zone_s: int | None

    @property
    def longest_step_s(self) -> float: ...

    @property
    def measured(self) -> str: ...

    def stops(self, t_low: float, t_high: float | None = None) -> list[str]: ...

    def registers(self) -> Registers: ...

    def run(self, t_C: float, p_Pa: float, reading: float,
            external: list[float]) -> tuple[list[Any], list[float] | None]: ...

    def judge_flows(self, row: list[Any], flows: list[float] | None, taken: list[bool] | None = None,
                    not_counted: str = "") -> None: ...


def _one_length(intervals: list[Interval]) -> float:
    """Of those that closed with a row: NaN when there is none, or more than one, as flows from elsewhere have."""
    lengths = [one.length_s for one in intervals if one.closed]
    same = bool(lengths) and max(lengths) - min(lengths) < _TICK_S
    return single(lengths[0]) if same else math.nan


def _place(df: pandas.DataFrame, k: int) -> str:
    return f"row {df.index[k]!r}"


def _numbers(df: pandas.DataFrame, column: Column) -> list[float]:
    values: list[float] = []
    for k, (value, missing) in enumerate(zip(df[column.name].tolist(), df[column.name].isna().tolist())):
        try:
            values.append(measured(column.name, math.nan if missing else value, "") * column.factor + column.offset)
        except ValueError as error:
            raise ValueError(f"{_place(df, k)}: {error}") from None
    return values


def _measured(df: pandas.DataFrame, what: str) -> list[float]:
    column = find_column(df.columns, what)
    if column is None:
        raise ValueError(f"expected one of the columns {names_of(what)}, not none")
    return [single(value) for value in _numbers(df, column)]


def _pressures(df: pandas.DataFrame, barometer_Pa: float | None) -> list[float]:
    """Absolute pressures, or those that gauge and barometer make where there are none."""
    gauge, barometer = find_column(df.columns, "gauge"), find_column(df.columns, "barometer")
    if gauge is None:
        return _measured(df, "p")
    absolute = find_column(df.columns, "p")
    if barometer is None and barometer_Pa is None and absolute is None:
        raise ValueError(f"{gauge.name} needs the atmospheric pressure as well: a column barometer_kPa, or the key barometer_kPa")
    atmospheres = [math.nan] * len(df) if barometer is None else _numbers(df, barometer)
    pressures = [math.nan] * len(df) if absolute is None else _numbers(df, absolute)
    for k, (above, atmosphere) in enumerate(zip(_numbers(df, gauge), atmospheres)):
        if math.isnan(above):
            continue
        if not math.isnan(pressures[k]):
            raise ValueError(f"{_place(df, k)}: {gauge.name} beside an absolute pressure; leave one of them empty")
        if math.isnan(atmosphere):
            if barometer_Pa is None:
                raise ValueError(f"{_place(df, k)}: {gauge.name} needs the atmospheric pressure as well")
            atmosphere = barometer_Pa
        elif not LEAST_BAROMETER_KPA <= atmosphere / 1e3 <= MOST_BAROMETER_KPA:
            raise ValueError(f"{_place(df, k)}: {barometer and barometer.name} must lie within 50..120 kPa")
        pressures[k] = above + atmosphere
    return [single(value) for value in pressures]


def _flows(df: pandas.DataFrame, integrators: tuple[str, ...]) -> list[list[float]]:
    """Flows from elsewhere; a column that is not there is one of zeros."""
    columns = [find_column(df.columns, name) for name in integrators]
    wrong = mistaken([name for name in df.columns if name not in COLUMNS], integrators)
    if wrong is not None or not any(columns):
        raise ValueError(f"expected one or more of the columns {', '.join(map(names_of, integrators))}, not {wrong or 'none'}")
    return [[0.0] * len(df) if column is None else [single(value) for value in _numbers(df, column)] for column in columns]


def _times(df: pandas.DataFrame, registers: Registers, zone_s: int | None) -> list[float]:
    """Seconds of each row; later in each than in the one before, and than the last one counted."""
    seconds = seconds_of(df, zone_s)
    last = registers.last_s
    for k, now in enumerate(seconds):
        if last is not None and not _SHORTEST_STEP_S <= now - last <= _LONGEST_GAP_S:
            raise ValueError(f"{_place(df, k)}: the time {now:.10g} s does not follow {last} s: rows must be in the order of"
                             " time, each with its own, from 0.02 s to 400 days apart")
        last = now
    return seconds


class FrameRun:
    """The rows of a frame through a channel, one after the other. The registers change with `finish`, for all rows or none.

    Raises ValueError, naming row and column, for what is no number."""

    def __init__(self, channel: Computed, df: pandas.DataFrame, registers: Registers | None, title: str = "") -> None:
        if not isinstance(df, pandas.DataFrame):
            raise ValueError(f"expected a pandas.DataFrame, not {type(df).__name__}")
        self._channel, self._df, self._rows = channel, df, list[list[Any]]()
        readings = [0.0] * len(df)
        self._external: list[list[float]] = []
        self._t, self._p = _measured(df, "t"), _pressures(df, channel.barometer_Pa)
        if not channel.external:
            readings = _measured(df, channel.measured)
        else:
            self._external = _flows(df, channel.integrators)
        self._readings = readings
        self._time = time_column(df)
        if registers is not None and self._time is None:
            raise ValueError("registers need a column time_s or time")
        if registers is not None and (not isinstance(registers, Registers) or tuple(registers.by_name) != channel.integrators):
            raise ValueError("registers: expected those of this channel, of its method registers()")
        self._given = registers if registers is not None else channel.registers()
        self._registers, self._peaks = copy.deepcopy(self._given), Peaks(len(channel.integrators))
        self._seconds = _times(df, self._given, channel.zone_s) if self._time else []
        known = [t for t in self._t if not math.isnan(t)]
        for stop in channel.stops(min(known), max(known)) if known else ():
            warnings.warn(f"{title}STOP {stop}", stacklevel=4)

    def step(self) -> None:
        """The next row."""
        k, channel = len(self._rows), self._channel
        row, flows = channel.run(self._t[k], self._p[k], self._readings[k], [column[k] for column in self._external])
        if self._time:
            row += self._count(k, row, flows)
        else:
            channel.judge_flows(row, flows)
        self._rows.append(row)

    def _count(self, k: int, row: list[Any], flows: list[float] | None) -> list[float]:
        """Counts the cycle; the register columns. A flow that the registers refuse makes the row a refused one."""
        channel, time_s = self._channel, self._seconds[k]
        elapsed_s, longest_s = self._registers.elapsed_s(time_s), channel.longest_step_s
        passed_over = 0.0 < longest_s < elapsed_s
        if not passed_over:
            self._peaks.note_step(elapsed_s)
        if flows is not None:
            self._peaks.note_flows([single(flow) for flow in flows], k)
        with channel.library.lock:
            taken = self._registers.count(channel, time_s, None if passed_over else flows)
        # Flows from elsewhere need no state.
        if row[0] == "refused" and taken[0]:
            row[2] += "; its flows are counted all the same"
        channel.judge_flows(row, flows, taken, f"not counted: {plain(elapsed_s)} s since the reading before are longer than"
                                               f" {plain(longest_s)} s" if passed_over else "")
        registers = list(self._registers.by_name.values())
        hours, days = [one.hour for one in registers], [one.day for one in registers]
        units = [10.0 ** exponent for exponent in channel.exponents]
        return [*(single(single(one.total) * unit) for one, unit in zip(registers, units)),
                *(single(one.result * unit) if one.closed else math.nan for one, unit in zip(hours + days, units * 2)),
                *(_one_length(hours), _one_length(days))]

    def lacking(self) -> list[str]:
        """Registers that a day of the largest flow does not fit into."""
        channel = self._channel
        times = [plain(value) for value in self._seconds] if self._time == "time_s" else [
            str(value) for value in self._df[self._time]] if self._time else []
        return self._peaks.lacking(channel.integrators, channel.flow_columns, channel.exponents, times)

    def finish(self) -> pandas.DataFrame:
        """The result, when all rows have gone through."""
        vars(self._given).update(vars(self._registers))
        names = [*COLUMNS, *(register_columns(self._channel.integrators) if self._time else ())]
        result = pandas.DataFrame(self._rows, columns=names, index=self._df.index)
        numeric = [name for name in names if name not in TEXTS]
        result[numeric] = result[numeric].astype("float64")
        if self._time:
            result.insert(0, self._time, self._df[self._time])
        return result


def require_room(lacking: list[str]) -> None:
    """Raises ValueError with the exponents that would do."""
    if lacking:
        raise ValueError(f"a day must stay below 10^6 units of its register: {'; '.join(lacking)}")


def run_frame(channel: Computed, df: pandas.DataFrame, registers: Registers | None) -> pandas.DataFrame:
    """Every row of `df` through the channel. Raises ValueError for what is no number, and for a day that does not fit its
    registers; they are then as they were."""
    run = FrameRun(channel, df, registers)
    for _ in range(len(df)):
        run.step()
    require_room(run.lacking())
    return run.finish()


def register_columns(integrators: Iterable[str] = tuple(AMOUNTS)) -> list[str]:
    """Registers, amounts of the hour and the day that closed, of these integrators, and how long these were."""
    names = list(integrators)
    return [f"{kind}_{AMOUNTS[name]}" for kind in ("total", "hour", "day") for name in names] + _LENGTHS
