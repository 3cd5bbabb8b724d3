#!/bin/sh
# SPDX-License-Identifier: MIT
# Holds the arrows of docs/architecture.md: tests/rooms_test.sh SOURCE_DIRECTORY
# A room may include the rooms behind it, itself, and the system; a pure room knows neither edge nor exported names.
cd "$1" || exit 1
status=0
room() {  # room ROOM INCLUDABLE...
    allowed=$(shift && IFS='|' && echo "$*")
    for file in "$1"/*.h "$1"/*.cpp; do
        [ -e "$file" ] || continue
        outside=$(sed -n 's/^#include "\(.*\)".*/\1/p' "$file" | grep -vE "^($allowed)$")
        [ -z "$outside" ] || { echo "$file includes" $outside; status=1; }
    done
}
numbers='runtime/(units|exponential|cube_root|unrolled|bracketed_zero).h'
pure='[^/]+\.h'
room props/water "props/water/$pure" $numbers
room flow "flow/$pure" runtime/units.h
room gas "gas/$pure" $numbers
room props "props/$pure" "props/water/$pure" "gas/$pure" runtime/units.h
room runtime "runtime/$pure" kalorfix_runtime.h
room flow/edge "flow/(edge/)?$pure" "runtime/$pure" "kalorfix(_[a-z]+)?.h"
room gas/edge "gas/(edge/)?$pure" "runtime/$pure" "kalorfix(_[a-z]+)?.h"
room props/edge "props/((edge|water)/)?$pure" "gas/(edge/)?$pure" "runtime/$pure" "kalorfix(_[a-z]+)?.h"
room tools/metering "tools/metering/$pure" "tools/(host|names|text|units).h" "flow/$pure" runtime/units.h
exit $status
