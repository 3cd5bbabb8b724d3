#!/bin/sh
# Compares the binary interface of a built library with the stored one of its target.
# Usage: abi_test.sh LIBRARY           fails on any change, additions included
#        abi_test.sh --accept LIBRARY  stores the interface of LIBRARY in place of the old one
#
# Seen: types and order of arguments of the C functions, fields and size of the classes, virtual slots, exported variables
# with their types and lengths, every exported name. Not seen, by nature: the order of two arguments of one type; the examples
# and station runs, which call by position, hold it. Not seen, as the debug information does not lead from the calculator
# classes to them: the results of their members, whose arguments stand in their names; tests/layout_test.cpp holds them.
set -eu
accept=
if [ "$1" = --accept ]; then
    accept=1
    shift
fi
library=$1
here=$(cd "$(dirname "$0")" && pwd)
include=$(dirname "$here")/include
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# What other files than the public headers declare, and where anything stands, is left out.
scope="--drop-private-types --exported-interfaces-only --suppressions $here/abi/private.abignore"
# shellcheck disable=SC2086
abidw $scope --headers-dir "$include" --no-show-locs --no-comp-dir-path --no-corpus-path --no-elf-needed \
    --no-parameter-names --type-id-style hash --out-file "$work/built.abi" "$library"
grep -q '<function-decl' "$work/built.abi" || { echo "$library carries no debug information"; exit 1; }
case $(sed -n "s/.* architecture='\([^']*\)'.*/\1/p;q" "$work/built.abi") in
    elf-amd-x86_64) target=x86_64 ;;
    elf-arm) target=armhf ;;
    *) echo "no interface is stored for this target"; exit 1 ;;
esac
stored=$here/abi/$target.abi

if [ -n "$accept" ]; then
    cp "$work/built.abi" "$stored"
    echo "stored: tests/abi/$target.abi"
    exit 0
fi
# shellcheck disable=SC2086
if ! abidiff --harmless --no-show-locs --suppressions "$here/abi/private.abignore" \
    "$stored" "$work/built.abi" >"$work/difference" 2>&1; then
    cat "$work/difference"
    echo
    echo "The binary interface differs from tests/abi/$target.abi: programs that were built with the old one may fail."
    echo "If that is meant, store the new one for every target and name the change in CHANGELOG.md:"
    echo "    cmake --build --preset release --target abi_baseline"
    echo "    cmake --build --preset armhf --target abi_baseline"
    exit 1
fi
echo "the interface of tests/abi/$target.abi"
