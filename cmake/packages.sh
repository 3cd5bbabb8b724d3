# SPDX-License-Identifier: MIT
# Sourced by ./demo, ./check, ./package and .ci/run: installs the Debian packages that are missing, and lets builds use
# all processors.
# Usage: need_packages NAME...

export CMAKE_BUILD_PARALLEL_LEVEL="${CMAKE_BUILD_PARALLEL_LEVEL-$(nproc)}"

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

# Usage: need_test_packages: what builds everything and runs the tests on this machine.
need_test_packages() {
    need_packages g++ cmake make libcli11-dev libfmt-dev libssl-dev libmd4c-dev libmd4c-html0-dev libgtest-dev \
        libbenchmark-dev python3 pkgconf groff gettext locales libclang-rt-14-dev \
        python3-pandas python3-distributed mypy
}

# Usage: need_cross_packages armhf|arm64: the cross compiler and the emulator, and for tool and tests the packages of the
# target, in build/root/ARCHITECTURE, where the toolchain looks for them.
need_cross_packages() {
    case $1 in
        armhf) need_packages g++-arm-linux-gnueabihf qemu-user apt ;;
        arm64) need_packages g++-aarch64-linux-gnu qemu-user apt ;;
    esac
    sh cmake/debian_root.sh "$1" "build/root/$1" \
        libcli11-dev libfmt-dev libfmt9 libssl-dev libssl3 libmd4c-dev libmd4c-html0-dev libmd4c-html0 libmd4c0 \
        libgtest-dev libc6 libgcc-s1 libstdc++6
}
