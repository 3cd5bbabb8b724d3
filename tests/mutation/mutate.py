#!/usr/bin/env python3
"""Mutation tests: changes every number and every comparison of the library, one at a time, and expects a test to fail.

All mutants are compiled into one copy of the sources, as switches (mutation.h); a mutant is a run of the tests with its
switch thrown. See docs/mutation.md.
"""
import argparse
import collections
import csv
import fnmatch
import itertools
import json
import os
import queue
import random
import re
import resource
import shutil
import subprocess
import sys
import tempfile
import threading
import time
from pathlib import Path

HERE = Path(__file__).resolve().parent
ROOT = HERE.parent.parent
LIBRARY = ['flow', 'gas', 'props', 'frame', 'runtime']
COPIED = ['CMakeLists.txt', 'CHANGELOG.md', 'LICENSE', 'README.md', 'package', 'bench', 'cmake', 'data', 'demo', 'docs', 'examples', 'include', 'tests', 'tools', *LIBRARY]
# Numbers there are no numbers of the interface: masks of registers, names of glibc, letters of a code page.
LEFT_ALONE = {'runtime/cp866.h', 'runtime/glibc_floor.h', 'runtime/float_environment.h'}
TABLES = {'flow/device_tables.cpp', 'gas/gerg91_tables.h', 'props/heat_of_combustion_tables.h',
          'props/water/iapws95_tables.h', 'props/water/saturation_tables.h', 'props/water/viscosity_tables.h'}
# What the compiler evaluates is no switch: the layout of the water kernel with the checks of its exponents, sizes.
COMPILE_TIME = [r'constexpr std::size_t (count_merged_terms|total_values|count_cells)\(.*?\n}', r'constexpr Layout make_layout\(.*?\n}',
                r'// --- Layout of the merged.*?// tau\^\(eighths', r'static_assert\(.*?;', r'if constexpr \([^\n]*',
                r'nonanalytic_a = [^\n]*', r'nonanalytic_beta = [^\n]*', r'#[^\n]*', r'\bfor \([^;\n]*;[^;\n]*;[^)\n]*\)']
INTEGER_TABLES = [r'carbon_number\{.*?\};', r'temperature_terms\{.*?\};', r'> target\{.*?\};', r'> ranges\{.*?\};',
                  r'gaussian_terms\{.*?\};']
FLOAT = r'(?<![\w.])(?:\d+\.\d*(?:[eE][-+]?\d+)?|\d+[eE][-+]?\d+)F?(?![\w.])'
INTEGER = r'(?<![\w.])\d+U?(?![\w.])'

Mutant = collections.namedtuple('Mutant', 'kind file key id cell')  # id: of the switch; cell: of a table of the gas data


def masked(text):
    """Comments, strings and characters as blanks, so that positions stay."""
    blank = lambda m: re.sub(r'[^\n]', ' ', m.group())
    return re.sub(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])+\'', blank, text, flags=re.S)


class Instrumenter:
    """Puts the switches into a file and lists what they do."""

    def __init__(self):
        self.mutants = []
        self.seen = collections.Counter()
        self.ids = itertools.count(0, 10)

    def add(self, kind, changes):
        """Registers a switch; `changes` say what its positions do."""
        switch = next(self.ids)
        before = ' '.join(self.text[max(0, self.begin - 32):self.begin].split())
        after = ' '.join(self.text[self.end:self.end + 32].split())
        for which, change in changes:
            token = ' '.join(self.text[self.begin:self.end].split())
            key = f'{self.file} | {before} [[{token}]] {after} | {change}'
            self.seen[key] += 1
            if self.seen[key] > 1:
                key += f' #{self.seen[key]}'
            self.mutants.append(Mutant(kind, self.file, key, switch + which, None))
        return switch

    def replace(self, begin, end, kind, changes, form):
        self.begin, self.end = begin, end
        self.edits.append((begin, end, form.format(id=self.add(kind, changes), text=self.text[begin:end])))

    def instrument(self, file, text):
        self.file, self.text, self.edits = file, text, []
        code = masked(text)
        skip = set(itertools.chain.from_iterable(
            range(*m.span()) for p in COMPILE_TIME for m in re.finditer(p, text, re.S)))
        inside = lambda patterns: set(itertools.chain.from_iterable(
            range(*m.span()) for p in patterns for m in re.finditer(p, code, re.S)))
        scaled = [(0, 'x1.0001'), (1, 'sign')]
        powers = inside([r'> power_terms\{.*?\};'])
        whole = inside(INTEGER_TABLES)
        for m in re.finditer(r'\{(\d+), (\d+), (-?[\d.]+), (-?[\d.e+-]+)\}', code):
            if m.start() in powers:
                for group in (3, 4):
                    self.replace(*m.span(group), 'coefficient', scaled, 'mutation::Number{{{id}, {text}}}')
        for m in re.finditer(FLOAT, code):
            if m.start() in skip or m.start() in powers:
                continue
            compared = re.search(r' [<>]=? $', code[:m.start()]) or re.match(r' [<>]=? ', code[m.end():])
            if float(m.group().rstrip('F')):
                self.replace(*m.span(), 'coefficient', scaled, 'mutation::number({id}, {text})')
            elif compared or file in TABLES:
                other, ending = '1e-4' if compared else '1.0', 'F' if m.group().endswith('F') else ''
                self.replace(*m.span(), 'coefficient', [(0, other)], f'mutation::zero({{id}}, {other}{ending})')
        for m in re.finditer(INTEGER, code):
            if m.start() in skip or m.start() in powers:
                continue
            limit = re.search(r' [<>]=? $', code[:m.start()]) and not code.startswith(' <<', m.end())
            if file == 'props/heat_of_combustion_tables.h':
                if not re.search(r'\n    \{', code[code.rfind(';', 0, m.start()):m.start()]):
                    continue
                if int(m.group()):
                    self.replace(*m.span(), 'coefficient', scaled, 'mutation::number({id}, {text}.0)')
                else:
                    self.replace(*m.span(), 'coefficient', [(0, '1.0')], 'mutation::zero({id}, 1.0)')
            elif m.start() in whole or limit:
                self.replace(*m.span(), 'comparison' if limit else 'coefficient', [(0, '+1'), (1, '-1')],
                             'mutation::whole({id}, {text})')
        for m in re.finditer(r'(?<= )(<=|>=|==|!=|<|>)(?= |\n)', code):
            if m.start() in skip:
                continue
            changes = [(0, 'boundary' if m.group() in ('<', '<=', '>', '>=') else 'contrary'), (1, 'contrary'),
                       (2, 'false'), (3, 'true')]
            self.replace(*m.span(), 'comparison', changes[:1] + changes[2:] if changes[0][1] == 'contrary' else changes,
                         '{text} mutation::Comparison{{{id}}} {text}')
        for m in re.finditer(r'\bif \(', code):
            begin, end, depth = m.end(), m.end(), 1
            while depth:
                depth += {'(': 1, ')': -1}.get(code[end], 0)
                end += 1
            begin = max(begin, code.find(';', begin, end) + 1)
            condition = code[begin:end - 1]
            single = not re.search(r'&&|\|\||!\(', condition) and re.search(r' (<=|>=|==|!=|<|>) ', condition)
            if begin in skip or single or re.match(r'(const )?[\w:<>]+[ *&]+(const )?\w+ = ', condition):
                continue
            self.begin, self.end = begin, end - 1
            switch = self.add('comparison', [(0, 'false'), (1, 'true')])
            self.edits += [(begin, begin, f'mutation::condition({switch}, static_cast<bool>('), (end - 1, end - 1, '))')]
        for m in re.finditer(r'(static |inline )?\bconstexpr ([^;={(]*?)([({=])', code):
            if code[:m.start()].endswith('if ') or m.start() in skip:
                continue
            body = code[m.start():code.find('\n}', m.end()) if m.group(3) == '(' and '\n' in
                        code[m.end():code.find('}', m.end())] else code.find(';', m.end())]
            span = range(m.start(), m.start() + len(body))
            touched = any(b in span for b, _, _ in self.edits)
            if m.group(3) == '(':
                new = 'inline ' if touched else None
            else:
                real = re.match(r'(std::array<)*(double|float)\b', m.group(2))
                new = (m.group(1) or '') + 'const ' if (touched or real) and 'PowerTerm' not in m.group(2) else None
            if new:
                self.edits.append((m.start(), m.start() + len((m.group(1) or '') + 'constexpr '), new))
        for begin, end, new in sorted(self.edits, key=lambda edit: (edit[0], edit[1]), reverse=True):
            text = text[:begin] + new + text[end:]
        if file == 'props/water/iapws95_tables.h':
            text = re.sub(r'(struct PowerTerm \{.*?)double t;\s+double n;', r'\1mutation::Number t, n;', text, flags=re.S)
        if file == 'props/water/residual.cpp':
            text = re.sub(r'static_assert\(a == 3.5.*?;', '', text)
        return text


def gas_data_mutants():
    """Every number of the readable gas tables. Tables that are symmetric keep their symmetry."""
    for path in sorted((ROOT / 'data/gas').glob('*.csv')):
        rows = [row for row in csv.reader(path.read_text().splitlines()) if not row[0].startswith('#')]
        for r, row in enumerate(rows[1:], 1):
            for c, value in enumerate(row):
                # A mirrored cell changes with the other; the diagonals of AGA8-92DC are not read.
                mirrored = '_binary_' in path.name and (c < r or c == r and path.name.startswith('aga8'))
                if c == 0 or mirrored or value == '':
                    continue
                label = f'data/gas/{path.name} | {row[0]}, {rows[0][c]} = {value}'
                for change in ('x1.0001', 'sign') if float(value) else ('1.0',):
                    yield Mutant('data', f'data/gas/{path.name}', f'{label} | {change}', -1, (path.name, r, c, change))


def with_cell(text, cell):
    name, r, c, change = cell
    lines = text.splitlines()
    at = [k for k, line in enumerate(lines) if not line.startswith('#')]

    def set_cell(r, c):
        fields = lines[at[r]].split(',')
        value = float(fields[c])
        fields[c] = repr({'x1.0001': value * 1.0001, 'sign': -value, '1.0': 1.0}[change])
        lines[at[r]] = ','.join(fields)

    set_cell(r, c)
    if '_binary_' in name and r != c:
        set_cell(c, r)
    return '\n'.join(lines) + '\n'


def instrumented(instrumenter):
    """Names and contents of the files of the copy."""
    paths = [path for top in COPIED for path in [ROOT / top, *(ROOT / top).rglob('*')] if path.is_file()]
    for path in sorted(paths):
        name = str(path.relative_to(ROOT))
        if '__pycache__' in name or name.startswith('tests/fuzz/corpus'):
            continue
        text = (ROOT / name).read_bytes()
        if name.endswith(('.cpp', '.h')) and name.split('/')[0] in LIBRARY and name not in LEFT_ALONE:
            text = instrumenter.instrument(name, text.decode()).encode()
        elif name == 'tests/CMakeLists.txt':  # each worker has gas data of its own in its directory
            text = text.replace(b'KALORFIX_GAS_DAT="${KALORFIX_GAS_DAT}"', b'KALORFIX_GAS_DAT="gas.dat"').replace(
                b'KALORFIX_GAS_TABLES="${PROJECT_SOURCE_DIR}/data/gas"', b'KALORFIX_GAS_TABLES="data/gas"')
        yield name, text


def check():
    """Whether each switch stands in the copy exactly once; explanations that fit no mutant are named. Builds nothing."""
    instrumenter = Instrumenter()
    text = b'\n'.join(content for _, content in instrumented(instrumenter)).decode(errors='replace')
    placed = collections.Counter(
        int(a or b) for a, b in re.findall(r'mutation::(?:\w+\((\d+), |(?:Number|Comparison)\{(\d+))', text))
    wanted = {m.id // 10 * 10 for m in instrumenter.mutants}
    wrong = sorted(switch for switch in wanted | set(placed) if placed[switch] != 1 or switch not in wanted)
    mutants = instrumenter.mutants + list(gas_data_mutants())
    for pattern, _ in read_explained():
        if not any(explanation([(pattern, '')], m.key) for m in mutants):
            print(f'note: explains nothing: {pattern}')
    print(f'{len(mutants)} mutants, {len(wanted)} switches in the code, {len(wrong)} of them not in their place')
    return 1 if wrong or len(wanted) < 1000 or len({m.key for m in mutants}) < len(mutants) else 0


def prepare(scratch, jobs):
    """The instrumented copy and its test programs. Gives the mutants of the code."""
    source = scratch / 'source'
    instrumenter = Instrumenter()
    for name, text in instrumented(instrumenter):
        target = source / name
        if not target.exists() or target.read_bytes() != text:
            target.parent.mkdir(parents=True, exist_ok=True)
            target.write_bytes(text)
            target.chmod((ROOT / name).stat().st_mode)
    build = scratch / 'build'
    flags = f'-std=c++20 -O1 -w -Wno-narrowing -fpermissive -include {HERE}/mutation.h'
    log = open(scratch / 'build.log', 'w')
    for command in (['cmake', '-S', source, '-B', build, '-DCMAKE_BUILD_TYPE=None', f'-DCMAKE_CXX_FLAGS={flags}',
                     '-DKALORFIX_WERROR=OFF', '-DKALORFIX_TOOL=OFF', '-DKALORFIX_TESTS=ON', '-DKALORFIX_BENCHMARKS=OFF'],
                    ['cmake', '--build', build, f'-j{jobs}', '--target', 'unit_tests', 'totals_tests', 'library_tests',
                     'pack_gas_data', 'gas_data']):
        if subprocess.run(command, stdout=log, stderr=log).returncode:
            sys.exit(f'the instrumented copy does not build: {log.name}')
    return instrumenter.mutants


class Worker:
    """A directory in which the test programs find their gas data, and the memory of which tests killed."""
    # Likely killers first; each part ends at its first failure.
    PARTS = [('library_tests', 'Text/*'), ('totals_tests', '*'), ('library_tests', '-Text/*'), ('unit_tests', '*')]

    # Test suites that a part of the library cannot reach, left out for speed: the long ones.
    VALUELESS = ':*MayHoldAnything:*OnTheGasRoot*:Hostile*:Lifecycle*:Unload*:Ini*:*Highest*:'  # they compare no values
    GAS, WATER = 'Gas.*:GasTables*:GasData*:GasTerms*:GasSteps*:Gasdat*:', 'Density*:Residual*:Steps.OfTheDensityOfWater:'
    SOLUTION = 'FixedPoint*:Steps.OfTheFlowEquation:'
    IRRELEVANT = {'flow/': GAS + WATER + 'Unload*:Aga8*:Ini*', 'gas/': WATER + SOLUTION + 'Ini*',
                  'data/': WATER + SOLUTION + 'Gasdat*:Channels*', 'props/gas': WATER + SOLUTION + 'Ini*',
                  'props/water/': GAS + SOLUTION + 'Ini*', 'runtime/': GAS + WATER + SOLUTION + 'Text/*'}

    def __init__(self, build, directory, killers):
        self.build, self.directory, self.killers = build, directory, killers
        shutil.copytree(ROOT / 'data/gas', directory / 'data/gas')
        shutil.copy(build / 'gas.dat', directory / 'gas.dat')

    def run(self, program, selected, mutant):
        """The name of the failed test, 'timeout' or 'crash', or None."""
        environment = dict(os.environ, MUTANT=str(mutant), TMPDIR=str(self.directory))
        limit = lambda: resource.setrlimit(resource.RLIMIT_CPU, (8, 8))
        try:
            done = subprocess.run([self.build / 'tests' / program, f'--gtest_filter={selected}', '--gtest_fail_fast',
                                   '--gtest_brief=1'], cwd=self.directory, env=environment, preexec_fn=limit, timeout=60,
                                  stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        except subprocess.TimeoutExpired:
            return 'timeout'
        if done.returncode in (-9, -24):
            return 'timeout'
        if done.returncode == 0:
            return None
        failed = re.search(rb'^\[  FAILED  \] ([\w./]+)', done.stdout, re.M)
        return failed.group(1).decode() if failed else 'crash'

    def judge(self, mutant):
        if mutant.cell:
            path = self.directory / 'data/gas' / mutant.cell[0]
            path.write_text(with_cell((ROOT / 'data/gas' / mutant.cell[0]).read_text(), mutant.cell))
            packed = subprocess.run([self.build / 'tools/pack_gas_data', 'data/gas', 'gas.dat'], cwd=self.directory,
                                    stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL).returncode == 0
        try:
            if mutant.cell and not packed:
                return 'the packer refuses it'
            return self.first_failure(mutant)
        finally:
            if mutant.cell:
                shutil.copy(ROOT / 'data/gas' / mutant.cell[0], path)

    def first_failure(self, mutant):
        recent = self.killers[mutant.file]
        for program in dict.fromkeys(p for p, _ in recent[:3]):
            names = ':'.join(name for p, name in recent[:3] if p == program)
            if failed := self.run(program, names, mutant.id):
                return failed
        useless = next((names for prefix, names in self.IRRELEVANT.items() if mutant.file.startswith(prefix)), '')
        if mutant.kind != 'comparison' and not mutant.file.startswith('frame/'):
            useless += self.VALUELESS
        for program, selected in self.PARTS:
            selected += (':' if '-' in selected else '-') + useless
            if failed := self.run(program, selected, mutant.id):
                if '.' in failed:
                    self.killers[mutant.file] = [(program, failed)] + [k for k in recent if k[1] != failed][:4]
                return failed
        return None


def read_explained():
    """Lines `key -- reason`; a key may hold *."""
    path = HERE / 'survivors.txt'
    lines = path.read_text().splitlines() if path.exists() else []
    return [line.rsplit(' -- ', 1) for line in lines if line and not line.startswith('#')]


def explanation(explained, key):
    plain = lambda pattern: re.compile('.*'.join(re.escape(part) for part in pattern.split('*')) + r'\Z')
    return next((pattern for pattern, _ in explained if pattern == key or plain(pattern).match(key)), None)


def main():
    parser = argparse.ArgumentParser(description=__doc__.split('\n')[0])
    parser.add_argument('--only', metavar='FILE', help='a file or pattern, e.g. flow/nozzle.cpp or flow/*')
    parser.add_argument('--kind', choices=['coefficient', 'comparison', 'data'])
    parser.add_argument('--sample', type=int, metavar='N', help='N mutants at random')
    parser.add_argument('--seed', type=int, help='of the sample')
    parser.add_argument('--jobs', type=int, default=1)
    parser.add_argument('--survivors', action='store_true', help='only those that survived the last time')
    parser.add_argument('--resume', action='store_true', help='leave out those that were judged the last time')
    parser.add_argument('--list', action='store_true', help='name the mutants and end')
    parser.add_argument('--scratch', type=Path, default=ROOT / 'build/mutation', help='where the copy lies')
    parser.add_argument('--check', action='store_true', help='whether every switch is in its place; builds nothing')
    options = parser.parse_args()
    if options.check:
        return check()
    scratch = options.scratch.resolve()
    scratch.mkdir(parents=True, exist_ok=True)

    mutants = [m for m in prepare(scratch, options.jobs) + list(gas_data_mutants())
               if (not options.kind or m.kind == options.kind)
               and (not options.only or fnmatch.fnmatch(m.file, options.only))]
    state = scratch / 'results.jsonl'
    known = dict(map(json.loads, state.read_text().splitlines())) if state.exists() else {}
    if options.survivors:
        mutants = [m for m in mutants if m.key in known and known[m.key] is None]
    elif options.resume:
        mutants = [m for m in mutants if m.key not in known]
    if options.sample:
        seed = options.seed if options.seed is not None else random.randrange(10**6)
        print(f'seed {seed}')
        mutants = random.Random(seed).sample(mutants, min(options.sample, len(mutants)))
    if options.list:
        print(*(f'{m.id}\t{m.kind}\t{m.key}' for m in mutants), sep='\n')
        return 0

    work, results, begun = queue.Queue(), {}, time.time()
    for mutant in mutants:
        work.put(mutant)
    with tempfile.TemporaryDirectory(dir='/tmp') as place, open(state, 'a') as log:
        killers = collections.defaultdict(list)
        workers = [Worker(scratch / 'build', Path(place) / str(k), killers) for k in range(options.jobs)]
        if failed := next(filter(None, (workers[0].run(*part, -1) for part in Worker.PARTS)), None):
            sys.exit(f'a test fails without any mutant: {failed}')

        def judge_all(worker):
            while True:
                try:
                    mutant = work.get_nowait()
                except queue.Empty:
                    return
                results[mutant] = worker.judge(mutant)
                print(json.dumps([mutant.key, results[mutant]]), file=log, flush=True)

        threads = [threading.Thread(target=judge_all, args=[worker]) for worker in workers]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()

    explained, unexplained = read_explained(), 0
    for file in dict.fromkeys(m.file for m in mutants):
        of_file = [m for m in mutants if m.file == file]
        survivors = [m for m in of_file if results[m] is None]
        print(f'{file}: {len(of_file)} mutants, {len(of_file) - len(survivors)} killed, {len(survivors)} survived')
        for m in survivors:
            known_one = explanation(explained, m.key)
            unexplained += known_one is None
            print(f"    {'explained' if known_one else 'SURVIVED '}  {m.key}")
        for m in of_file:
            if results[m] is not None and any(pattern == m.key for pattern, _ in explained):
                print(f'    note: listed, but killed by {results[m]}: {m.key}')
    for kind in ('coefficient', 'comparison', 'data'):
        judged = [results[m] for m in mutants if m.kind == kind]
        print(f'{kind}: {len(judged)} mutants, {sum(r is not None for r in judged)} killed '
              f'({judged.count("timeout")} by the time limit), {judged.count(None)} survived')
    print(f'{unexplained} survivors without an explanation; {time.time() - begun:.0f} s')
    return 1 if unexplained else 0


if __name__ == '__main__':
    sys.exit(main())
