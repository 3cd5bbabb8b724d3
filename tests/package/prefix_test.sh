#!/bin/sh
# Judges an installed prefix as somebody who was given it: programs in C and C++ are built against it by CMake and by
# pkg-config, run, and print the right number; the tool runs from it.
# Usage: prefix_test.sh BUILD PREFIX    BUILD says which compilers made it
set -eu
. "$(dirname "$0")/common.sh"
prefix=$2
# Runs a program of the target; the emulator is a command with its options.
run() {
    # shellcheck disable=SC2086
    $emulator "$@"
}
# Usage: right PROGRAM [DIRECTORY OF THE LIBRARY]
right() {
    "$readelf" -d "$1" | grep -q 'NEEDED.*\[kalorfix\.so\]' || fail "$1 does not ask for kalorfix.so by its bare name"
    printed=$(LD_LIBRARY_PATH=${2-} run "$1") || fail "$1 failed"
    [ "$printed" = "917.078 kg/m3, 647.096 K" ] || fail "$1 printed $printed"
}

library=$prefix/$libdir/kalorfix.so
[ -f "$library" ] || fail "no $libdir/kalorfix.so"
if "$readelf" -S "$library" | grep -q '\.debug_info'; then fail "the library is not stripped"; fi
cmp "$build/gas.dat" "$prefix/share/kalorfix/gas.dat" || fail "other gas data than the build's"

if [ -n "$toolchain" ]; then
    # A toolchain may confine the search for packages to its own root.
    set -- "-DCMAKE_TOOLCHAIN_FILE=$toolchain" "-Dkalorfix_DIR=$prefix/$libdir/cmake/kalorfix"
else
    set -- "-DCMAKE_C_COMPILER=$cc" "-DCMAKE_CXX_COMPILER=$cxx" "-DCMAKE_PREFIX_PATH=$prefix"
fi
"$cmake" -S "$here/outside" -B "$work/cmake" "$@" >"$work/log" 2>&1 &&
    "$cmake" --build "$work/cmake" >>"$work/log" 2>&1 || {
    cat "$work/log" >&2
    fail "the CMake project does not build"
}
right "$work/cmake/c_program"
right "$work/cmake/cxx_program"
[ "$(cat "$work/cmake/gas_data")" -ef "$prefix/share/kalorfix/gas.dat" ] || fail "kalorfix_GAS_DATA is another file"

command -v pkg-config >/dev/null || fail "pkg-config is not installed"
PKG_CONFIG_LIBDIR=$prefix/$libdir/pkgconfig
export PKG_CONFIG_LIBDIR
[ "$(pkg-config --modversion kalorfix)" = "$version" ] || fail "another version in kalorfix.pc"
[ "$(pkg-config --variable=gas_data kalorfix)" -ef "$prefix/share/kalorfix/gas.dat" ] || fail "gas_data is another file"
# The flags are words to split.
# shellcheck disable=SC2046
"$cc" "$here/outside/program.c" $(pkg-config --cflags --libs kalorfix) -o "$work/c_program"
# shellcheck disable=SC2046
"$cxx" -std=c++17 "$here/outside/program.cpp" $(pkg-config --cflags --libs kalorfix) -o "$work/cxx_program"
right "$work/c_program" "$prefix/$libdir"
right "$work/cxx_program" "$prefix/$libdir"

if [ "$tool" = ON ]; then
    kalorfix=$prefix/bin/kalorfix
    run "$kalorfix" id >"$work/id"
    grep -q "^version  *$version\$" "$work/id" || fail "kalorfix id: another version"
    [ "$(sed -n 's/^library  *//p' "$work/id")" -ef "$library" ] || fail "the tool opens another library"
    [ "$(sed -n 's/^gas data  *//p' "$work/id")" -ef "$prefix/share/kalorfix/gas.dat" ] || fail "the tool takes other gas data"
    [ -f "$prefix/share/bash-completion/completions/kalorfix" ] || fail "no completion for bash"
    run "$kalorfix" gas --method aga8 --composition "$prefix/share/kalorfix/examples/natural_gas.csv" --t 15 --p 5.5 >"$work/gas"
    grep -q 'coefficient K  *0\.8883667$' "$work/gas" || fail "kalorfix gas: another K"
    run "$kalorfix" verify --csv "$work/values.csv" >"$work/verify" || {
        cat "$work/verify" >&2
        fail "kalorfix verify"
    }
    run "$kalorfix" demo >"$work/demo" || fail "kalorfix demo"
    if grep -q 'No day of a station' "$work/demo"; then fail "the demonstration lacks its examples or gas data"; fi
fi
echo "$prefix: programs by CMake and pkg-config in C and C++, tool $tool"
