#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The two halves of ./site: the pages as mkdocs reads them, and a look at every link of what it made.

site.py stage SOURCE PAGES: README, CHANGELOG, CONTRIBUTING and docs, in Python's dialect of Markdown, with the files they link to.
site.py check SITE: every link, anchor and image leads to something in the site; nothing is loaded from elsewhere.
"""
import html.parser
import pathlib
import re
import shutil
import sys
import urllib.parse

LINK = re.compile(r"\]\(([^)\s#]+)")


def in_dialect(text):
    """A language alone behind a fence; a blank line before a list or a table that follows a paragraph."""
    out, code, in_list, before = [], False, False, ""
    for line in text.splitlines():
        if line.startswith("```"):
            line, code = ("```", False) if code else ("```" + line[3:].split(" ")[0], True)
        elif not code:
            opens = line.startswith(("* ", "|")) and before and not before.startswith((line[0], " ", "#"))
            if opens and not (line[0] == "*" and in_list):
                out.append("")
            in_list = line.startswith("* ") or (in_list and "" not in (line, before))
        out.append(line)
        before, in_list = line, in_list and not code
    return "\n".join(out) + "\n"


def stage(source, pages):
    shutil.rmtree(pages, ignore_errors=True)
    wanted = [source / name for name in ("README.md", "README.ru.md", "CHANGELOG.md", "CONTRIBUTING.md")]
    wanted += sorted((source / "docs").rglob("*.md")) + sorted((source / "docs/images").iterdir())
    for file in wanted:
        target = pages / file.relative_to(source)
        target.parent.mkdir(parents=True, exist_ok=True)
        if file.suffix != ".md":
            shutil.copy(file, target)
            continue
        text = file.read_text(encoding="utf-8")
        target.write_text(in_dialect(text), encoding="utf-8")
        for link in LINK.findall(text):
            linked = (file.parent / link).resolve()
            if linked.is_file() and linked.is_relative_to(source) and linked not in wanted:
                wanted.append(linked)  # a source file, or a document beside its subject


class Page(html.parser.HTMLParser):
    def __init__(self, text):
        super().__init__()
        self.ids, self.links, self.loads = set(), [], []
        self.feed(text)

    def handle_starttag(self, tag, attributes):
        values = dict(attributes)
        self.ids.update(values[name] for name in ("id", "name") if values.get(name))
        if tag == "a" and values.get("href"):
            self.links.append(values["href"])
        elif tag == "link" and "canonical" not in values.get("rel", "") and values.get("href"):
            self.loads.append(values["href"])
        elif tag in ("script", "img", "iframe", "source", "object") and (values.get("src") or values.get("data")):
            self.loads.append(values.get("src") or values.get("data"))


def faults(site):
    pages = {path: Page(path.read_text(encoding="utf-8")) for path in site.rglob("*.html")}
    for path, page in pages.items():
        for link in [*page.links, *page.loads]:
            parts = urllib.parse.urlsplit(link)
            if parts.scheme in ("http", "https", "") and parts.netloc:
                if link in page.loads:
                    yield f"{path.relative_to(site)} loads {link}"
            elif parts.scheme == "":
                way = urllib.parse.unquote(parts.path)
                place = path if not way else site / way[1:] if way[0] == "/" else (path.parent / way).resolve()
                anchor = urllib.parse.unquote(parts.fragment)
                if not place.is_file() or not place.is_relative_to(site):
                    yield f"{path.relative_to(site)}: nothing at {link}"
                elif anchor and place in pages and anchor not in pages[place].ids | {"__top", "__skip"}:
                    yield f"{path.relative_to(site)}: no such heading: {link}"
    for path in site.rglob("*.css"):
        for url in re.findall(r"(?:@import|url\()\s*[\"']?(https?://[^\"')]+)", path.read_text(encoding="utf-8")):
            yield f"{path.relative_to(site)} loads {url}"
    print(f"{len(pages)} pages, {sum(len(page.links) + len(page.loads) for page in pages.values())} links")


def main():
    what, *places = sys.argv[1], *(pathlib.Path(name).resolve() for name in sys.argv[2:])
    if what == "stage":
        stage(*places)
        return 0
    found = sorted(set(faults(*places)))
    print("\n".join(found))
    return 1 if found else 0


sys.exit(main())
