# SPDX-License-Identifier: MIT
"""Readings in a pandas.DataFrame through a channel.

Columns that are read, the unit in the name: t_C or t_K; p_Pa, p_kPa or p_MPa, absolute; dp_Pa or dp_kPa, or with a meter
q_t_h or q_m3_h, or with device external mass_t_h, volume_m3_h, standard_volume_m3_h, energy_GJ_h, heat_GJ_h. With time_s
(seconds) or time (dates, as text or datetime64; UTC where they bear no zone) the result has registers too.

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
from collections.abc import Callable, Iterable
from typing import Any, Protocol

import pandas

from ._checks import measured, number, plain, single
from ._native import Library
from .cycle import COLUMNS, TEXTS
from .room import Peaks
from .totals import AMOUNTS, Accounted, Interval, Registers

_LONGEST_GAP_S = 400.0 * 86400.0  # the 32-bit ticks tell 497 days apart
_SHORTEST_STEP_S = 0.02  # two ticks: an interval does not bear two cycles within one
_LATEST_S = 1e11  # the ticks and their differences stay exact
_TICK_S = 0.01  # lengths that differ by less are the same
_LENGTHS = ["hour_length_s", "day_length_s"]
_UNITS: dict[str, dict[str, Callable[[float], float]]] = {
    "t": {"t_C": lambda t: t, "t_K": lambda t: t - 273.15},
    "p": {"p_Pa": lambda p: p, "p_kPa": lambda p: p * 1e3, "p_MPa": lambda p: p * 1e6},
    "dp": {"dp_Pa": lambda dp: dp, "dp_kPa": lambda dp: dp * 1e3},
    "q in t/h": {"q_t_h": lambda q: q},
    "q in m3/h": {"q_m3_h": lambda q: q},
}


class Computed(Accounted, Protocol):
    """What a frame needs of a channel."""

    library: Library
    integrators: tuple[str, ...]
    flow_columns: tuple[str, ...]

    @property
    def longest_step_s(self) -> float: ...

    @property
    def measured(self) -> str: ...

    def external_columns(self) -> list[str]: ...

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


def _numbers(df: pandas.DataFrame, column: str, convert: Callable[[float], float] = lambda value: value) -> list[float]:
    values: list[float] = []
    for k, (value, missing) in enumerate(zip(df[column].tolist(), df[column].isna().tolist())):
        try:
            values.append(single(convert(measured(column, math.nan if missing else value, ""))))
        except ValueError as error:
            raise ValueError(f"{_place(df, k)}: {error}") from None
    return values


def _measured(df: pandas.DataFrame, what: str) -> list[float]:
    units = _UNITS[what]
    given = [name for name in df.columns if name in units]
    if len(given) != 1:
        raise ValueError(f"expected one of the columns {', '.join(units)}, not {', '.join(given) or 'none'}")
    return _numbers(df, given[0], units[given[0]])


def _times(df: pandas.DataFrame, registers: Registers) -> list[float]:
    """Seconds of each row; later in each than in the one before, and than the last one counted."""
    if "time_s" in df.columns:
        seconds = [number("time_s", value, 0.0, _LATEST_S, "s") for value in df["time_s"].tolist()]
    else:
        dates = pandas.to_datetime(df["time"], utc=True)
        if dates.isna().any():
            raise ValueError("time: a row has none")
        seconds = ((dates - pandas.Timestamp(0, tz="UTC")) / pandas.Timedelta(seconds=1)).tolist()
    last = registers.last_s
    for k, now in enumerate(seconds):
        if now < 0.0 or (last is not None and not _SHORTEST_STEP_S <= now - last <= _LONGEST_GAP_S):
            raise ValueError(f"{_place(df, k)}: the time {now:.10g} s does not follow {last} s: rows must be in the order of"
                             " time, each with its own, from 0.02 s to 400 days apart")
        last = now
    return seconds


class FrameRun:
    """The rows of a frame through a channel, one after the other. The registers change with `finish`, for all rows or none.

    Raises ValueError, naming row and column, for what is no number."""

    def __init__(self, channel: Computed, df: pandas.DataFrame, registers: Registers | None) -> None:
        if not isinstance(df, pandas.DataFrame):
            raise ValueError(f"expected a pandas.DataFrame, not {type(df).__name__}")
        self._channel, self._df, self._rows = channel, df, list[list[Any]]()
        readings = [0.0] * len(df)
        self._external: list[list[float]] = []
        self._t, self._p = _measured(df, "t"), _measured(df, "p")
        if not channel.external:
            readings = _measured(df, channel.measured)
        else:
            self._external = [_numbers(df, name) if name in df.columns else readings for name in channel.external_columns()]
        self._readings = readings
        self._time = next((name for name in ("time_s", "time") if name in df.columns), None)
        if registers is not None and self._time is None:
            raise ValueError("registers need a column time_s or time")
        self._given = registers if registers is not None else channel.registers()
        self._registers, self._peaks = copy.deepcopy(self._given), Peaks(len(channel.integrators))
        self._seconds = _times(df, self._given) if self._time else []

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
