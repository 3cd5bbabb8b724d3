"""Amounts by hours and days of the calendar, which an archive is compared with."""

from __future__ import annotations

import math

_HOUR_S, _DAY_S = 3600, 86400
_LONGEST_NOTHING_S = 2 * _DAY_S


class Calendar:
    """What a channel counted in each hour of the clock and each day from its contract hour on. The intervals of the library
    are hours and days of computed time, which move on with every refusal."""

    def __init__(self, contract_hour: int) -> None:
        self._contract_hour = contract_hour
        #: By "hour" or "day" and the time at which it begins: the seconds counted, and the amount of each integrator.
        self.periods: dict[tuple[str, int], tuple[float, list[float]]] = {}

    def add(self, from_s: float, to_s: float, amounts: list[float], counted: bool) -> None:
        """Amounts that came evenly from one time to another; `counted` when all integrators took them. More than two days
        of nothing leave no periods."""
        if not to_s > from_s or (not counted and not any(amounts) and to_s - from_s > _LONGEST_NOTHING_S):
            return
        for kind, length, offset in (("hour", _HOUR_S, 0), ("day", _DAY_S, self._contract_hour * _HOUR_S)):
            begin = math.floor((from_s - offset) / length) * length + offset
            while begin < to_s:
                part_s = min(to_s, begin + length) - max(from_s, begin)
                counted_s, sums = self.periods.get((kind, begin), (0.0, [0.0] * len(amounts)))
                self.periods[kind, begin] = (counted_s + part_s * counted,
                                             [sum_ + one * part_s / (to_s - from_s) for sum_, one in zip(sums, amounts)])
                begin += length
