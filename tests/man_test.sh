#!/bin/sh
# SPDX-License-Identifier: MIT
# The manual pages: clean roff, every command and option of the tool, every plain function of the library.
# man_test.sh SOURCE [TOOL]
set -u
export LC_ALL=C.UTF-8
source=$1
tool=${2:-}
pages=$source/docs/man
. "$(dirname "$0")/checks.sh"

for page in kalorfix.1 kalorfix.3; do
    groff -man -Tutf8 -ww -rLL=80n "$pages/$page" >"$work/page" 2>"$work/warnings" || fail "groff refuses $page"
    [ -s "$work/warnings" ] && fail "groff warns of $page" && cat "$work/warnings"
    # One byte a character, so that every awk counts columns.
    groff -man -Tascii -P-cbou -rLL=80n "$pages/$page" 2>/dev/null | awk 'length > 80 { print; long = 1 } END { exit long }' ||
        fail "$page: a line of more than 80 columns"
    for section in NAME SYNOPSIS DESCRIPTION ENVIRONMENT FILES EXAMPLES 'SEE ALSO'; do
        grep -qx "\.SH $section" "$pages/$page" || fail "$page lacks the section $section"
    done
    head -3 "$pages/$page" | grep -q "^kalorfix .- [a-z]" || fail "$page: no line for whatis"
done

# part HEADING: the text under a heading of kalorfix.1, with plain hyphens and without fonts.
part() {
    awk -v heading="$1" '/^\.S[HS] /{ on = substr($0, 5) == heading; next } on' "$pages/kalorfix.1" |
        sed 's/\\-/-/g; s/\\f[BIRP]//g'
}
options_of() { grep -oE '(^|[^a-zA-Z0-9-])--[a-z][a-z0-9-]*' | grep -oE -e '--[a-z0-9-]+' | sort -u; }
subcommands() { sed -n '/^Subcommands:/,/^$/p' | sed -n 's/^  \([a-z][a-z0-9]*\) .*/\1/p'; }

# compare HEADING COMMAND...: the options and words of the help are those of the page.
compare() {
    part "$1" >"$work/part"
    shift
    "$tool" "$@" --help >"$work/help" || fail "$* --help"
    # Only what stands in the column of the names is an option of its own; --help is told of once.
    sed -n '/^Options:/,/^$/p' "$work/help" | grep -E '^  -' | options_of | grep -vx -e "${1:+--help}" >"$work/wanted"
    options_of <"$work/part" | diff "$work/wanted" - || fail "kalorfix.1 has other options of '$*' (< help, > page)"
    for word in $(sed -n '/^Positionals:/,/^$/s/^  \([A-Z][A-Z]*\) .*/\1/p' "$work/help"); do
        grep -qx "\.I $word" "$work/part" || fail "kalorfix.1 lacks $word of '$*'"
    done
    [ $# -gt 0 ] && echo "$*" >>"$work/known"
}

if [ "$tool" ]; then
    compare OPTIONS
    for command in $("$tool" --help | subcommands); do
        compare "$command" "$command"
        for sub in $("$tool" "$command" --help | subcommands); do compare "$command $sub" "$command" "$sub"; done
    done
    awk '/^\.SH /{ on = $2 == "COMMANDS" } on && /^\.SS /{ print substr($0, 5) }' "$pages/kalorfix.1" | sort >"$work/told"
    sort "$work/known" | diff - "$work/told" || fail "other commands (< tool, > page)"
fi

# A function of the library is a tag with a line of its own below it.
grep -v -e '^#' -e '^_Z' "$source/frame/exports.list" | while read -r name; do
    grep -qE "^KALORFIX_API (int|short) $name\(" "$source/include/kalorfix.h" && echo "$name"
done | sort -u >"$work/functions"
[ -s "$work/functions" ] || fail "the export list has no plain functions"
awk 'tag { if ($0 !~ /^\./) print tag; tag = "" }
    /^\.BR [A-Za-z_0-9]+ \(\)$/ && before == ".TP" { tag = $2 }
    { before = $0 }' "$pages/kalorfix.3" | sort -u | diff "$work/functions" - || fail "other functions (< library, > page)"

finish "manual pages, $(wc -l <"$work/functions") functions"
