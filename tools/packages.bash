# Sourced by the project's commands: the Debian packages that each one needs, and their installation.

build_packages=(
    g++ cmake ninja-build pkg-config
    qt6-base-dev libgl-dev
    libjack-jackd2-dev librtmidi-dev libsdl2-dev librsvg2-bin lowdown
)
headless_packages=(xvfb xauth xdotool imagemagick x11-utils)
bench_packages=(libbenchmark-dev)
debian_packages=(dpkg-dev file)
test_packages=(
    "${headless_packages[@]}" "${bench_packages[@]}" "${debian_packages[@]}"
    jackd2 openssl python3
)
coverage_packages=(gcovr)
fuzz_packages=(clang libclang-rt-14-dev)
windows_packages=(
    g++-mingw-w64-x86-64-posix qt6-base-dev-tools nsis zip icoutils
)
wine_packages=(
    wine wine64 unzip fonts-dejavu-core "${headless_packages[@]}" openssl osslsigncode
)
# In addition, for building Qt from Debian's source package.
qt_source_packages=(dpkg-dev perl patch xz-utils)
# In addition to these, for building it with the thread sanitizer.
tsan_qt_packages=(
    libfontconfig-dev libfreetype-dev libssl-dev libx11-xcb-dev libxcb1-dev libxcb-cursor-dev
    libxcb-icccm4-dev libxcb-image0-dev libxcb-keysyms1-dev libxcb-randr0-dev
    libxcb-render-util0-dev libxcb-shape0-dev libxcb-sync-dev libxcb-util-dev libxcb-xfixes0-dev
    libxcb-xinerama0-dev libxcb-xkb-dev libxkbcommon-dev libxkbcommon-x11-dev
)
# Includes the cross compiler's headers, for analysing the sources of the Windows program.
lint_packages=(clang-format clang-tidy clazy libclang-14-dev llvm-14-dev g++-mingw-w64-x86-64-posix)

# need PACKAGE...: installs the missing ones, using sudo only if needed.
need() {
    local missing=()
    local package
    for package in "$@"; do
        dpkg-query -W -f '${Status}\n' "$package" 2>/dev/null | grep -q '^install ok installed$' \
            || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    command -v apt-get >/dev/null || {
        echo "Please install the equivalents of these Debian packages: ${missing[*]}" >&2
        return 1
    }
    echo "Installing: ${missing[*]}" >&2
    local root=()
    [ "$(id -u)" = 0 ] || root=(sudo)
    "${root[@]}" apt-get update -qq
    "${root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq \
        --no-install-recommends "${missing[@]}" >/dev/null
}
