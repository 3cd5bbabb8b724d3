# Sourced by ./demo, ./check and .ci/run: installs the Debian packages that are missing.
# Usage: need_packages NAME...

need_packages() {
    missing=""
    for package in "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' ||
            missing="$missing $package"
    done
    [ -z "$missing" ] && return 0
    as_root=""
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null 2>&1 || {
            echo "Please install as root: apt-get install$missing" >&2
            return 1
        }
        as_root=sudo
    fi
    echo "Installing:$missing"
    $as_root apt-get update -qq
    # shellcheck disable=SC2086
    $as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends $missing >/dev/null
}
