# SPDX-License-Identifier: MIT
# Sourced by the scripts that test the tool: a directory to work in, failures, runs of "$tool", tables of cases.
tests=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
said=$(mktemp -d)    # what the last run wrote: out, err
failed=$(mktemp)     # a line a failure: parts of a pipeline count too
trap 'rm -rf "$work" "$said" "$failed"' EXIT

fail() {
    echo "FAILED: $*" | tee -a "$failed"
}

# finish NAME: the exit of the script.
finish() {
    [ -s "$failed" ] && exit 1
    echo "$1: all as expected"
    exit 0
}

# expect STATUS REGEX ARGUMENTS...: the exit status, and a line of standard output; for status 2 exactly one line of standard
# error and nothing on standard output.
expect() {
    status=$1 pattern=$2
    shift 2
    "$tool" "$@" >"$said/out" 2>"$said/err"
    got=$?
    lines=$(wc -l <"$said/err")
    if [ "$got" -ne "$status" ]; then
        fail "status $got, wanted $status: $*"
    elif [ "$status" -eq 2 ]; then
        [ ! -s "$said/out" ] && [ "$lines" -eq 1 ] && grep -qE "$pattern" "$said/err" && return
        fail "message, wanted '$pattern': $*"
    else
        grep -qE "$pattern" "$said/out" && return
        fail "the output lacks '$pattern': $*"
    fi
    head -n 20 "$said/err" "$said/out"
}

# rows FILE FUNCTION: FUNCTION with the cells of each row of tests/tables/FILE; " @ " parts the cells, # begins a comment.
rows() {
    sed '/^#/d; /^$/d; s/ *@ */@/g' "$tests/tables/$1" >"$said/rows"
    [ -s "$said/rows" ] || fail "$1 has no rows"
    while IFS=@ read -r first second third fourth <&4; do
        "$2" "$first" "$second" "$third" "$fourth"
    done 4<"$said/rows"
}
