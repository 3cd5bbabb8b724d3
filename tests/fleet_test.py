#!/usr/bin/env python3
"""A fleet on two workers, one of which is killed, against one process; a second run and changed archives.

Usage: fleet_test.py PROJECT_DIRECTORY LIBRARY; exit status 77 without pandas and Dask distributed.
"""
import os
import signal
import sys
import tempfile
from pathlib import Path

ROOT = Path(sys.argv[1])
os.environ["KALORFIX_LIBRARY"] = sys.argv[2]
sys.path[:0] = [str(ROOT / "examples"), str(ROOT / "python")]
try:
    import pandas
    from distributed import Client
except ImportError:
    sys.exit(77)
import fleet  # noqa: E402

HOURS = 48


def main():
    with tempfile.TemporaryDirectory() as directory:
        os.chdir(directory)
        check(Path(directory, "fleet"), Path(directory))


def check(made, base):
    fleet.make(made, 3, 400)
    alone, failed = fleet.run(made, base / "alone", HOURS, fleet.in_process)
    assert not failed and list(alone.hours) == [400] * 12 and alone.refused.sum() > 0, (failed, alone)

    # A worker is killed when three blocks have come; all totals are those of one process, and so is every file.
    with Client(n_workers=2, threads_per_worker=1, dashboard_address=None) as client:
        pids = list(client.run(os.getpid).values())
        seen = []

        def watch(outcome):
            seen.append(outcome["computed"])
            if len(seen) == 3:
                os.kill(pids[0], signal.SIGKILL)

        together, failed = fleet.run(made, base / "together", HOURS, fleet.on_cluster(client), watch)
        assert pids[0] not in client.run(os.getpid).values()
    assert not failed and len(seen) == 27
    pandas.testing.assert_frame_equal(together, alone, check_exact=True)
    names = sorted(path.relative_to(base / "alone") for path in (base / "alone").rglob("*.csv"))
    assert len(names) == 28
    for name in names:
        assert (base / "together" / name).read_bytes() == (base / "alone" / name).read_bytes(), name

    # A second run computes nothing; a grown archive, a corrected and a withdrawn hour only what changed; another plate all.
    def again(computed):
        counts = []
        table, failed = fleet.run(made, base / "together", HOURS, fleet.in_process, lambda o: counts.append(o["computed"]))
        fresh, _ = fleet.run(made, base / f"fresh-{computed}", 100, fleet.in_process)
        assert not failed and sum(counts) == computed, (counts, failed)
        pandas.testing.assert_frame_equal(table, fresh, check_exact=True)

    again(0)
    archive = made / "station-0002/hours.csv"
    lines = archive.read_text().splitlines()
    lines[5] = lines[5].replace(",1.2", ",1.3", 1)
    archive.write_text("\n".join([*lines[:100], *lines[101:], f"{400 * 3600},GAS 1,8,1.2,10", ""]))
    again(2)
    # A transmitter that failed is one refused hour, recomputed once, and the other hours stay as they are.
    k = next(k for k, line in enumerate(lines) if k > 200 and "HEAT 1" in line)
    archive.write_text(archive.read_text().replace(lines[k], lines[k].rpartition(",")[0] + ","))
    again(1)
    again(0)
    block = (base / f"together/station-0002/{HOURS}h-{(k - 1) // 4 // HOURS}.csv").read_text()
    assert block.count("refused,flow,no reading of the differential pressure") == 1
    station = made / "station-0003/station.ini"
    station.write_text(station.read_text().replace("d20_mm = 150", "d20_mm = 151"))
    again(1600)

    # The same hour twice is no amount but an error, and keeps no other station from its totals.
    archive.write_text("\n".join([*lines, lines[7]]))
    table, failed = fleet.run(made, base / "together", HOURS, fleet.in_process)
    assert list(failed) == ["station-0002"] and "has this hour already" in failed["station-0002"], failed
    assert set(table.station) == {"station-0001", "station-0003"}


if __name__ == "__main__":
    main()
