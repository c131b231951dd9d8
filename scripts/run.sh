#!/usr/bin/env bash
# Starts Tessel Mail on the given files, folders and mail links, or on the samples when none is given. Installs and
# builds what is missing first. Where no display exists it starts a virtual one and takes a picture of the window.

files=()
for file in "$@"; do
    case $file in
        -* | [Mm][Aa][Ii][Ll][Tt][Oo]:*) files+=("$file") ;;
        *) files+=("$(realpath -ms -- "$file")") ;; # the scripts work in the project's folder
    esac
done

source "$(dirname "$0")/common.sh"

# The build of the tests serves as well where there is one.
preset=run
if [[ -f build/release/build.ninja ]]; then preset=release; fi
if [[ ! -x build/$preset/TesselMail/tessel-mail ]]; then
    say "The first time takes about five minutes: 1.5 GB of packages where none is there, and 0.3 GB for the build"
fi
require "${buildPackages[@]}" "${applicationPackages[@]}"
build "$preset" tessel-mail
if ((${#files[@]} == 0)); then files=(samples/Samples.mbox); fi

program=build/$preset/TesselMail/tessel-mail
if [[ -n ${DISPLAY:-}${WAYLAND_DISPLAY:-} ]]; then
    exec "$program" "${files[@]}"
fi

require "${displayPackages[@]}"
picture=${TESSEL_PICTURE:-build/window.png}
say "No display: starting a virtual one"
export GDK_BACKEND=x11
status=0
dbus-run-session -- xvfb-run -a -s '-screen 0 1280x800x24' bash -c '
    program=$1 picture=$2
    shift 2
    "$program" "$@" 2>build/window.log &
    process=$!
    sleep "${TESSEL_PICTURE_SECONDS:-8}"
    import -window root "$picture"
    kill -0 $process 2>/dev/null || { wait $process; exit; } # it has ended by itself
    kill $process
    wait $process 2>/dev/null || true
' picture "$program" "$picture" "${files[@]}" || status=$?
if ((status != 0)); then
    say "The program ended with status $status; what it said is in build/window.log"
    exit "$status"
fi
say "The picture of the window is $picture"
