#!/bin/sh
# Judges the Debian packages of a build: fields, contents, modes, checksums, and what is in them as an installed prefix.
# Usage: deb_test.sh BUILD DIRECTORY
set -eu
. "$(dirname "$0")/common.sh"
packages=$2
names="kalorfix kalorfix-dev"
[ "$tool" = ON ] && names="$names kalorfix-tool"
for name in $names; do
    deb=$packages/${name}_${version}_$architecture.deb
    [ -f "$deb" ] || fail "no $deb"
    [ "$(dpkg-deb -f "$deb" Architecture)" = "$architecture" ] || fail "$deb: not for $architecture"
    dpkg-deb -f "$deb" Depends | grep -q "$([ "$name" = kalorfix ] && echo libc6 || echo "kalorfix (= $version)")" ||
        fail "$deb: wrong Depends"
    dpkg-deb -c "$deb" >"$work/list"
    awk '$2 != "root/root" || $1 !~ /^(drwxr-xr-x|-rw-r--r--|-rwxr-xr-x)$/' "$work/list" >"$work/odd"
    [ ! -s "$work/odd" ] || fail "$deb: owner or mode: $(cat "$work/odd")"
    for file in copyright changelog.gz; do
        grep -q " \./usr/share/doc/$name/$file$" "$work/list" || fail "$deb: no $file"
    done
    dpkg-deb -x "$deb" "$work/root"
    dpkg-deb -e "$deb" "$work/$name"
    (cd "$work/root" && md5sum --quiet -c "$work/$name/md5sums") || fail "$deb: checksums"
    # Every file is in the list of checksums, once.
    awk '$1 ~ /^-/ { sub("^\\./", "", $6); print $6 }' "$work/list" | sort >"$work/files"
    sed 's/^[0-9a-f]*  //' "$work/$name/md5sums" | sort | diff - "$work/files" || fail "$deb: checksums (<) of other files (>)"
done
[ -f "$work/root/usr/lib/$triplet/kalorfix.so" ] || fail "the library is not in /usr/lib/$triplet"
[ -e "$work/root/usr/bin/kalorfix" ] || [ "$tool" != ON ] || fail "no /usr/bin/kalorfix"
sh "$here/prefix_test.sh" "$build" "$work/root/usr"
