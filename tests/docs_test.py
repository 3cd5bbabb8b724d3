#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The documents hold together: a Russian version NAME.ru.md has the code blocks of NAME.md byte for byte in the same order
and headings of the same levels; the two name each other; relative links lead to files and headings that exist; a code
block that names a file in a folder behind its language ("```c examples/x.c") stands so in that file. No line is longer than
100 columns, but for tables, quoted files and the Russian documents; README.md has at most 220 lines; docs/index.md names all.

Usage: docs_test.py PROJECT_DIRECTORY
"""
import re
import sys
from pathlib import Path

BLOCK = re.compile(r"^```(.*)\n((?:.*\n)*?)```$", re.M)
HEADING = re.compile(r"^(#{1,6}) (.*)$", re.M)
LINK = re.compile(r"\[(?:[^\[\]]|\[[^\]]*\])*\]\(([^)\s]+)\)")


class Document:
    def __init__(self, path):
        self.path = path
        text = path.read_text(encoding="utf-8")
        self.blocks = BLOCK.findall(text)
        self.lines = [line for line in text.splitlines() if not line.lstrip().startswith("|")]
        self.quoted = {line for opening, body in self.blocks if "/" in opening for line in body.splitlines()}
        prose = BLOCK.sub("", text)
        self.unclosed = "\n```" in prose
        self.headings = HEADING.findall(prose)
        self.links = LINK.findall(re.sub(r"(`+)[^`]*\1", "", prose))

    def anchors(self):
        """Names that a link may give behind '#', as hosting sites make them from the headings."""
        return {re.sub(r"[^\w\- ]", "", title.lower()).replace(" ", "-") for _, title in self.headings}


def faults_of(document, documents, root):
    if document.unclosed:
        yield "a code block without end"
    for target in document.links:
        file, _, anchor = target.partition("#")
        path = (document.path.parent / file).resolve() if file else document.path
        if re.match(r"[a-z]+:", target):
            continue
        if not path.exists():
            yield f"no such file: {target}"
        elif anchor and path in documents and anchor not in documents[path].anchors():
            yield f"no such heading: {target}"
    for opening, body in document.blocks:
        name = [word for word in opening.split()[1:] if "/" in word]
        if name and "\n" + body not in "\n" + (root / name[0]).read_text(encoding="utf-8"):
            yield f"not a part of {name[0]}: {body.splitlines()[0]}"
    russian = document.path.name.endswith(".ru.md")
    yield from (f"too long: {line}" for line in document.lines if len(line) > 100 and line not in document.quoted and not russian)
    if russian:
        original = documents[document.path.with_name(document.path.name.removesuffix(".ru.md") + ".md")]
        for what, ours, theirs in (("code block", document.blocks, original.blocks),
                                   ("heading", [h[0] for h in document.headings], [h[0] for h in original.headings])):
            same = [a == b for a, b in zip(ours, theirs)] + ([] if len(ours) == len(theirs) else [False])
            if not all(same):
                yield f"{what} {same.index(False) + 1} is not that of {original.path.name}"
        if document.path.name not in original.links or original.path.name not in document.links:
            yield f"{original.path.name} and this do not name each other"


root = Path(sys.argv[1]).resolve()
documents = {path: Document(path) for path in [*root.glob("README*.md"), *root.glob("docs/*.md"), *root.glob("docs/api/*.md"),
                                          root / "CONTRIBUTING.md"]}
found = [f"{d.path.name}: {fault}" for d in documents.values() for fault in faults_of(d, documents, root)]
indexed = {(root / "docs" / link).resolve() for link in documents[root / "docs/index.md"].links}
found += [f"docs/index.md does not name {path.name}" for path in documents
          if not path.name.endswith(".ru.md") and path.name != "index.md" and path not in indexed]
found += ["README.md has more than 220 lines"] * (len(documents[root / "README.md"].path.read_text().splitlines()) > 220)
print("\n".join(found) or f"{len(documents)} documents: no faults")
sys.exit(bool(found) or not any(path.name.endswith(".ru.md") for path in documents))
