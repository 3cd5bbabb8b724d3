# SPDX-License-Identifier: MIT
"""The judgement on a gas data file, that of `kalorfix gasdat check`."""

from __future__ import annotations

import math
import struct
from collections.abc import Iterator

# Table: how many values, within which bounds; whole numbers where an exponent or a switch is meant.
_TABLES: dict[str, tuple[int, float, float]] = {
    "V_Mi": (8, 1, 500), "Roki": (8, 20, 1000), "Tki": (8, 3, 1000), "FPi": (8, -0.5, 1.5), "Lij": (64, -1, 0.9),
    "Xij": (64, -1, 0.9), "Akl": (80, -1e4, 1e4), "Bkl": (80, -1e4, 1e4), "Eij_": (225, 0.3, 2), "Uij": (225, 0.3, 2),
    "Kij": (225, 0.3, 2), "Gij_": (225, 0, 3), "an": (53, -100, 100), "bn": (53, 1, 12), "cn": (53, 0, 1), "kn": (53, 0, 12),
    "un": (53, -31.5, 31.5), "gn": (53, 0, 1), "qn": (53, 0, 1), "fn": (53, 0, 1), "Mi": (15, 1, 500), "Zci": (15, 0.5, 1.1),
    "Rocui": (15, 0.04, 20), "Bi": (15, 0, 0.7), "Ei": (15, 0.1, 1000), "Ki": (15, 0.1, 2), "Gi": (15, 0, 2), "Qi": (15, 0, 2),
    "Fi": (15, 0, 2), "L1ij": (88, -1e5, 1e5), "B1ij": (48, -1e5, 1e5),
}
_WHOLE = ("bn", "cn", "kn", "gn", "qn", "fn")
_DIAGONAL = {"Lij": 0.0, "Xij": 0.0, "Eij_": 1.0, "Uij": 1.0, "Kij": 1.0, "Gij_": 1.0}
_EQUATION_TERMS = (8, 7, 7, 6, 6, 5, 4, 4, 4, 3)
_RISING_TERMS, _FALLING_TERMS = (11, 7, 7, 7, 6, 7, 7, 6), (6, 5, 4, 5, 2, 6, 4, 5)
_THETA_K = (100, 100, 100, 100, 300, 100, 300, 100)
_OF_VNIC = (0, 1, 2, 3, 4, 10, 11, 12)
_COUNT = sum(count for count, _, _ in _TABLES.values())
BYTES = 4 * _COUNT


def faults(data: bytes, size: int) -> list[str]:
    """What is wrong with the values of a file of `size` bytes that begins with `data`; empty for a sound one. Judged are finite
    values within plausible bounds, whole and half exponents, symmetry, positions that are no terms, the agreement of the tables
    with one another, and the ideal-gas heat capacities at 300 K."""
    found = [] if size == BYTES else [f"the file has {size} bytes, must have {BYTES}"]
    if len(data) < BYTES:
        return found
    values, tables = struct.unpack(f"<{_COUNT}f", data[:BYTES]), {}
    first = 0
    for name, (count, _, _) in _TABLES.items():
        tables[name] = values[first:first + count]
        first += count
    for judge in (_bounds, _symmetry, _no_terms, _agreement, _heat_capacities):
        found += judge(tables)
    return found


_Tables = dict[str, tuple[float, ...]]


def _bounds(tables: _Tables) -> Iterator[str]:
    for name, (_, low, high) in _TABLES.items():
        for k, value in enumerate(tables[name]):
            place = f"{name}, value {k + 1}: {value:g}, must"
            if not math.isfinite(value):
                yield f"{place} be a number"
            elif not low <= value <= high:
                yield f"{place} lie within {low:g}..{high:g}"
            elif name in _WHOLE and value != math.floor(value):
                yield f"{place} be a whole number"
            elif name == "un" and 2.0 * value != math.floor(2.0 * value):
                yield f"{place} be a multiple of 1/2"
            elif name == "kn" and (tables["cn"][k] == 0.0) != (value == 0.0):
                yield f"{place} be 0 where c is 0, and only there"


def _symmetry(tables: _Tables) -> Iterator[str]:
    for name, diagonal in _DIAGONAL.items():
        table = tables[name]
        size = math.isqrt(len(table))
        for i in range(size):
            if table[i * size + i] != diagonal:
                yield f"{name}, row {i + 1}: {table[i * size + i]:g}, must be {diagonal:g}: a component with itself"
            for j in range(i):
                if table[i * size + j] != table[j * size + i]:
                    yield f"{name}, row {i + 1}, column {j + 1}: must equal its mirror image {table[j * size + i]:g}"


def _no_terms(tables: _Tables) -> Iterator[str]:
    for names, terms, columns in ((("Akl", "Bkl"), _EQUATION_TERMS, 8), (("L1ij",), _RISING_TERMS, 11),
                                  (("B1ij",), _FALLING_TERMS, 6)):
        for name in names:
            for row, count in enumerate(terms):
                if any(value != 0.0 for value in tables[name][row * columns + count:(row + 1) * columns]):
                    yield f"{name}, row {row + 1}: what is no term must be 0"


def _agreement(tables: _Tables) -> Iterator[str]:
    def agree(name: str, k: int, expected: float, relative: float, other: str) -> Iterator[str]:
        if abs(tables[name][k] - expected) > relative * abs(expected):
            yield f"{name}, value {k + 1}: {tables[name][k]:g}, does not agree with {other}, which asks for {expected:g}"

    for k, component in enumerate(_OF_VNIC):
        yield from agree("V_Mi", k, tables["Mi"][component], 1e-3, "the molar mass in Mi")
    for k, molar_mass in enumerate(tables["Mi"]):
        yield from agree("Rocui", k, molar_mass * 101.325 / (8.31451 * 293.15), 1e-3, "the molar mass in Mi")
        yield from agree("Zci", k, 1.0 - tables["Bi"][k] * tables["Bi"][k], 2e-3, "the summation factor in Bi")


def _heat_capacities(tables: _Tables) -> Iterator[str]:
    for row, theta_K in enumerate(_THETA_K):
        ratio = 300.0 / theta_K
        cp = 0.0
        for m in range(_RISING_TERMS[row]):
            cp += tables["L1ij"][11 * row + m] * ratio ** m
        for m in range(_FALLING_TERMS[row]):
            cp += tables["B1ij"][6 * row + m] * ratio ** (-1 - m)
        if not 2.4 <= cp <= 30.0:
            yield f"L1ij, B1ij, row {row + 1}: cp/R at 300 K is {cp:g}, must lie within 2.4..30"
