# SPDX-License-Identifier: MIT
"""The offset of a clock from UTC."""

import re

_FURTHEST_S = 14 * 3600


def read_offset(text: str) -> int:
    """+03:00, +0300, +03 or Z in seconds. Raises ValueError."""
    found = re.fullmatch(r"([+-])(\d\d)(?::?([0-5]\d))?", text, re.ASCII)
    seconds = 0 if text in ("Z", "UTC") else int(found[2]) * 3600 + int(found[3] or 0) * 60 if found else _FURTHEST_S + 1
    if seconds > _FURTHEST_S:
        raise ValueError(f"expected an offset from UTC such as +03:00, not {text!r}")
    return -seconds if found and found[1] == "-" else seconds
