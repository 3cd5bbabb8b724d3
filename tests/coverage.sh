#!/bin/sh
# Counts which lines and branches of the library the tests run; docs/coverage.md explains.
# Usage: tests/coverage.sh [JOBS]; fails when a gap is not in tests/coverage_gaps.txt, or a listed one is none.
set -eu
cd "$(dirname "$0")/.."
. cmake/packages.sh
need_test_packages
cmake --preset coverage
cmake --build --preset coverage --parallel "${1:-$(nproc)}"
counters=build/coverage/CMakeFiles/kalorfix_objects.dir
find "$counters" -name '*.gcda' -delete  # the build runs programs too
ctest --preset coverage --parallel "${1:-$(nproc)}"
find "$counters" -name '*.gcno' -exec gcov --stdout --json-format --branch-probabilities {} + 2>/dev/null |
    python3 tests/coverage_report.py tests/coverage_gaps.txt
