#!/bin/sh
# Makes the packages twice, from copies of the source of other name, depth, age and order of files, under another umask, time
# zone and locale, and compares them byte for byte.
# Usage: reproducible.sh [--made] [PRESET...]    default: release, and armhf where its compiler is installed
# With --made the packages of ./package in build/packages stand for the first copy.
set -eu
source=$(cd "$(dirname "$0")/../.." && pwd)
made=
if [ "${1-}" = --made ]; then
    made=1
    shift
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
if [ $# -eq 0 ]; then
    set -- release
    if command -v arm-linux-gnueabihf-g++ >/dev/null; then set -- release armhf; fi
fi

# What the version control knows, changes included; without it, all but the builds.
list() {
    (cd "$source" && if [ -e .git ]; then git ls-files -co --exclude-standard; else find . -type f ! -path './build*'; fi)
}
# Usage: copy DIRECTORY, with the names of the files on standard input
copy() {
    mkdir -p "$1"
    while IFS= read -r file; do
        [ -e "$source/$file" ] || continue
        mkdir -p "$1/$(dirname "$file")"
        cp "$source/$file" "$1/$file"
    done
}
first=$work/a
second=$work/another/place/with.a-longer/name
list | sort | copy "$first"
(umask 077 && list | sort -r | copy "$second")
# The packages of the target are the same for both.
for place in "$first" "$second"; do
    mkdir -p "$place/build"
    [ ! -d "$source/build/root" ] || cp -R "$source/build/root" "$place/build/root"
done
find "$second" -type f -exec touch -d '2001-02-03 04:05:06' {} +

unset SOURCE_DATE_EPOCH
for preset in "$@"; do
    for place in "$first" "$second"; do
        [ -z "$made" ] || [ "$place" = "$second" ] || continue
        (
            if [ "$place" = "$second" ]; then
                umask 077
                export TZ=Asia/Kathmandu LC_ALL=C.UTF-8
            else
                export LC_ALL=C
            fi
            "$place/package" "$preset" -DKALORFIX_TESTS=OFF -DKALORFIX_BENCHMARKS=OFF
        ) >"$work/log" 2>&1 || {
            cat "$work/log" >&2
            exit 1
        }
    done
done
[ -z "$made" ] || cp -R "$source/build/packages" "$first/build/packages"
for place in "$first" "$second"; do
    (cd "$place/build/packages" && sha256sum ./*.deb) >"$place/sums"
done
diff "$first/sums" "$second/sums" || {
    echo "the packages are not the same" >&2
    exit 1
}
sed 's| \./| |' "$first/sums"
echo "the same from two directories"
