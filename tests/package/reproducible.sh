#!/bin/sh
# SPDX-License-Identifier: MIT
# Makes the packages of ./package in build/packages once more, from a copy of the source in another place, with older files,
# under another umask, time zone and locale, and compares them byte for byte.
# Usage: reproducible.sh [ARCHITECTURE...]    default: that of this machine
set -eu
source=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
copy=$work/another/place/with.a-longer/name
mkdir -p "$copy/build"
umask 077
cd "$source"
SOURCE_DATE_EPOCH=$(git log -1 --format=%ct)
export SOURCE_DATE_EPOCH TZ=Asia/Kathmandu LC_ALL=C.UTF-8 DEB_BUILD_OPTIONS=nocheck
git ls-files -coz --exclude-standard | xargs -0 cp --parents -t "$copy"
find "$copy" -exec touch -d '2001-02-03 04:05:06' {} +
# The unpacked packages of a target serve both.
[ ! -d build/root ] || cp -R build/root "$copy/build/root"
for architecture in "${@:-$(dpkg --print-architecture)}"; do
    "$copy/package" "$architecture" >"$work/log" 2>&1 || {
        cat "$work/log" >&2
        exit 1
    }
    for package in "$copy"/build/packages/*_"$architecture.deb"; do
        cmp "$package" "build/packages/${package##*/}"
    done
done
echo "the same packages from two directories"
