"""Room in the registers: an hour or day tells amounts below 10^6 of its unit; what is more comes out 10^6 short a time."""

from __future__ import annotations

from ._checks import plain

WRAP = 1e6
_DAY_S = 86400.0
_MOST_DECADES = 9


def exponent_for(integrator: str, amount: float) -> str:
    """The exponent with which an amount stays below 10^6."""
    decades = 0
    while amount >= WRAP * 10.0 ** decades:
        decades += 1
    key = f"{integrator}_exponent"
    return f"no {key} would do" if decades > _MOST_DECADES else f"{key} = {decades} would do"


class Peaks:
    """The largest flows of a channel, its longest step that counts, and its longest day."""

    def __init__(self, integrators: int) -> None:
        self._flows, self._rows = [0.0] * integrators, [0] * integrators
        self._longest_step_s, self._longest_day_s, self._since_s = 0.0, _DAY_S, 0.0

    def note_step(self, seconds: float) -> None:
        """A step that counts; a day ends with the one that fills it."""
        self._longest_step_s = max(self._longest_step_s, seconds)
        self._since_s += seconds
        self._longest_day_s = max(self._longest_day_s, self._since_s)
        if self._since_s >= _DAY_S:
            self._since_s = 0.0

    def note_flows(self, flows: list[float], row: int) -> None:
        """Flows of a row, per hour."""
        for k, flow in enumerate(flows):
            if flow > self._flows[k]:
                self._flows[k], self._rows[k] = flow, row

    def lacking(self, integrators: tuple[str, ...], flow_columns: tuple[str, ...], exponents: tuple[int, ...],
                times: list[str]) -> list[str]:
        """What a day of the largest flow would bring into a register that is too small, and the exponent that would do."""
        found = []
        for name, column, exponent, flow, row in zip(integrators, flow_columns, exponents, self._flows, self._rows):
            amount = flow * self._longest_day_s / 3600.0
            if self._longest_step_s > 0.0 and amount >= WRAP * 10.0 ** exponent:
                unit = column[4:].removesuffix("_h")
                found.append(f"{flow:.7g} {unit}/h at {times[row]} bring {amount:.7g} {unit} in"
                             f" {plain(self._longest_day_s)} s: {exponent_for(name, amount)}" +
                             (", or longest_step_s to leave such steps out" if self._longest_step_s > _DAY_S else ""))
        return found
