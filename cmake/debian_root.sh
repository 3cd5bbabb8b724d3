#!/bin/sh
# SPDX-License-Identifier: MIT
# Unpacks Debian packages of another architecture into a directory, for cross builds and the emulator; what they depend on
# must be named too. The machine's own package database is left alone. DEBIAN holds what dpkg-shlibdeps -S wants to know.
# Usage: debian_root.sh ARCHITECTURE DIRECTORY PACKAGE...
set -eu
architecture=$1 root=$2
shift 2

wanted=$(printf '%s\n' "$@" | sort)
if [ -d "$root/DEBIAN" ] && [ "$(cat "$root/packages")" = "$wanted" ]; then
    exit 0
fi
rm -rf "$root"
mkdir -p "$root/apt/lists/partial" "$root/apt/cache/archives/partial" "$root/DEBIAN"
root=$(cd "$root" && pwd)

# The machine's own sources and keys, lists and cache of our own.
apt() {
    apt-get -q -o Dir::State="$root/apt" -o Dir::State::lists="$root/apt/lists" -o Dir::State::status=/dev/null \
        -o Dir::Cache="$root/apt/cache" -o APT::Architecture="$architecture" -o APT::Architectures::="$architecture" \
        -o Acquire::Languages=none -o APT::Sandbox::User="$(id -un)" "$@"
}

echo "Fetching for $architecture: $*"
# A source without this architecture, or one that is being mirrored, is no reason to stop: the download tells.
apt update >"$root/apt/update.log" 2>&1 || true
(cd "$root/apt" && apt download "$@" >download.log 2>&1) || {
    cat "$root/apt/update.log" "$root/apt/download.log" >&2
    exit 1
}
for package in "$root"/apt/*.deb; do
    dpkg-deb -x "$package" "$root"
    for file in symbols shlibs; do
        dpkg-deb -I "$package" "$file" >>"$root/DEBIAN/$file" 2>/dev/null || true
    done
done
rm -rf "$root/apt" "$root/usr/share/doc" "$root/usr/share/man"
# Links to /lib and the like must stay inside.
find "$root" -type l -lname '/*' | while read -r link; do
    ln -sfr "$root$(readlink "$link")" "$link"
done
printf '%s\n' "$wanted" >"$root/packages"
