#!/bin/sh
# SPDX-License-Identifier: MIT
# A host's loop run and restarted: registers go on where they stood, the downtime is filled in once, refusals keep what there
# is, damaged registers are not taken for zeros.
# Usage: host_loop_test.sh PROGRAM LIBRARY SYSTEM_DIRECTORY
set -u
program=$1
library=$2
system=$3
. "$(dirname "$0")/checks.sh"
data=$work

# run NAME CYCLES: results in NAME, with the message about the settings file left out.
run() {
    "$program" "$library" "$system" "$data" "$2" 20 >"$data/$1.all" || fail "exit status $? of run $1"
    LC_ALL=C grep -av 'tornkntr.ini' "$data/$1.all" | tr -d '\r' >"$data/$1"
    cat "$data/$1"
}
begin() { head -n 1 "$data/$1" | sed 's/^[^:]*: //'; }
end() { tail -n 1 "$data/$1" | sed 's/^[^:]*: //'; }
# numbers LINE: the four of them.
numbers() { echo "$1" | awk '{ for (i = 1; i <= NF; ++i) if ($i ~ /^[0-9][0-9.e+-]*$/) printf "%s ", $i }'; }
# grown OLD NEW: each number of NEW is above that of OLD.
grown() {
    echo "$(numbers "$1") $(numbers "$2")" | awk '{ for (i = 1; i <= 4; ++i) if (!($(i + 4) > $i)) exit 1; exit NF != 8 }'
}
# stamp SECONDS: little-endian, 12 bytes.
stamp() {
    s=$1
    for _ in 1 2 3 4; do
        # shellcheck disable=SC2059
        printf "\\$(printf %03o $((s & 255)))"
        s=$((s >> 8))
    done
    printf '\0\0\0\0\0\0\0\0'
}

run first 12
head -n 1 "$data/first" | grep -q '^new registers: gas 0 m3, hour 0 s; steam 0 t, hour 0 s$' || fail "new registers are zero"
grep -q '^cycle 3: steam refused at state$' "$data/first" || fail "the broken transmitter is not refused"
grep -q 'gas refused' "$data/first" && fail "the gas channel is refused"
grown "$(begin first)" "$(end first)" || fail "nothing was totalled"
[ "$(od -A n -t x1 "$data/dat/timewait.dat" | wc -w)" -eq 12 ] || fail "the stamp is not 12 bytes"

run second 12
head -n 1 "$data/second" | grep -q '^registers go on: ' || fail "the second run does not find the registers"
[ "$(begin second)" = "$(end first)" ] || fail "the second run begins elsewhere than the first ended"
grown "$(end first)" "$(end second)" || fail "the registers do not go on"

# An hour down: 50 t/h of steam and 150000 m3/h of gas for 60 minutes or a little more, once.
stamp $(($(date +%s) - 3600)) >"$data/dat/timewait.dat"
run third 12
[ "$(begin third)" = "$(end second)" ] || fail "the third run begins elsewhere than the second ended"
[ "$(grep -c ' minutes of downtime$' "$data/third")" -eq 7 ] || fail "each integrator fills the downtime in once"
echo "$(numbers "$(end second)") $(numbers "$(end third)")" | awk '{ gas = $5 - $1; steam = $7 - $3
    exit !(gas > 150000 && gas < 160000 && steam > 50 && steam < 54 && $6 - $2 > 60) }' || fail "downtime of an hour"

# No stamp: it is made before the library reads it, so that nothing is counted from 1970.
rm "$data/dat/timewait.dat"
run fourth 3
grep -q ' for [0-9]*[1-9][0-9]*\.[0-9]* minutes' "$data/fourth" && fail "a downtime without a stamp"

# The minutes of a long downtime close an hour that has just begun, in one step: its seconds do not fall.
sed -i 's/^\([^ ]* [^ ]*\) [^ ]*/\1 0.00100000005/' "$data/registers.txt"
stamp $(($(date +%s) - 3601 * 60)) >"$data/dat/timewait.dat"
run fifth 3
[ "$(grep -c ': hour closed with [1-9]' "$data/fifth")" -eq 7 ] || fail "hours that close in one step are not seen"
stamp $(($(date +%s) - 8 * 86400)) >"$data/dat/timewait.dat"
run sixth 3
grep -q '^a downtime of 1152[0-9] minutes is not filled in$' "$data/sixth" || fail "a clock that lost its battery"
grep -q ' minutes of downtime$' "$data/sixth" && fail "more than a week is filled in"

# The loop begins neither with zeros nor with what cannot be. A row: what, and how the first line of the registers is spoilt.
cp "$data/registers.txt" "$data/kept"
while read -r what expression; do
    sed "$expression" "$data/kept" >"$data/registers.txt"
    cp "$data/registers.txt" "$data/spoilt"
    "$program" "$library" "$system" "$data" 3 20 >"$data/out" 2>"$data/err" && fail "$what: accepted"
    grep -q 'registers cannot be read' "$data/err" || fail "$what: no word about it"
    cmp -s "$data/spoilt" "$data/registers.txt" || fail "$what: overwritten"
done <<'END'
cut-off 1s/[0-9]*$//;1q
not-a-number 1s/ [^ ]*/ nan/
infinite 1s/ [^ ]*/ 1e99/
above-the-wrap 1s/ [^ ]*/ 1000001/
negative 1s/ [^ ]*/ -1/
too-many-seconds 1s/^\([^ ]* [^ ]*\) [^ ]*/\1 3601/
another-exponent 1s/^0/1/
END
rm "$data/registers.txt"
"$program" "$library" "$system" "$data" 3 20 >"$data/out" 2>"$data/err" && fail "a stamp without registers is accepted"
grep -q 'a stamp, but no registers' "$data/err" || fail "no word about lost registers"
[ -e "$data/registers.txt" ] && fail "lost registers are made anew"

finish "host loop"
