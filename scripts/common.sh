# SPDX-FileCopyrightText: The Serimonde developers
# SPDX-License-Identifier: MIT
# shellcheck shell=bash disable=SC2034
#
# What ./run, ./test, ./bench, ./fuzz, ./package, the scripts check-* and .ci/run share. They
# source this file; it sets $repo.

repo=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd)

# Debian's names; each command needs those of the list "run" and its own.
run_packages=(ca-certificates g++ cmake ninja-build qt6-base-dev qt6-tools-dev libfontconfig-dev
              libssl-dev libboost-dev libqt6sql6-sqlite libqt6svg6 fonts-liberation fonts-dejavu-core)
test_packages=(libxml2-utils openssl poppler-utils python3 ser2net tshark)
bench_packages=(libbenchmark-dev ser2net xvfb)
lint_packages=(clang-format clang-tidy shellcheck)
clang_packages=(clang-14 libclang-rt-14-dev)
package_packages=(dpkg-dev file)
transfer_packages=(lrzsz socat)
session_packages=(xvfb libsm-dev libice-dev)
measure_packages=(xvfb openbox xdotool)
check_package_packages=(lintian appstream desktop-file-utils shared-mime-info man-db
                        bash-completion)

Say() { printf '%s\n' "$*" >&2; }

# Qt wants a UTF-8 locale and a private folder, and warns without them.
PrepareForQt() {
    if [[ $(locale charmap 2>/dev/null) != UTF-8 ]]; then
        export LC_ALL=C.UTF-8
    fi
    if [[ -z ${XDG_RUNTIME_DIR:-} ]]; then
        export XDG_RUNTIME_DIR=$repo/build/runtime
        mkdir -p "$XDG_RUNTIME_DIR"
        chmod 700 "$XDG_RUNTIME_DIR"
    fi
}

# MissingPackages PACKAGE...: prints those that are not installed, one a line.
MissingPackages() {
    if ! command -v dpkg-query >/dev/null; then
        printf '%s\n' "$@"
        return
    fi
    local installed
    # It complains about names it has never heard of; those are missing, too.
    # shellcheck disable=SC2016
    installed=$(dpkg-query -W -f '${db:Status-Status} ${Package}\n' "$@" 2>/dev/null || true)
    local package
    for package in "$@"; do
        if [[ $'\n'$installed$'\n' != *$'\n'"installed $package"$'\n'* ]]; then
            printf '%s\n' "$package"
        fi
    done
}

# Quietly TITLE LOG COMMAND...: shows the title; the command's whole output only if it fails.
Quietly() {
    local title=$1 log=$2
    shift 2
    mkdir -p "$(dirname -- "$log")"
    Say "$title"
    if ! "$@" </dev/null 2>&1 | tee "$log" | ShowProgress; then
        cat "$log" >&2
        Say "Failed: $*"
        return 1
    fi
}

# Each further tenth of a build, from lines such as "[12/80] Building ...".
ShowProgress() {
    awk -F '[][/]' '/^\[[0-9]+\/[0-9]+\]/ && $3 > 20 {
        tenth = int(10 * $2 / $3)
        if (tenth > shown) { print "  " 10 * tenth " %"; fflush(); shown = tenth }
    }' >&2
}

# InstallMissing PACKAGE...: installs what is missing; without a way to do so it says what to do.
InstallMissing() {
    local missing
    mapfile -t missing < <(MissingPackages "$@")
    if ((${#missing[@]} == 0)); then
        return 0
    fi
    local as_root=()
    if ((EUID != 0)); then
        as_root=(sudo)
    fi
    local apt=(env DEBIAN_FRONTEND=noninteractive apt-get)
    if ! command -v apt-get >/dev/null || ! command -v "${as_root[0]:-env}" >/dev/null; then
        SayWhatToInstall "${missing[@]}"
        return 1
    fi
    local log=$repo/build/packages.log
    if ! Quietly "Looking for packages" "$log" "${as_root[@]}" "${apt[@]}" update ||
        ! Quietly "Installing ${missing[*]}" "$log" "${as_root[@]}" "${apt[@]}" \
            install -y --no-install-recommends "${missing[@]}"; then
        SayWhatToInstall "${missing[@]}"
        return 1
    fi
}

SayWhatToInstall() {
    Say "These packages (Debian's names) are missing and could not be installed:"
    Say "    $*"
    Say "Install them by hand, on Debian as root with:"
    Say "    apt-get update && apt-get install -y --no-install-recommends $*"
}

# BuildPreset PRESET [TARGET]: configures where that is needed, and builds into build/PRESET.
BuildPreset() {
    local preset=$1 target=${2:-all}
    local folder=$repo/build/$preset log=$repo/build/$preset.log
    export CMAKE_BUILD_PARALLEL_LEVEL=${CMAKE_BUILD_PARALLEL_LEVEL:-$(nproc)}
    if command -v ccache >/dev/null; then
        # It may trust the precompiled headers; the build makes them anew when they change.
        export CMAKE_CXX_COMPILER_LAUNCHER=ccache CCACHE_SLOPPINESS=pch_defines,time_macros
    fi
    if NeedsConfiguring "$folder"; then
        Quietly "Configuring $preset" "$log" cmake -S "$repo" --preset "$preset" --fresh || return
    fi
    Quietly "Building $preset" "$log" cmake --build "$folder" --target "$target"
}

# Changed CMakeLists.txt files are noticed by the build itself.
NeedsConfiguring() {
    local folder=$1
    [[ ! -f $folder/build.ninja || $repo/CMakePresets.json -nt $folder/build.ninja ]] ||
        ! grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$repo" "$folder/CMakeCache.txt"
}
