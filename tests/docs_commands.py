#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""What the documents quote is what the commands give. A block of README.md, CONTRIBUTING.md and docs/ is one of these:

* "$ command" lines with what each prints: run on a terminal of 100 columns in the order of the document, in a directory that
  looks like a source tree that is built; "..." stands for any lines, a command without output has to end with status 0;
* a block that names a file ("```c examples/x.c"): quoted from it, which docs_test.py holds; a name without a folder ("```ini
  mine.ini") is a file of the reader's and is written;
* an example of kalorfix.1: every line ends with status 0;
* a row of tables/docs_blocks.txt, which says what is done with it, and why;
* an example of the interface, which api_test.py compiles. Russian versions have the blocks of the English ones (docs_test.py).

Usage: docs_commands.py SOURCE BUILD [--show]: with --show what came out where it is another thing
"""
import fcntl
import itertools
import os
import pathlib
import pty
import re
import struct
import subprocess
import sys
import tempfile
import termios

BLOCK = re.compile(r"^```(.*)\n((?:.*\n)*?)```$", re.M)
COMMAND = re.compile(r"^\$ (.*(?:(?<=\\)\n.*)*)\n((?:(?!\$ ).*\n)*)", re.M)
END = re.compile("\036(\\d+)\n")


def source_tree(source, build, place):
    """Folders of links to the source and, under every name that the documents use, to the build; a cmake that finds all made."""
    folders = [entry for entry in source.iterdir() if entry.is_dir() and entry.name not in (".git", "build")]
    for folder, name in [(source, "."), (build, "build"), *((folder, folder.name) for folder in folders)]:
        (place / name).mkdir(exist_ok=True)
        for entry in folder.iterdir():
            if folder != source or entry.is_file():
                (place / name / entry.name).symlink_to(entry)
    for name in ("release", "demo"):
        (place / "build" / name).symlink_to(build)
    (place / "stand-ins").mkdir()
    (place / "stand-ins/cmake").write_text("#!/bin/sh\n")
    (place / "stand-ins/cmake").chmod(0o755)


def on_a_terminal(commands, place, build):
    """What each command printed, and its status."""
    script = "".join(f"{command}\nprintf '\\036%d\\n' $?\n" for command in commands)
    path = f"{place}/stand-ins:{build}:{os.environ['PATH']}"
    environment = {**os.environ, "PATH": path, "KALORFIX_LIBRARY": str(build / "kalorfix.so"), "LC_ALL": "C.UTF-8"}
    ours, theirs = pty.openpty()
    fcntl.ioctl(theirs, termios.TIOCSWINSZ, struct.pack("HHHH", 40, 100, 0, 0))
    ran = subprocess.Popen(["bash", "-c", script], cwd=place, env=environment, stdin=subprocess.DEVNULL, stdout=theirs,
                           stderr=theirs)
    os.close(theirs)
    printed = b""
    try:
        while part := os.read(ours, 65536):
            printed += part
    except OSError:  # the last one closed it
        pass
    ran.wait()
    text = printed.decode(errors="replace").replace("\r", "")
    text = re.sub(r"^bash: line \d+: +\d+ (Killed|Terminated) .*$", r"\1", text, flags=re.M)
    parts = END.split(text)
    return list(zip(parts[0::2], map(int, parts[1::2])))


def same(wanted, printed, digits_differ, only_these):
    """Lines without blanks behind them; wanted may leave lines out."""
    wanted, printed = ([line.rstrip() for line in text.rstrip().split("\n")] for text in (wanted, printed))
    if digits_differ:
        wanted, printed = ([re.sub(r"\d+(\.\d+)?", "#", line) for line in lines] for lines in (wanted, printed))
        wanted, printed = ([line for line, _ in itertools.groupby(lines)] for lines in (wanted, printed))
    any_lines, pattern = r"(?:.*\n)*?", ""
    for line in wanted:
        pattern += any_lines if line.strip() == "..." else (any_lines if only_these else "") + re.escape(line) + "\n"
    return re.fullmatch(pattern + (any_lines if only_these else ""), "\n".join(printed) + "\n") is not None


def judge(document, rows, source, build):
    with tempfile.TemporaryDirectory() as directory:
        place = pathlib.Path(directory).resolve()
        source_tree(source, build, place)
        runs = []  # command, what it prints, whether digits may differ, whether lines may be left out
        text = (source / document).read_text(encoding="utf-8")
        manual = [("", body.replace("\\-", "-").replace("\\e\n", " ")) for body in re.findall(r"^\.EX\n(.*?)^\.EE$", text, re.S | re.M)]
        for opening, body in manual or BLOCK.findall(text):
            words, row = opening.split(), next((r for r in rows if r[0] == document and body.lstrip().startswith(r[1])), None)
            if row:
                row[-1] = "used"
            what = row[2] if row else ""
            if len(words) > 1:
                if "/" not in words[1]:
                    (place / words[1]).write_text(body)
            elif what == "skip" or (not row and words and document.startswith("docs/api")):
                pass
            elif what == "compile":
                program = f"#define _GNU_SOURCE\n#include <dlfcn.h>\n#include <stdio.h>\nint main(void) {{ {body} return !handle; }}\n"
                command = f"cc -std=c99 -Wall -Wextra -Werror -fsyntax-only -x c - <<'END'\n{program}END"
                runs.append((command, "", False, False))
            elif manual and not what:
                runs += [(line, "", False, False) for line in body.splitlines()]
            elif what == "commands":
                runs.append((body.rstrip(), "", False, False))
            elif what == "output":
                runs[-1] = (runs[-1][0], body, True, True)
            elif body.startswith("$ "):
                runs += [(c, printed.rstrip(), what == "digits", False) for c, printed in COMMAND.findall(body)]
            else:
                yield f"nothing holds this block: {body.splitlines()[0]}"
        got = on_a_terminal([run[0] for run in runs], place, build) if runs else []
        if len(got) != len(runs):
            yield f"ended at: {runs[len(got)][0]}"
        for (command, wanted, digits_differ, only_these), (printed, status) in zip(runs, got):
            if status != 0 if not wanted else not same(wanted, printed, digits_differ, only_these):
                yield f"{command}\n" + (printed if "--show" in sys.argv else f"gives status {status} or prints another thing")


source, build = (pathlib.Path(name).resolve() for name in sys.argv[1:3])
table = (source / "tests/tables/docs_blocks.txt").read_text(encoding="utf-8")
rows = [[*re.split(r"\s+@\s+", line), "unused"] for line in table.splitlines() if line and not line.startswith("#")]
documents = ["README.md", "CONTRIBUTING.md", "docs/man/kalorfix.1.in", *sorted(str(p.relative_to(source)) for p in source.glob("docs/**/*.md"))]
found = [f"{name}: {fault}" for name in documents if not (name.endswith(".ru.md") or name.startswith("docs/ru/"))
         for fault in judge(name, rows, source, build)]
found += [f"tables/docs_blocks.txt: no such block: {row[0]} {row[1]}" for row in rows if row[-1] == "unused"]
print("\n".join(found) or f"{len(documents)} documents: every block is held")
sys.exit(bool(found))
