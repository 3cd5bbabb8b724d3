#!/bin/sh
# SPDX-License-Identifier: MIT
# The first host of docs/first_channel.md, killed and started again: total and hour go on, the hour closes with its amount, a
# damaged file is not taken for zeros.
# Usage: first_channel_test.sh PROGRAM
set -u
program=$1
. "$(dirname "$0")/checks.sh"
cd "$work" || exit 1
printf '[TORNOL]\nNum_gas_trub = 1\n' >tornkntr.ini
export SETTINGS="$work"

# start NAME SECONDS: its words in NAME; nothing ends it but the kill.
start() {
    timeout -s KILL "$2" "$program" totals >"$1" 2>&1
    [ $? -eq 137 ] || { fail "run $1 ended by itself" && cat "$1"; }
    cp totals "$1.kept"
}
# kept COLUMN A OPERATOR B: a column of two kept files, compared.
kept() { [ "$(echo "$(cut -d' ' -f"$1" "$2") $3 $(cut -d' ' -f"$1" "$4")" | awk '{ print $2 == "<" ? $1 < $3 : $1 == $3 }')" = 1 ]; }

start first 3.5
start second 3.5
grep -q "^goes on: $(cut -d' ' -f1 first.kept | xargs printf %.2f) m3$" second || fail "the total does not go on"
for column in 1 2; do kept $column first.kept "<" second.kept || fail "column $column stands still"; done
kept 3 first.kept = second.kept || fail "the hour began anew"

# The hour is nearly over: it closes with what the register grew by since its start, and the next one begins there.
echo '3000.5 3599.5 600.25 0' >totals
start third 2.5
amount=$(sed -n 's/^hour closed: \(.*\) m3$/\1/p' third)
awk -v hour="$amount" '{ exit !(hour > 2400.25 && hour < 2405 && $2 < 3 && ($3 - 600.25 - hour) ^ 2 < 1e-3 && ($4 - hour) ^ 2 < 1e-3) }' totals ||
    fail "the hour closed with $amount: $(cat totals)"

for bad in '1 2 3 4' '1 2 nan 4\n' '1 3601 3 4\n' '1e7 2 3 4\n' ''; do
    # shellcheck disable=SC2059
    printf "$bad" >totals
    timeout 5 "$program" totals >out 2>err && fail "accepted: $bad"
    grep -q 'cannot be read' err || fail "no word about: $bad"
done
finish "first channel"
