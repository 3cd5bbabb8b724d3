#!/bin/sh
# SPDX-License-Identifier: MIT
# Judges the folder of a release as somebody who was given it: checksums, signature, the tools for ARM under the emulator, and in
# a bare Debian the apt repository, the programs, and that nothing is left of them.
# Usage: release_test.sh FOLDER ROOTS    ROOTS/ARCHITECTURE holds the libraries that the tools for ARM need
set -eu
folder=$(realpath "$1")
roots=$(realpath "$2")
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() {
    echo "$*" >&2
    exit 1
}

cd "$folder"
sha256sum --check --strict --quiet SHA256SUMS
find . -type f ! -name 'SHA256SUMS*' -printf '%P\n' | LC_ALL=C sort >"$work/files"
sed 's/^[0-9a-f]*  //' SHA256SUMS | diff "$work/files" - || fail "SHA256SUMS is not of all files"
signature="not signed"
if [ -f SHA256SUMS.minisig ]; then
    minisign -Vq -p kalorfix.pub -m SHA256SUMS || fail "the signature does not fit"
    signature="signed"
fi
echo "         $(wc -l <SHA256SUMS) checksums, $signature"

mkdir "$work/amd64"
for package in kalorfix_*_amd64.deb kalorfix-tool_*_amd64.deb; do
    dpkg-deb -x "$package" "$work/amd64"
done
"$work/amd64/usr/bin/kalorfix" demo >"$work/demo"
for machine in armhf:arm:ARM arm64:aarch64:AArch64; do
    architecture=${machine%%:*}
    kind=${machine##*:}
    emulator=${machine#*:}
    mkdir "$work/$architecture"
    for package in *_"$architecture.deb"; do
        [ "$(dpkg-deb -f "$package" Architecture)" = "$architecture" ] || fail "$package is of another architecture"
        dpkg-deb -x "$package" "$work/$architecture"
    done
    readelf -h "$work/$architecture"/usr/bin/kalorfix "$work/$architecture"/usr/lib/*/kalorfix.so | grep Machine |
        { ! grep -v " $kind\$"; } || fail "not for $architecture"
    "qemu-${emulator%:*}" -L "$roots/$architecture" "$work/$architecture/usr/bin/kalorfix" demo | diff "$work/demo" - ||
        fail "the demo of $architecture is another one"
done
echo "         armhf and arm64: the demo of amd64, under the emulator"

# The machine's own sources, and nothing else of it.
cat /etc/apt/sources.list /etc/apt/sources.list.d/*.list /etc/apt/sources.list.d/*.sources >"$work/sources" 2>/dev/null || true
mmdebstrap --quiet --variant=apt --format=null --customize-hook="copy-in '$folder' '$here/bare_system.sh' /mnt" \
    --customize-hook="chroot \"\$1\" sh /mnt/bare_system.sh '/mnt/${folder##*/}'" bookworm - /dev/stdin <"$work/sources"
