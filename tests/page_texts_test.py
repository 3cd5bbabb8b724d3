#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The catalogue of the browser page, without a browser: every text that the page's own scripts show and every name of a
device, method or component has Russian; every entry has both languages and the same places for numbers, and is made of
texts that stand in the sources. The texts that the calculation composes are tried in tests/page_test.mjs.

Usage: page_texts_test.py PROJECT_DIRECTORY
"""
import json
import re
import sys
from pathlib import Path

root = Path(sys.argv[1])
SOURCES = ["web/page/*.js", "web/*.cpp", "web/*.h", "tools/metering/*.cpp", "tools/metering/*.h", "tools/calc_sheet.cpp",
           "tools/station/instrument_keys.cpp", "tools/names.h", "tools/units.cpp", "flow/device.cpp"]
NUMBER = re.compile(r"(?<![\w.])-?\d+(?:\.\d+)?(?:e[-+]?\d+)?(?!\w)")
SHOWN = [r"\bt\(QUOTED", r"\b(?:label|title): QUOTED", r"\['(?!string|en)\w+', QUOTED\]"]
twice, unsaid = [], []


def entries(pairs):
    twice.extend(key for k, (key, _) in enumerate(pairs) if key in dict(pairs[:k]))
    return dict(pairs)


def literals(path):
    text = re.sub(r"(?m)^\s*//.*$|^#include.*$", "", path.read_text(encoding="utf-8"))
    if path.suffix == ".js":
        return re.findall(r"'([^'\n]*)'", text) + re.findall(r"`([^`]*)`", text)
    return re.findall(r'"((?:[^"\\\n]|\\.)*)"', re.sub(r'"\s*\n\s*"', "", text))


def words(text):
    """Of a text, without numbers, holes and marks between."""
    return tuple(re.findall(r"[^\s,;:()=#]+", NUMBER.sub("#", text.replace("_", " "))))


def is_made_of(text, atoms):
    reached = [True] + [False] * len(text)
    for end in range(1, len(text) + 1):
        reached[end] = any(reached[start] and text[start:end] in atoms for start in range(end))
    return reached[-1]


russian = json.loads((root / "web/page/texts.ru.json").read_text(encoding="utf-8"), object_pairs_hook=entries)
page = (root / "web/page/index.html").read_text(encoding="utf-8")
scripts = "\n".join(path.read_text(encoding="utf-8") for path in (root / "web/page").glob("*.js"))
shown = re.findall(r'data-text="([^"]*)"', page)
for before in SHOWN:
    shown += re.findall(before.replace("QUOTED", r"'([^'\n]*)'"), scripts)
names = re.search(r"devices\{\{(.*?)\}\};.*?methods\{\s*\{(.*?)\}\};.*?components\{(.*?)\};", (root / "tools/names.h").read_text(), re.S)
of_devices = re.findall(r'\{"\w+",\s*"([^"]*)"', names[1])[:19]  # meters measure themselves
shown += of_devices + re.findall(r'\{"\w+", "([^"]*)"', names[2]) + [c.replace("_", " ") for c in re.findall(r'"([^"]*)"', names[3])]
faults = [f"no Russian: {text}" for text in dict.fromkeys(shown) if re.search("[a-z]{2}", text) and NUMBER.sub("#", text) not in russian and text not in russian]

atoms = {words(text) for text in shown}
for path in (path for pattern in SOURCES for path in root.glob(pattern)):
    for text in literals(path):
        for part in re.split(r"\$?\{[^{}]*\}|: |; |, ", text):
            atoms |= {words(part), words(NUMBER.sub("", part))}
            atoms |= {words(piece) for piece in NUMBER.split(part)}
faults += [f"in no source: {key}" for key in russian if not is_made_of(words(key), atoms)]
faults += [f"not in two languages: {key}" for key, text in russian.items() if not key or not text or key.count("#") != text.count("#")]
faults += [f"stands twice: {key}" for key in twice]
print("\n".join(faults) or f"{len(russian)} texts in two languages")
sys.exit(bool(faults))
