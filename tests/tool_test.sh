#!/bin/sh
# SPDX-License-Identifier: MIT
# The command-line tool as a person meets it: good input, bad input, exit statuses:
# tool_test.sh TOOL BUILD_DIRECTORY
set -u
tool=$1
data=$2/gas.dat
. "$(dirname "$0")/checks.sh"
cd "$work" || exit 1

cp "$tests/tables/pipeline.csv" .
# As a spreadsheet writes it, by formulas and other cases.
printf '\357\273\277component;mole_percent\r\n' >russian.csv
sed '/^#/d; /^component/d; s/^methane/CH4/; s/^nitrogen/n2/; s/^carbon_dioxide/"Carbon Dioxide"/; s/^n-butane/nc4h10/; s/,/;/; s/\./,/; s/$/;\r/' \
    pipeline.csv >>russian.csv
# The arguments are words to split.
# shellcheck disable=SC2086
row() { expect "$1" "$3" $2; }
rows tool_runs.txt row
composition() {
    # shellcheck disable=SC2059
    printf "$1" >bad.csv
    expect 2 "$3" gas --method "$2" --composition bad.csv --t 15 --p 5
}
rows tool_compositions.txt composition

# One reading and one check: rows, then what was solved from what the same point gave.
examples=$tests/../examples
cp "$examples/natural_gas.csv" gas.csv && sed 's/natural_gas/gas/' "$examples/station.ini" >all.ini
sed -n '/^\[GAS 2\]/,/^\[HEAT 1\]/{/^\[HEAT/!p}' all.ini >one.ini
sed 's/^d20_mm.*/d20_mm = 395/' one.ini >wide.ini
sed '/_exponent/d' one.ini >short.ini
sed 's/^device = /cut_off_kPa = 0.5\n&/' one.ini >cut.ini
printf 'component,mole_percent\nmethane,0.99\n' >shares.csv
rows calc_runs.txt row
{ echo time_s,channel,t_C,p_MPa,dp_kPa
printf '%s,GAS 2,15,5.5,%s\n' 0 25 3600 25 7200 5 10800 45; } >hours.csv
# A transmitter of gauge pressure, within its range although the absolute pressure is above it.
sed 's/^p_range_MPa.*/p_range_MPa = 5.5/; s/^device = /barometer_kPa = 100\n&/' one.ini >gauge.ini
printf 'time_s,channel,t_C,p_gauge_MPa,dp_kPa\n0,GAS 2,15,5.45,25\n9,GAS 2,15,5.45,25\n' >gauge.csv
rows uncertainty_runs.txt row
value() { sed -n "s/.*\"$1\":\([^,}]*\).*/\1/p" "$said/out"; }
trip() {
    # shellcheck disable=SC2086
    {
        expect 0 '"solved"' calc $1 --d20 "$2" --dp "$3" --json && q=$(value q_m_t_h)t/h
        expect 0 '"solved"' calc $1 --d20 "$2" --q "$q" --json && dp=$(value dp_Pa)
        expect 0 '"solved"' calc $1 --dp "$3" --q "$q" --json && d20=$(value d20_mm)
    }
    awk -v a="$dp" -v b="$3" -v c="$d20" -v d="$2" 'BEGIN { x = a / b / 1000 - 1; y = c / d - 1; exit !(x * x < 1e-18 && y * y < 1e-18) }' ||
        fail "found again: dp $dp Pa of $3 kPa, d20 $d20 mm of $2 mm: $1"
}
rows calc_trips.txt trip

# The gas data file: shown, built again, judged.
gasdat() {
    mkdir -p sheets
    "$tool" gasdat show "$1" >listing && "$tool" gasdat build listing -o made >/dev/null && cmp -s "$1" made ||
        fail "$1 shown and built again"
    "$tool" gasdat show "$1" --csv sheets >/dev/null && "$tool" gasdat build sheets -o made >/dev/null && cmp -s "$1" made ||
        fail "$1 as CSV and built again"
}
gasdat "$data"
expect 0 '^# V_Mi: block 0, bytes 0..31, molar mass, kg/kmol' gasdat show "$data"
expect 0 '31 tables, 1915 values: no faults$' gasdat check "$data"
head -c 7660 /dev/urandom >random.dat && gasdat random.dat
expect 1 ^ gasdat check random.dat
expect 2 '^kalorfix: /none: cannot read this gas data file: No such file' gasdat show /none
expect 2 '^kalorfix: /: cannot read this gas data file: it is a directory' gasdat check /
expect 2 '^kalorfix: /none: cannot read this table of gas data: No such file' gasdat build /none -o out.dat
expect 2 '^kalorfix: /none/x: cannot be written' gasdat build listing -o /none/x
expect 2 'output' gasdat build listing
expect 2 'subcommand' gasdat
expect 2 '^kalorfix: --output sheets/./aga8_terms.csv: is the file of the table sheets/aga8_terms.csv already$' \
    gasdat build sheets -o sheets/./aga8_terms.csv
[ -e out.dat ] && fail "a failed build left a file"
mkfifo pipe
expect 2 'cannot read this gas data file: it is no regular file$' gasdat show pipe
expect 2 'pipe is a pipe$' --lib ./pipe id
# A terminal takes nothing from a name: neither C0 nor C1 in UTF-8 or alone, while a name in Russian stays.
expect 2 '^kalorfix: \?\[2J\?\?\?м: no such command' "$(printf '\033[2J\302\233\233м')"
# Nobody reads: no word, and the status of SIGPIPE.
for words in 'demo' 'water --t 0:800:0.1 --p 1' 'gasdat show random.dat' 'run --help'; do
    # shellcheck disable=SC2086
    { sleep 0.2; "$tool" $words 2>err; echo $? >status; } | :
    [ "$(cat status)" -eq 141 ] && [ ! -s err ] || { fail "a closed pipe: $words" && cat err; }
done

[ "$("$tool" water --t 20:20.3:0.1 --p 1 --csv | wc -l)" -eq 5 ] || fail "the stop belongs to the range"
"$tool" >out 2>err && fail "no arguments"
grep -q Subcommands err || fail "no help without arguments"
"$tool" surplus 2>&-
[ $? -eq 2 ] || fail "standard error is closed"
if [ -w /dev/full ]; then
    "$tool" --help >/dev/full 2>err
    [ $? -eq 2 ] || fail "help on a full disk"
    "$tool" water --t 0:800:1 --p 1 >/dev/full 2>err
    [ $? -eq 2 ] && [ "$(wc -l <err)" -eq 1 ] || { fail "a full disk" && cat err; }
fi
finish tool
