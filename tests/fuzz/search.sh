#!/usr/bin/env bash
# SPDX-License-Identifier: MIT
# Fuzzes for some seconds from the stored programs: tests/fuzz/search.sh [seconds]. What it finds is left in build/fuzz.
set -euo pipefail
cd "$(dirname "$0")/../.."
. cmake/packages.sh
need_packages g++ cmake make clang-14 clang libclang-rt-14-dev libgtest-dev
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz
grown=$(mktemp -d)
cd build/fuzz
tests/fuzz/calls_fuzz -max_total_time="${1:-1200}" -max_len=800 -len_control=0 -print_final_stats=1 \
    "$grown" ../../tests/fuzz/corpus >fuzz.log 2>&1 || { tail -n 40 fuzz.log; exit 1; }
grep '^Done' fuzz.log
rm -r "$grown"
