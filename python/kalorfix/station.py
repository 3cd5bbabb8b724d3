# SPDX-License-Identifier: MIT
"""Station files, as `kalorfix run` reads them."""

from __future__ import annotations

import contextlib
import os
import re
from collections.abc import Iterator, Mapping
from pathlib import Path
from typing import TYPE_CHECKING, Any

from ._native import Library
from ._offset import read_offset
from .channels import Channel
from .gas_channel import Gas
from .heat_channel import Heat
from .totals import Registers

if TYPE_CHECKING:
    import pandas

_WORDS = ("device", "edge_radius", "method", "composition", "composition_sum", "normalise", "contents", "energy_by",
          "heat_unit", "heat_basis_C", "phase")
# What `kalorfix uncertainty` reads.
_INSTRUMENTS = re.compile(r"(dp|p|t)_(range|class|error)_\w+|\w+_uncertainty(_mol)?_pct")


class Station(Mapping[str, Channel]):
    """The channels of a station file by name, GAS 1, HEAT 1 and so on; see examples/station.ini for the keys.

    Raises ValueError with file, line and limit.
    """

    def __init__(self, path: str | os.PathLike[str], library: Library | None = None) -> None:
        self.path = Path(path)
        #: What was read: the station file, and the compositions that it names.
        self.files = [self.path]
        self._channels: dict[str, Channel] = {}
        zone_s: int | None = None
        for line, name, keys in self._sections():
            try:
                if name == "STATION":
                    zone_s = self._zone(keys)
                    continue
                self._channels[name] = self._channel(name, keys, library)
            except (ValueError, TypeError) as error:
                raise ValueError(f"{self.path}:{line}: [{name}] {error}") from None
        if not self._channels:
            raise ValueError(f"{self.path}: holds no channel; a section [GAS 1] or [HEAT 1] describes one")
        for channel in self._channels.values():
            channel.zone_s = zone_s
        contents = {channel.contents: name for name, channel in self._channels.items() if isinstance(channel, Gas)}
        if "own" in contents and "as_left" in contents:
            raise ValueError(f"{self.path}: [{contents['as_left']}] contents: as_left holds for all channels by aga8, and"
                             f" {contents['own']} has own")
        #: Whether viscosity and exponent by AGA8-92DC depend on what channels by density computed before.
        self.contents_as_left = "as_left" in contents

    @staticmethod
    def _zone(keys: dict[str, str]) -> int | None:
        for key in keys:
            if key != "zone":
                raise ValueError(f"no such key: {key}; there is zone")
        return read_offset(keys["zone"]) if keys else None

    def _sections(self) -> list[tuple[int, str, dict[str, str]]]:
        sections: list[tuple[int, str, dict[str, str]]] = []
        for number, text in enumerate(self.path.read_text(encoding="utf-8").splitlines(), 1):
            # A colon begins a remark, but for that of a zone.
            zone = re.fullmatch(r"\s*zone\s*=\s*([+-]\d\d:\d\d)\s*(?::.*)?", text)
            text = f"zone = {zone[1]}" if zone else text.partition(":")[0].strip()
            if text.startswith("[") and text.endswith("]"):
                name = " ".join(text[1:-1].split())
                if any(name == other for _, other, _ in sections):
                    raise ValueError(f"{self.path}:{number}: [{name}] stands here for the second time")
                sections.append((number, name, {}))
            elif text:
                key, equals, value = (part.strip() for part in text.partition("="))
                if not equals or not sections or "&" in value or key in sections[-1][2]:
                    raise ValueError(f"{self.path}:{number}: expected a section, or a key with its value and given once,"
                                     f" not {text!r}")
                sections[-1][2][key] = value
        return sections

    def _channel(self, name: str, keys: dict[str, str], library: Library | None) -> Channel:
        medium, _, digits = name.partition(" ")
        if medium not in ("GAS", "HEAT") or not digits.isdecimal() or not 1 <= int(digits) <= 20000 or digits[0] == "0":
            raise ValueError("expected [GAS N] or [HEAT N] with N within 1..20000")
        given: dict[str, Any] = {}
        contents: dict[str, float] = {}
        for key, value in keys.items():
            if _INSTRUMENTS.fullmatch(key):
                continue
            if key in _WORDS:
                given[key] = value
            else:
                try:
                    parsed = float(value)
                except ValueError:
                    raise ValueError(f"{key}: expected a number, not {value!r}") from None
                if key.startswith("x_") and key.endswith("_pct"):
                    contents[key[2:-4]] = parsed
                else:
                    given[key] = parsed
        if contents and "composition" in given:
            raise ValueError("the composition stands in a file already; leave one out")
        if contents:
            given["composition"] = contents
        elif "composition" in given:
            given["composition"] = self.path.parent / given["composition"]
            self.files.append(given["composition"])
        return Gas(library=library, **given) if medium == "GAS" else Heat(library=library, **given)

    def registers(self) -> dict[str, Registers]:
        """New registers of all channels, to be handed from frame to frame."""
        return {name: channel.registers() for name, channel in self.items()}

    def frame(self, df: pandas.DataFrame, registers: Mapping[str, Registers] | None = None) -> pandas.DataFrame:
        """The rows of all channels, told apart by the column `channel`, in the order of `df`; see kalorfix.frames."""
        import pandas

        from .frames import FrameRun, register_columns, require_room
        if "channel" not in df.columns or not set(df["channel"]) <= set(self):
            raise ValueError(f"expected a column channel with names of {', '.join(self)}")
        names = df["channel"].tolist()
        if not names:
            raise ValueError("the frame has no rows")
        place = pandas.Series(range(len(df)), index=df.index)
        runs = {name: FrameRun(self[name], rows, registers[name] if registers is not None else None, f"[{name}] ")
                for name, rows in df.groupby("channel", sort=False)}
        # Row by row, since AGA8-92DC may take what the row before has left.
        with self._undisturbed():
            for name in names:
                runs[name].step()
        require_room([f"[{name}] {text}" for name, run in runs.items() for text in run.lacking()])
        parts = []
        for name, run in runs.items():
            part = run.finish()
            part.insert(int(part.columns[0] != "status"), "channel", name)
            parts.append(part.set_index(place[df["channel"] == name]))
        whole = pandas.concat(parts).sort_index()
        whole.index = df.index
        behind = register_columns() if {"time_s", "time"} & set(whole.columns) else []
        return whole.reindex(columns=[name for name in whole if name not in behind] + behind)

    @contextlib.contextmanager
    def _undisturbed(self) -> Iterator[None]:
        """Keeps others from the library while the contents that were left matter; every channel by density leaves its own
        once, so that the first cycle does not differ from all others."""
        if not self.contents_as_left:
            yield
            return
        gases = [channel for channel in self.values() if isinstance(channel, Gas)]
        with gases[0].library.lock:
            for gas in gases:
                if gas.by_density:
                    gas.prime()
            yield

    def __getitem__(self, name: str) -> Channel:
        return self._channels[name]

    def __iter__(self) -> Iterator[str]:
        return iter(self._channels)

    def __len__(self) -> int:
        return len(self._channels)
