#!/bin/sh
# The command-line tool as a person meets it: good input, bad input, exit statuses.
set -u
tool=$1
failures=0
out=$(mktemp)
err=$(mktemp)
trap 'rm -f "$out" "$err"' EXIT

# expect STATUS REGEX ARGUMENTS...: the exit status, and a line of standard output (or, for status 2, exactly one line of
# standard error and nothing on standard output).
expect() {
    status=$1 pattern=$2
    shift 2
    "$tool" "$@" >"$out" 2>"$err"
    got=$?
    if [ "$got" -ne "$status" ]; then
        echo "FAILED ($got instead of $status): $*" && cat "$err" && failures=$((failures + 1))
    elif [ "$status" -eq 2 ] && { [ -s "$out" ] || [ "$(wc -l <"$err")" -ne 1 ] || ! grep -qE "$pattern" "$err"; }; then
        echo "FAILED (message): $*" && cat "$out" "$err" && failures=$((failures + 1))
    elif [ "$status" -eq 0 ] && ! grep -qE "$pattern" "$out"; then
        echo "FAILED (output lacks $pattern): $*" && cat "$out" && failures=$((failures + 1))
    fi
}

expect 0 'mass flow +57\.0274  t/h' demo
expect 0 'heat of the hour +57\.2' demo
expect 0 '^  SHA-256 +[0-9a-f]{64}$' id
expect 0 '^kalorfix 0' --version
expect 0 '0\.\.800 degC' water --help
expect 0 'density +3\.1351873 +kg/m3' water --t 200 --p 0.66
expect 0 '^ +100 +0\.5 +water' water --t 20:200:20 --p 0.5
expect 0 '^180,1\.00281[0-9]+,saturated vapour,5\.15' water --t 180 --mode saturated --csv
expect 0 '^500,30,steam,[0-9.,]+,$' water --t 500 --p 30 --csv
expect 2 'temperature|0\.\.800 degC' water --t 900 --p 1
expect 2 '^kalorfix: --t 20:200: expected a number' water --t 20:200 --p 1
expect 2 '^kalorfix: --t 20:200:-5: the step' water --t 20:200:-5 --p 1
expect 2 '^kalorfix: --t 0:800:1e-9: at most' water --t 0:800:1e-9 --p 1
expect 2 '^kalorfix: --t, --p: at most' water --t 0:800:0.1 --p 0:100:0.1
expect 2 '^kalorfix: --p 1e999: expected a number' water --t 20 --p 1e999
expect 2 '^kalorfix: --t nan: expected a number' water --t nan --p 1
expect 2 '^kalorfix: --p: give the absolute pressure' water --t 20
expect 2 '^kalorfix: --p: saturated vapour' water --t 20 --p 1 --mode saturated
expect 2 '371\.85 degC' water --t 372 --mode saturated
expect 2 'mode' water --t 20 --p 1 --mode wet
expect 2 '^kalorfix: surplus: no such command' surplus
expect 2 '^kalorfix: --turbo: no such option' demo --turbo
expect 2 '^kalorfix: --tt: no such option' water --tt 20
expect 2 '^kalorfix: --t -5: must lie' water --t -5 --p 1
expect 2 '^kalorfix: --dp' water --t 20 --p 1 --dp x
expect 2 'takes one value' water --p 1 --t
expect 0 '^0,1,water' water --t 0.3:0:-0.1 --p 1 --csv
expect 2 'cannot open the library' --lib /nonexistent.so demo
expect 2 'cannot open the library' --lib /etc/passwd id

[ "$("$tool" water --t 20:20.3:0.1 --p 1 --csv | wc -l)" -eq 5 ] || { echo "FAILED: the stop belongs to the range"; failures=$((failures + 1)); }
"$tool" >"$out" 2>"$err" && { echo "FAILED: no arguments"; failures=$((failures + 1)); }
grep -q Subcommands "$err" || { echo "FAILED: no help without arguments"; failures=$((failures + 1)); }
"$tool" surplus 2>&-
[ $? -eq 2 ] || { echo "FAILED: standard error is closed"; failures=$((failures + 1)); }
if [ -w /dev/full ]; then
    "$tool" --help >/dev/full 2>"$err"
    [ $? -eq 2 ] || { echo "FAILED: help on a full disk"; failures=$((failures + 1)); }
    "$tool" water --t 0:800:1 --p 1 >/dev/full 2>"$err"
    [ $? -eq 2 ] && [ "$(wc -l <"$err")" -eq 1 ] || { echo "FAILED: a full disk"; cat "$err"; failures=$((failures + 1)); }
fi
[ "$failures" -eq 0 ] && echo "tool: all as expected"
exit "$failures"
