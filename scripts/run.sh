#!/usr/bin/env bash
# Starts Tessel Mail on the given files and folders, or on the samples when none is given. Installs and builds what is
# missing first. Where no display exists it starts a virtual one and takes a picture of the window.

files=()
for file in "$@"; do files+=("$(realpath -- "$file")"); done

source "$(dirname "$0")/common.sh"

require "${buildPackages[@]}" "${applicationPackages[@]}"
build run tessel-mail
if ((${#files[@]} == 0)); then files=(samples/Samples.mbox); fi

program=build/run/TesselMail/tessel-mail
if [[ -n ${DISPLAY:-}${WAYLAND_DISPLAY:-} ]]; then
    exec "$program" "${files[@]}"
fi

require "${displayPackages[@]}"
picture=${TESSEL_PICTURE:-build/window.png}
say "No display: starting a virtual one"
export GDK_BACKEND=x11
dbus-run-session -- xvfb-run -a -s '-screen 0 1280x800x24' bash -c '
    program=$1 picture=$2
    shift 2
    "$program" "$@" 2>build/window.log &
    sleep "${TESSEL_PICTURE_SECONDS:-8}"
    import -window root "$picture"
    kill %1
    wait
' picture "$program" "$picture" "${files[@]}" || true
say "The picture of the window is $picture"
