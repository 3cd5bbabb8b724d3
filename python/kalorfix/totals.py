"""Registers: what the flows of a channel amount to, with hour and day, by the library's own integration."""

from __future__ import annotations

import math
from dataclasses import dataclass, field
from typing import TYPE_CHECKING

from ._checks import single

if TYPE_CHECKING:
    from .channels import Channel

_TICKS_PER_SECOND = 100  # of the controller's clock, whose whole ticks are counted


@dataclass
class Interval:
    """Hour or day of an integrator: seconds elapsed, register at its start, amount of the last one that closed."""

    time_s: float = 0.0
    start: float = 0.0
    result: float = 0.0
    closed: bool = False


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

    def __init__(self, names: tuple[str, ...]) -> None:
        self.by_name = {name: Register() for name in names}
        self.last_s: float | None = None
        self._last_ticks: dict[str, int] = {}

    def count(self, channel: Channel, time_s: float, flows: list[float] | None) -> list[bool]:
        """Counts the time since the last reading with these flows (per hour), or passes it over without flows. Tells
        which integrators took it: a refused one takes those behind it along, except where the flow is external. The
        caller holds the lock of the library."""
        now = math.floor(time_s * _TICKS_PER_SECOND + 0.5)
        valid, taken = flows is not None, []
        for k, (name, register) in enumerate(self.by_name.items()):
            register.hour.closed = register.day.closed = False
            before = self._last_ticks.get(name, now)
            self._last_ticks[name] = now
            if flows is None or not (valid or channel.external) or (channel.external and flows[k] < 0.0):
                valid = False
                taken.append(False)
                continue
            dt_s = single(((now - before) & 0xFFFFFFFF) / _TICKS_PER_SECOND)
            status, (_, total, _) = channel.integrate("in_Param", flows[k], register.total, dt_s,
                                                      channel.exponents[k], 0.0, 0)
            valid = status == 1 and math.isfinite(single(total))
            taken.append(valid)
            if valid:
                register.total = total
                _carry_on(channel, 0, register.hour, dt_s, total)
                _carry_on(channel, 1, register.day, dt_s, total)
        self.last_s = time_s
        return taken


def _carry_on(channel: Channel, number: int, interval: Interval, dt_s: float, total: float) -> None:
    status, (time_s, start, result) = channel.integrate("in2_Param", dt_s, 0.0, number, total, interval.time_s,
                                                        interval.start, interval.result)
    if status == 1:
        # A running interval never has the time 0, so a time that went back is a new one.
        interval.closed = interval.time_s != 0.0 and single(time_s) < single(interval.time_s)
        interval.time_s, interval.start, interval.result = time_s, start, single(result)
