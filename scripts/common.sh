# Shared by the other scripts; sourced, not run.

set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
build_root="$root/build"

step() { printf '==> %s\n' "$*"; }

die() {
    printf 'error: %s\n' "$*" >&2
    exit 1
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        die "installing packages needs root or sudo: $*"
    fi
}

is_installed() { dpkg-query -W -f='${Status}' "$1" 2>/dev/null | grep -q '^install ok installed$'; }

# Installs those of the named Debian packages that are missing.
install_missing() {
    command -v apt-get >/dev/null || die "this script installs Debian packages, and there is no apt-get here"
    local missing=() package
    for package in "$@"; do
        is_installed "$package" || missing+=("$package")
    done
    if [ "${#missing[@]}" -eq 0 ]; then
        step "Packages: all there"
        return
    fi
    step "Packages: installing ${missing[*]}"
    local log
    log=$(mktemp)
    # A list that is out of date names packages that the server no longer has, so it is fetched first.
    if ! { as_root apt-get update && as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
        tail -n 30 "$log" >&2
        die "the packages could not be installed"
    fi
    rm -f "$log"
}

build_packages=(g++ cmake ninja-build ccache qtbase5-dev qttools5-dev qttools5-dev-tools qttranslations5-l10n zlib1g-dev
    libusb-1.0-0-dev libssl-dev libcpp-httplib-dev)
run_packages=(fonts-noto-cjk fonts-dejavu-core qt5-image-formats-plugins)
test_packages=("${run_packages[@]}" clang-format-14 xvfb openbox x11-utils xdotool desktop-file-utils appstream umockdev
    libumockdev-dev pkg-config)
# The libraries that the benchmarks hold ours against.
bench_packages=(libbenchmark-dev pkg-config libyuv-dev libswscale-dev libopencv-imgproc-dev libleptonica-dev libmodpbase64-dev)
asan_packages=(clang-14 libclang-rt-14-dev llvm) # llvm names the functions of a report

# configure_and_build <preset> <build folder> [cmake arguments…]    builds $target alone, where that is set
configure_and_build() {
    local preset=$1 folder=$2
    shift 2
    step "Configure ($preset)"
    (cd "$root" && cmake --preset "$preset" -B "$folder" "$@") >"$folder.log" 2>&1 || {
        cat "$folder.log" >&2
        die "configuring failed"
    }
    step "Build ($preset)"
    cmake --build "$folder" --parallel "$(nproc)" ${target:+--target "$target"}
}

mkdir -p "$build_root"
