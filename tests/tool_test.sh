#!/bin/sh
# The command-line tool as a person meets it: good input, bad input, exit statuses:
# tool_test.sh TOOL BUILD_DIRECTORY
set -u
tool=$1
data=$2/gas.dat
failures=0
out=$(mktemp)
err=$(mktemp)
gas=$(mktemp)
trap 'rm -f "$out" "$err" "$gas"' EXIT

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
expect 0 'volume flow at standard conditions +31664\.82  m3/h' demo
expect 0 'energy of the hour +6218\.45' demo
expect 0 'GAS 1 +day : mass 516\.23[0-9]+ t, ' demo
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

# Gas: one state by each method, tables, refusals.
cat >"$gas" <<'EOF'
# Pipeline gas
component,mole_percent
methane, 96.5
ethane,1.8
propane,0.45
n-butane,0.1
i-butane,0.1
n-pentane,0.03
i-pentane,0.05
hexanes,0.07
nitrogen,0.3
carbon_dioxide,0.6
EOF
expect 0 'coefficient K +0\.8422711' gas --method aga8 --composition "$gas" --t -3.15 --p 6
expect 0 'factor Z +0\.840526' gas --method aga8 --composition "$gas" --t -3.15 --p 6
expect 0 'coefficient K +0\.870287' gas --method vnic --composition "$gas" --t 10 --p 6
expect 0 'lower heat of combustion +8160\.08' gas --method vnic --composition "$gas" --t 10 --p 6 --heat kcal20
expect 0 'coefficient K +0\.852099' gas --method nx19 --composition "$gas" --t 0 --p 6
expect 0 'density +39\.0443' gas --method gerg91 --rho-c 0.7 --n2 1 --co2 0.5 --t 15 --p 5
expect 0 'density +39\.0335' gas --method gerg91 --rho-c 0.7 --n2 1 --co2 0.5 --t 15 --p 5 --vapour 0.02
expect 0 '^ +20 +6 +0\.88' gas --method aga8 --composition "$gas" --t 0:40:20 --p 2:6:2
expect 0 '^20,6,1,0\.6999' gas --method aga8 --composition "$gas" --t 20 --p 6 --csv
expect 1 '' gas --method gerg91 --rho-c 0.7 --t 60 --p 0.01
expect 2 '^kalorfix: --method: give one of' gas --t 15 --p 5
expect 2 '^kalorfix: --method gerg: there are' gas --method gerg --t 15 --p 5
expect 2 '^kalorfix: --composition: AGA8-92DC needs' gas --method aga8 --t 15 --p 5
expect 2 '^kalorfix: --rho-c: give the density' gas --method nx19 --t 15 --p 5
expect 2 '^kalorfix: --rho-c 1.2: must lie within 0..1' gas --method nx19 --rho-c 1.2 --t 15 --p 5
expect 2 'the ends excluded' gas --method nx19 --rho-c 0.7 --t 66.85 --p 5
expect 2 '^kalorfix: /none: no such gas data file' --gas-data /none gas --method aga8 --composition "$gas" --t 15 --p 5
expect 2 '^kalorfix: /none.csv: cannot read' gas --method aga8 --composition /none.csv --t 15 --p 5
for fault in 'methan,1|:3: no such component: methan;' 'methane,1x|:3: expected a number from 0 to 100' \
    'methane;1|:3: expected two columns' 'methane,101|:3: expected a number' 'methane,nan|:3: expected a number'; do
    printf '# c\ncomponent,mole_percent\n%s\n' "${fault%%|*}" >"$gas"
    expect 2 "${fault#*|}" gas --method aga8 --composition "$gas" --t 15 --p 5
done
printf 'component,mole_percent\nmethane,50\nmethane,50\n' >"$gas"
expect 2 ':3: methane stands here for the second time' gas --method vnic --composition "$gas" --t 15 --p 5
printf 'name,percent\n' >"$gas"
expect 2 ':1: expected the heading' gas --method vnic --composition "$gas" --t 15 --p 5
printf 'component,volume_fraction\nmethane,0\n' >"$gas"
expect 2 ': the composition is empty' gas --method vnic --composition "$gas" --t 15 --p 5

# The gas data file: shown, built again, judged.
gasdat() {
    listing=$gas.txt made=$gas.dat
    "$tool" gasdat show "$1" >"$listing" && "$tool" gasdat build "$listing" -o "$made" >/dev/null && cmp -s "$1" "$made" ||
        { echo "FAILED: $1 shown and built again"; failures=$((failures + 1)); }
    mkdir -p "$gas.d"
    "$tool" gasdat show "$1" --csv "$gas.d" >/dev/null && "$tool" gasdat build "$gas.d" -o "$made" >/dev/null && cmp -s "$1" "$made" ||
        { echo "FAILED: $1 as CSV and built again"; failures=$((failures + 1)); }
}
gasdat "$data"
expect 0 '^# V_Mi: block 0, bytes 0..31, molar mass, kg/kmol' gasdat show "$data"
expect 0 '31 tables, 1915 values: no faults$' gasdat check "$data"
head -c 7660 /dev/urandom >"$gas.random" && gasdat "$gas.random"
expect 1 '' gasdat check "$gas.random"
expect 2 '^kalorfix: /none: cannot read this gas data file' gasdat show /none
expect 2 '^kalorfix: /none: cannot read this file' gasdat build /none -o "$gas.out"
expect 2 '^kalorfix: /none/x: cannot write this file' gasdat build "$gas.txt" -o /none/x
expect 2 'output' gasdat build "$gas.txt"
expect 2 'subcommand' gasdat
[ -e "$gas.out" ] && { echo "FAILED: a failed build left a file"; failures=$((failures + 1)); }
rm -rf "$gas".*

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
