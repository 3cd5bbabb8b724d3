#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes readings for examples/station.ini to standard output.

    make_readings.py [HOURS [SECONDS_BETWEEN_CYCLES]] > readings_day.csv

The defaults, 24.5 hours and 120 seconds, give examples/readings_day.csv: the 24 hours of a day, and half an hour more so
that the last hour and the day close for every channel. Each channel swings about its design point: the demand with a morning and an evening peak,
the temperatures with the time of day, and a ripple of a few per cent whose periods have no common multiple. From 03:00
to 03:20 the steam boiler is banked: the differential pressure falls so low that the Reynolds number leaves the nozzle's
range, and the cycles are refused. Nothing is random: every run writes the same bytes.
"""

import datetime
import math
import sys

START = datetime.datetime(2026, 3, 1)
DAY = 86400.0


def wave(seconds, period, phase=0.0):
    return math.sin(2.0 * math.pi * (seconds / period + phase))


def demand(seconds):
    """Flow over its mean: peaks about 07:00 and 19:00, a trough at night."""
    return 1.0 + 0.18 * wave(seconds, DAY, -0.3) + 0.10 * wave(seconds, DAY / 2.0, -0.33)


def readings(seconds):
    """Channel, t in degC, p in MPa, dp in kPa. The pressure difference goes with the square of the flow."""
    day = wave(seconds, DAY, -0.4)
    ripple = 0.03 * wave(seconds, 613.0) + 0.02 * wave(seconds, 217.0)
    load = demand(seconds) ** 2
    banked = 3 * 3600 <= seconds % DAY < 3 * 3600 + 1200
    yield "GAS 1", 8.0 + 4.0 * day, 1.2 + 0.03 * wave(seconds, 5400.0), 16.0 * load * (1.0 + ripple)
    yield "GAS 2", 15.0 + 3.0 * day, 5.5 + 0.08 * wave(seconds, 7200.0), 25.0 * load * (1.0 - ripple)
    yield "HEAT 1", 300.0 + 6.0 * wave(seconds, 4100.0), 1.2 + 0.02 * ripple, (0.0001 if banked else 30.0 * load)
    yield "HEAT 2", 90.0 + 5.0 * wave(seconds, 9700.0), 0.8 + 0.01 * ripple, 25.0 * (1.0 + 2.0 * ripple)


def main():
    hours = float(sys.argv[1]) if len(sys.argv) > 1 else 24.5
    step = float(sys.argv[2]) if len(sys.argv) > 2 else 120.0
    print("time,channel,t_C,p_MPa,dp_kPa")
    for cycle in range(int(hours * 3600.0 / step) + 1):
        seconds = cycle * step
        time = (START + datetime.timedelta(seconds=seconds)).isoformat()
        for channel, t, p, dp in readings(seconds):
            print(f"{time},{channel},{t:.2f},{p:.4f},{dp:.4f}")


if __name__ == "__main__":
    main()
