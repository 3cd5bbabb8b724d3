#!/bin/sh
# SPDX-License-Identifier: MIT
# Compares the interface of a library, built with its debugging information, and of the headers here with the newest release:
# functions, variables, classes, and the values of the codes. Additions are no difference; a new major version may differ.
# Usage: interface.sh ARCHITECTURE LIBRARY    KALORFIX_RELEASED is the folder of the release, else the newest in build/dist.
set -eu
architecture=$1
library=$(realpath "$2")
cd "$(dirname "$0")/../.."
released=${KALORFIX_RELEASED-$(find build/dist -mindepth 1 -maxdepth 1 -name '[0-9]*' 2>/dev/null | sort -V | tail -n 1)}
if [ -z "$released" ]; then
    echo "interface, $architecture: no release in build/dist to compare with"
    exit 0
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
for package in kalorfix kalorfix-dev kalorfix-dbgsym; do
    # Only one version lies in the folder of a release.
    set -- "$released/${package}"_*_"$architecture.deb"
    if [ $# -ne 1 ] || [ ! -f "$1" ]; then
        echo "$released has not just one $package for $architecture" >&2
        exit 1
    fi
    dpkg-deb -x "$1" "$work"
    version=$(dpkg-deb -f "$1" Version)
done
now=$(sed -n 's/^#define KALORFIX_VERSION "\(.*\)"/\1/p' include/kalorfix.h)

# Without debugging information abidiff would see functions as names, and find no difference.
set -- "$work"/usr/lib/*/kalorfix.so
id=$(readelf -n "$1" | sed -n 's/.*Build ID: //p')
for file in "$work/usr/lib/debug/.build-id/${id%"${id#??}"}/${id#??}.debug" "$library"; do
    readelf -S "$file" | grep -q '\.debug_info' || {
        echo "no debugging information of $architecture: $file" >&2
        exit 1
    }
done
same=true
abidiff --no-added-syms --harmless --leaf-changes-only --debug-info-dir1 "$work/usr/lib/debug" \
    --headers-dir1 "$work/usr/include" --headers-dir2 include "$1" "$library" >&2 || {
    [ $(($? & 3)) -eq 0 ] || exit 1 # no comparison
    same=false
}

# Codes are numbers to the functions, so that the library does not know their names.
{
    printf '#include <stdio.h>\n#include "kalorfix.h"\nint main(void) {\n'
    grep -ow 'KALORFIX_[A-Z0-9_]*' "$work/usr/include/kalorfix.h" | grep -vxE 'KALORFIX_(API|H|VERSION.*)' | sort -u |
        sed 's/.*/    printf("%s %.17g\\n", "&", (double)&);/'
    echo '}'
} >"$work/codes.c"
cc -I"$work/usr/include" "$work/codes.c" -o "$work/codes"
"$work/codes" >"$work/released"
{ cc -Iinclude "$work/codes.c" -o "$work/codes" && "$work/codes" >"$work/here" && diff "$work/released" "$work/here"; } >&2 ||
    same=false

if $same; then
    echo "interface, $architecture: that of $version"
elif [ "${now%%.*}" -gt "${version%%.*}" ]; then
    echo "interface, $architecture: differs from $version, as $now may"
else
    echo "interface, $architecture: differs from $version, which only version $((${version%%.*} + 1)).0.0 may" >&2
    exit 1
fi
