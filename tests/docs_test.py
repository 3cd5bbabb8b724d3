#!/usr/bin/env python3
"""The documents hold together: a Russian version NAME.ru.md has the code blocks of NAME.md byte for byte in the same order
and the same headings by number and level; the two name each other; relative links lead to files that exist, and to
headings that exist; a code block that names a file behind its language ("```c examples/x.c") stands so in that file.

Usage: docs_test.py PROJECT_DIRECTORY
"""
import re
import sys
from pathlib import Path

FENCE = re.compile(r" {0,3}(`{3,}|~{3,})")
HEADING = re.compile(r" {0,3}(#{1,6})\s+(.*?)\s*#*\s*$")
LINK = re.compile(r"\[(?:[^\[\]]|\[[^\]]*\])*\]\(\s*<?([^)>\s]+)>?[^)]*\)|^\s{0,3}\[[^\]]+\]:\s*<?(\S+?)>?\s*$")
ELSEWHERE = re.compile(r"[a-z][a-z0-9+.-]*:", re.IGNORECASE)


class Document:
    """Code blocks, headings and links of a Markdown file, each with its line number."""

    def __init__(self, path):
        self.path = path
        self.blocks, self.headings, self.links = [], [], []
        self.unclosed = None
        fence, block = None, []
        for number, line in enumerate(path.read_text(encoding="utf-8").split("\n"), 1):
            mark = FENCE.match(line)
            if fence:
                block.append(line)
                if mark and mark[1][0] == fence[0] and len(mark[1]) >= len(fence) and not line.strip(" `~"):
                    self.blocks.append((self.unclosed, "\n".join(block)))
                    fence, self.unclosed = None, None
            elif mark:
                fence, block, self.unclosed = mark[1], [line], number
            else:
                self.read_prose(number, line)

    def read_prose(self, number, line):
        heading = HEADING.match(line)
        if heading:
            self.headings.append((number, len(heading[1]), heading[2]))
        for link in LINK.finditer(re.sub(r"(`+).*?\1", "", line)):
            self.links.append((number, link[1] or link[2]))

    def anchors(self):
        """Names that a link may give behind '#', as hosting sites make them from the headings."""
        seen, names = {}, set()
        for _, _, text in self.headings:
            text = re.sub(r"\[([^\]]*)\]\([^)]*\)", r"\1", text)
            name = re.sub(r"[^\w\- ]", "", text.lower()).replace(" ", "-")
            names.add(f"{name}-{seen[name]}" if seen.get(name) else name)
            seen[name] = seen.get(name, 0) + 1
        return names


def first_difference(ours, theirs):
    """Number of the first entry that differs, counted from 0; None when the sequences agree."""
    for k, (one, other) in enumerate(zip(ours, theirs)):
        if one != other:
            return k
    return None if len(ours) == len(theirs) else min(len(ours), len(theirs))


def compare(original, translation):
    names = f"{original.path.name} and {translation.path.name}"
    for what, ours, theirs in (("code block", original.blocks, translation.blocks),
                               ("heading", original.headings, translation.headings)):
        k = first_difference([entry[1] for entry in ours], [entry[1] for entry in theirs])
        if k is None:
            continue
        place = [f"line {entries[k][0]}" if k < len(entries) else "missing" for entries in (ours, theirs)]
        yield f"{names}: {what} {k + 1} differs: {place[0]}, {place[1]}"
    for one, other in ((original, translation), (translation, original)):
        if other.path.name not in (target for _, target in one.links):
            yield f"{one.path.name}: no link to {other.path.name}"


def misquotations(document, root):
    for number, block in document.blocks:
        opening, _, body = block.partition("\n")
        words = opening.strip(" `~").split()
        if len(words) < 2:
            continue
        file = root / words[1]
        if not file.is_file():
            yield f"{document.path.name}:{number}: no such file: {words[1]}"
        elif "\n" + body.rpartition("\n")[0] + "\n" not in "\n" + file.read_text(encoding="utf-8"):
            yield f"{document.path.name}:{number}: not a part of {words[1]}"


def broken_links(document, documents):
    for number, target in document.links:
        if ELSEWHERE.match(target):
            continue
        file, _, anchor = target.partition("#")
        path = (document.path.parent / file).resolve() if file else document.path
        if not path.exists():
            yield f"{document.path.name}:{number}: no such file: {target}"
        elif anchor and path in documents and anchor not in documents[path].anchors():
            yield f"{document.path.name}:{number}: no such heading: {target}"


def main():
    root = Path(sys.argv[1]).resolve()
    paths = sorted([*root.glob("README*.md"), *root.glob("docs/*.md")])
    documents = {path: Document(path) for path in paths}
    faults = [f"{d.path.name}:{d.unclosed}: a code block without end" for d in documents.values() if d.unclosed]
    translations = [path for path in paths if path.name.endswith(".ru.md")]
    if not translations:
        faults.append("no Russian version of anything")
    for path in translations:
        original = path.with_name(path.name.removesuffix(".ru.md") + ".md")
        if original in documents:
            faults += compare(documents[original], documents[path])
        else:
            faults.append(f"{path.name}: nothing that it translates")
    for document in documents.values():
        faults += broken_links(document, documents)
        faults += misquotations(document, root)
    for fault in faults:
        print(fault)
    blocks = sum(len(documents[path].blocks) for path in translations)
    links = sum(len(document.links) for document in documents.values())
    print(f"{len(paths)} documents, {len(translations)} translations with {blocks} code blocks, {links} links:",
          f"{len(faults)} faults" if faults else "no faults")
    return 1 if faults else 0


if __name__ == "__main__":
    sys.exit(main())
