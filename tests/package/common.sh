# Sourced by the scripts that judge installations and packages, which get the build as their first argument.
. "$1/package_settings.sh"
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() {
    echo "${prefix-}${prefix:+: }$*" >&2
    exit 1
}
