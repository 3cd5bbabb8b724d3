#!/bin/sh
# SPDX-License-Identifier: MIT
# Compares what the library exports with the list, and what it needs with libc and libm of the stated age.
set -eu
nm=$1 library=$2 list=$3 readelf=$4 compiler=$5
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
grep -v '^#' "$list" | LC_ALL=C sort >"$work/wanted"
# The complete constructor of an abstract class cannot be called; Clang does not emit it.
if [ "$compiler" = Clang ]; then
    grep -v '^_ZN11cCommon2005C1Ev$' "$work/wanted" >"$work/emitted"
    mv "$work/emitted" "$work/wanted"
fi
"$nm" -D --defined-only "$library" | awk '{print $3}' | LC_ALL=C sort >"$work/exported"
if ! diff "$work/wanted" "$work/exported" >"$work/difference"; then
    echo "the library's exports differ from the list (< list, > library):"
    cat "$work/difference"
    exit 1
fi
# A unique symbol keeps dlclose from unloading; one of the C++ runtime, or a weak function, would be shared with the host's.
if "$nm" -D --defined-only "$library" | awk '
    $2 == "u" || $3 ~ /^_Z(T[VIS])?N?K?S[tabsiod]|^_Z(n[wa]|d[la])|__gnu_cxx|__cxxabiv1/ ||
    $2 ~ /[WV]/ && $3 !~ /^_ZT[VIS](11cCommon2005|10cTeplo2005|8cGas2005)$/ { print; found = 1 }
    END { exit !found }'; then
    echo "exports a unique symbol, a weak one, or one of the C++ runtime"
    exit 1
fi
"$readelf" -d "$library" >"$work/dynamic"
grep -q 'Library soname: \[kalorfix.so\]' "$work/dynamic" || { echo "wrong SONAME"; exit 1; }
if grep NEEDED "$work/dynamic" | grep -vE '\[(libc\.so\.6|libm\.so\.6|ld-linux[^]]*)\]'; then
    echo "needs more than libc and libm"
    exit 1
fi
grep -qE 'BIND_NOW|\(FLAGS_1\).*NOW' "$work/dynamic" || { echo "not bound at load"; exit 1; }
# Symbols of glibc since its first version for the machine; on x86-64 memcpy has no older one than 2.14.
"$nm" -D --undefined-only "$library" | awk '$1 == "U" { print $2 }' >"$work/needed"
# Weak ones do without: the host's operator delete, hooks of the tool chain. What has a version counts as needed.
"$nm" -D --undefined-only "$library" | awk '$1 != "U" { print $2 }' >"$work/weak"
grep '@GLIBC_' "$work/weak" >>"$work/needed" || true
if grep -v '@GLIBC_' "$work/weak" |
    grep -vE '^(_ZdlPv|_ITM_(de)?registerTMCloneTable|__gmon_start__|__cxa_(begin_cleanup|call_unexpected|type_match))$'; then
    echo "looks for a symbol that it should not know"
    exit 1
fi
if grep -v '@GLIBC_' "$work/needed"; then
    echo "needs a symbol that libc and libm do not have"
    exit 1
fi
newest=$(sed 's/.*@GLIBC_//' "$work/needed" | sort -V | tail -n 1)
case $("$readelf" -h "$library") in
*X86-64*) bound=2.14 ;;
*ARM*) bound=2.4 ;;
*AArch64*) bound=2.17 ;;
*) bound=2.29 ;;
esac
if [ "$(printf '%s\n' "$newest" "$bound" | sort -V | tail -n 1)" != "$bound" ]; then
    echo "needs glibc $newest, newer than $bound:"
    grep "@GLIBC_$newest" "$work/needed"
    exit 1
fi
echo "$(wc -l <"$work/wanted") exports as listed; libc and libm only, glibc $newest or newer"
