#!/usr/bin/env bash
# Measures the engine beside other programs on the same files: warm, in one run. BENCH_BYTES sets the size of the
# mixed archive (1 GiB by default).

source "$(dirname "$0")/common.sh"

require "${buildPackages[@]}" "${benchmarkPackages[@]}"
build bench

folder=build/bench/archives
mkdir -p "$folder"
mixedBytes=${BENCH_BYTES:-1073741824}
mixed=$folder/mixed-$mixedBytes.mbox
small=$folder/small.mbox
tiny=$folder/tiny.mbox
programs=build/bench/benchmarks
[[ -f $mixed ]] || { say "Writing $mixed"; "$programs/tessel-archive" mixed "$mixedBytes" "$mixed"; }
[[ -f $tiny ]] || "$programs/tessel-archive" tiny 40000000 "$tiny"
[[ -f $small ]] || { say "Writing $small"; "$programs/tessel-archive" small 500000000 "$small"; }

# The median of five runs, as seconds, messages and peak KB. A run before them warms the file.
measure() {
    "$@" >/dev/null
    for _ in 1 2 3 4 5; do "$@"; done | sort -n | sed -n 3p
}
countLines() {
    local begin end
    begin=$(date +%s%N)
    wc -l "$1" >/dev/null
    end=$(date +%s%N)
    awk -v n=$((end - begin)) 'BEGIN { printf "%.3f 0 0\n", n / 1e9 }'
}

row() { # name, bytes, ours, theirs, their name
    awk -v name="$1" -v bytes="$2" -v ours="$3" -v theirs="$4" -v other="$5" 'BEGIN {
        split(ours, a, " "); split(theirs, b, " ");
        printf "| %s | %.3f s | %.0f MB/s | %d | %.0f MB | %s %.3f s | %.2f |\n",
            name, a[1], bytes / 1e6 / a[1], a[2], a[3] / 1e3, other, b[1], a[1] / b[1] }'
}

say "Whole archives"
echo "| work | time | speed | messages | peak memory | beside | ratio |"
echo "|---|---|---|---|---|---|---|"
for file in "$mixed" "$small"; do
    bytes=$(stat -c %s "$file")
    kind=$(basename "$file" .mbox)
    ours=$(measure "$programs/tessel-run" index "$file")
    row "index $kind" "$bytes" "$ours" "$(measure countLines "$file")" "wc -l"
    row "index $kind" "$bytes" "$ours" "$(measure "$programs/gmime-run" index "$file")" "GMime"
done
bytes=$(stat -c %s "$mixed")
# GMime's decoding run parses the archive as well; so does ours, once for the index and once for each message.
row "decode mixed" "$bytes" "$(measure "$programs/tessel-run" decode "$mixed")" \
    "$(measure "$programs/gmime-run" decode "$mixed")" "GMime"
row "decode and render mixed" "$bytes" "$(measure "$programs/tessel-run" render "$mixed")" \
    "$(measure countLines "$mixed")" "wc -l"

say "Outlook messages"
echo "| message | file | decode | speed | memcpy | ratio | copy into new memory | ratio |"
echo "|---|---|---|---|---|---|---|---|"
"$programs/tessel-benchmarks" --benchmark_filter=^outlook --benchmark_min_time=0.3 --benchmark_format=csv 2>/dev/null |
    awk -F, '/^"outlook/ {
        gsub(/"/, ""); split($1, name, "/")
        if (!(name[2] in file)) order[++count] = name[2]
        time[name[1], name[2]] = $4; file[name[2]] = $NF }
    END { for (i = 1; i <= count; i++) {
        n = order[i]; ours = time["outlookDecode", n]; copy = time["outlookMemcpy", n]; fresh = time["outlookNewCopy", n]
        printf "| %s | %.0f KB | %.0f µs | %.0f MB/s | %.1f µs | %.2f | %.1f µs | %.2f |\n", n, file[n] / 1e3, ours / 1e3,
            file[n] / ours * 1e3, copy / 1e3, ours / copy, fresh / 1e3, ours / fresh } }'

# Nothing matches, so every text is looked through. Ours decodes the texts and no attachment; grep reads the file as it
# stands, and GMime decodes the texts it parses.
query="quarterly zebra"
findLines() {
    local begin end
    begin=$(date +%s%N)
    LC_ALL=C grep -aiFc "$query" "$1" >/dev/null || true
    end=$(date +%s%N)
    awk -v n=$((end - begin)) 'BEGIN { printf "%.3f 0 0\n", n / 1e9 }'
}
for file in "$mixed" "$small"; do
    bytes=$(stat -c %s "$file")
    kind=$(basename "$file" .mbox)
    ours=$(measure "$programs/tessel-run" search "$file" "$query")
    row "search $kind" "$bytes" "$ours" "$(measure findLines "$file")" "grep -aiF"
    row "search $kind" "$bytes" "$ours" "$(measure "$programs/gmime-run" search "$file" "$query")" "GMime"
done

if [[ -x $programs/tessel-model-run ]]; then # where the bench preset is configured with TESSEL_APPLICATION=ON
    say "The application's model, without a window"
    echo "| work | time | longest hold of the interface thread | held in all |"
    echo "|---|---|---|---|"
    for file in "$mixed" "$small" "$tiny"; do "$programs/tessel-model-run" "$file" "$query"; done
fi

if [[ -x $programs/tessel-window-run ]]; then
    require "${displayPackages[@]}"
    say "The window: least / median / most of five rounds"
    echo "| work | longest hold of the interface thread | of its processor time |"
    echo "|---|---|---|"
    GDK_BACKEND=x11 GSK_RENDERER=cairo dbus-run-session -- xvfb-run -a "$programs/tessel-window-run" "$tiny" 5000 \
        2>/dev/null
fi

say "Single operations"
"$programs/tessel-benchmarks" --benchmark_filter=-^outlook --benchmark_min_time=0.3 2>/dev/null
