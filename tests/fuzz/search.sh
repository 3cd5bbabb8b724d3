#!/usr/bin/env bash
# Fuzzes each harness for some seconds from the stored inputs: tests/fuzz/search.sh [seconds each] [harness...]
# Ends at the first finding, which is left in build/fuzz.
set -euo pipefail
cd "$(dirname "$0")/../.."
. cmake/packages.sh
need_packages g++ cmake make clang-14 clang libgtest-dev
seconds=${1:-1200}
shift || true
[ $# -gt 0 ] || set -- ini gas_data gas_cycle heat_cycle
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz
for harness; do
    grown=$(mktemp -d)
    "build/fuzz/tests/fuzz/${harness}_fuzz" -max_total_time="$seconds" -max_len=9000 -artifact_prefix=build/fuzz/ \
        -print_final_stats=1 "$grown" "tests/fuzz/corpus/$harness" >"build/fuzz/$harness.log" 2>&1 ||
        { tail -n 40 "build/fuzz/$harness.log"; exit 1; }
    printf '%s: %s\n' "$harness" "$(tail -n 20 "build/fuzz/$harness.log" | grep '^Done')"
    rm -r "$grown"
done
