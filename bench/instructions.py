#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Counts the instructions of each step of a measuring cycle, now and with an earlier library, and prints a table.

    bench/instructions.py build/release                      x86-64, by callgrind
    bench/instructions.py build/armhf                        32-bit ARM, under qemu-arm
    bench/instructions.py build/armhf --before OLD.so        beside them an earlier kalorfix.so
    bench/instructions.py build/release --steps 'PF3_3*'     some of the steps
"""
import argparse
import fnmatch
import pathlib
import re
import subprocess
import sys

few, many = 20, 120


def counter(build):
    """The command that runs a program and prints its count, and the pattern of the count."""
    cache = (build / "CMakeCache.txt").read_text()
    if "arm-linux-gnueabihf" not in cache:
        return ["valgrind", "--tool=callgrind", "--callgrind-out-file=/dev/null"], r"Collected : (\d+)"
    plugin = build / "bench" / "qemu_instructions.so"
    source = pathlib.Path(__file__).with_name("qemu_instructions.c")
    subprocess.run(["cc", "-O2", "-shared", "-fPIC", source, "-o", plugin], check=True)
    root = pathlib.Path(__file__).resolve().parent.parent / "build" / "root" / "armhf"
    return ["qemu-arm", "-L", root, "-plugin", plugin], r"insns: (\d+)"


def main():
    options = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    options.add_argument("build", type=pathlib.Path)
    options.add_argument("--before", type=pathlib.Path, help="an earlier library")
    options.add_argument("--steps", default="*", help="names of steps, with * and ?")
    given = options.parse_args()
    program = given.build / "bench" / "kalorfix_cost"
    command, pattern = counter(given.build)

    def instructions(library, step):
        counts = []
        for rounds in (few, many):
            run = subprocess.run([*command, program, library, given.build / "gas.dat", step, str(rounds)],
                                 capture_output=True, text=True, check=False)
            found = re.search(pattern, run.stderr)
            if run.returncode != 0 or not found:
                sys.exit(f"{step}: {run.stdout}{run.stderr}")
            counts.append(int(found.group(1)))
        return round((counts[1] - counts[0]) / (many - few))

    native = [] if command[0] == "valgrind" else command[:3]
    names = subprocess.run([*native, program], capture_output=True, text=True, check=True).stdout.splitlines()
    print("| step | " + ("before | now | ratio |" if given.before else "instructions |"))
    print("|---|" + ("---:|---:|---:|" if given.before else "---:|"))
    for step in fnmatch.filter(names, given.steps):
        now = instructions(given.build / "kalorfix.so", step)
        if given.before and ("bare" in step or "by power" in step):
            print(f"| {step} | | {now} | |", flush=True)
        elif given.before:
            before = instructions(given.before, step)
            print(f"| {step} | {before} | {now} | {now / before:.2f} |", flush=True)
        else:
            print(f"| {step} | {now} |", flush=True)


if __name__ == "__main__":
    main()
