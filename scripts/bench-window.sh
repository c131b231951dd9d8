#!/usr/bin/env bash
# Measures what people wait for in the window, beside a bare web view that shows the same page, in one run under a virtual
# display: from the start to the first message's pixels, from a key to the next one's, and the memory of all processes.
# RUNS sets how often each is started (7 by default); the two take turns.

source "$(dirname "$0")/common.sh"

require "${buildPackages[@]}" "${applicationPackages[@]}" "${displayPackages[@]}" "${benchmarkPackages[@]}" openbox libxtst-dev
if [[ ! -f build/bench-window/build.ninja ]]; then
    cmake --preset bench -B build/bench-window -DTESSEL_APPLICATION=ON >/dev/null
fi
say "Building build/bench-window"
ninja -C build/bench-window --quiet tessel-mail tessel-probe tessel-watch-screen bare-window

folder=$PWD/build/bench-window/mail
mkdir -p "$folder" "$folder/home"
python3 benchmarks/newsletters.py build/bench-window/tools/tessel-probe "$folder"
export XDG_CONFIG_HOME=$folder/home XDG_STATE_HOME=$folder/home XDG_CACHE_HOME=$folder/home GDK_BACKEND=x11 LC_ALL=C.UTF-8
[[ -e /dev/dri ]] || export GSK_RENDERER=cairo # as the program chooses, for both
export GTK_A11Y=none RUNS=${RUNS:-7}

say "Measuring, ${RUNS} runs each"
dbus-run-session -- xvfb-run -a -s '-screen 0 1280x800x24' bash -c '
    folder=$1 programs=build/bench-window
    openbox 2>/dev/null &
    sleep 1
    for ((run = 0; run < RUNS; ++run)); do
        echo window $($programs/benchmarks/tessel-watch-screen 8 Alt_L+Down Alt_L+Up 12a94b a9124b \
            $programs/TesselMail/tessel-mail "$folder/newsletters.mbox")
        sleep 1
        echo bare $($programs/benchmarks/tessel-watch-screen 8 Down Up 12a94b a9124b \
            $programs/benchmarks/bare-window "$folder")
        sleep 1
    done
    kill %1' bench "$folder" 2>/dev/null | tee build/bench-window/runs | awk '
    function median(kind, column,    count, at, other, values, swap) {
        count = n[kind]
        for (at = 1; at <= count; ++at) values[at] = v[kind, column, at]
        for (at = 1; at <= count; ++at)
            for (other = at + 1; other <= count; ++other)
                if (values[other] < values[at]) { swap = values[at]; values[at] = values[other]; values[other] = swap }
        return values[int((count + 1) / 2)]
    }
    function row(name, column, unit, scale) {
        printf "| %s | %.0f %s | %.0f %s | %.2f |\n", name, median("window", column) / scale, unit,
            median("bare", column) / scale, unit, median("window", column) / median("bare", column)
    }
    { ++n[$1]; for (at = 2; at <= 4; ++at) v[$1, at, n[$1]] = $at }
    END {
        print "| what | window | bare web view | ratio |"
        print "|---|---|---|---|"
        row("start to the first pixels", 2, "ms", 1)
        row("key to the next pixels", 3, "ms", 1)
        row("memory of all processes", 4, "MiB", 1024)
    }'
