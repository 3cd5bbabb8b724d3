#!/bin/sh
# SPDX-License-Identifier: MIT
# Runs in a bare Debian: takes kalorfix from the apt repository in FOLDER, uses it, removes it, and finds nothing left.
# Usage: bare_system.sh FOLDER
set -eu
folder=$1
export DEBIAN_FRONTEND=noninteractive LC_ALL=C.UTF-8 PATH=/usr/sbin:/usr/bin:/sbin:/bin
fail() {
    echo "bare system: $*" >&2
    exit 1
}
quietly() {
    "$@" >/tmp/log 2>&1 || fail "$*: $(cat /tmp/log)"
}
install() {
    quietly apt-get install -y --no-install-recommends "$@"
}
# Every name in the file system, but for what apt and the kernel keep.
names() {
    find / -xdev -path /proc -prune -o -path /sys -prune -o -path /dev -prune -o -path /mnt -prune -o -path /tmp -prune -o \
        -path /var/cache -prune -o -path /var/lib/apt -prune -o -path /var/log -prune -o -print | sort
}

quietly apt-get update
install gcc libc6-dev pkgconf python3
# The first run of a trigger or of Python may leave files that are nobody's.
python3 -c 'import ctypes, json'
names >/tmp/before

trust="trusted=yes"
[ ! -f "$folder/apt/dists/bookworm/InRelease" ] || trust="signed-by=$folder/apt/kalorfix.asc"
echo "deb [$trust] file:$folder/apt bookworm main" >/etc/apt/sources.list.d/kalorfix.list
quietly apt-get update
# In the words of a user; kalorfix comes along.
install kalorfix-tool kalorfix-dev python3-kalorfix kalorfix-dbgsym
packages=$(dpkg-query -W -f '${db:Status-Abbrev}${Package}\n' '*kalorfix*' | sed -n 's/^ii //p' | xargs)
[ "$packages" = "kalorfix kalorfix-dbgsym kalorfix-dev kalorfix-tool python3-kalorfix" ] || fail "installed: $packages"
# shellcheck disable=SC2086
dpkg -L $packages | sort -u >/tmp/files

kalorfix demo >/tmp/demo
grep 'volume flow at standard' /tmp/demo | tail -n 1 | grep -q 182137.53 || fail "the demo: $(tail -n 30 /tmp/demo)"
quietly kalorfix verify
examples=/usr/share/doc/kalorfix-dev/examples
cc "$examples/steam_channel.c" -o /tmp/steam
[ "$(/tmp/steam)" = "57.0274 t/h, 173.7238 GJ/h" ] || fail "steam_channel.c: $(/tmp/steam)"
tar -xzf "$folder"/kalorfix-*.tar.gz -C /tmp --strip-components=4 --wildcards '*/tests/package/outside/program.c'
# shellcheck disable=SC2046
cc /tmp/program.c $(pkg-config --cflags --libs kalorfix) -o /tmp/program
[ "$(/tmp/program)" = "917.078 kg/m3, 647.096 K" ] || fail "a linked program: $(/tmp/program)"
python3 -c 'import kalorfix; assert abs(kalorfix.water(t=150, p=0.6).rho_kg_m3 - 917.07818) < 1e-4'
echo "         installed $packages; demo, verification, C and Python run"

# shellcheck disable=SC2086
quietly apt-get remove -y $packages
while read -r name; do
    [ -d "$name" ] || [ ! -e "$name" ] || fail "remove left $name"
done </tmp/files
[ -z "$(dpkg-query -W -f '${db:Status-Abbrev}${Package}\n' '*kalorfix*' 2>/dev/null | sed '/^un/d')" ] || fail "remove left settings"
install kalorfix-tool python3-kalorfix
quietly apt-get purge -y kalorfix-tool python3-kalorfix kalorfix
quietly apt-get autoremove -y --purge
rm /etc/apt/sources.list.d/kalorfix.list
names | diff /tmp/before - || fail "purge does not leave the system as it was"
echo "         removed and purged; no file is left"
