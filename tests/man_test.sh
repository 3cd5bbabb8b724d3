#!/bin/sh
# The manual pages: clean roff, every command and option of the tool, every plain function of the library.
# man_test.sh SOURCE [TOOL]
set -u
export LC_ALL=C.UTF-8
source=$1
tool=${2:-}
pages=$source/docs/man
. "$(dirname "$0")/checks.sh"

# ---- Roff ---------------------------------------------------------------------------------------------------------
formatters=0
for page in kalorfix.1 kalorfix.3; do
    if command -v groff >/dev/null; then
        formatters=$((formatters + 1))
        groff -man -Tutf8 -ww -rLL=80n "$pages/$page" >"$work/page" 2>"$work/warnings" || fail "groff refuses $page"
        [ -s "$work/warnings" ] && fail "groff warns of $page" && cat "$work/warnings"
        # One byte a character, so that every awk counts columns.
        groff -man -Tascii -P-cbou -rLL=80n "$pages/$page" 2>/dev/null |
            awk 'length > 80 { print; long = 1 } END { exit long }' ||
            fail "$page: a line of more than 80 columns"
    fi
    # Where the system has no manuals a placeholder may stand in the place of man.
    if man --version 2>/dev/null | grep -q '^man [0-9]'; then
        formatters=$((formatters + 1))
        MANWIDTH=80 man --warnings -E UTF-8 -Tutf8 -l "$pages/$page" >"$work/page" 2>"$work/warnings" ||
            fail "man refuses $page"
        [ -s "$work/warnings" ] && fail "man warns of $page" && cat "$work/warnings"
        [ "$(wc -l <"$work/page")" -ge 100 ] || fail "man shows only $(wc -l <"$work/page") lines of $page"
    fi
    for section in NAME SYNOPSIS DESCRIPTION ENVIRONMENT FILES EXAMPLES 'SEE ALSO'; do
        grep -qx "\.SH $section" "$pages/$page" || fail "$page lacks the section $section"
    done
    head -3 "$pages/$page" | grep -q "^kalorfix .- [a-z]" || fail "$page: no line for whatis"
done
[ "$formatters" -ge 2 ] || fail "neither groff nor man is installed"
for section in 'OPTIONS' 'COMMANDS' 'EXIT STATUS'; do
    grep -qx "\.SH $section" "$pages/kalorfix.1" || fail "kalorfix.1 lacks the section $section"
done

# ---- kalorfix.1 and the tool --------------------------------------------------------------------------------------
# part HEADING: the text under a heading, with plain hyphens and without fonts.
part() {
    awk -v heading="$1" '/^\.S[HS] /{ on = substr($0, 5) == heading; next } on' "$pages/kalorfix.1" |
        sed 's/\\-/-/g; s/\\f[BIRP]//g'
}

options_of() { grep -oE '(^|[^a-zA-Z0-9-])--[a-z][a-z0-9-]*' | grep -oE -e '--[a-z0-9-]+' | sort -u; }

# Only what stands in the column of the names is an option of its own.
options_in_help() { sed -n '/^Options:/,/^$/p' | grep -E '^  -' | options_of; }

subcommands() { sed -n '/^Subcommands:/,/^$/p' | sed -n 's/^  \([a-z][a-z0-9]*\) .*/\1/p'; }

# compare COMMAND HEADING: options and words of the help in the page, and no other option in the page.
compare() {
    # shellcheck disable=SC2086
    "$tool" $1 --help >"$work/help" || fail "$1 --help"
    part "$2" >"$work/part"
    [ -s "$work/part" ] || fail "kalorfix.1 does not describe ${1:-the general options}"
    options_in_help <"$work/help" >"$work/wanted"
    options_of <"$work/part" >"$work/found"
    if [ "$1" ]; then
        grep -vx -e --help "$work/wanted" >"$work/own"
        mv "$work/own" "$work/wanted"
    fi
    for option in $(comm -23 "$work/wanted" "$work/found"); do fail "kalorfix.1 lacks $option of '$1'"; done
    for option in $(comm -13 "$work/wanted" "$work/found"); do fail "kalorfix.1: '$1' has no $option"; done
    sed -n '/^Positionals:/,/^$/s/^  \([A-Z][A-Z]*\) .*/.I \1/p' "$work/help" >"$work/positionals"
    while read -r line; do
        grep -qxF "$line" "$work/part" || fail "kalorfix.1 lacks $line of '$1'"
    done <"$work/positionals"
    commands=$((commands + 1))
}

if [ "$tool" ]; then
    commands=0
    compare '' OPTIONS
    : >"$work/known"
    for command in $("$tool" --help | subcommands); do
        compare "$command" "$command"
        echo "$command" >>"$work/known"
        for sub in $("$tool" "$command" --help | subcommands); do
            compare "$command $sub" "$command $sub"
            echo "$command $sub" >>"$work/known"
        done
    done
    [ "$commands" -ge 11 ] || fail "only $commands helps of the tool were read"
    awk '/^\.SH /{ on = $2 == "COMMANDS" } on && /^\.SS /{ print substr($0, 5) }' "$pages/kalorfix.1" |
        sort >"$work/told"
    sort "$work/known" | comm -13 - "$work/told" >"$work/surplus"
    [ -s "$work/surplus" ] && fail "kalorfix.1 tells of commands that are none: $(cat "$work/surplus")"
    sed -n '/^\.SH SYNOPSIS/,/^\.SH DESCRIPTION/p' "$pages/kalorfix.1" | sed 's/\\-/-/g' >"$work/synopsis"
    while read -r command; do
        grep -qE "^\.B kalorfix $command( |$)" "$work/synopsis" || fail "the synopsis of kalorfix.1 lacks $command"
    done <"$work/known"
fi

# ---- kalorfix.3 and the library -----------------------------------------------------------------------------------
grep -v -e '^#' -e '^_Z' "$source/frame/exports.list" | while read -r name; do
    grep -qE "^KALORFIX_API (int|short) $name\(" "$source/include/kalorfix.h" && echo "$name"
done | sort -u >"$work/functions"
[ "$(wc -l <"$work/functions")" -ge 18 ] || fail "the export list has only $(wc -l <"$work/functions") plain functions"
# A function of the list is a tag with a line of its own below it.
awk 'tag { if ($0 !~ /^\./) print tag; tag = "" }
    /^\.BR [A-Za-z_0-9]+ \(\)$/ && before == ".TP" { tag = $2 }
    { before = $0 }' "$pages/kalorfix.3" | sort -u >"$work/listed"
for name in $(comm -23 "$work/functions" "$work/listed"); do fail "kalorfix.3 lacks $name"; done
sed -n 's/^\.BR \([A-Za-z_0-9]*\) ()$/\1/p' "$pages/kalorfix.3" | sort -u >"$work/named"
for name in $(comm -13 "$work/functions" "$work/named"); do fail "kalorfix.3: $name is not exported"; done
grep -q '^\.I /usr/share/doc/kalorfix.*/api.md$' "$pages/kalorfix.3" || fail "kalorfix.3 does not refer to api.md"

finish "manual pages, $(wc -l <"$work/functions") functions, ${commands:-no} helps"
