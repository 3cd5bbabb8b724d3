# SPDX-License-Identifier: MIT
"""Registers: what the flows of a channel amount to, with hour and day, by the library's own integration."""

from __future__ import annotations

import math
from dataclasses import dataclass, field
from typing import Any, Protocol

from ._checks import single
from .calendar import Calendar
from .room import WRAP, exponent_for

#: The columns of the amounts.
AMOUNTS = {"mass": "mass_t", "volume": "volume_m3", "standard_volume": "standard_volume_m3", "energy": "energy_GJ",
           "heat": "heat_GJ"}
_TICKS_PER_SECOND = 100  # of the controller's clock, whose whole ticks are counted


class Accounted(Protocol):
    """What registers need of a channel."""

    @property
    def external(self) -> bool: ...

    @property
    def exponents(self) -> tuple[int, ...]: ...

    def integrate(self, member: str, *arguments: float) -> tuple[int, list[float]]: ...


@dataclass
class Interval:
    """Hour or day of an integrator: seconds elapsed, register at its start, amount of the last one that closed."""

    time_s: float = 0.0
    start: float = 0.0
    result: float = 0.0
    closed: bool = False
    length_s: float = 0.0  #: of the one that closed, in seconds of computed time
    since: float = 0.0  #: counted since its start, in units of the register
    running: bool = False


@dataclass
class Register:
    """One integrator: its total (below 10^6 units of 10^exponent, beyond that it begins anew), hour and day."""

    total: float = 0.0
    hour: Interval = field(default_factory=Interval)
    day: Interval = field(default_factory=Interval)


class Registers:
    """The registers of a channel, from frame to frame: hand the same object to each, in the order of time.

    by_name  Register of each integrator: mass (t), volume (m3), and standard_volume (m3), energy (GJ) or heat (GJ)
    last_s   time of the last reading, s; a later one counts from there. None before the first
    """

    def __init__(self, names: tuple[str, ...], contract_hour: int = 0) -> None:
        self.by_name = {name: Register() for name in names}
        self.last_s: float | None = None
        self._last_ticks: dict[str, int] = {}
        self._calendar = Calendar(contract_hour)

    def calendar(self) -> list[dict[str, Any]]:
        """Hours of the clock, then days from the contract hour on: `calendar` (hour or day), from_s (where it begins, since
        1970 with dates), counted_s, and mass_t, volume_m3 and so on, whatever the exponents. pandas.DataFrame takes it."""
        names = [AMOUNTS[name] for name in self.by_name]
        periods = sorted(self._calendar.periods.items(), key=lambda item: (item[0][0] == "day", item[0][1]))
        return [{"calendar": kind, "from_s": begin, "counted_s": counted_s} | dict(zip(names, amounts))
                for (kind, begin), (counted_s, amounts) in periods]

    def elapsed_s(self, time_s: float) -> float:
        """Since the last reading; 0 for the first."""
        return 0.0 if self.last_s is None else time_s - self.last_s

    def count(self, channel: Accounted, time_s: float, flows: list[float] | None) -> list[bool]:
        """Counts the time since the last reading with these flows (per hour), or passes it over without flows. Tells
        which integrators took it: a refused one takes those behind it along, except where the flow is external. The
        caller holds the lock of the library. Raises ValueError for an hour or day that does not fit its register."""
        now = math.floor(time_s * _TICKS_PER_SECOND + 0.5)
        elapsed_s = self.elapsed_s(time_s)
        valid, taken, amounts = flows is not None, [], []
        for k, (name, register) in enumerate(self.by_name.items()):
            register.hour.closed = register.day.closed = False
            before = self._last_ticks.get(name, now)
            self._last_ticks[name] = now
            taken.append(False)
            amounts.append(0.0)
            if flows is None or not (valid or channel.external) or (channel.external and flows[k] < 0.0):
                valid = False
                continue
            dt_s = single(((now - before) & 0xFFFFFFFF) / _TICKS_PER_SECOND)
            status, (_, total, _) = channel.integrate("in_Param", flows[k], register.total, dt_s,
                                                      channel.exponents[k], 0.0, 0)
            valid = taken[k] = status == 1 and math.isfinite(single(total))
            if valid:
                register.total = total
                amounts[k] = single(flows[k]) * elapsed_s / 3600.0
                for number, interval in enumerate((register.hour, register.day)):
                    _carry_on(channel, number, interval, dt_s, elapsed_s, total)
                    _require_room(name, number, interval, amounts[k], channel.exponents[k])
            else:
                # The library goes on from what it hands out: the register of the host.
                register.total = single(register.total)
        if self.last_s is not None:
            self._calendar.add(self.last_s, time_s, amounts, all(taken))
        self.last_s = time_s
        return taken


def _carry_on(channel: Accounted, number: int, interval: Interval, dt_s: float, elapsed_s: float, total: float) -> None:
    status, (time_s, start, result) = channel.integrate("in2_Param", dt_s, 0.0, number, total, interval.time_s,
                                                        interval.start, interval.result)
    if status != 1:
        return
    # A running interval has seconds that grow with the time.
    before_s = single(interval.time_s)
    interval.closed = before_s != 0.0 and elapsed_s > 0.0 and single(time_s) <= before_s
    if interval.closed:
        interval.length_s = (0.0 if before_s < 1.0 / _TICKS_PER_SECOND else before_s) + elapsed_s
    interval.time_s, interval.start, interval.result = time_s, start, single(result)


def _require_room(name: str, number: int, interval: Interval, amount: float, exponent: int) -> None:
    unit = 10.0 ** exponent
    # What the step brought that opened an interval is not in it.
    if interval.running:
        interval.since += amount / unit
    interval.running = interval.time_s != 0.0
    if interval.since >= WRAP:
        raise ValueError(f"{name}: {'a day' if number else 'an hour'} has come to 10^6 units of its register or more; "
                         + exponent_for(name, interval.since * unit))
    if interval.closed:
        interval.since = 0.0
