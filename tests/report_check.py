# SPDX-License-Identifier: MIT
"""Judges what the tool writes: report_check.py html FILE | russian FILE | svg FILE | csv FILE CASES | rows FILE COLUMN VALUE COUNT.

html: tags nest, ids are there for every link, nothing comes from outside. svg: well-formed, no coordinate is nan.
russian: no two English words in a row, no English verdict. csv: every case of every case file occurs with its line; expected, computed, permitted, declared and verdict agree.
"""
import csv
import math
import pathlib
import re
import sys
from html.parser import HTMLParser
from xml.etree import ElementTree

VOID = {"meta", "br", "hr", "img", "link", "input"}


class Nesting(HTMLParser):
    def __init__(self):
        super().__init__()
        self.open, self.ids, self.links = [], set(), set()

    def handle_starttag(self, tag, attrs):
        for name, value in attrs:
            if name == "id":
                assert value not in self.ids, f"id {value} stands twice"
                self.ids.add(value)
            if name in ("href", "src"):
                assert value.startswith("#"), f"{value} lies outside"
                self.links.add(value[1:])
            assert name in ("title", "aria-label") or "nan" not in value, f"nan in {tag} {name}={value[:60]}"
        if tag not in VOID:
            self.open.append(tag)

    def handle_startendtag(self, tag, attrs):
        self.handle_starttag(tag, attrs)
        if tag not in VOID:
            self.open.pop()

    def handle_endtag(self, tag):
        assert self.open and self.open[-1] == tag, f"</{tag}> closes {self.open[-1:]} at {self.getpos()}"
        self.open.pop()


def html(path):
    text = pathlib.Path(path).read_text(encoding="utf-8")
    page = Nesting()
    page.feed(text)
    page.close()
    assert not page.open, f"left open: {page.open}"
    assert page.links <= page.ids, f"links to nowhere: {page.links - page.ids}"
    assert "url(" not in text and "@import" not in text, "the style takes something from outside"
    for drawing in re.findall(r"<svg.*?</svg>", text, re.S):
        ElementTree.fromstring(drawing)


class Words(HTMLParser):
    """The texts of a page; neither code nor names of entries."""

    def __init__(self):
        super().__init__()
        self.open, self.text = [], []

    def handle_starttag(self, tag, attrs):
        assert ("lang", "en") not in attrs or tag == "html", f"in English at {self.getpos()}"
        if tag not in VOID:
            self.open.append(tag)

    def handle_endtag(self, tag):
        self.open.pop()

    def handle_data(self, data):
        if not {"code", "strong", "style"} & set(self.open):
            self.text.append(("verdict " if self.open[-1:] == ["b"] else "") + data)


def russian(path):
    page = Words()
    page.feed(pathlib.Path(path).read_text(encoding="utf-8"))
    for text in page.text:
        plain = re.sub("kalorfix (verify|protocol)|Formulation 1985 for the Viscosity", "", text)
        assert not re.search(r"\b[a-z]{3,} [a-z]{3,}\b", plain), f"not in Russian: {text}"


def svg(path):
    root = ElementTree.parse(path).getroot()
    assert root.tag == "{http://www.w3.org/2000/svg}svg", root.tag
    curves = [e for e in root.iter("{http://www.w3.org/2000/svg}path")]
    assert curves and any("L" in c.get("d") for c in curves), "no curve"
    assert "nan" not in pathlib.Path(path).read_text(), "nan"


def cases(directory):
    for path in sorted(pathlib.Path(directory).glob("*.txt")):
        for number, line in enumerate(path.read_text().splitlines(), 1):
            words = line.split("#")[0].split()
            if words and not words[0].startswith("[") and not words[0].endswith(":"):
                yield path.name, number, words[0]


def verdict(row):
    expected = row["expected"]
    computed, permitted, declared = (float(row[name]) for name in ("computed", "permitted", "declared"))
    try:
        wanted = float(expected)
    except ValueError:
        return None  # a word
    if math.isnan(wanted):
        return "met" if math.isnan(computed) else "FAILED"
    if math.isinf(wanted):
        return "met" if computed == wanted else "FAILED"
    if abs(computed - wanted) <= permitted:
        return "met"
    return "differs as declared" if row["reason"] and abs(computed - wanted) <= declared else "FAILED"


def table(path, directory):
    with open(path, newline="") as lines:
        rows = list(csv.DictReader(lines))
    found = {(r["file"], int(r["line"]), r["case"]) for r in rows}
    every = set(cases(directory))
    assert every and found == every, f"missing {sorted(every - found)[:3]}, surplus {sorted(found - every)[:3]}"
    for r in rows:
        judged = verdict(r)
        assert r["verdict"] in ("met", "differs as declared", "FAILED") and r["source"], r
        assert judged in (None, r["verdict"]), r


def count(path, column, value, wanted):
    with open(path, newline="") as lines:
        got = sum(r[column] == value for r in csv.DictReader(lines))
    assert got == int(wanted), f"{got} rows with {column} {value}"


{"html": html, "russian": russian, "svg": svg, "csv": table, "rows": count}[sys.argv[1]](*sys.argv[2:])
