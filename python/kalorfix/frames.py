"""Readings in a pandas.DataFrame through a channel.

Columns that are read, the unit in the name: t_C or t_K; p_Pa, p_kPa or p_MPa, absolute; dp_Pa or dp_kPa, or with a meter
q_t_h or q_m3_h, or with device external mass_t_h, volume_m3_h, standard_volume_m3_h, energy_GJ_h, heat_GJ_h. With time_s
(seconds) or time (dates, as text or datetime64; UTC where they bear no zone) the result has registers too.

Columns of the result, as those of `kalorfix run --format csv`: the time, what a Cycle has, and with a time total_mass_t and
so on (registers), hour_mass_t, day_mass_t and so on (what the hour or day held that closed with this row). A number that
does not exist is a NaN. All numbers have single precision, in columns of double precision.
"""

from __future__ import annotations

import math
from collections.abc import Callable, Iterable
from typing import TYPE_CHECKING, Any

import pandas

from ._checks import reading, single
from .totals import Registers

if TYPE_CHECKING:
    from .channels import Channel

_LONGEST_GAP_S = 400.0 * 86400.0  # the 32-bit ticks tell 497 days apart
_AMOUNTS = {"mass": "mass_t", "volume": "volume_m3", "standard_volume": "standard_volume_m3", "energy": "energy_GJ",
            "heat": "heat_GJ"}
_UNITS: dict[str, dict[str, Callable[[float], float]]] = {
    "t": {"t_C": lambda t: t, "t_K": lambda t: t - 273.15},
    "p": {"p_Pa": lambda p: p, "p_kPa": lambda p: p * 1e3, "p_MPa": lambda p: p * 1e6},
    "dp": {"dp_Pa": lambda dp: dp, "dp_kPa": lambda dp: dp * 1e3},
    "q in t/h": {"q_t_h": lambda q: q},
    "q in m3/h": {"q_m3_h": lambda q: q},
}


def _place(df: pandas.DataFrame, k: int) -> str:
    return f"row {df.index[k]!r}"


def _numbers(df: pandas.DataFrame, column: str, convert: Callable[[float], float] = lambda value: value) -> list[float]:
    values: list[float] = []
    for k, value in enumerate(df[column].tolist()):
        try:
            values.append(single(convert(reading(column, value, ""))))
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
        seconds = [reading("time_s", value, "s") for value in df["time_s"].tolist()]
    else:
        dates = pandas.to_datetime(df["time"], utc=True)
        if dates.isna().any():
            raise ValueError("time: a row has none")
        seconds = ((dates - pandas.Timestamp(0, tz="UTC")) / pandas.Timedelta(seconds=1)).tolist()
    last = registers.last_s
    for k, now in enumerate(seconds):
        if now < 0.0 or (last is not None and not 0.0 < now - last <= _LONGEST_GAP_S):
            raise ValueError(f"{_place(df, k)}: the time {now:.10g} s does not follow {last} s: rows must be in the order of"
                             " time, each with its own, at most 400 days apart")
        last = now
    return seconds


def run_frame(channel: Channel, df: pandas.DataFrame, registers: Registers | None) -> pandas.DataFrame:
    """Every row of `df` through the channel. Raises ValueError, naming row and column, for what is no number."""
    from .channels import COLUMNS, TEXTS
    if not isinstance(df, pandas.DataFrame):
        raise ValueError(f"expected a pandas.DataFrame, not {type(df).__name__}")
    t, p = _measured(df, "t"), _measured(df, "p")
    external: list[list[float]] = []
    measured = [0.0] * len(df)
    if not channel.external:
        measured = _measured(df, channel.measured)
    else:
        external = [_numbers(df, name) if name in df.columns else measured for name in channel.external_columns()]
    time = next((name for name in ("time_s", "time") if name in df.columns), None)
    if registers is not None and time is None:
        raise ValueError("registers need a column time_s or time")
    registers = registers if registers is not None else channel.registers()
    seconds = _times(df, registers) if time else []

    rows: list[list[Any]] = []
    for k in range(len(df)):
        given = [column[k] for column in external]
        row, flows = channel.run(t[k], p[k], measured[k], given)
        if time:
            row += _count(channel, registers, seconds[k], row, flows)
        rows.append(row)
    names = [*COLUMNS, *(register_columns(channel.integrators) if time else ())]
    result = pandas.DataFrame(rows, columns=names, index=df.index)
    numeric = [name for name in names if name not in TEXTS]
    result[numeric] = result[numeric].astype("float64")
    if time:
        result.insert(0, time, df[time])
    return result


def register_columns(integrators: Iterable[str] = tuple(_AMOUNTS)) -> list[str]:
    """Registers, and amounts of the hour and the day that closed, of these integrators."""
    return [f"{kind}_{_AMOUNTS[name]}" for kind in ("total", "hour", "day") for name in integrators]


def _count(channel: Channel, registers: Registers, time_s: float, row: list[Any], flows: list[float] | None) -> list[float]:
    """Counts the cycle; the register columns. A flow that the registers refuse makes the row a refused one."""
    with channel.library.lock:
        taken = registers.count(channel, time_s, flows)
    if row[0] == "computed" and flows is not None and not all(taken):
        k = taken.index(False)
        flow = single(flows[k])
        unit = channel.flow_columns[k][4:].replace("_", "/")
        row[:3] = "refused", "totals", (f"{channel.integrators[k]} flow {flow:.5g} {unit} below 0 {unit}" if flow < 0.0 else
                                        "the library refused the totals; no documented limit explains it")
    all_registers = list(registers.by_name.values())
    return [*(single(one.total) for one in all_registers),
            *(one.hour.result if one.hour.closed else math.nan for one in all_registers),
            *(one.day.result if one.day.closed else math.nan for one in all_registers)]
