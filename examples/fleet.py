#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Recomputes the hourly archives of a fleet of stations on a cluster, Dask distributed (Debian: python3-distributed).

    fleet.py make FLEET --stations 20 --hours 8760          a made-up fleet
    fleet.py run FLEET RESULTS                              in this process
    fleet.py run FLEET RESULTS --workers 2                  on a cluster of this machine
    fleet.py run FLEET RESULTS --scheduler tcp://host:8786  on a cluster that is there; it sees both directories

FLEET holds a directory a station: station.ini, and hours.csv, a row a channel and hour with the
means of the hour: time_s or time (its beginning), channel, and the readings as `kalorfix run` takes them. An empty cell or
nan is a transmitter that failed: an hour that is refused, beside all others.

RESULTS gets NAME/BLOCK.csv, an hour of a channel a line with its amounts, and totals.csv. A block of hours is written whole,
under its name at the end, by whoever computes it, and always the same: a worker may die, or compute it again. A later run
computes the hours that are not there yet or whose readings have changed since, and all hours of a block if station, library
or gas data have changed. Totals are exact sums of the lines, so that neither order nor blocks matter.
"""

from __future__ import annotations

import argparse
import functools
import hashlib
import math
import os
import random
import shutil
import sys
import time
import uuid
from collections.abc import Callable, Iterable, Iterator, Sequence
from pathlib import Path
from typing import Any

try:
    import kalorfix
except ImportError:  # from the source tree
    sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "python"))
    import kalorfix
import pandas
from kalorfix.times import seconds_of

HOUR_S = 3600
AMOUNTS = {"q_m_t_h": "mass_t", "q_v_m3_h": "volume_m3", "q_c_m3_h": "standard_volume_m3", "q_e_GJ_h": "energy_GJ",
           "q_h_GJ_h": "heat_GJ"}


# ---- On the workers -----------------------------------------------------------------------------------------------


def read_lines(file: Any) -> pandas.DataFrame:
    """A CSV file with the numbers as they stand there, to the last bit."""
    return pandas.read_csv(file, comment="#", float_precision="round_trip")


def digest_of(file: Path) -> bytes:
    return hashlib.sha256(file.read_bytes()).digest()


@functools.cache
def library() -> tuple[kalorfix.Library, bytes]:
    """The library of this worker, and the digest of its file, its gas data and the module."""
    opened = kalorfix.Library()
    files = sorted(Path(kalorfix.__file__).parent.glob("*.py")) + ([opened.gas_data] if opened.gas_data else [])
    return opened, hashlib.sha256(opened.sha256().encode() + b"".join(map(digest_of, files))).digest()


@functools.lru_cache(maxsize=4)
def read_archive(path: Path, changed_ns: int) -> pandas.DataFrame:
    """The archive with the column `hour`, hours since 1970 by the clock that wrote it. Raises ValueError for two rows of the same channel and hour."""
    rows = read_lines(path)
    rows["hour"] = [int(seconds // HOUR_S) for seconds in seconds_of(rows)]
    twice = rows.duplicated(["hour", "channel"])
    if twice.any():
        k = twice.idxmax()
        raise ValueError(f"{path}: row {k + 2}: {rows.channel[k]} has this hour already")
    return rows


def archive_of(station: Path) -> pandas.DataFrame:
    path = station / "hours.csv"
    return read_archive(path, path.stat().st_mtime_ns)


def identity_of(station: kalorfix.Station) -> str:
    """Digest of all that decides on the results beside the readings: station, compositions, library, gas data."""
    return hashlib.sha256(library()[1] + b"".join(map(digest_of, station.files))).hexdigest()


def lines_of(file: Path, heading: str) -> pandas.DataFrame | None:
    """The lines of a block that is there, if it was computed with the same constants."""
    if not file.is_file():
        return None
    with file.open(encoding="utf-8") as lines:
        return read_lines(lines) if lines.readline() == heading else None


def compute_block(station: Path, results: Path, block: int, hours: int) -> dict[str, Any]:
    """Computes what is not there yet of the hours block*hours .. of a station, and writes the block whole."""
    try:
        archive = archive_of(station)
        rows = archive[archive["hour"] // hours == block].reset_index(drop=True)
        file = results / station.name / f"{hours}h-{block}.csv"
        channels = kalorfix.Station(station / "station.ini", library()[0])
        heading = f"# {identity_of(channels)}\n"
        # Where rows depend on those before, a block is computed whole.
        there = lines_of(file, heading) if not channels.contents_as_left else None
        known = pandas.DataFrame(columns=["hour", "channel"])
        if there is not None and set(rows.columns) <= set(there.columns):
            known = rows.merge(there, how="inner", on=list(rows.columns))
        taken = set(zip(known["hour"], known["channel"]))
        missing = rows[[key not in taken for key in zip(rows["hour"], rows["channel"])]].reset_index(drop=True)
        if len(missing) or there is None or len(there) != len(rows):
            readings = missing.drop(columns=["time_s", "time"], errors="ignore")
            if len(missing):
                computed = channels.frame(readings)
                new = missing.join(computed[["status", "step", "reason"]])
                for flow, amount in AMOUNTS.items():
                    # The mean flow, times one hour; what the totals would refuse is no amount.
                    new[amount] = computed[flow].where(computed[flow] >= 0.0)
                known = pandas.concat([known, new]) if taken else new
            whole = known.sort_values(["hour", "channel"], kind="stable")
            file.parent.mkdir(parents=True, exist_ok=True)
            part = file.with_suffix(f".{uuid.uuid4().hex}.part")
            with part.open("w", encoding="utf-8") as out:
                out.write(heading)
                whole.to_csv(out, index=False)
                out.flush()
                os.fsync(out.fileno())
            part.replace(file)
        return {"station": station.name, "rows": len(rows), "computed": len(missing), "error": ""}
    except (ValueError, KeyError, OSError) as error:
        return {"station": station.name, "rows": 0, "computed": 0, "error": f"{type(error).__name__}: {error}"}


def blocks_of(station: Path, hours: int) -> dict[str, Any]:
    """The blocks of an archive, or why it cannot be read."""
    try:
        blocks = sorted(set((archive_of(station)["hour"] // hours).tolist()))
        return {"station": station.name, "blocks": blocks, "error": ""}
    except (ValueError, KeyError, OSError) as error:
        return {"station": station.name, "blocks": [], "error": f"{type(error).__name__}: {error}"}


def total_station(station: Path, results: Path, hours: int) -> list[dict[str, Any]]:
    """Exact sums of the lines of a station, a row a channel."""
    files = [results / station.name / f"{hours}h-{block}.csv" for block in blocks_of(station, hours)["blocks"]]
    lines = pandas.concat([read_lines(file) for file in files])
    totals = []
    for channel, rows in lines.groupby("channel"):
        total = {"station": station.name, "channel": channel, "hours": len(rows),
                 "refused": int((rows["status"] != "computed").sum())}
        for amount in AMOUNTS.values():
            given = rows[amount].dropna().tolist()
            total[amount] = math.fsum(given) if given else ""
        totals.append(total)
    return totals


# ---- Of the driver --------------------------------------------------------------------------------------------------


class Progress:
    """How far the run is, on standard error, at most once a second."""

    def __init__(self, blocks: int) -> None:
        self.blocks, self.done, self.rows, self.computed = blocks, 0, 0, 0
        self.begun = self.told = time.monotonic()

    def at(self, outcome: dict[str, Any]) -> None:
        self.done += 1
        self.rows += outcome["rows"]
        self.computed += outcome["computed"]
        now = time.monotonic()
        if now - self.told >= 1.0 or self.done == self.blocks:
            self.told, passed = now, now - self.begun
            print(f"{self.done} of {self.blocks} blocks, {self.rows} hours, {self.computed} computed,"
                  f" {self.computed / passed:.0f}/s, {passed / self.done * (self.blocks - self.done):.0f} s left",
                  file=sys.stderr)


Each = Callable[[Callable[..., Any], Sequence[tuple[Any, ...]]], Iterable[Any]]


def in_process(function: Callable[..., Any], calls: Sequence[tuple[Any, ...]]) -> Iterator[Any]:
    return (function(*call) for call in calls)


def on_cluster(client: Any) -> Each:
    """Outcomes as they come. What a worker that died was to do, another one does."""
    from distributed import as_completed

    def each(function: Callable[..., Any], calls: Sequence[tuple[Any, ...]]) -> Iterator[Any]:
        futures = [client.submit(function, *call, pure=False) for call in calls]
        for future in as_completed(futures):
            yield future.result()
            future.release()
    return each


def run(fleet: Path, results: Path, hours: int, each: Each,
        watch: Callable[[dict[str, Any]], None] | None = None) -> tuple[pandas.DataFrame, dict[str, str]]:
    """Computes the fleet: totals a channel, and the stations that failed with the reason."""
    stations = sorted(path.parent for path in fleet.glob("*/station.ini"))
    if not stations:
        raise SystemExit(f"{fleet}: holds no station; expected directories with station.ini and hours.csv")
    failed: dict[str, str] = {}
    calls: list[tuple[Any, ...]] = []
    for plan in each(blocks_of, [(station, hours) for station in stations]):
        if plan["error"]:
            failed[plan["station"]] = plan["error"]
        calls += [(fleet / plan["station"], results, block, hours) for block in plan["blocks"]]
    progress = Progress(len(calls))
    for outcome in each(compute_block, calls):
        if outcome["error"]:
            failed[outcome["station"]] = outcome["error"]
        progress.at(outcome)
        if watch:
            watch(outcome)
    good = [(station, results, hours) for station in stations if station.name not in failed]
    rows = [row for totals in each(total_station, good) for row in totals]
    columns = ["station", "channel", "hours", "refused", *AMOUNTS.values()]
    table = pandas.DataFrame(rows, columns=columns).sort_values(["station", "channel"], ignore_index=True)
    results.mkdir(parents=True, exist_ok=True)
    part = results / "totals.csv.part"
    table.to_csv(part, index=False)
    part.replace(results / "totals.csv")
    return table, failed


def make(fleet: Path, stations: int, hours: int, seed: int = 1) -> None:
    """Made-up archives for the station of the examples, one hour in a hundred below the range of its devices."""
    examples = Path(__file__).resolve().parent
    middle = {"GAS 1": (8.0, 1.2, 10.0), "GAS 2": (14.0, 5.5, 14.0), "HEAT 1": (300.0, 1.2, 20.0),
              "HEAT 2": (90.0, 0.8, 25.0)}
    for number in range(1, stations + 1):
        directory = fleet / f"station-{number:04}"
        directory.mkdir(parents=True, exist_ok=True)
        for name in ("station.ini", "natural_gas.csv"):
            shutil.copy(examples / name, directory)
        chance = random.Random(seed * 1000003 + number)
        with open(directory / "hours.csv", "w", encoding="utf-8") as out:
            out.write("time_s,channel,t_C,p_MPa,dp_kPa\n")
            for hour in range(hours):
                for channel, (t, p, dp) in middle.items():
                    swing = 1 + 0.2 * math.sin(hour * math.tau / 24 + number) + 0.05 * chance.random()
                    dp_kPa = dp * swing if chance.random() > 0.01 else 1e-5
                    out.write(f"{hour * HOUR_S},{channel},{t + chance.random():.2f},{p * (1 + 0.01 * chance.random()):.4f},"
                              f"{dp_kPa:.5f}\n")


def main() -> int:
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    commands = parser.add_subparsers(dest="command", required=True)
    maker = commands.add_parser("make", help="a made-up fleet")
    maker.add_argument("fleet", type=Path)
    maker.add_argument("--stations", type=int, default=20)
    maker.add_argument("--hours", type=int, default=8760)
    runner = commands.add_parser("run", help="compute a fleet")
    runner.add_argument("fleet", type=Path)
    runner.add_argument("results", type=Path)
    runner.add_argument("--block", type=int, default=720, help="hours a block (720)")
    runner.add_argument("--workers", type=int, default=0, help="of a cluster of this machine; 0: in this process")
    runner.add_argument("--scheduler", help="address of a cluster that is there")
    args = parser.parse_args()
    if args.command == "make":
        make(args.fleet, args.stations, args.hours)
        return 0
    if args.block < 1:
        parser.error("--block: at least 1 hour")
    fleet, results = args.fleet.resolve(), args.results.resolve()
    if args.workers or args.scheduler:
        from distributed import Client
        where = {"address": args.scheduler} if args.scheduler else {
            "n_workers": args.workers, "threads_per_worker": 1, "dashboard_address": None}
        with Client(**where) as client:
            _, failed = run(fleet, results, args.block, on_cluster(client))
    else:
        _, failed = run(fleet, results, args.block, in_process)
    for station, reason in sorted(failed.items()):
        print(f"{station}: {reason}", file=sys.stderr)
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
