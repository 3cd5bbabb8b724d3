# SPDX-License-Identifier: MIT
"""Compares what two builds of the tool compute, number by number: compare_targets.py TOOL OTHER_TOOL EXAMPLES [--exact]

The exit status is 1 where they differ. Every value of the case files, a day of a station of four channels, and maps of all gas methods and of water are computed by
both. Numbers that are narrowed to single precision must agree within one unit in its last place; all other text must be
the same; with --exact they must agree in every bit of single precision, unless they are within 1e-9 and lie on both sides
of the middle between two such numbers. What is left of a value when the printed one is
subtracted is not compared. Both builds do without fused multiply-add and take exp, log and pow from the C library of their target, so that
most values agree in every bit; how many do not is printed.
"""
import re
import struct
import subprocess
import sys
import tempfile
from pathlib import Path

tools = [Path(sys.argv[1]), Path(sys.argv[2])]
examples = Path(sys.argv[3])
exact = "--exact" in sys.argv[4:]
permitted_units = 0 if exact else 1
NUMBER = re.compile(r"-?\d+(?:\.\d*)?(?:[eE][-+]?\d+)?")

for tool in tools:
    if not tool.exists():
        sys.exit(f"{tool} is missing; build it first (cmake --workflow --preset release)")


def single(text: str) -> int:
    """A number's place on the line of single-precision numbers."""
    try:
        bits = struct.unpack("<i", struct.pack("<f", float(text)))[0]
    except OverflowError:
        bits = 0x7F800000 | (-0x80000000 if text.startswith("-") else 0)
    return bits if bits >= 0 else -0x80000000 - bits


def output(tool: Path, arguments: list[str], csv: bool) -> list[str]:
    with tempfile.TemporaryDirectory() as directory:
        result = f"{directory}/values.csv"
        run = subprocess.run([tool, *arguments, *(["--csv", result] if csv else [])], capture_output=True, text=True)
        if run.returncode not in (0, 1):  # 1: states were refused, or values not met
            sys.exit(f"{tool} {' '.join(arguments)}: exit status {run.returncode}\n{run.stderr}")
        if not csv:
            return run.stdout.splitlines()
        # Without the column of deviations.
        return [",".join(line.split(",")[:8] + line.split(",")[9:]) for line in Path(result).read_text().splitlines()]


gas = ["gas", "--csv", "--t=-20:60:8", "--p", "0.1:29.9:0.7"]
by_density = ["--rho-c", "0.7", "--n2", "1.1", "--co2", "0.4"]
by_composition = ["--composition", str(examples / "natural_gas.csv")]
runs = [
    (["verify"], True),
    (["run", str(examples / "station.ini"), str(examples / "readings_day.csv"), "--format", "csv"], False),
    (["water", "--csv", "--t", "0:800:25", "--p", "0.001:99:3"], False),
    (["water", "--csv", "--t", "10:370:10", "--mode", "saturated"], False),
    (["gas", "--csv", "--method", "nx19", "--t=-20:60:8", "--p", "0.1:11.9:0.4", *by_density], False),
    (["gas", "--csv", "--method", "gerg91", "--t=-20:60:8", "--p", "0.1:11.9:0.4", *by_density], False),
    ([*gas, "--method", "aga8", *by_composition], False),
    ([*gas, "--method", "vnic", *by_composition], False),
]

numbers = different = apart = 0
for arguments, csv in runs:
    one, other = (output(tool, arguments, csv) for tool in tools)
    if len(one) != len(other):
        sys.exit(f"{' '.join(arguments)}: {len(one)} lines and {len(other)} lines")
    for line, (a, b) in enumerate(zip(one, other), 1):
        numbers += len(NUMBER.findall(a))
        if a == b:
            continue
        if NUMBER.sub("#", a) != NUMBER.sub("#", b):
            print(f"{' '.join(arguments)}: line {line}: text differs\n  {a}\n  {b}")
            apart += 1
            continue
        for x, y in zip(NUMBER.findall(a), NUMBER.findall(b)):
            different += x != y
            units = abs(single(x) - single(y))
            if exact and units == 1 and abs(float(x) - float(y)) <= 1e-9 * abs(float(y)):
                print(f"{' '.join(arguments)}: line {line}: {x} and {y}, in the middle between two numbers")
            elif units > permitted_units:
                print(f"{' '.join(arguments)}: line {line}: {x} and {y}")
                apart += 1
print(f"{numbers} numbers, {different} differ in a bit, {apart} by more than {permitted_units} units of single precision")
sys.exit(apart > 0 or numbers < 10000)
