#!/bin/sh
# SPDX-License-Identifier: MIT
# Judges an installation as somebody who was given it: an outside project is built against it, and it and the tool run.
# Usage: prefix_test.sh BUILD [PREFIX]    BUILD says which compilers made it; without PREFIX it is installed and moved.
set -eu
build=$1
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() {
    echo "$*" >&2
    exit 1
}
quietly() {
    "$@" >"$work/log" 2>&1 || fail "$*: $(cat "$work/log")"
}
if [ $# -eq 1 ]; then
    quietly cmake --install "$build" --prefix "$work/first"
    # What names the place where it was made would break when that is gone.
    ! grep -rlF -e "$(cd "$here/../.." && pwd)" -e "$work" "$work/first" || fail "the build is named in these"
    # What belongs to no component would be in no package.
    quietly cmake --install "$build" --prefix "$work/none" --component Unspecified
    [ ! -e "$work/none" ] || fail "of no component: $(find "$work/none" -type f)"
    mkdir -p "$work/deeper"
    mv "$work/first" "$work/deeper/moved"
    set -- "$build" "$work/deeper/moved"
fi
cmp "$build/gas.dat" "$2/share/kalorfix/gas.dat"
config=$(dirname "$(find "$2" -name kalorfixConfig.cmake)")
export PKG_CONFIG_LIBDIR="$config/../../pkgconfig"
sed -n 's/^CMAKE_\(C_COMPILER\|CXX_COMPILER\|TOOLCHAIN_FILE\):/-D&/p' "$build/CMakeCache.txt" >"$work/options"
quietly xargs -d '\n' -a "$work/options" cmake -S "$here/outside" -B "$work/outside" -Dkalorfix_DIR="$config"
quietly cmake --build "$work/outside"
quietly ctest --test-dir "$work/outside" --output-on-failure
grep 'tests passed' "$work/log"
