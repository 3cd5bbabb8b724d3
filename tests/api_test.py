"""Judges docs/api.md against the export list and the headers, and compiles its examples and that of kalorfix.3.

api_test.py SOURCE --cc CC --cxx CXX --cxxfilt CXXFILT: every exported function has its section and every exported
variable its row, nothing else has; every section has its six parts; synopses are declarations of the headers; the
examples compile.
"""
import argparse
import collections
import pathlib
import re
import subprocess
import sys

HEADERS = ("kalorfix.h", "kalorfix_calculators.h", "kalorfix_gas.h", "kalorfix_runtime.h")
DOCUMENT = "docs/api.md"
MANUAL = "docs/man/kalorfix.3"
PARTS = ["Synopsis", "Description", "Parameters", "Returns", "On failure", "Example"]
WARNINGS = "-Wall -Wextra -Wconversion -Wshadow -Wdouble-promotion -Wpedantic -Werror".split()
DIRECTIONS = ("in", "out", "in/out")

Declaration = collections.namedtuple("Declaration", "header scope text")
Section = collections.namedtuple("Section", "title line parts")
Part = collections.namedtuple("Part", "name line lines")

faults = []


def fault(line, text):
    faults.append(f"{DOCUMENT}:{line}: {text}" if line else text)


def normal(text):
    """A declaration with single spaces, none around punctuation."""
    return re.sub(r" ?([^\w ]) ?", r"\1", " ".join(text.replace("KALORFIX_API", "").split()))


# ---- Headers and exports ---------------------------------------------------------------------------------------------

def without_comments(text):
    return re.sub(r"//[^\n]*", "", re.sub(r"/\*.*?\*/", "", text, flags=re.S))


def declarations(include):
    """Functions of the headers, with the class they are members of; variables as name -> (type, shape)."""
    functions, variables = [], {}
    for header in HEADERS:
        whole = (include / header).read_text()
        for m in re.finditer(r"^KALORFIX_API extern\s+([^;(]+);[ \t]*(?:/\* ((?:\[\d+\])+))?", whole, re.M):
            type_name, name, shape = re.fullmatch(r"(.*?[\w*])\s*\b(\w+)((?:\[\d+\])*)", m[1].strip(), re.S).groups()
            variables[name] = (" ".join(type_name.split()), shape or m[2] or "-")
        text = without_comments(whole)
        for m in re.finditer(r"class KALORFIX_API (\w+)[^{;]*\{(.*?)^\};", text, re.S | re.M):
            for member in re.sub(r"\b(public|private):", "", m[2]).split(";"):
                if "(" in member:
                    functions.append(Declaration(header, m[1], normal(member)))
        text = re.sub(r"class KALORFIX_API (\w+)[^{;]*\{(.*?)^\};", "", text, flags=re.S | re.M)
        for m in re.finditer(r"KALORFIX_API\s+(?!extern)([^;{}]*\([^;{}]*\))\s*;", text):
            functions.append(Declaration(header, "", normal(m[1])))
    return functions, variables


def split_arguments(text):
    return [a.strip() for a in text.split(",")] if text.strip() not in ("", "void") else []


def signature(declaration):
    """Name, parameter types and parameter names of a declaration."""
    m = re.fullmatch(r"(?:.*?\b)??(~?\w+)\((.*)\)(?:override|=0)?", declaration)
    types, names = [], []
    for argument in split_arguments(m[2]):
        part = re.fullmatch(r"(.*?[*&]|(?:unsigned )?(?:char|short|int|long|float|double))\s*(\w*)", argument)
        types.append(normal(part[1]))
        names.append(part[2])
    return m[1], types, names


def exported(listing, cxxfilt):
    symbols = [s for s in listing.read_text().split("\n") if s and not s.startswith("#")]
    answer = subprocess.run([cxxfilt], input="\n".join(symbols) + "\n", capture_output=True, text=True, check=True)
    return list(zip(symbols, answer.stdout.split("\n")))


# ---- The document ----------------------------------------------------------------------------------------------------

def read_sections(text):
    """Sections of the functions, and the chapters as title -> text."""
    sections, chapters, fenced = [], {}, False
    chapter = part = None
    for number, line in enumerate(text.split("\n"), 1):
        if line.startswith("```"):
            fenced = not fenced
        level = 0 if fenced else len(re.match(r"#*", line)[0])
        title = line[level:].strip()
        if level == 2:
            chapter, part = title, None
            chapters[chapter] = []
        elif level == 3:
            sections.append(Section(title, number, []))
            part = None
        elif level == 4 and sections:
            part = Part(title, number, [])
            sections[-1].parts.append(part)
        elif part is not None:
            part.lines.append(line)
        if chapter:
            chapters[chapter].append(line)
    return sections, {title: "\n".join(lines) for title, lines in chapters.items()}


def fence(part):
    """Language, first line and text of the one code block of a part."""
    marks = [k for k, line in enumerate(part.lines) if line.startswith("```")]
    if len(marks) != 2:
        fault(part.line, f"{part.name}: expected one code block")
        return None
    first, last = marks
    if not "".join(part.lines[first + 1:last]).strip():
        fault(part.line, f"{part.name}: the code block is empty")
        return None
    return part.lines[first][3:], part.line + first + 2, "\n".join(part.lines[first + 1:last])


def table(lines):
    rows = [[c.strip() for c in line.strip().strip("|").split("|")] for line in lines if line.startswith("|")]
    return rows[2:] if len(rows) > 2 and set("".join(rows[1])) <= set("-: ") else []


def titles_of(demangled):
    """How a function may be headed: its name, or name (argument list), or name (last argument)."""
    m = re.fullmatch(r"([\w:~]+)(?:\((.*)\))?", demangled)
    if m[2] is None:
        return m[1], []
    arguments = split_arguments(m[2])
    return m[1], [f"{m[1]} ({m[2]})"] + ([f"{m[1]} ({arguments[-1].rstrip('&')})"] if arguments else [])


def headed(functions):
    """Every accepted title of every exported function; an overloaded one must say which it is."""
    names = collections.Counter(titles_of(f)[0] for f in functions)
    titles = {}
    for function in functions:
        name, longer = titles_of(function)
        for title in [name] if names[name] == 1 else dict.fromkeys(longer):
            titles[title] = None if title in titles else function
    return {title: function for title, function in titles.items() if function}


def judge_parts(section):
    names = [p.name for p in section.parts]
    for name in PARTS:
        if name not in names:
            fault(section.line, f"{section.title}: no {name}")
    for name in names:
        if name not in PARTS or names.count(name) > 1:
            fault(section.line, f"{section.title}: {name} is not expected, or stands twice")
    if sorted(names) == sorted(PARTS) and names != PARTS:
        fault(section.line, f"{section.title}: parts out of order: {', '.join(names)}")
    for part in section.parts:
        if not "".join(part.lines).strip():
            fault(part.line, f"{section.title}: {part.name} is empty")


def judge_synopsis(section, part, function, declared):
    """The declaration that the synopsis is, None when it is none."""
    block = fence(part)
    if not block:
        return None
    name, _ = titles_of(function)
    scope, _, own = name.rpartition("::")
    text = block[2].strip()
    found = next((d for d in declared if d.scope == scope and d.text + ";" == normal(text)), None)
    if not found:
        fault(part.line, f"{section.title}: this synopsis is no declaration of the headers: {' '.join(text.split())}")
        return None
    got, types, _ = signature(found.text)
    if got != own:
        fault(part.line, f"{section.title}: the synopsis is that of {got}")
    elif "(" in function:
        wanted = [normal(a) for a in split_arguments(re.fullmatch(r"[\w:~]+\((.*)\)", function)[1])]
        if types != wanted:
            fault(part.line, f"{section.title}: the synopsis takes {types}, exported is {wanted}")
    return found


def judge_parameters(section, part, declaration):
    _, _, names = signature(declaration.text)
    rows = table(part.lines)
    listed = [row[0].strip("`") for row in rows]
    for name in names:
        if name and name not in listed:
            fault(part.line, f"{section.title}: parameter {name} is missing")
    for name, row in zip(listed, rows):
        if name not in names and "" not in names:
            fault(part.line, f"{section.title}: there is no parameter {name}")
        if len(row) != 4 or not all(row) or row[1] not in DIRECTIONS:
            fault(part.line, f"{section.title}: expected name, direction, unit, range in the row of {name}")


def judge_index(text, index, sections):
    """Every section is in the index under its title, and no link of the document leads nowhere."""
    anchors, fenced = set(), False
    for line in text.split("\n"):
        fenced ^= line.startswith("```")
        if line.startswith("#") and not fenced:
            base = re.sub(r"[^\w\- ]", "", line.lstrip("#").strip().lower()).replace(" ", "-")
            copies = sum(a == base or re.fullmatch(re.escape(base) + r"-\d+", a) is not None for a in anchors)
            anchors.add(f"{base}-{copies}" if base in anchors else base)
    for title, target in re.findall(r"\[([^\]]+)\]\(#([^)]*)\)", text):
        if target not in anchors:
            fault(0, f"the link {title} leads to #{target}, which is not there")
    for section in sections:
        if f"[{section.title}](#" not in index:
            fault(section.line, f"{section.title} is missing in the index")


def judge_variables(text, wanted):
    rows = {}
    for row in table(text.split("\n")):
        name = row[0].strip("`")
        if name in rows:
            fault(0, f"Exported variables: {name} stands twice")
        rows[name] = row
    for name, (type_name, shape) in wanted.items():
        if name not in rows:
            fault(0, f"Exported variables: {name} is missing")
        elif len(rows[name]) != 7 or not all(rows[name]):
            fault(0, f"Exported variables: expected seven filled cells in the row of {name}")
        elif (rows[name][1].strip("`"), rows[name][2]) != (type_name, shape):
            fault(0, f"Exported variables: {name} is {type_name} {shape}, not {' '.join(rows[name][1:3])}")
    for name in rows:
        if name not in wanted:
            fault(0, f"Exported variables: {name} is not exported")


# ---- Examples --------------------------------------------------------------------------------------------------------

def manual_example(text):
    """The example of the manual page, with its line, as the formatter hands it out."""
    head, _, example = text.partition(".SH EXAMPLES\n")[2].partition(".EX\n")
    line = text[:text.index(".SH EXAMPLES\n")].count("\n") + 1 + head.count("\n") + 2
    return MANUAL, line, example.partition(".EE\n")[0].replace("\\-", "-").replace("\\e", "\\")


def compile_all(fragments, include, compilers):
    """One translation unit for each language and header; a fault is reported with its line of the document."""
    for (language, header), members in sorted(fragments.items()):
        source = [f'#include "{header}"', "#include <stdio.h>" if language == "c" else "#include <cstdio>"]
        for number, (document, line, text) in enumerate(members):
            source += [f"void example_{number}(void);", f"void example_{number}(void) {{",
                       f'#line {line} "{document}"', text, "}"]
        standard, kind = ("-std=c99", "c") if language == "c" else ("-std=c++20", "c++")
        command = [compilers[language], standard, *WARNINGS, "-fsyntax-only", f"-I{include}", "-x", kind, "-"]
        ran = subprocess.run(command, input="\n".join(source) + "\n", capture_output=True, text=True)
        if ran.returncode != 0:
            fault(0, f"examples with {header} do not compile:\n{ran.stderr}")


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("source", type=pathlib.Path)
    for name in ("--cc", "--cxx", "--cxxfilt"):
        parser.add_argument(name, required=True)
    options = parser.parse_args()
    include = options.source / "include"
    declared, variables = declarations(include)
    plain = {signature(d.text)[0] for d in declared if not d.scope and d.header == "kalorfix.h"}
    symbols = exported(options.source / "frame/exports.list", options.cxxfilt)

    functions, tables, state = [], set(), {}
    for symbol, demangled in symbols:
        about = re.fullmatch(r"(?:vtable|typeinfo|typeinfo name) for (\w+)", demangled)
        if about:
            tables.add(about[1])
        elif symbol != demangled or symbol in plain:
            if demangled not in functions:
                functions.append(demangled)
        elif symbol in variables:
            state[symbol] = variables[symbol]
        else:
            fault(0, f"{symbol} is exported, but no header declares it")

    text = (options.source / DOCUMENT).read_text(encoding="utf-8")
    sections, chapters = read_sections(text)
    titles = headed(functions)
    seen, fragments = set(), collections.defaultdict(list)
    for section in sections:
        function = titles.get(section.title)
        if not function:
            fault(section.line, f"{section.title}: no exported function is called so")
            continue
        if function in seen:
            fault(section.line, f"{section.title}: a second section of this function")
        seen.add(function)
        judge_parts(section)
        parts = {p.name: p for p in section.parts}
        if set(parts) != set(PARTS):
            continue
        declaration = judge_synopsis(section, parts["Synopsis"], function, declared)
        block = fence(parts["Example"])
        if not declaration or not block:
            continue
        judge_parameters(section, parts["Parameters"], declaration)
        language = "c" if function in plain else "cpp"
        if block[0] != language:
            fault(parts["Example"].line, f"{section.title}: the example must be {language}, not {block[0]}")
        elif not re.search(rf"\b{signature(declaration.text)[0].strip('~')}\b", block[2]) and "~" not in function:
            fault(parts["Example"].line, f"{section.title}: the example does not use it")
        else:
            fragments[language, declaration.header].append((DOCUMENT, *block[1:]))
    for function in functions:
        if function not in seen:
            fault(0, f"{function} has no section")
    about_tables = chapters.get("Virtual tables and type information", "")
    for name in sorted(tables):
        if f"`{name}`" not in about_tables:
            fault(0, f"Virtual tables and type information: {name} is missing")
    judge_index(text, chapters.get("Index", ""), sections)
    judge_variables(chapters.get("Exported variables", ""), state)
    fragments["c", "kalorfix.h"].append(manual_example((options.source / MANUAL).read_text()))
    compile_all(fragments, include, {"c": options.cc, "cpp": options.cxx})

    if faults:
        print("\n".join(faults))
        return 1
    examples = sum(map(len, fragments.values()))
    print(f"{len(sections)} functions and {len(state)} variables described, {examples} examples compile")
    return 0


sys.exit(main())
