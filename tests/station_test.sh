#!/bin/sh
# Station runs: totals against sums, split runs, units, refusals in words, bad input, interruption, formats.
set -u
tool=$1
examples=$2
here=$(mktemp -d)
failed=$(mktemp)  # a line a failure: parts of a pipeline count too
trap 'rm -rf "$here" "$failed"' EXIT
cd "$here" || exit 1

fail() {
    echo "FAILED: $*" | tee -a "$failed"
}

# run NAME ARGUMENTS...: a run that must succeed, results in NAME.
run() {
    name=$1
    shift
    "$tool" run "$@" >"$name" 2>err || { fail "run $*" && cat err; }
    [ -s err ] && fail "run $*: something on standard error" && cat err
}

# refuse REGEX ARGUMENTS...: exit status 2, exactly one line on standard error that fits, nothing on standard output and no
# new file.
refuse() {
    pattern=$1
    shift
    before=$(ls)
    "$tool" run "$@" >out.tmp 2>err.tmp
    got=$?
    lines=$(wc -l <err.tmp)
    if [ "$got" -ne 2 ] || [ -s out.tmp ] || [ "$lines" -ne 1 ] || ! grep -qE "$pattern" err.tmp; then
        fail "status $got, wanted 2 and '$pattern': run $*" && cat err.tmp && head -3 out.tmp
    fi
    rm -f out.tmp err.tmp
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
for sum in 'GAS 1:q_m_t_h:total_mass_t:1' 'GAS 1:q_e_GJ_h:total_energy_GJ:1' 'GAS 2:q_c_m3_h:total_standard_volume_m3:10' \
    'HEAT 1:q_h_GJ_h:total_heat_GJ:1' 'HEAT 2:q_v_m3_h:total_volume_m3:1'; do
    ( IFS=:; set -- $sum
    awk -F, -v channel="$1" -v flow="$2" -v total="$3" -v unit="$4" '
        NR == 1 { for (i = 1; i <= NF; ++i) { if ($i == flow) q = i; if ($i == total) t = i } }
        $2 == channel { if (n++ && $3 == "computed") sum += $q * 120 / 3600 / unit; last = $t }
        END { d = sum - last; if (d < 0) d = -d; exit !(n == 736 && last > 0 && d <= 3e-7 * last) }' whole.csv ) ||
        fail "$sum: the register is not the sum over the cycles"
done
# Hours and days are differences of the registers; the refused 20 minutes of HEAT 1 are passed over.
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
grep -q 'GAS 2 .* 95\.0045 ' table.txt || fail "the table lacks the first cycle of GAS 2"
grep -q '^registers$' table.txt || fail "the table lacks its registers"

# ---- Formats ----------------------------------------------------------------------------------------------------
run json.txt "$station" "$day" --format json
[ "$(grep -c '"record":"cycle"' json.txt)" -eq 2944 ] || fail "a JSON line a cycle"
[ "$(grep -c '"record":"register"' json.txt)" -eq 14 ] || fail "a JSON line a register"
if [ -n "$python" ]; then
    { echo '['; sed '$!s/$/,/' json.txt; echo ']'; } | "$python" -m json.tool >/dev/null || fail "malformed JSON"
    "$python" -c 'import csv, sys
rows = list(csv.reader(open("whole.csv")))
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
cmp -s second.reg again.reg && cmp -s second.out again.out || fail "readings that are counted already are not passed over"
run first.out "$station" first.csv --format csv
run second.out "$station" second.csv --continue first.out --registers again.reg
cmp -s second.reg again.reg || fail "going on from a CSV"
run first.out "$station" first.csv --format table
run second.out "$station" second.csv --continue first.out --registers again.reg
cmp -s second.reg again.reg || fail "going on from a table"

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
run up.out down.ini part.csv --registers up.reg
grep -q '^HEAT 3,mass,t,0,0,0,' up.reg || { fail "no downtime" && cat up.reg; }

# ---- Flows from elsewhere: each integrator its own, none where the cell is empty ----------------------------------------------
printf '[GAS 7]\ndevice = external\nmethod = gerg91\nrho_c_kg_m3 = 0.68\nnitrogen_pct = 1\ncarbon_dioxide_pct = 0\n' >external.ini
printf 'time_s,channel,t_C,p_MPa,energy_GJ_h,mass_t_h\n0,GAS 7,10,2,7,\n1800,GAS 7,10,2,72,36\n5400,GAS 7,10,2,,18\n' >external.csv
run external.out external.ini external.csv --registers external.reg
grep -q '^GAS 7,mass,t,0,5400,36,' external.reg && grep -q '^GAS 7,energy,GJ,0,5400,36,' external.reg &&
    grep -q '^GAS 7,volume,m3,0,5400,0,' external.reg || { fail "external flows" && cat external.reg; }
[ "$(column hour_mass_t external.out | tail -n 1)" = 36 ] || fail "the hour that 5400 s close"

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
printf '# a comment\n\ndp_Pa , p_kPa,t_K, channel,time_s\r\n40000,1200,573.15,HEAT 1,5\r\n' >unit.csv
run unit.2 unit.ini unit.csv
cmp -s unit.1 unit.2 || fail "Pa, kPa and K give other results"
printf 'time_s,channel,t_C,p_Pa,dp_Pa\n5,HEAT 1,300,1200000,40000\n' >unit.csv
run unit.3 unit.ini unit.csv
cmp -s unit.1 unit.3 || fail "Pa gives other results"
printf 'time,channel,t_C,p_Pa,dp_Pa\n2026-03-01T23:59:59.5Z,HEAT 1,300,1200000,40000\n2026-03-02T00:00:09.5,HEAT 1,300,1200000,40000\n' >unit.csv
run unit.4 unit.ini unit.csv --registers unit.reg
[ "$(column time unit.4 | head -n 1)" = 2026-03-01T23:59:59.5 ] || fail "a date with a fraction"
close "$(column total_mass_t unit.4 | tail -n 1)" 0.1584096 3e-7 || fail "ten seconds over midnight"

# ---- Refusals in words, each limit from both sides ---------------------------------------------------------------------
# state MEDIUM KEYS READING REGEX: the reason of one cycle; - when it is to be computed. Keys are separated by semicolons.
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
    "$tool" run state.ini state.csv --format json >state.out 2>err || { fail "$keys: $reading" && cat err && return; }
    reason=$(sed -n '1s/.*"step":"\([a-z]*\)","reason":"\([^"]*\)".*/\1: \2/p' state.out)
    if [ "$wanted" = - ]; then
        [ -z "$reason" ] || fail "$keys: $reading: refused, $reason"
    else
        echo "$reason" | grep -qE "^$wanted\$" || fail "$keys: $reading: '$reason' instead of '$wanted'"
    fi
}

flange='device = orifice_flange;D20_mm = 200;d20_mm = 120'
nozzle='device = nozzle_isa1932;D20_mm = 200;d20_mm = 120'
# Gas: the ends of the ranges do not belong to them.
state GAS "$flange" 66.8,2e6,20000 -
state GAS "$flange" 66.86,2e6,20000 'state: T 340\.01 K not below 340 K'
state GAS "$flange" -23.1,2e6,20000 -
state GAS "$flange" -23.2,2e6,20000 'state: T 249\.95 K not above 250 K'
state GAS "$flange" 20,30000001,20000 'state: p 30 MPa not below 30 MPa'
state GAS "$flange" 20,31e6,20000 'state: p 31 MPa not below 30 MPa'
state GAS "$flange" 20,29.9e6,20000 -
state GAS "$flange" 20,1000,200 'state: p 0\.001 MPa not above 0\.001 MPa'
state GAS "$flange" 66,10000,200 'state: compressibility K 1\.00[0-9]* not below 0\.9999'
state GAS "$flange;column_height_m = 10;column_density_kg_m3 = 1000" 20,98000,20 "state: p less the column's -6\.65e-05 MPa not above 0\.001 MPa"
state GAS "$flange;vapour_kg_m3 = 0.01" 20,5e6,20000 -
state GAS "$flange;vapour_kg_m3 = 0.01" 20,22e6,20000 'properties: with water vapour in the gas, p 22 MPa above 21\.5[0-9]* MPa, where the saturation temperature is 645 K'
# Heat carrier.
state HEAT "$nozzle" -1,1e6,20000 'state: t -1 degC below 0 degC'
state HEAT "$nozzle" 300,-5,20000 'state: p -5 Pa below 0 Pa'
state HEAT "$nozzle" 300,900,20000 'state: p 0\.0009 MPa below 0\.001 MPa'
state HEAT "$nozzle" 300,101e6,20000 'state: p 101 MPa above 100 MPa'
state HEAT "$nozzle" 1001,1e6,20000 'state: t 1001 degC above 1000 degC'
state HEAT "$nozzle" 900,1e6,20000 'properties: t 900 degC above 800 degC'
state HEAT "$nozzle;phase = wet_steam;x = 0.5" 372,22e6,20000 'properties: wet steam: T 645\.15 K above 645 K'
# Geometry.
state HEAT "$nozzle" 600,1e6,20000 -
state HEAT "$nozzle" 600.1,1e6,20000 'geometry: t of the pipe \(material 7\) 600\.1 degC above 600 degC'
state HEAT "$nozzle;pipe_material = 9;device_material = 35" 101,1e5,2000 'geometry: t of the device \(material 35\) 101 degC above 100 degC'
state HEAT 'device = orifice_corner;D20_mm = 49.9;d20_mm = 25' 20,1e6,20000 'geometry: pipe diameter 49\.9 mm below 50 mm'
state HEAT 'device = orifice_corner;D20_mm = 50;d20_mm = 25' 20,1e6,20000 -
state HEAT 'device = orifice_flange;D20_mm = 1000.1;d20_mm = 500' 20,1e6,20000 'geometry: pipe diameter 1000\.1 mm above 1000 mm'
state HEAT 'device = orifice_corner;D20_mm = 100;d20_mm = 12.4' 20,1e6,20000 'geometry: device diameter 12\.4 mm below 12\.5 mm'
state HEAT 'device = orifice_corner;D20_mm = 100;d20_mm = 75' 20,1e6,20000 -
state HEAT 'device = orifice_corner;D20_mm = 100;d20_mm = 75.1' 20,1e6,20000 'geometry: diameter ratio 0\.751 above 0\.75'
state HEAT 'device = nozzle_isa1932;D20_mm = 100;d20_mm = 81' 20,1e6,20000 'geometry: diameter ratio 0\.81 above 0\.8'
state HEAT 'device = venturi_machined;D20_mm = 100;d20_mm = 39' 20,1e6,20000 'geometry: diameter ratio 0\.39 below 0\.4'
state HEAT 'device = nozzle_long_radius;D20_mm = 100;d20_mm = 50;roughness_mm = 0.11' 20,1e6,20000 'geometry: roughness R_a/D 0\.000350[0-9]* above 0\.00032'
# Flow: pressure ratio, Reynolds number, roughness.
state GAS "$flange" 20,1e6,250000 -
state GAS "$flange" 20,1e6,310000 'flow: dp/p 0\.31 exceeds 0\.25'
state GAS "$flange" 20,1e6,250000.1 'flow: dp/p 0\.250000[0-9]* exceeds 0\.25'
state HEAT "$nozzle" 200,1e6,260000 'flow: dp/p 0\.26 exceeds 0\.25'
state HEAT "$nozzle" 20,1e5,40000 -
state GAS "$flange" 20,2e6,-10 'flow: dp -10 Pa below 0 Pa'
state GAS "$flange" 20,2e6,0 'flow: dp is 0: there is no flow to solve for'
state HEAT 'device = orifice_corner;D20_mm = 50;d20_mm = 25' 20,1e6,190 'flow: Re [0-9.]+ below 5000 for this device and beta'
state HEAT 'device = orifice_corner;D20_mm = 50;d20_mm = 25' 20,1e6,210 -
state HEAT 'device = nozzle_isa1932;D20_mm = 100;d20_mm = 50' 20,1e6,100 'flow: Re [0-9.]+ below 20000 for this device and beta'
state HEAT 'device = nozzle_isa1932;D20_mm = 100;d20_mm = 40' 20,1e6,4000 'flow: Re [0-9.]+ below 70000 for this device and beta'
state HEAT 'device = venturi_nozzle;D20_mm = 400;d20_mm = 280' 60,1e6,300000 'flow: Re [0-9.e+]+ above 2e\+06 for this device and beta'
state HEAT 'device = orifice_corner;D20_mm = 100;d20_mm = 70' 20,1e6,16 'flow: Re [0-9.]+ below 78(39|40)[0-9.]* for this device and beta'
state HEAT 'device = orifice_flange;D20_mm = 500;d20_mm = 250' 20,1e6,30 'flow: Re [0-9.]+ below 212(49|50)[0-9.]* for this device and beta'
state HEAT 'device = venturi_machined;D20_mm = 100;d20_mm = 50;phase = water' 20,1e6,200 'flow: Re [0-9.]+ below 20000 for this device and beta'
state HEAT 'device = averaging_13;D20_mm = 100;d20_mm = 20' 20,1e6,0.01 'flow: Re [0-9.]+ below 10000 for this device'
state HEAT 'device = averaging_13;D20_mm = 100;d20_mm = 20' 20,1e6,2000 -
state HEAT 'device = nozzle_isa1932;D20_mm = 200;d20_mm = 140;roughness_mm = 0.7' 20,1e6,20000 'flow: roughness R/D 0\.0035 above 0\.003'
state HEAT 'device = orifice_corner;D20_mm = 1100;d20_mm = 800;roughness_mm = 30' 20,1e6,20000 'flow: roughness correction 1\.[0-9]+ above 1\.03'
# The coefficient of this tube steps at Re 250000: between its two sides the flow alternates for ever.
state HEAT 'device = venturi_machined;D20_mm = 100;d20_mm = 50;phase = water' 20,1e6,47060.32 'flow: the flow does not settle within 100 passes, the last at Re 2\.4[0-9.]*e\+05'
state HEAT 'device = venturi_machined;D20_mm = 100;d20_mm = 50;phase = water' 20,1e6,47600 -
# Totals.
state HEAT 'device = meter_mass' 20,1e6,5 -
state HEAT 'device = meter_mass' 20,1e6,-5 'totals: mass flow -5 t/h below 0 t/h'
state GAS 'device = meter_standard_volume' 20,1e6,-100 'totals: mass flow -0\.068 t/h below 0 t/h'
# A composition in keys, and what the methods by composition need.
state GAS "$flange;method = vnic;x_methane_pct = 97;x_nitrogen_pct = 3;heat_unit = kcal;energy_by = higher_heat" 20,2e6,20000 -
state GAS "$flange;method = aga8;x_methane_pct = 97;x_ethane_pct = 3" 20,2e6,20000 -

# ---- Bad input: station ------------------------------------------------------------------------------------------------
cp "$examples/natural_gas.csv" .
# station SED REGEX: the example, spoiled.
station() {
    sed "$1" "$examples/station.ini" >bad.ini
    cmp -s bad.ini "$examples/station.ini" && fail "nothing spoiled: $1"
    refuse "$2" bad.ini "$day"
}
station 's/^D20_mm = 250 /D20_mm = -1 /' '^kalorfix: bad\.ini:16: \[GAS 1\] D20_mm: must lie within 0\.\.10000 mm, not -1$'
station 's/^D20_mm = 250 /D20_mm = 25O /' ':16: \[GAS 1\] D20_mm: expected a number within 0\.\.10000 mm, not .25O.$'
station 's/^D20_mm = 250 /D20mm = 250 /' ':16: \[GAS 1\] D20mm: no such key; there are device, .*, D20_mm, '
station '/^roughness_mm = 0.05   /d' ':7: \[GAS 1\] lacks roughness_mm \(accepted: 0\.\.100 mm\)$'
station 's/^device = orifice_flange  /device = orifice_flang  /' ':9: \[GAS 1\] device: expected one of orifice_corner, .* external, not .orifice_flang.$'
station 's/^pipe_material = 7  /pipe_material = 40  /' ':14: \[GAS 1\] pipe_material: expected a whole number within 1\.\.39, not .40.$'
station 's/^edge_radius = mean/edge_radius = median/' 'edge_radius: expected one of mean, at_end, not .median.$'
station 's/^mass_exponent = 0 /mass_exponent = 10 /' 'mass_exponent: expected a whole number within -9\.\.9'
station 's/^rho_c_kg_m3 = 0.6799 /rho_c_kg_m3 = 1.2 /' 'rho_c_kg_m3: must lie within 0\.\.1 kg/m3'
station 's/^method = gerg91 /method = gerg /' 'method: expected one of nx19, gerg91, aga8, vnic, not .gerg.$'
station 's/^method = aga8/method aga8/' ':54: expected key = value, a section header or, behind a colon, a comment, not .method aga8.$'
station 's/^method = aga8/method = aga8\nmethod = aga8/' ':55: \[GAS 2\] method: stands here for the second time, first in line 54$'
station 's/^\[GAS 2\]/[GAZ 2]/' ':45: \[GAZ 2\]: expected \[GAS N\] or \[HEAT N\] with N within 1\.\.20000$'
station 's/^\[GAS 2\]/[GAS 20001]/' 'with N within 1\.\.20000$'
station 's/^\[GAS 2\]/[GAS 1]/' ':45: \[GAS 1\] stands here for the second time, first in line 7$'
station 's/^\[GAS 2\]/ [GAS 2]/' ':45: a section header begins in the first column$'
station 's/natural_gas\.csv/none.csv/' ':55: \[GAS 2\] composition: there is no composition file none\.csv$'
station 's/natural_gas\.csv/natural_gas.csv\nx_methane_pct = 90/' 'x_methane_pct: the composition stands in a file already'
station '/^composition/d' '\[GAS 2\] lacks composition \(a file\) or the keys x_methane_pct to x_carbon_monoxide_pct'
station 's/^phase = water/phase = water\nx = 0.5/' '\[HEAT 2\] x: has no meaning with this device and this phase; leave it out$'
station '/^phase = water/d' '\[HEAT 2\] lacks phase \(accepted: from_state, water, steam, wet_steam\)$'
station 's/^method = aga8/method = vnic\nheat_unit = J/' 'heat_unit: expected one of kJ, kcal, not .J.$'
printf 'component,volume_fraction\nmethane,1\n' >fractions.csv
station 's/^method = aga8/method = vnic/; s/natural_gas\.csv/fractions.csv/' 'composition: VNIC SMV takes its heats from mole per cent'
printf 'component,mole_percent\nmethan,1\n' >fractions.csv
station 's/natural_gas\.csv/fractions.csv/' '^kalorfix: fractions\.csv:2: no such component: methan;'
station '1,$d' 'bad\.ini: holds no channel'
refuse '^kalorfix: none\.ini: cannot read this station file$' none.ini "$day"
refuse 'cannot read this station file' / "$day"

# ---- Bad input: readings -----------------------------------------------------------------------------------------------
# readings TEXT REGEX
readings() {
    printf "$1" >bad.csv
    refuse "$2" "$examples/station.ini" bad.csv
    refuse "$2" "$examples/station.ini" bad.csv --out results.csv --registers results.reg
}
head='time_s,channel,t_C,p_MPa,dp_kPa\n'
good='0,GAS 1,8,1.2,16\n'
readings '' '^kalorfix: bad\.csv:1: expected a heading'
readings 'time_s,channel,t_C,p_MPa\n' ':1: the heading lacks a column dp_Pa or dp_kPa, which GAS 1 needs$'
readings 'channel,t_C,p_MPa,dp_Pa\n' ':1: the heading lacks a column time_s'
readings 'time_s,t_C,p_MPa,dp_Pa\n' ':1: the heading lacks the column channel'
readings 'time_s,channel,t_C,p_MPa,dp_kPa,t_K\n' ':1:33: t_K gives what column t_C gives already$'
readings 'time_s,channel,t,p_MPa,dp_kPa\n' ":1:16: no such column: 't'; there are time_s, time, channel, t_C, t_K"
readings "$head${good}5,GAS 1,8,1.2\n" ':3: expected 5 cells as in the heading, not 4$'
readings "$head${good}5,GAS 9,8,1.2,16\n" ":3:3: no such channel: 'GAS 9'; .*station\.ini describes GAS 1, GAS 2, HEAT 1, HEAT 2$"
readings "$head${good}x,GAS 1,8,1.2,16\n" ":3:1: time_s: expected seconds within 0\.\.100000000000, not 'x'$"
readings "$head${good}5,GAS 1,8,1.2, 16kPa\n" ":3:16: dp_kPa: expected a number such as 12\.5, not '16kPa'$"
readings "$head${good}5,GAS 1,nan,1.2,16\n" ":3:9: t_C: expected a number"
readings "$head${good}5,GAS 1,8,,16\n" ':3:11: p_MPa: GAS 1 needs a value here$'
readings "$head${good}5,GAS 1,8,1.2,1e300\n" ':3:15: dp_kPa: must lie within'
readings "${head}10,GAS 1,8,1.2,1\n5,GAS 2,8,1.2,1\n" ':3:1: 5 lies before 10; the rows must be in the order of time$'
readings "$head$good$good" ':3:1: GAS 1 has a row for 0 already$'
readings "${head}0,GAS 1,8,1.2,16\n40000000,GAS 1,8,1.2,16\n" ':3:1: more than 400 days after the row of GAS 1 before$'
readings "time,channel,t_C,p_MPa,dp_kPa\n2026-02-30T00:00:00,GAS 1,8,1.2,16\n" ':2:1: time: expected a date such as'
readings "time,channel,t_C,p_MPa,dp_kPa\n2026-02-28T00:00:00.1234567,GAS 1,8,1.2,16\n" ':2:1: time: expected a date such as'
readings "${head%\\n},q_t_h\n0,GAS 1,8,1.2,16,3\n" ':2:18: q_t_h: the device of GAS 1 does not take it; leave the cell empty$'
{ printf "$head"; awk 'BEGIN { while (n++ < 5000) printf "1" }'; } >bad.csv
refuse ':2: longer than 4096 characters$' "$examples/station.ini" bad.csv
cat bad.csv | refuse '^kalorfix: standard input:2: longer' "$examples/station.ini" -
refuse 'none\.csv: cannot read these readings: No such file' "$examples/station.ini" none.csv
refuse 'it is a directory$' "$examples/station.ini" /
refuse 'give a station file and readings' "$examples/station.ini"

# ---- Bad input: options and registers ----------------------------------------------------------------------------------
refuse '^kalorfix: --format: there are table, csv, json, hours and days' "$examples/station.ini" "$day" --format xml
refuse '^kalorfix: --downtime: expected minutes' "$examples/station.ini" "$day" --downtime x
refuse '/none/x: cannot be written: No such file' "$examples/station.ini" "$day" --out /none/x
refuse 'x: is the file of --out already$' "$examples/station.ini" "$day" --out x --registers x
refuse 'none\.reg: cannot read these registers$' "$examples/station.ini" "$day" --continue none.reg
refuse 'holds no registers; give' "$examples/station.ini" "$day" --continue "$day"
refuse 'the registers of --continue hold all these readings already$' "$examples/station.ini" first.csv --continue first.reg
refuse '^kalorfix: --downtime 5: only 2 minutes lie between' "$examples/station.ini" "$day" --continue first.reg --downtime 5
refuse ':2: registers of HEAT 3, which .* does not describe$' "$examples/station.ini" "$day" --continue whole.reg
for fault in 's/^GAS 1,mass,t,0/GAS 1,mass,t,2/|:2: GAS 1 mass counts in 10\^2, the station in 10\^0$' \
    's/^GAS 1,volume/GAS 1,mass/|:3: GAS 1 mass stands here for the second time$' \
    's/^\(GAS 1,mass,t,0,[^,]*\),[^,]*/\1,-1/|:2: total: expected a number from 0 on, not .-1.$' \
    's/^GAS 1,mass,t,0,[^,]*/GAS 1,mass,t,0,17/|:2: time: expected a date as in the readings, not .17.$' \
    '/^HEAT 2,heat/d|: lacks the heat register of HEAT 2$' 's/^GAS 2,mass,t/GAS 2,mass/|:6: expected 12 cells'; do
    sed "${fault%%|*}" first.reg >bad.reg
    refuse "${fault#*|}" "$examples/station.ini" "$day" --continue bad.reg
done
# A file that stands there already survives a run that fails.
echo kept >results.csv
"$tool" run "$examples/station.ini" bad.csv --out results.csv 2>/dev/null
[ "$(cat results.csv)" = kept ] || fail "a failing run has touched the file of --out"
if [ -w /dev/full ]; then
    "$tool" run "$examples/station.ini" "$day" >/dev/full 2>err
    [ $? -eq 2 ] && [ "$(wc -l <err)" -eq 1 ] || { fail "a full disk" && cat err; }
fi

# ---- Interruption ------------------------------------------------------------------------------------------------------
mkfifo feed
exec 3<>feed  # a tool that gives up early does not leave the writer waiting for a reader
"$tool" run "$examples/station.ini" feed --out cut.csv --registers cut.reg 2>err &
pid=$!
# The reader has the first part before the interruption comes: a pipe that is full blocks the writer.
{ head -n 1201 "$day"; sleep 1; kill -INT "$pid"; } >feed
wait "$pid"
interrupted=$?
exec 3>&-
[ "$interrupted" -eq 130 ] || { fail "status of an interrupted run" && cat err; }
head -n 1201 "$day" >part.csv
run part.out "$examples/station.ini" part.csv --registers part.reg
cmp -s part.reg cut.reg && cmp -s part.out cut.csv || fail "an interrupted run does not keep what it read"
run second.out "$examples/station.ini" "$day" --continue cut.reg --registers again.reg
cmp -s second.reg again.reg || fail "going on after an interruption"

[ -s "$failed" ] && exit 1
echo "station: all as expected"
