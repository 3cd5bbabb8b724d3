#!/bin/sh
# SPDX-License-Identifier: MIT
# Audit of an archive, protocol of a device, and what stands on the pages: form_test.sh TOOL EXAMPLES CHECK
set -u
tool=$1 examples=$2 check=$3
. "$(dirname "$0")/checks.sh"
cd "$work" || exit 1
judge() { python3 "$check" "$@" || fail "$*"; }

# The hours that a run counted from constant readings, every ten minutes, come back without a difference.
sed '/^\[GAS 2\]/,/^\[HEAT 1\]/{/^\[HEAT/!d}' "$examples/station.ini" >s.ini
awk 'BEGIN { print "time_s,channel,t_C,p_Pa,dp_Pa"; for (k = 0; k <= 180; ++k)
    print k * 600 ",GAS 1,8,1200000,16000\n" k * 600 ",HEAT 1,300,1200000,40000\n" k * 600 ",HEAT 2,90,800000,25000" }' >r.csv
"$tool" run s.ini r.csv --format csv --out out.csv || fail "run"
awk -F, 'BEGIN { OFS = "," } /^#/ { next } NR == 1 { for (i = 1; i <= NF; ++i) at[$i] = i
        print "time_s,channel,t_C,p_Pa,dp_Pa,mass_t,volume_m3,standard_volume_m3,energy_GJ,heat_GJ,dp_min_Pa,dp_max_Pa,dp_sd_Pa"; next }
    $at["hour_mass_t"] != "" { print $1, $2, $at["t_C"], $at["p_Pa"], $at["dp_Pa"], $at["hour_mass_t"], $at["hour_volume_m3"],
        $at["hour_standard_volume_m3"], $at["hour_energy_GJ"], $at["hour_heat_GJ"], "", "", "" }' out.csv >a.csv
expect 0 '^GAS 1: 30 hours, 0 refused by the library, 0 without an amount of the device, 0 missing$' audit s.ini a.csv \
    --stamp end --limit 0 --csv hours.csv
judge rows hours.csv difference 0 300
# A hole of two hours, a standing flow, a spread, and an amount that is 1 % short.
sed -e '/^18000,GAS 1/d; /^21600,GAS 1/d; s/^\(36000,GAS 1,8,1200000\),16000/\1,0/' \
    -e 's/^\(7200,GAS 1,.*\),,,$/\1,12800,19200,/; s/^\(10800,GAS 1,.*\),,,$/\1,,,4800/' \
    -e 's/^\(3600,HEAT 1,[^,]*,[^,]*,[^,]*\),57.02/\1,56.02/' a.csv >b.csv
audit() { expect 1 "$1" audit s.ini b.csv --stamp end --limit 0.01 --hours; }
audit '^GAS 1: 28 hours, 1 refused by the library, 0 without an amount of the device, 2 missing$'
audit '^  missing: 2 from 18000 to 25200$'
audit '^  the device counted there, in no sum below: mass 21\.5289'
audit '^  7200 +21\.52891 +21\.52891 +0 +0\.0000 +0\.5064$'   # chord between 0.8 and 1.2 of the mean
audit '^  10800 .* 4\.2174$'                                   # 1 - 1 / sqrt(1 + 0.3^2)
audit '^  worst 3600 +57\.027.* 56\.027.* -1 +-1\.753'

expect 0 '^  sum of 24 +516\.3563 +516\.2374 ' audit "$examples/station.ini" "$examples/archive_day.csv"

# A device at the points of the default; a tenth of a per cent on one value is seen.
ranges="--t 0:40 --p 1:1.4MPa --dp 1:16kPa"
protocol() { status=$1 pattern=$2; shift 2; expect "$status" "$pattern" protocol s.ini 'GAS 1' $ranges "$@"; }
protocol 0 '^27,40,1400000,16000,' && grep -v '^#' "$said/out" | awk -F, 'BEGIN { print "point;q_m_kg_s;q_c_m3_h" }
    NR > 1 { $6 = sprintf("%.12g", $6 / 3.6); sub(/\./, ",", $6); sub(/\./, ",", $8); print $1 ";" $6 ";" $8 }' >device.csv
evil='=1+1"<script>alert(1)</script>&'\''
# x'"$(printf '\033\302\233\342\200\256\377')"
protocol 0 '^MET: 54 values of 27 points lie within ±0\.05 %; the largest deviation is \+0\.0000 %\.$' --readings device.csv \
    --limit 0.05 --lang ru --html p.html --csv p.csv --object "$evil" --device "$evil" --serial "$evil" --inspector "$evil"
judge html p.html
judge russian p.html
grep -q '<script' p.html && fail "a name is markup"
{ LC_ALL=C grep -q "$(printf '[\033\377]')" p.html || grep -q "$(printf '\033')" p.csv; } && fail "a control character or what is no text on the page"
[ "$(grep -vc '^#' p.csv)" -eq 28 ] || fail "a name makes a line of the CSV"
sed '3s/^2;\([0-9]*\),/2;\1,9/; 5d' device.csv >off.csv
protocol 1 '^NOT MET: 1 of 52 values lie outside' --readings off.csv --limit 0.05 --html p.html
sed 5d device.csv >short.csv
protocol 1 '^NOT COMPLETE: 2 values are missing' --readings short.csv --limit 0.05 --html p.html
# The arguments are words to split.
# shellcheck disable=SC2086
row() { printf '%b' "$4" >file.csv; expect "$1" "$3" $2; }
rows form_runs.txt row

# The report in Russian.
expect 0 '^MET' verify --lang ru --html r.html
judge html r.html
judge russian r.html

finish form
