#!/bin/sh
# The verification report and the drawings: verify_test.sh TOOL BUILD_DIRECTORY CASES CHECK
set -u
tool=$1 cases=$3 check=$4
library=$2/kalorfix.so
data=$2/gas.dat
. "$(dirname "$0")/checks.sh"

judge() { python3 "$check" "$@" || fail "$*"; }

# The whole: the files beside the tool are those of the source tree, and all is met.
expect 0 '^MET: [0-9]+ points, [0-9]+ values from [0-9]+ files, 0 failed$' verify --html "$work/r.html" --csv "$work/r.csv"
expect 0 '^t_param_1 ' verify --cases "$cases" --csv "$work/s.csv"
cmp -s "$work/r.csv" "$work/s.csv" || fail "the copied case files differ from the source"
judge html "$work/r.html"
judge csv "$work/r.csv" "$cases"
judge rows "$work/r.csv" verdict FAILED 0
for part in "$(sha256sum <"$library" | cut -c1-64)" "$(sha256sum <"$data" | cut -c1-64)" 'Limits from both sides' \
    'Deliberate deviations' '0\.265 as the coefficient' 'What is not verified' 'ffp-contract=off' \
    'GERG-91 mod\. against AGA8-92DC' 'MET: all' 'material-39-high' 'limit_pairs.txt:'; do
    grep -q "$part" "$work/r.html" || fail "the report lacks $part"
done
grep -qE '>FAILED' "$work/r.html" && fail "a met report says FAILED"

# One expected value falsified: the point, the file and the line are named.
mkdir "$work/wrong"
cp "$cases"/*.txt "$work/wrong"
sed -i 's/^\(c38 .*\)40\.38~/\140.49~/' "$work/wrong/water_release.txt"
line=$(grep -n '^c38 ' "$work/wrong/water_release.txt" | cut -d: -f1)
expect 1 "^FAILED water_release.txt:$line: c38: mu_uPa_s expected 40.49" verify --cases "$work/wrong" --html "$work/w.html" --csv "$work/w.csv"
expect 1 '^FAILED: .* 1 failed$' verify --cases "$work/wrong"
judge html "$work/w.html"
judge csv "$work/w.csv" "$work/wrong"
judge rows "$work/w.csv" verdict FAILED 1
grep -q 'FAILED: 1 of' "$work/w.html" || fail "the report hides a failure"
sed -i "s/^\(cold-in  *0  *1  *1  *\)computed/\1refused/" "$work/wrong/limit_pairs.txt"
expect 1 'cold-in: status expected refused, computed 1' verify --cases "$work/wrong"

# Another library, and one without gas data.
mkdir "$work/bare" "$work/water"
cp "$library" "$work/bare"
cp "$cases/water_release.txt" "$work/water"
expect 2 '^kalorfix: --gas-data: there is no gas.dat beside the library' --lib "$work/bare/kalorfix.so" verify --html "$work/n.html"
expect 0 '^MET' --lib "$work/bare/kalorfix.so" verify --cases "$work/water" --html "$work/b.html"
judge html "$work/b.html"
expect 0 '^MET' --lib "$work/bare/kalorfix.so" --gas-data "$data" verify
head -c 7660 /dev/zero >"$work/zero.dat"
expect 1 '^FAILED gas_aga8' --gas-data "$work/zero.dat" verify --html "$work/z.html"
judge html "$work/z.html"

# Bad input.
mkdir "$work/empty" "$work/bad"
expect 2 '^kalorfix: --cases /none: no such directory' verify --cases /none
expect 2 'holds no case file' verify --cases "$work/empty"
for fault in 'row 1|:1: a table must begin' '[t_phase_1]|:1: the table of t_phase_1 names no source' \
    '[none]\nsource: s\ncolumns: case t_C -> phase\na 1 water|:1: no such function: none' \
    '[t_phase_1]\nsource: s\ncolumns: case t -> phase\na 1 water|:1: t_phase_1 has no input t' \
    '[t_phase_1]\nsource: s\ncolumns: case t_C -> phase\na x water|:4: not a number or a known word: x'; do
    printf "${fault%%|*}\n" >"$work/bad/bad.txt"
    expect 2 "bad.txt${fault#*|}" verify --cases "$work/bad" --html "$work/n.html"
done
expect 2 '^kalorfix: --html /none/r.html: there is no directory' verify --html /none/r.html
expect 2 'is a directory' verify --csv "$work"
expect 2 'cannot open the library' --lib /etc/passwd --gas-data "$data" verify --html "$work/n.html"
[ -e "$work/n.html" ] && fail "a refused report left a file"
ls "$work" | grep -q '\.part' && fail "a temporary file stayed"

# Curves.
gas="gas --method gerg91 --rho-c 0.68"
expect 0 '^ +20 ' water --t 20:400:20 --p 1:21:4 --svg "$work/w.svg"
judge svg "$work/w.svg"
[ "$(grep -c '<path' "$work/w.svg")" -eq 6 ] || fail "a curve for each pressure"
grep -q '>density, kg/m3<' "$work/w.svg" || fail "the axis names quantity and unit"
expect 0 '^t_C,' water --t 20:350:10 --mode saturated --svg "$work/s.svg" --quantity h --csv
judge svg "$work/s.svg"
expect 0 '^ +20 ' $gas --t 20 --p 1:12:1 --svg "$work/g.svg" --quantity Z
judge svg "$work/g.svg"
expect 0 '^ +0 ' $gas --t 0:40:20 --p 1:12:0.5 --svg "$work/g2.svg"
[ "$(grep -c '<path' "$work/g2.svg")" -eq 3 ] || fail "a curve for each temperature where only that is few enough"
expect 2 '^kalorfix: --quantity none: there are rho, mu, h and kappa$' water --t 20:30:1 --p 1 --svg "$work/n.svg" --quantity none
expect 2 '^kalorfix: --quantity none: there are K, Z' $gas --t 20 --p 1:2:1 --svg "$work/n.svg" --quantity none
expect 2 'give --svg FILE too' water --t 20:30:1 --p 1 --quantity rho
expect 2 'a curve needs a range' water --t 20 --p 1 --svg "$work/n.svg"
expect 2 'at most 12 lines' water --t 20:40:1 --p 1:40:1 --svg "$work/n.svg"
expect 2 'there is nothing to draw' $gas --t 60:61:0.5 --p 0.01 --svg "$work/n.svg"
expect 2 '^kalorfix: /none/x.svg: cannot write' water --t 20:30:1 --p 1 --svg /none/x.svg
[ -e "$work/n.svg" ] && fail "a refused drawing left a file"

finish report
