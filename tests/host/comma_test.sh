#!/bin/sh
# SPDX-License-Identifier: MIT
# The command-line tool under a locale with a decimal comma reads and writes what it does without one.
# Usage: comma_test.sh TOOL EXAMPLES LOCALES [PRELOAD]: PRELOAD is a library that puts the tool under the locale.
set -u
tool=$1 examples=$2 locales=$3 preload=${4:-}
. "$(dirname "$0")/../checks.sh"

# same POINT ARGUMENTS...: the same output, byte for byte, and POINT, a number with its decimal point, in it.
same() {
    point=$1
    shift
    env -u LC_ALL LC_NUMERIC=C "$tool" "$@" >"$work/plain" 2>&1
    plain=$?
    env LOCPATH="$locales" LC_ALL=de_DE.UTF-8 ${preload:+"LD_PRELOAD=$preload"} "$tool" "$@" >"$work/comma" 2>&1
    comma=$?
    [ "$plain" -eq "$comma" ] || fail "exit status $comma, without the locale $plain: $*"
    diff "$work/plain" "$work/comma" || fail "another output: $*"
    grep -qF -- "$point" "$work/comma" || fail "no $point: $*"
}

same 3.1351873 water --t 200 --p 0.66
same 3.259616842 water --t 160:200:20 --mode saturated --csv
same 0.8883667 gas --method aga8 --composition "$examples/natural_gas.csv" --t 15 --p 5.5
same 0.6799000 gas --method gerg91 --rho-c 0.6799 --n2 0.8858 --co2 0.0668 --t 0.5:20:10 --p 2:6:0.5
for format in table csv json hours; do
    same '.' run "$examples/station.ini" "$examples/readings_day.csv" --format "$format"
done
same 'largest 0.' verify
same '0,66: expected' water --t 200 --p 0,66
finish "the same output under both locales"
