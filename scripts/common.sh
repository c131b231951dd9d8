# Shared by the scripts of this folder: finding the project, saying what happens, installing what is missing.

set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

say() { printf '\033[1m==>\033[0m %s\n' "$*"; }

buildPackages=(g++ cmake ninja-build pkg-config libicu-dev libglib2.0-dev libpng-dev libjpeg-dev libgif-dev libfmt-dev
    libseccomp-dev)
applicationPackages=(libgtkmm-4.0-dev libadwaita-1-dev libwebkitgtk-6.0-dev adwaita-icon-theme librsvg2-common bubblewrap
    xdg-dbus-proxy dbus fonts-dejavu-core fonts-noto-cjk)
displayPackages=(xvfb xauth imagemagick)
endToEndPackages=(python3 python3-gi gir1.2-atspi-2.0 gir1.2-gtk-4.0 at-spi2-core xdotool openbox xclip libglib2.0-bin)
testPackages=(libgtest-dev libgmock-dev nlohmann-json3-dev appstream desktop-file-utils)
packagingPackages=(dpkg-dev file)
benchmarkPackages=(libbenchmark-dev libgmime-3.0-dev nlohmann-json3-dev python3 time)
checkPackages=(clang clang-format libclang-rt-14-dev)

# Installs the Debian packages that are not there yet; how far that is can be seen on a terminal.
require() {
    local missing=() package installed
    installed=$'\n'$(dpkg-query -W -f '${Package} ${Status}\n' "$@" 2>/dev/null || true)$'\n'
    for package in "$@"; do
        [[ $installed == *$'\n'"$package install ok installed"$'\n'* ]] || missing+=("$package")
    done
    ((${#missing[@]})) || return 0
    local elevate=() quiet=(-qq) output=/dev/null
    if ((EUID != 0)); then elevate=(sudo); fi
    if [[ -t 1 ]]; then quiet=(-q) output=/dev/stdout; fi
    say "Installing ${missing[*]}"
    "${elevate[@]}" apt-get update "${quiet[@]}" >"$output"
    "${elevate[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y "${quiet[@]}" --no-install-recommends \
        "${missing[@]}" >"$output"
}

# Configures and builds a preset; further words are targets. Quiet unless something fails or takes long.
build() {
    local preset=$1
    shift
    if [[ ! -f build/$preset/build.ninja ]]; then
        say "Configuring build/$preset"
        cmake --preset "$preset" >/dev/null
    fi
    say "Building build/$preset"
    local quiet=(--quiet)
    if [[ -t 1 ]]; then quiet=(); fi
    ninja -C "build/$preset" "${quiet[@]}" "$@"
}
