#!/bin/sh
# SPDX-License-Identifier: MIT
# Station runs: totals against sums, split runs, units, refusals in words, bad input, interruption, formats.
set -u
tool=$1
examples=$2
. "$(dirname "$0")/checks.sh"
cd "$work" || exit 1

# run NAME ARGUMENTS...: a run that must succeed, results in NAME.
run() {
    name=$1
    shift
    "$tool" run "$@" >"$name" 2>err || { fail "run $*" && cat err; }
    [ -s err ] && fail "run $*: something on standard error" && cat err
}

# refuse REGEX ARGUMENTS...: a refusal in one line that leaves no new file.
refuse() {
    wanted=$1
    shift
    before=$(ls)
    expect 2 "$wanted" run "$@"
    [ "$(ls)" = "$before" ] || fail "files left behind: run $*"
}

# column NAME FILE: the values of a column of CSV results.
column() {
    awk -F, -v name="$1" 'NR == 1 { for (i = 1; i <= NF; ++i) if ($i == name) k = i } NR > 1 && !/^#/ { print $k }' "$2"
}

# close A B TOLERANCE: relative.
close() { awk -v a="$1" -v b="$2" -v e="$3" 'BEGIN { d = a - b; if (d < 0) d = -d; m = b < 0 ? -b : b; exit !(d <= e * m) }'; }

# ---- The example: totals are the sums over the cycles -----------------------------------------------------------
station=$examples/station.ini
day=$examples/readings_day.csv
run whole.csv "$station" "$day" --registers whole.reg
python=$(command -v python3)
[ -z "$python" ] || { "$python" "$examples/make_readings.py" | cmp - "$day" || fail "the generator does not give the readings"; }
grep -q '^GAS 1,mass,t,0,' whole.reg || fail "no register of GAS 1"
for sum in 'GAS 1:q_m_t_h:total_mass_t' 'GAS 1:q_e_GJ_h:total_energy_GJ' 'GAS 2:q_c_m3_h:total_standard_volume_m3' \
    'HEAT 1:q_h_GJ_h:total_heat_GJ' 'HEAT 2:q_v_m3_h:total_volume_m3'; do
    ( IFS=:; set -- $sum
    awk -F, -v channel="$1" -v flow="$2" -v total="$3" '
        NR == 1 { for (i = 1; i <= NF; ++i) { if ($i == flow) q = i; if ($i == total) t = i } }
        /^#/ { next }
        $2 == channel { if (n++ && $3 == "computed") sum += $q * 120 / 3600; last = $t }
        END { d = sum - last; if (d < 0) d = -d; exit !(n == 736 && last > 0 && d <= 3e-7 * last) }' whole.csv ) ||
        fail "$sum: the register is not the sum over the cycles"
done
# Hours and days are differences of the registers, in the unit of their column; the refused 20 minutes of HEAT 1 are passed over.
awk -F, 'NR == 1 { for (i = 1; i <= NF; ++i) { if ($i == "hour_mass_t") h = i; if ($i == "day_mass_t") d = i } next }
    $2 == "GAS 1" && $h != "" { n++; sum += $h }
    $2 == "GAS 1" && $d != "" { exit !(n == 24 && (sum - $d) ^ 2 < (1e-6 * $d) ^ 2) }' whole.csv || fail "24 hours are not the day"
[ "$(grep -c '^[^,]*,HEAT 1,refused,flow,Re [0-9.]* below 20000 for this device and beta,' whole.csv)" -eq 10 ] ||
    fail "ten refused cycles of HEAT 1"
run hours.txt "$station" "$day" --format hours
[ "$(grep -c ' HEAT 1 *hour: ' hours.txt)" -eq 24 ] || fail "24 hours of HEAT 1"
[ "$(grep -c ' day : ' hours.txt)" -eq 4 ] || fail "four days"
grep -q '^HEAT 1 *726 cycles computed, 10 refused$' hours.txt || fail "counts of HEAT 1"
run days.txt "$station" "$day" --format days
[ "$(grep -c ' hour: ' days.txt)" -eq 0 ] && [ "$(grep -c ' day : ' days.txt)" -eq 4 ] || fail "days without hours"
run table.txt "$station" "$day" --format table
grep -q 'GAS 2 .* 95\.0043 ' table.txt || fail "the table lacks the first cycle of GAS 2"
grep -q '^registers$' table.txt || fail "the table lacks its registers"

# One gas, one viscosity: in the station, by itself, and without the other channels.
mu=$(awk -F, '$2 == "GAS 2" { print $17; exit }' whole.csv)
"$tool" gas --method aga8 --composition "$examples/natural_gas.csv" --t 13.24 --p 5.5 --csv >gas.csv
close "$mu" "$(awk -F, 'NR == 2 { print $8 }' gas.csv)" 3e-7 || fail "run gives the viscosity $mu, gas another"
cp "$examples/natural_gas.csv" .
sed -n '/^\[GAS 2\]/,/^\[HEAT 1\]/p' "$station" | sed '$d' >alone.ini
grep -E '^time|,GAS 2,' "$day" >alone.csv
run alone.out alone.ini alone.csv
[ "$(awk -F, '$2 == "GAS 2" { print $17; exit }' alone.out)" = "$mu" ] || fail "another viscosity without other channels"
# Contents of another gas raise it; a composition is scaled on demand.
sed 's/^contents = own/contents = as_left/; s/^nitrogen_pct = .*/nitrogen_pct = 15/' "$station" >left.ini
run left.out left.ini "$day"
[ "$(awk -F, '$2 == "GAS 2" { print int($17 * 100); exit }' left.out)" -ge 1220 ] || fail "contents that are left do nothing"
sed 's/,96\.5$/,90/' "$examples/natural_gas.csv" >natural_gas.csv
sed 's/^contents = own/normalise = yes/' "$station" >scaled.ini
"$tool" run scaled.ini "$day" --format days >scaled.out 2>err || fail "a composition that is scaled"
grep -q 'sums to 93.5 %, scaled to 100 %$' scaled.out && grep -q '^kalorfix: warning: .* 93.5 %' err || fail "no word of the scaling"

# ---- Formats ----------------------------------------------------------------------------------------------------
run json.txt "$station" "$day" --format json
[ "$(grep -c '"record":"cycle"' json.txt)" -eq 2944 ] || fail "a JSON line a cycle"
[ "$(grep -c '"record":"register"' json.txt)" -eq 14 ] || fail "a JSON line a register"
if [ -n "$python" ]; then
    { echo '['; sed '$!s/$/,/' json.txt; echo ']'; } | "$python" -m json.tool >/dev/null || fail "malformed JSON"
    "$python" -c 'import csv, sys
rows = list(csv.reader(line for line in open("whole.csv") if line[0] != "#"))
sys.exit(len(rows) != 2945 or any(len(row) != len(rows[0]) for row in rows))' || fail "the CSV is not rectangular"
fi
# The same bytes to a file as to standard output, from a file as from standard input, as a pipe and as a file.
run stdin.csv "$station" - --registers stdin.reg <"$day"
cmp -s stdin.csv whole.csv || fail "standard input gives other results"
cat "$day" | "$tool" run "$station" - --registers pipe.reg --out pipe.csv --format csv || fail "a pipe"
cmp -s pipe.csv whole.csv && cmp -s pipe.reg whole.reg || fail "a pipe gives other results"
{ read -r _; "$tool" run "$station" - --out tail.csv; } <"$day" 2>err && fail "a tail without its heading"

# ---- A run in two -----------------------------------------------------------------------------------------------
head -n 1201 "$day" >first.csv
{ head -n 1 "$day"; tail -n +1202 "$day"; } >second.csv
# The registers of the interface have single precision: what a run begins with is rounded to that.
same_registers() {
    awk -F, 'NR == FNR { for (i = 6; i <= NF; ++i) value[FNR, i] = $i; next }
        FNR > 1 { for (i = 6; i <= NF; ++i) { d = $i - value[FNR, i]; if (d < 0) d = -d; if (d > 2.4e-7 * $i) bad = 1 } }
        END { exit bad || FNR != 15 }' "$1" "$2"
}
run first.out "$station" first.csv --registers first.reg
run second.out "$station" second.csv --continue first.reg --registers second.reg
same_registers whole.reg second.reg || { fail "a run in two has other registers" && diff whole.reg second.reg; }
run again.out "$station" "$day" --continue first.reg --registers again.reg
grep -q '^# *readings that the registers hold already, passed over: 300$' again.out &&
    sed '/registers hold already/d' again.out | cmp -s second.out - && cmp -s second.reg again.reg ||
    fail "readings that are counted already are not passed over"
run first.out "$station" first.csv --format csv
run second.out "$station" second.csv --continue first.out --registers again.reg
cmp -s second.reg again.reg || fail "going on from a CSV"
run first.out "$station" first.csv --format table
run second.out "$station" second.csv --continue first.out --registers again.reg
cmp -s second.reg again.reg || fail "going on from a table"

# The hour before and the hour after the clocks go back, each in a file of its own.
printf '[HEAT 1]\ndevice = meter_mass\nphase = water\n' >clock.ini
meter() { { echo time,q_t_h,channel,t_C,p_MPa; for t in "$@"; do echo "2026-10-25T$t,36,HEAT 1,80,1"; done; } >clock.csv; }
meter 02:00+02:00 03:00+02:00
run clock.out clock.ini clock.csv --registers clock.reg
meter 02:30+01:00 03:00+01:00
refuse 'the offset \+01:00 from UTC, those of the registers \+02:00; say' clock.ini clock.csv --continue clock.reg
sed 's/2026-10/2027-12/; s/+01:00/+02:00/' clock.csv >years.csv
refuse '400 days after what the registers of HEAT 1 hold; begin' clock.ini years.csv --continue clock.reg
{ printf '[STATION]\nzone = +01:00\n'; cat clock.ini; } >zone.ini
run clock.out zone.ini clock.csv --continue clock.reg --registers clock.reg
grep -q '^HEAT 1,mass,t,0,2026-10-25T03:00:00+01:00,72,' clock.reg || { fail "over the change of the clocks" && cat clock.reg; }

# With amounts that single precision holds exactly the registers are the same to the byte, whatever cuts the run.
cat >meters.ini <<'END'
[HEAT 3]
device = meter_mass
phase = water
volume_exponent = 3
[GAS 2]
device = meter_standard_volume
method = nx19
rho_c_kg_m3 = 0.7
nitrogen_pct = 1
carbon_dioxide_pct = 0.5
END
awk 'BEGIN { print "time_s,channel,t_C,p_MPa,q_t_h,q_m3_h"
    for (k = 0; k < 2000; ++k) { printf "%d,HEAT 3,80,1,36,\n%d,GAS 2,10,2,,%d\n", 100 * k, 100 * k + 7, 3600 + 3600 * (k % 3) } }' >meters.csv
run whole.out meters.ini meters.csv --registers whole.reg
for cut in 2 3 500 501 1800 3999; do
    head -n "$cut" meters.csv >part.csv
    run part.out meters.ini part.csv --registers part.reg
    run part.out meters.ini meters.csv --continue part.reg --registers rest.reg
    grep -E 'mass|standard' whole.reg | grep -vE 'GAS 2,mass' >exact.1
    grep -E 'mass|standard' rest.reg | grep -vE 'GAS 2,mass' >exact.2
    cmp -s exact.1 exact.2 || { fail "cut after line $cut" && diff exact.1 exact.2; }
done
grep -q '^HEAT 3,mass,t,0,199900,1999,1900,1980,36,27100,1728,864$' whole.reg || { fail "mass register of HEAT 3" && cat whole.reg; }
close "$(grep '^HEAT 3,volume' whole.reg | cut -d, -f6)" "$(column q_v_m3_h whole.out | awk 'NR == 1 { printf "%.9g", $1 * 199900 / 3600 / 1000 }')" 3e-7 ||
    fail "volume register of HEAT 3 in thousands"

# ---- A downtime is filled with the substitute flow -------------------------------------------------------------------
sed 's/^volume_exponent = 3/mass_substitute_t_h = 60/' meters.ini >down.ini
head -n 3 meters.csv >part.csv
run down.out down.ini part.csv --downtime 30 --registers down.reg
grep -q '^HEAT 3,mass,t,0,0,30,' down.reg || { fail "30 minutes at 60 t/h" && cat down.reg; }
# A flow that failed in the first reading leaves the downtime to the next.
printf '[HEAT 3]\ndevice = external\nphase = water\nmass_substitute_t_h = 60\n' >late.ini
printf 'time_s,channel,t_C,p_MPa,mass_t_h\n0,HEAT 3,80,1,nan\n3600,HEAT 3,80,1,36\n' >late.csv
run late.out late.ini late.csv --downtime 30 --registers late.reg
grep -q '^HEAT 3,mass,t,0,3600,66,' late.reg || { fail "a downtime before a reading that failed" && cat late.reg; }
run up.out down.ini part.csv --registers up.reg
grep -q '^HEAT 3,mass,t,0,0,0,' up.reg || { fail "no downtime" && cat up.reg; }

# ---- Below the cut-off the time counts, and there is no flow -----------------------------------------------------------
cat >rest.ini <<'END'
[HEAT 1]
device = nozzle_isa1932
pipe_material = 7
device_material = 32
D20_mm = 300
d20_mm = 180
roughness_mm = 0.1
phase = from_state
cut_off_kPa = 0.1
END
printf 'time_s,channel,t_C,p_MPa,dp_kPa\n0,HEAT 1,300,1.2,40\n1800,HEAT 1,300,1.2,-0.02\n3600,HEAT 1,300,1.2,40\n' >rest.csv
run rest.out rest.ini rest.csv --format hours
grep -q '^3600 .* hour: mass 28.5137. t, volume [0-9.]* m3, heat' rest.out &&
    grep -q 'at rest, below the cut-off: 1 of the computed, lowest dp -0.02 kPa' rest.out ||
    { fail "a pipe at rest" && cat rest.out; }

# ---- Flows from elsewhere: each integrator its own, none where no row has one, failed where others have --------------------------
printf '[GAS 7]\ndevice = external\nmethod = gerg91\nrho_c_kg_m3 = 0.68\nnitrogen_pct = 1\ncarbon_dioxide_pct = 0\n' >external.ini
printf 'time_s,channel,t_C,p_MPa,energy_GJ_h,mass_t_h\n0,GAS 7,10,2,7,3\n1800,GAS 7,10,2,72,36\n5400,GAS 7,10,2,,18\n' >external.csv
run external.out external.ini external.csv --registers external.reg
grep -q '^GAS 7,mass,t,0,5400,36,' external.reg && grep -q '^GAS 7,energy,GJ,0,5400,36,' external.reg &&
    grep -q '^GAS 7,volume,m3,0,5400,0,' external.reg && grep -q '^5400,.*no reading of the energy flow' external.out || { fail "external flows" && cat external.reg; }
[ "$(column hour_mass_t external.out | tail -n 1)" = 36 ] || fail "the hour that 5400 s close"
printf 'time_s,channel,t_C,p_MPa,energy_GJ_h,mass_t_h\n0,GAS 7,10,2,7,3\n1800,GAS 7,10,2,nan,36\n5400,GAS 7,,2,72,18\n' >external.csv
run external.out external.ini external.csv
grep -q '1800,GAS 7,refused,totals,no reading of the energy flow' external.out &&
    grep -q 'no reading of the temperature; its flows are counted all the same' external.out &&
    grep -q '^# GAS 7,mass,t,0,5400,36,' external.out && grep -q '^# GAS 7,energy,GJ,0,5400,72,' external.out &&
    grep -q '^# day,GAS 7,0,3600,36,' external.out || { fail "a flow that failed" && cat external.out; }

# ---- Units -------------------------------------------------------------------------------------------------------
cat >unit.ini <<'END'
[HEAT 1]
device = nozzle_isa1932
pipe_material = 7
device_material = 32
D20_mm = 300
d20_mm = 180
roughness_mm = 0.1
phase = from_state
END
printf 'time_s,channel,t_C,p_MPa,dp_kPa\n5,HEAT 1,300,1.2,40\n' >unit.csv
run unit.1 unit.ini unit.csv
for flow in q_m_t_h:57.0274 q_h_GJ_h:173.7238 C:0.961973 epsilon:0.976842; do
    close "$(column "${flow%:*}" unit.1 | head -n 1)" "${flow#*:}" 2e-6 || fail "$flow of the steam channel"
done
# forms READINGS CYCLES LINES: what a file is read as.
forms() {
    { cat unit.ini; printf "$3"; } >form.ini
    printf "$1" >form.csv
    run form.out form.ini form.csv
    got=$(grep -v '^#' form.out | cut -d, -f1,8-10 | sed 1d | paste -sd' ')
    [ "$got" = "$2" ] || fail "$1: read as $got instead of $2"
}
rows station_forms.txt forms
printf 'time_s;channel;t_C;p_kPa;dp_kPa\n5;HEAT 1;300;1,200;40\n6;HEAT 1;300;1200,5;40\n' >unit.csv
run unit.2 unit.ini unit.csv --decimal comma --decimal-commas
grep -q '^5;HEAT 1;refused;flow;[^;]*;superheated steam;;300;1200;40000;8,587868;' unit.2 || { fail "decimal commas" && cat unit.2; }
printf 'time,channel,t_C,p_Pa,dp_Pa\n2026-03-01T23:59:59.5,HEAT 1,300,1200000,40000\n2026-03-02T00:00:09.5,HEAT 1,300,1200000,40000\n' >unit.csv
run unit.4 unit.ini unit.csv
printf 'time,channel,t_C,p_Pa,dp_Pa\n9999-12-31T23:59:59.999999,HEAT 1,300,1200000,40000\n' >unit.csv
run unit.5 unit.ini unit.csv
[ "$(column time unit.5)" = 10000-01-01T00:00:00 ] || fail "a year of five digits"
close "$(column total_mass_t unit.4 | tail -n 1)" 0.1584096 3e-7 || fail "ten seconds over midnight"

# ---- Refusals in words, each limit from both sides ---------------------------------------------------------------------
# state MEDIUM KEYS READING REGEX: the reason of one cycle.
state() {
    medium=$1 keys=$2 reading=$3 wanted=$4
    {
        echo "[$medium 1]"
        case $keys in *material*|*meter*) ;; *) printf 'pipe_material = 7\ndevice_material = 32\n' ;; esac
        case $keys in *roughness_mm*|*meter*) ;; *) echo 'roughness_mm = 0' ;; esac
        case $keys in *orifice*) printf 'edge_radius_mm = 0.04\ncheck_interval_years = 1\n' ;; esac
        [ "$medium" = HEAT ] && case $keys in *phase*) ;; *) echo 'phase = from_state' ;; esac
        if [ "$medium" = GAS ]; then
            case $keys in *method*) ;; *) echo 'method = gerg91' ;; esac
            case $keys in *x_methane*) ;; *) printf 'rho_c_kg_m3 = 0.68\nnitrogen_pct = 1\ncarbon_dioxide_pct = 0\n' ;; esac
        fi
        echo "$keys" | tr ';' '\n'
    } >state.ini
    case $keys in *meter_mass*) dp=q_t_h ;; *meter*) dp=q_m3_h ;; *) dp=dp_Pa ;; esac
    printf 'time_s,channel,t_C,p_Pa,%s\n0,%s 1,%s\n' "$dp" "$medium" "$reading" >state.csv
    "$tool" run state.ini state.csv --format json >state.out 2>err
    [ $? -le 1 ] || { fail "$keys: $reading" && cat err && return; }
    reason=$(sed -n '1s/.*"step":"\([a-z]*\)","reason":"\([^"]*\)".*/\1: \2/p' state.out)
    if [ "$wanted" = - ]; then
        [ -z "$reason" ] || fail "$keys: $reading: refused, $reason"
    else
        echo "$reason" | grep -qE "^$wanted\$" || fail "$keys: $reading: '$reason' instead of '$wanted'"
    fi
}

rows station_states.txt state

# ---- Amounts, lengths and the calendar, of a mass meter ----------------------------------------------------------------
# amounts KEYS READINGS OPTIONS WANTED: a HEAT 1 with these keys more, "time,t/h" a reading, options and after | the exit
# status; lines that must come, each a regular expression after a |.
amounts() {
    { printf '[HEAT 1]\ndevice = meter_mass\nphase = water\n'; echo "$1" | tr ';' '\n'; } >amounts.ini
    { echo time_s,q_t_h,channel,t_C,p_MPa; for reading in $2; do echo "$reading,HEAT 1,80,1"; done; } >amounts.csv
    # shellcheck disable=SC2086
    "$tool" run amounts.ini amounts.csv ${3%|*} >amounts.out 2>&1
    [ "$?" -eq "${3#*|}" ] || { fail "status of: $1 @ $2 @ $3" && cat amounts.out; }
    echo "$4" | tr '|' '\n' | while read -r line; do
        grep -qEe "$line" amounts.out || { fail "$line: $1 @ $2 @ $3" && cat amounts.out; }
    done
}
rows station_amounts.txt amounts

# ---- Bad input: station ------------------------------------------------------------------------------------------------
cp "$examples/natural_gas.csv" .
# station SED REGEX: the example, spoiled.
station() {
    sed "$1" "$examples/station.ini" >bad.ini
    cmp -s bad.ini "$examples/station.ini" && fail "nothing spoiled: $1"
    refuse "$2" bad.ini "$day"
}
printf 'component,volume_fraction\nmethane,1\n' >fractions.csv
printf 'component,mole_percent\nmethan,1\n' >methan.csv
rows station_faults.txt station

# ---- Bad input: readings -----------------------------------------------------------------------------------------------
# readings TEXT REGEX
readings() {
    printf "$1" >bad.csv
    refuse "$2" "$examples/station.ini" bad.csv
    refuse "$2" "$examples/station.ini" bad.csv --out results.csv --registers results.reg
}
rows station_readings.txt readings
{ echo time_s,channel,t_C,p_MPa,dp_kPa; awk 'BEGIN { while (n++ < 5000) printf "1" }'; } >bad.csv
cat bad.csv | refuse '^kalorfix: standard input:2: longer' "$examples/station.ini" -

# ---- Bad input: options and registers ----------------------------------------------------------------------------------
# registers SED REGEX: registers, spoiled.
registers() {
    sed "$1" first.reg >bad.reg
    refuse "$2" "$station" "$day" --continue bad.reg
}
rows station_registers.txt registers
head -c -1 first.reg >bad.reg
refuse ':15: the file ends within this line: it was cut short$' "$station" "$day" --continue bad.reg
ln -s "$station" station.ini
ln -s "$day" day.csv
ln first.csv hard.csv
ln -s y dangling
mkfifo pipe
# The arguments are words to split.
# shellcheck disable=SC2086
options() { refuse "$2" $1; }
rows station_options.txt options
refuse "^kalorfix: --registers: needs a value" "$station" "$day" --registers ''
printf 'time_s,channel,t_C,p_MPa,dp_kPa\n0,HEAT 1,300,1.2,4' >short.csv
"$tool" run rest.ini short.csv 2>&1 >/dev/null | grep -q '^kalorfix: warning: short\.csv:2: the file ends within' ||
    fail "no word of a line that may be cut"
# A file that stands there already survives a run that fails.
echo kept >results.csv
"$tool" run "$examples/station.ini" bad.csv --out results.csv 2>/dev/null
[ "$(cat results.csv)" = kept ] || fail "a failing run has touched the file of --out"
if [ -w /dev/full ]; then
    cp first.reg kept.reg
    "$tool" run "$examples/station.ini" "$day" --continue kept.reg --registers kept.reg >/dev/full 2>err
    [ $? -eq 2 ] && [ "$(wc -l <err)" -eq 1 ] && cmp first.reg kept.reg || { fail "a full disk" && cat err; }
    refuse 'No space left' "$examples/station.ini" "$day" --out new.csv --registers /dev/full
fi
# A station as large as the registries is read in parts.
awk 'BEGIN { for (n = 1; n <= 1500; ++n) printf "[HEAT %d]\ndevice = meter_mass\nphase = water\n%s", n, n == 1400 ? "x = 1\n" : "" }' >large.ini
refuse '^kalorfix: large\.ini:4201: \[HEAT 1400\] x: has no meaning' large.ini meters.csv

# ---- Interruption ------------------------------------------------------------------------------------------------------
mkfifo feed
run part.out "$examples/station.ini" first.csv --registers part.reg
grep -v "^#" part.out >part.flows
said='after the reading of 2026-03-01T09:58:00; go on with --continue cut.reg and another --out'
for signal in 'INT 130 interrupted' 'HUP 129 hung up'; do
    # shellcheck disable=SC2086
    set -- $signal
    exec 3<>feed  # a tool that gives up early does not leave the writer waiting for a reader
    "$tool" run "$examples/station.ini" feed --out cut.csv --registers cut.reg 2>err &
    pid=$!
    # The reader has the first part before the interruption comes: a pipe that is full blocks the writer.
    { cat first.csv; sleep 1; kill -"$1" "$pid"; } >feed
    wait "$pid"
    interrupted=$?
    exec 3>&-
    [ "$interrupted" -eq "$2" ] && grep -q "^kalorfix: $3.* $said$" err || { fail "an interrupted run" && cat err; }
    cmp -s part.reg cut.reg && grep -v '^#' cut.csv | cmp -s part.flows - && grep -q "^# $3.* $said" cut.csv ||
        fail "an interrupted run does not keep what it read, or does not say so"
done
run second.out "$examples/station.ini" "$day" --continue cut.reg --registers again.reg
cmp -s second.reg again.reg || fail "going on after an interruption"

finish station
