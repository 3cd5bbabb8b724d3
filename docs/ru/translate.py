#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes the Russian documents from the English ones and a catalogue each: docs/ru/NAME.po, edited by hand.

Usage: translate.py           brings the catalogues up to date (changed texts become fuzzy) and writes the documents
       translate.py --check   says what is missing: a text, a number or a name in backticks, or this step itself

A text is a heading, a paragraph, an item of a list or a row of a table; code blocks stay as they are. po4a is not used:
it joins the rows of a table into one paragraph, wraps at 76 columns, and wants code blocks copied into the catalogue.
Exit status 77 without gettext.
"""
import gettext
import io
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
# Catalogue: English document, Russian document. Of the deviations only the numbers, which the report shows.
DOCUMENTS = {
    "readme": ("README.md", "README.ru.md"),
    "first_channel": ("docs/first_channel.md", "docs/first_channel.ru.md"),
    "integration": ("docs/integration.md", "docs/integration.ru.md"),
    "deviations": ("docs/deviations.md", "docs/ru/deviations.md"),
    "not_verified": ("docs/not_verified.md", "docs/ru/not_verified.md"),
}
FIRST_CHAPTER_ONLY = {"deviations"}
COLUMNS = 100
HEADER = 'msgid ""\nmsgstr ""\n"Language: ru\\n"\n"MIME-Version: 1.0\\n"\n"Content-Type: text/plain; charset=UTF-8\\n"\n' \
         '"Content-Transfer-Encoding: 8bit\\n"\n'

CODE = re.compile(r"(`+)(?!`).*?[^`]\1(?!`)")
ITEM = re.compile(r"( *)([*-]|\d+\.) +(?=\S)")
ROW = re.compile(r" *\|")
RULE = re.compile(r" *\|[-:| ]+\|$")


def blocks(text):
    """(kind, first indent, further indent, text): what is raw has its line break, what is to be translated is one line."""
    lines = text.splitlines()
    k = 0
    while k < len(lines):
        line = lines[k]
        k += 1
        if re.match(r" *```", line):
            end = next(e for e in range(k, len(lines)) if lines[e].strip() == "```") + 1
            yield "raw", "", "", "\n".join(lines[k - 1:end])
            k = end
        elif not line.strip() or RULE.match(line):
            yield "raw", "", "", line
        elif ROW.match(line):
            yield "row", line[:line.index("|")], "", line.strip()
        elif heading := re.match(r"#+ ", line):
            yield "heading", heading[0], "", line[heading.end():]
        else:
            first = ITEM.match(line) or re.match(" *", line)
            parts = [line[first.end():]]
            while k < len(lines) and lines[k].strip() and not re.match(r"#+ | *```", lines[k]) \
                    and not ITEM.match(lines[k]) and not ROW.match(lines[k]):
                parts.append(lines[k].strip())
                k += 1
            yield "text", first[0], " " * first.end(), " ".join(parts)


def source(name):
    """The English text that is translated."""
    text = (ROOT / DOCUMENTS[name][0]).read_text(encoding="utf-8")
    if name not in FIRST_CHAPTER_ONLY:
        return text
    chapters = re.split(r"\n(?=## )", text)
    return "\n".join(chapters[:2]).rstrip() + "\n"


def has_words(text):
    return re.search(r"[A-Za-zА-я]{2}", re.sub(r"\]\([^)]*\)", "", CODE.sub("", text))) is not None


def texts(document):
    return list(dict.fromkeys(text for kind, _, _, text in blocks(document) if kind != "raw" and has_words(text)))


def wrapped(first, further, text):
    """Within the columns; no break inside code, none that would begin a line with the mark of an item."""
    glued = CODE.sub(lambda code: code[0].replace(" ", "\0"), text)
    glued = re.sub(r" (?=([*+#>|-]|\d+\.)( |$))|(?<=\d) (?=[°%])", "\0", glued)
    lines = [first]
    for word in glued.split(" "):
        if len(lines[-1]) + 1 + len(word) > COLUMNS and lines[-1].strip() and lines[-1] != first:
            lines.append(further)
        lines[-1] += word if lines[-1] in (first, further) else " " + word
    return "\n".join(lines).replace("\0", " ")


def translated(document, catalogue):
    made = []
    for kind, first, further, text in blocks(document):
        text = catalogue.get(text, text) if kind != "raw" else text
        made.append(wrapped(first, further, text) if kind == "text" else first + text)
    return "\n".join(made) + "\n"


def quoted(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'


def template(document):
    return HEADER + "".join(f"\nmsgid {quoted(text)}\nmsgstr \"\"\n" for text in texts(document))


def load(path):
    """What is translated and not fuzzy."""
    binary = subprocess.run(["msgfmt", "-o", "-", path], check=True, stdout=subprocess.PIPE).stdout
    return {english: russian for english, russian in gettext.GNUTranslations(io.BytesIO(binary))._catalog.items() if english}


def invariants(text):
    """What a translation keeps: code and numbers."""
    return sorted(code[0] for code in CODE.finditer(text)), sorted(re.findall(r"\d+", re.sub(r"\]\([^)]*\)", "", CODE.sub("", text))))


def faults(name):
    document, russian = source(name), ROOT / DOCUMENTS[name][1]
    catalogue = load(ROOT / f"docs/ru/{name}.po")
    wanted = texts(document)
    for text in wanted:
        if text not in catalogue:
            yield f"no translation: {text}"
        elif invariants(text) != invariants(catalogue[text]):
            yield f"not the same code and numbers: {catalogue[text]}"
    if set(catalogue) - set(wanted) or russian.read_text(encoding="utf-8") != translated(document, catalogue):
        yield f"{russian.name} or its catalogue is not up to date: run docs/ru/translate.py"


def update(name):
    document, russian = source(name), ROOT / DOCUMENTS[name][1]
    path = ROOT / f"docs/ru/{name}.po"
    if not path.exists():
        path.write_text(HEADER, encoding="utf-8")
    with tempfile.NamedTemporaryFile("w", suffix=".pot", encoding="utf-8") as fresh:
        fresh.write(template(document))
        fresh.flush()
        subprocess.run(["msgmerge", "--quiet", "--update", "--backup=none", f"--width={COLUMNS}", path, fresh.name], check=True)
        subprocess.run(["msgattrib", "--no-obsolete", f"--width={COLUMNS}", "-o", path, path], check=True)
    russian.write_text(translated(document, load(path)), encoding="utf-8")


if __name__ == "__main__":
    if not shutil.which("msgmerge"):
        print("gettext is not installed: the Russian documents are not compared")
        sys.exit(77)
    check = sys.argv[1:] == ["--check"]
    found = []
    for one in DOCUMENTS:
        if not check:
            update(one)
        found += [f"{one}: {fault}" for fault in faults(one)]
    print("\n".join(found) or f"{len(DOCUMENTS)} documents: no faults")
    sys.exit(bool(found))
