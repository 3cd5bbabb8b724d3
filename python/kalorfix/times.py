# SPDX-License-Identifier: MIT
"""Times of readings, as `kalorfix run` reads them: seconds, or dates by the clock that wrote them."""

from __future__ import annotations

import datetime
import re
from typing import Any

import pandas

from ._checks import number
from ._offset import read_offset

_LATEST_S = 1e11  # the ticks and their differences stay exact
_DATE = re.compile(r"\s*(?:(\d{4})-(\d\d)-(\d\d)|(\d{1,2})\.(\d{1,2})\.(\d{4}))(?:T|\s+)(\d{1,2}):(\d\d)"
                   r"(?::(\d\d)(?:[.,](\d{1,6}))?)?\s*(Z|UTC|[+-]\d\d(?::?\d\d)?)?\s*", re.ASCII)
_EPOCH = datetime.datetime(1970, 1, 1)


def _seconds(date: datetime.datetime) -> float:
    return (date - _EPOCH) / datetime.timedelta(seconds=1)


def _written(value: Any) -> tuple[float, int | None]:
    """Seconds since 1970 by the clock that wrote it, and that clock's offset from UTC where it is said."""
    if isinstance(value, datetime.datetime) and not pandas.isna(value):
        offset = value.utcoffset()
        return _seconds(value.replace(tzinfo=None)), None if offset is None else round(offset.total_seconds())
    found = _DATE.fullmatch(value) if isinstance(value, str) else None
    try:
        if found:
            year, month, day = (found[1], found[2], found[3]) if found[1] else (found[6], found[5], found[4])
            date = datetime.datetime(int(year), int(month), int(day), int(found[7]), int(found[8]), int(found[9] or 0),
                                     int((found[10] or "").ljust(6, "0")))
            return _seconds(date), read_offset(found[11]) if found[11] else None
    except ValueError:
        pass
    raise ValueError(f"expected a date such as 2026-03-01T06:00:00 or 01.03.2026 06:00, not {value!r}")


def time_column(df: pandas.DataFrame) -> str | None:
    """The column of the times. Raises ValueError for two of them."""
    names = [name for name in df.columns if name in ("time_s", "time")]
    if len(names) > 1:
        raise ValueError(f"expected one of the columns time_s, time, not {', '.join(names)}")
    return names[0] if names else None


def seconds_of(df: pandas.DataFrame, zone_s: int | None = None) -> list[float]:
    """Seconds of each row, with dates since 1970, by the clock of the station where its offset from UTC is `zone_s`, else by
    the one that wrote them. Raises ValueError for what is no time, and where that clock's offset changes."""
    if time_column(df) == "time_s":
        return [number("time_s", value, 0.0, _LATEST_S, "s") for value in df["time_s"].tolist()]
    times: list[float] = []
    clock: int | None = None
    for k, value in enumerate(df["time"].tolist()):
        try:
            seconds, offset = _written(value)
            if zone_s is not None:
                seconds += zone_s - (zone_s if offset is None else offset)
            elif k == 0:
                clock = offset
            elif offset != clock:
                raise ValueError(f"the offset from UTC changes from {clock} s to {offset} s; give times of one offset, or"
                                 " the station's own, such as zone = +03:00 in a section [STATION]")
            if seconds < 0.0:
                raise ValueError(f"{value!r} lies before 1970")
        except ValueError as error:
            raise ValueError(f"row {df.index[k]!r}: time: {error}") from None
        times.append(seconds)
    return times
