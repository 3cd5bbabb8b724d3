#!/bin/sh
# SPDX-License-Identifier: MIT
# The manual pages: clean roff for a terminal of 80 columns, that of the tool with every command and key, that of the library with
# every plain function. man_test.sh SOURCE [TOOL PAGE]
set -u
export LC_ALL=C.UTF-8
source=$1
tool=${2:-}
page_of_tool=${2:+$3}
functions=$source/docs/man/kalorfix.3
. "$(dirname "$0")/checks.sh"

for page in $page_of_tool "$functions"; do
    groff -man -Tutf8 -ww -rLL=80n "$page" >"$work/page" 2>"$work/warnings" || fail "groff refuses $page"
    [ -s "$work/warnings" ] && fail "groff warns of $page" && cat "$work/warnings"
    # One byte a character, so that every awk counts columns.
    groff -man -Tascii -P-cbou -rLL=80n "$page" 2>/dev/null | awk 'length > 80 { print; long = 1 } END { exit long }' ||
        fail "$page: a line of more than 80 columns"
    for section in NAME SYNOPSIS DESCRIPTION ENVIRONMENT FILES EXAMPLES 'SEE ALSO'; do
        grep -qx "\.SH $section" "$page" || fail "$page lacks the section $section"
    done
    grep -A1 -x '\.SH NAME' "$page" | grep -q '^kalorfix .- [a-z]' || fail "$page: no line for whatis"
done

if [ "$tool" ]; then
    groff -man -Tascii -P-cbou -rLL=80n "$page_of_tool" >"$work/page"
    for word in $("$tool" --help | sed -n '/^Subcommands:/,/^$/s/^  \([a-z]*\) .*/\1/p') 'gasdat show' --decimal contract_hour; do
        grep -qE -e "^ +$word( |\$)" "$work/page" || fail "kalorfix.1 lacks $word"
    done
    # A template that lacks a command, or has one that there is not, makes no page.
    grep -vx '@id@' "$source/docs/man/kalorfix.1.in" >"$work/lacking"
    sed 's/^@id@$/@idd@/' "$source/docs/man/kalorfix.1.in" >"$work/other"
    for template in lacking other; do
        "$tool" help --man "$work/$template" >/dev/null 2>&1 && fail "a page of a template that is $template a command"
    done
fi

# A function of the library is a tag with a line of its own below it.
grep -v -e '^#' -e '^_Z' "$source/frame/exports.list" | while read -r name; do
    grep -qE "^KALORFIX_API (int|short) $name\(" "$source/include/kalorfix.h" && echo "$name"
done | sort -u >"$work/functions"
[ -s "$work/functions" ] || fail "the export list has no plain functions"
awk 'tag { if ($0 !~ /^\./) print tag; tag = "" }
    /^\.BR [A-Za-z_0-9]+ \(\)$/ && before == ".TP" { tag = $2 }
    { before = $0 }' "$functions" | sort -u | diff "$work/functions" - || fail "other functions (< library, > page)"

finish "manual pages, $(wc -l <"$work/functions") functions"
