#!/usr/bin/env python3
"""Sums gcov's JSON on standard input into a table of lines and branches, and compares the gaps with the known ones.

Usage: gcov --stdout --json-format --branch-probabilities *.gcno | coverage_report.py GAPS
"""
import collections
import json
import os
import sys

FOLDERS = ("frame", "flow", "gas", "props", "runtime")

runs = collections.Counter()  # (file, line): how often it ran
taken = collections.Counter()  # (file, line, branch, of how many): how often it was taken
for document in map(json.loads, sys.stdin):
    for source in document["files"]:
        build = document["current_working_directory"]
        name = os.path.relpath(os.path.join(build, source["file"]), build)  # compiled with the source as "."
        if name.split(os.sep)[0] not in FOLDERS:
            continue
        for line in source["lines"]:
            place = (name, line["line_number"])
            runs[place] += line["count"]
            for number, branch in enumerate(line["branches"]):
                taken[(*place, number, len(line["branches"]))] += branch["count"]

branches = collections.defaultdict(list)  # (file, line): counts of its branches
for (name, number, _, _), count in sorted(taken.items()):
    branches[name, number].append(count)

table = collections.defaultdict(lambda: [0, 0, 0, 0])  # lines, not run, branches, not taken
gaps = collections.Counter()
where = {}
for (name, number), count in sorted(runs.items()):
    here = branches[name, number]
    missed = here.count(0)
    for row in (name, os.path.dirname(name).split(os.sep)[0] + "/", "all"):
        table[row] = [a + b for a, b in zip(table[row], (1, count == 0, len(here), missed))]
    if count == 0 or missed:
        with open(name, encoding="utf-8") as text:
            source = text.read().splitlines()[number - 1].strip()
        gap = f"{name} {f'{missed}/{len(here)}' if count else 'line'}: {source}"
        gaps[gap] += 1
        where.setdefault(gap, []).append(number)

print(f"{'':40} lines not run branches not taken")
for row, (lines, unrun, ways, untaken) in sorted(table.items(), key=lambda item: (item[0] == "all", item[0])):
    if unrun or untaken or row.endswith("/") or row == "all":
        print(f"{row:40} {lines:5} {unrun:7} {ways:8} {untaken:9}")

# A gap begins in the first column; the reason stands below it, indented.
with open(sys.argv[1], encoding="utf-8") as text:
    known = [line.rstrip() for line in text if line.strip() and line[0] != "#"]
listed = collections.Counter(line for line in known if line[0] != " ")
unexplained = [a for a, b in zip(known, known[1:] + ["-"]) if a[0] != " " and b[0] != " "]
faults = [f"not in {sys.argv[1]}: line {where[gap]}: {gap}" for gap in (gaps - listed).elements()]
faults += [f"covered, or another branch count: {gap}" for gap in (listed - gaps).elements()]
faults += [f"no reason: {gap}" for gap in unexplained]
print(*faults, sep="\n")
sys.exit(bool(faults) or not runs)
