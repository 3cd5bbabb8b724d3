# SPDX-License-Identifier: MIT
"""Judges docs/api.md and docs/api/ against the headers and the export list, compiles their examples and that of kalorfix.3.

api_test.py SOURCE --cc CC --cxx CXX --cxxfilt CXXFILT [--run LIBRARY]: every declared function and variable stands in the
documents with its signature, nothing else does; every parameter is described; every function is in the index; examples
compile and, where they are run, print the numbers of the comments behind them.
"""
import argparse
import pathlib
import os
import re
import subprocess
import sys
import tempfile

HEADERS = ("kalorfix.h", "kalorfix_calculators.h", "kalorfix_gas.h", "kalorfix_runtime.h")
WARNINGS = "-Wall -Wextra -Wconversion -Wshadow -Wdouble-promotion -Wpedantic -Werror".split()
CLASS = re.compile(r"class KALORFIX_API (\w+)[^{;]*\{(.*?)^\};", re.S | re.M)
FENCE = re.compile(r"^```(c|cpp)\n(.*?)^```$", re.S | re.M)
PRINTED = re.compile(r"printf\([^;]*; *(?:/\*|//) ([\d., ]+)(?: \*/)?$", re.M)


def normal(text):
    """A declaration with single spaces, none around punctuation."""
    return re.sub(r" ?([^\w ]) ?", r"\1", " ".join(text.replace("KALORFIX_API", "").split()))


def name_of(declaration):
    return re.search(r"((?:\w+::)?~?\w+)\(", declaration)[1]


def read_headers(include):
    """Functions as declaration -> header, members with their class; variables as declaration -> shape of a table."""
    functions, variables = {}, {}
    for header in HEADERS:
        text = (include / header).read_text(encoding="utf-8")
        extern = r"^KALORFIX_API extern\s+([^;(]+);[ \t]*(?:/\* ((?:\[\d+\])+))?"
        for declaration, shape in re.findall(extern, text, re.M):
            variables[" ".join(declaration.split())] = shape if "*" in declaration else ""
        text = re.sub(r"//[^\n]*|/\*.*?\*/", "", text, flags=re.S)
        for scope, body in CLASS.findall(text):
            for member in re.sub(r"\b(public|private):", "", body).split(";"):
                if "(" in member and "delete" not in member:
                    functions[normal(re.sub(r"(~?\w+\()", rf"{scope}::\1", member, count=1))] = header
        for function in re.findall(r"KALORFIX_API\s+(?!extern)([^;{}]*\([^;{}]*\))\s*;", CLASS.sub("", text)):
            functions[normal(function)] = header
    return functions, variables


def parameters(declaration):
    arguments = re.search(r"\((.*)\)", declaration)[1]
    names = [re.search(r"[ *&](\w+)$", a) for a in arguments.split(",") if a not in ("", "void", "unsigned long")]
    return [name[1] for name in names]


def described(section):
    """What the items of the part Arguments begin with; `x0`..`x2` are three."""
    names = set()
    for item in re.findall(r"^\* (`[^:]*`)[^`:]*:", arguments_part(section), re.M):
        names.update(re.findall(r"`(\w+)`", item))
        for stem, first, last in re.findall(r"`([a-z]+)(\d+)`\.\.`\1(\d+)`", item):
            names.update(f"{stem}{k}" for k in range(int(first), int(last)))
    return names


def arguments_part(section):
    part = re.search(r"^\*\*Arguments\b.*?(?=\n\n\*\*|\Z)", section, re.S | re.M)
    return part[0] if part else ""


def compile_examples(examples, include, compilers):
    """One translation unit for each language and set of headers; a fault is told with the line of its document."""
    for (language, headers), members in sorted(examples.items()):
        source = [f'#include "{h}"' for h in headers] + ["#include <stdio.h>" if language == "c" else "#include <cstdio>"]
        for number, (document, line, text) in enumerate(members):
            source += [f"void example_{number}(void);", f"void example_{number}(void) {{",
                       f'#line {line} "{document}"', text, "}"]
        for kind, standard in (("c", "-std=c99"), ("c++", "-std=c++20")):
            if kind != "c" or language == "c":
                command = [compilers[kind], standard, *WARNINGS, "-fsyntax-only", f"-I{include}", "-x", kind, "-"]
                ran = subprocess.run(command, input="\n".join(source) + "\n", capture_output=True, text=True)
                if ran.returncode != 0:
                    yield f"examples with {', '.join(headers)} are no {standard[5:]}:\n{ran.stderr}"


def run_examples(members, options):
    """In their order in one program, between Init and the end; the numbers told behind a printf are what it prints."""
    source = [f'#include "{header}"' for header in HEADERS] + ["#include <cstdio>"]
    source += [f"static void example_{number}() {{ {text} }}" for number, (_, _, text) in enumerate(members)]
    calls = " ".join(f"example_{number}();" for number in range(len(members)))
    source.append(f"int main() {{ Init(); {calls.replace('();', '(); Init();', 1)} }}")
    with tempfile.TemporaryDirectory() as place:
        library, program = options.run, f"{place}/examples"
        command = [options.cxx, "-std=c++20", f"-I{options.source / 'include'}", "-x", "c++", "-", "-x", "none", library,
                   f"-Wl,-rpath,{library.parent}", "-o", program]
        subprocess.run(command, input="\n".join(source) + "\n", text=True, check=True)
        printed = subprocess.run([program], env={**os.environ, "SYSTEM": str(library.parent)}, capture_output=True, check=True)
    tokens = iter(re.findall(r"\d+\.?\d*", printed.stdout.decode(errors="replace")))
    for document, line, text in members:
        for number in re.findall(r"[\d.]+", " ".join(PRINTED.findall(text))):
            if not any(token.startswith(number) for token in tokens):
                yield f"{document}, example in line {line}: {number} is not printed"
                return


def judge(options, functions, variables):
    pages = [options.source / "docs/api.md", *sorted((options.source / "docs/api").glob("*.md"))]
    text = "\n".join(page.read_text(encoding="utf-8") for page in pages)
    sections = dict(re.findall(r"^##* (.*?)\n(.*?)(?=^##* |\Z)", text, re.S | re.M))
    by_anchor = {re.sub(r"[^\w\- ]", "", t.lower()).replace(" ", "-"): body for t, body in sections.items()}
    common = set(re.findall(r"`(\w+)`", sections["Conventions"]))
    found = {}
    for title, body in sections.items():
        synopsis = re.search(r"^\*\*Synopsis\*\*\n```\w+\n(.*?)^```", body, re.S | re.M)
        found.update({normal(d): title for d in (synopsis[1] if synopsis else "").split(";") if d.strip()})
    yield from (f"no synopsis has: {d}" for d in functions if d not in found)
    yield from (f"{title}: declared nowhere: {d}" for d, title in found.items() if d not in functions)
    for declaration, title in found.items():
        links = re.findall(r"\]\([^)#]*#([^)]+)\)", arguments_part(sections[title]))
        known = common.union(described(sections[title]), *(described(by_anchor.get(link, "")) for link in links))
        for name in parameters(declaration):
            if name not in known and not ("::" in declaration and re.sub(r"_(in|out)$", "", name) in known):
                yield f"{title}: {name} of {name_of(declaration)} is not described"
        if name_of(declaration).split("::")[-1] not in re.findall(r"~?\w+", sections["Index"]):
            yield f"{name_of(declaration)} is not in the index"

    rows = dict(re.findall(r"^\| `([^`]* \w+(?:\[\d+\])*)` \| ([^|]*) \|", text, re.M))
    yield from (f"no row for: {d} {shape}" for d, shape in variables.items()
                if d not in rows or shape and rows[d] != shape)
    yield from (f"exported nowhere: {d}" for d in rows if d not in variables)
    listing = (options.source / "frame/exports.list").read_text()
    answer = subprocess.run([options.cxxfilt], input=listing, capture_output=True, text=True, check=True)
    declared = {name_of(d) for d in functions} | {re.search(r"(\w+)(\[\d+\])*$", d)[1] for d in variables}
    for symbol in answer.stdout.split("\n"):
        special = re.match(r"#|$|(vtable|typeinfo|typeinfo name) for \w+$", symbol)
        if not special and symbol.split("(")[0] not in declared:
            yield f"exported, but declared nowhere: {symbol}"

    examples, used = {}, set()
    for page in pages:
        text = page.read_text(encoding="utf-8")
        for block in FENCE.finditer(text):
            words = set(re.findall(r"\w+", block[2]))
            if text[:block.start()].endswith("**Synopsis**\n"):
                continue
            used.update(words)
            headers = {h for d, h in functions.items() if name_of(d).split("::")[0] in words}
            place = (f"docs/{page.relative_to(options.source / 'docs')}", text[:block.start()].count("\n") + 2, block[2])
            examples.setdefault((block[1], tuple(sorted(headers))), []).append(place)
    if options.run:
        channels = [place for members in examples.values() for place in members]
        yield from run_examples(sorted(channels, key=lambda place: ("channels" not in place[0], *place[:2])), options)
    plain = [name_of(d) for d, header in functions.items() if header == HEADERS[0]]
    yield from (f"no example calls {name}" for name in plain if name not in used)
    manual = (options.source / "docs/man/kalorfix.3").read_text()
    before, _, example = manual.partition(".SH EXAMPLES\n")[2].partition(".EX\n")
    line = manual[:manual.index(".SH EXAMPLES\n")].count("\n") + before.count("\n") + 3
    example = example.partition(".EE\n")[0].replace("\\-", "-").replace("\\e", "\\")
    examples["c", HEADERS[:1]].append(("docs/man/kalorfix.3", line, example))
    yield from compile_examples(examples, options.source / "include", {"c": options.cc, "c++": options.cxx})


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("source", type=pathlib.Path)
    for name in ("--cc", "--cxx", "--cxxfilt"):
        parser.add_argument(name, required=True)
    parser.add_argument("--run", type=pathlib.Path, metavar="LIBRARY")
    options = parser.parse_args()
    functions, variables = read_headers(options.source / "include")
    faults = list(judge(options, functions, variables))
    print("\n".join(faults) or f"{len(functions)} functions and {len(variables)} variables, the examples compile")
    return 1 if faults else 0


sys.exit(main())
