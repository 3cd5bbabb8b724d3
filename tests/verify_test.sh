#!/bin/sh
# SPDX-License-Identifier: MIT
# The verification report and the drawings: verify_test.sh TOOL BUILD_DIRECTORY CASES CHECK
set -u
tool=$1 cases=$3 check=$4
library=$2/kalorfix.so
data=$2/gas.dat
. "$(dirname "$0")/checks.sh"
cd "$work" || exit 1

judge() { python3 "$check" "$@" || fail "$*"; }

# The whole: the files beside the tool are those of the source tree, and all is met.
expect 0 '^MET: [0-9]+ points, [0-9]+ values from [0-9]+ files, [1-9][0-9]* differ as declared, 0 failed$' verify \
    --html r.html --csv r.csv
expect 0 '^t_param_1 ' verify --cases "$cases" --csv s.csv
cmp -s r.csv s.csv || fail "the copied case files differ from the source"
judge html r.html
judge csv r.csv "$cases"
judge rows r.csv verdict FAILED 0
for part in "$(sha256sum <"$library" | cut -c1-64)" "$(sha256sum <"$data" | cut -c1-64)" 'Limits from both sides' \
    'Deliberate deviations' '0\.265 as the coefficient' 'What is not verified' 'ffp-contract=off' \
    'MET: [0-9]+ of [0-9]+ values within' 'material-39-high' 'limits.txt:' \
    'href="#d-doubled-cross-term">differs as declared, at most 0\.012 %<'; do
    grep -qE "$part" r.html || fail "the report lacks $part"
done
grep -qE '>FAILED|not in this list' r.html && fail "a met report says FAILED, or a declared reason is no deliberate deviation"

# One expected value falsified: the point, the file and the line are named.
mkdir wrong
cp "$cases"/*.txt wrong
sed -i 's/^\(c38 .*\)40\.38~/\140.49~/' wrong/water_release.txt
line=$(grep -n '^c38 ' wrong/water_release.txt | cut -d: -f1)
expect 1 "^FAILED water_release.txt:$line: c38: mu_uPa_s expected 40.49" verify --cases wrong --html w.html --csv w.csv
expect 1 '^FAILED: .* 1 failed$' verify --cases wrong
judge html w.html
judge csv w.csv wrong
judge rows w.csv verdict FAILED 1
grep -q 'FAILED: 1 of' w.html || fail "the report hides a failure"
sed -i "s/^\(cold-in  *0  *1  *1  *\)computed/\1refused/" wrong/limits.txt
expect 1 'cold-in: status expected refused, computed 1' verify --cases wrong
# A printed value farther away than declared, and a reason of one's own.
sed -i 's/^\(iso5-12--3.15 .*\)0\.69540/\10.69550/; s/^\(deviation: .*\) doubled cross term/\1 a whim/' wrong/gas_aga8.txt
expect 1 'iso5-12--3.15: Z expected 0.69550, .*, declared at most 0.012 %$' verify --cases wrong --html w.html --csv w.csv
judge html w.html
judge csv w.csv wrong
grep -q 'a whim</b>: declared in the case files, not in this list' w.html || fail "any reason is taken for a deliberate deviation"

# Another library, and one without gas data.
mkdir bare water
cp "$library" bare
cp "$cases/water_release.txt" water
expect 2 '^kalorfix: --gas-data: there is no gas.dat beside the library' --lib bare/kalorfix.so verify --html n.html
expect 0 '^MET' --lib bare/kalorfix.so verify --cases water --html b.html
judge html b.html
expect 0 '^MET' --lib bare/kalorfix.so --gas-data "$data" verify
head -c 7660 /dev/zero >zero.dat
expect 2 '^kalorfix: zero.dat: these gas data are not used: ' --gas-data zero.dat verify --html z.html
"$tool" gasdat show "$data" | sed 's/^\(methane  *\)16\.043 /\116.053 /' >wrong.txt
"$tool" gasdat build wrong.txt -o wrong.dat >/dev/null
expect 1 '^FAILED gas_by_composition.*vnic-Z-lean-1: Z' --gas-data wrong.dat verify --html z.html
judge html z.html

# Bad input.
mkdir empty bad
for fault in '[none]\nsource: s\ncolumns: case t_C -> phase\na 1 water|:1: no such function: none' \
    '[t_phase_1]\nsource: s\ncolumns: case t -> phase\na 1 water|:1: t_phase_1 has no input t' \
    '[t_phase_1]\nsource: s\ncolumns: case t_C -> b\na 1 1|:1: t_phase_1 has no result b' \
    '[t_phase_1]\nsource: s\ncolumns: case t_C -> phase\na x water|:4: not a number or a known word: x'; do
    printf "${fault%%|*}\n" >bad/bad.txt
    expect 2 "bad.txt${fault#*|}" verify --cases bad --html n.html
done
# A text that would be a formula in a spreadsheet, and two names of one file.
sed 's/^c38 /=c38 /' "$cases/water_release.txt" >water/water_release.txt
expect 0 '^MET' verify --cases water --csv f.csv
grep -q "^t_param_1,'=c38," f.csv || fail "a formula in the CSV"
expect 2 '^kalorfix: --csv ./n: is the file of --html n already$' verify --html n --csv ./n
expect 2 'cannot open the library' --lib /etc/passwd --gas-data "$data" verify --html n.html
[ -e n.html ] && fail "a refused report left a file"
ls | grep -q '\.[a-zA-Z0-9]\{6\}$' && fail "a temporary file stayed"

# Curves.
gas="gas --method gerg91 --rho-c 0.68"
expect 0 '^ +20 ' water --t 20:400:20 --p 1:21:4 --svg w.svg
judge svg w.svg
[ "$(grep -c '<path' w.svg)" -eq 6 ] || fail "a curve for each pressure"
grep -q '>density, kg/m3<' w.svg || fail "the axis names quantity and unit"
expect 0 '^t_C,' water --t 20:350:10 --mode saturated --svg s.svg --quantity h --csv
judge svg s.svg
expect 0 '^ +20 ' $gas --t 20 --p 1:12:1 --svg g.svg --quantity Z
judge svg g.svg
expect 0 '^ +0 ' $gas --t 0:40:20 --p 1:12:0.5 --svg g2.svg
[ "$(grep -c '<path' g2.svg)" -eq 3 ] || fail "a curve for each temperature where only that is few enough"
# The arguments are words to split.
# shellcheck disable=SC2086
row() { expect "$1" "$3" $2; }
rows report_runs.txt row
[ -e n.svg ] && fail "a refused drawing left a file"

finish report
