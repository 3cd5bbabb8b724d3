#!/bin/sh
# Installs a build into a prefix, whole and by components, under a strict umask, and judges it there and after a move.
# Usage: install_test.sh BUILD
set -eu
. "$(dirname "$0")/common.sh"
install() {
    (umask 077 && "$cmake" --install "$build" "$@" >"$work/log" 2>&1) || {
        cat "$work/log" >&2
        fail "cmake --install $*"
    }
}

mkdir "$work/first"
install --prefix "$work/first/prefix"
find "$work/first/prefix" -type f ! -perm 644 ! -perm 755 >"$work/modes"
[ ! -s "$work/modes" ] || fail "the umask reached $(cat "$work/modes")"
# An installation that names the place where it was made would break when that is gone.
for path in "$source" "$work"; do
    grep -rlF "$path" "$work/first/prefix" >"$work/named" && fail "$path is named in $(cat "$work/named")"
done
sh "$here/prefix_test.sh" "$build" "$work/first/prefix"

mkdir -p "$work/second/deeper"
mv "$work/first/prefix" "$work/second/deeper/moved"
sh "$here/prefix_test.sh" "$build" "$work/second/deeper/moved"

# The components together are the whole, and each holds its own alone.
parts="runtime dev python"
[ "$tool" = ON ] && parts="$parts tool"
for part in $parts; do
    install --prefix "$work/$part" --component "$part"
    (cd "$work/$part" && find . -type f) >>"$work/parts"
done
sort "$work/parts" >"$work/parts_sorted"
(cd "$work/second/deeper/moved" && find . -type f | sort) | diff "$work/parts_sorted" - ||
    fail "the components (<) are not the whole (>)"
[ -f "$work/runtime/$libdir/kalorfix.so" ] && [ -f "$work/runtime/share/kalorfix/gas.dat" ] &&
    [ ! -e "$work/runtime/include" ] ||
    fail "the runtime component is not the library with its gas data"
