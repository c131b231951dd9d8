#!/usr/bin/env bash
# The slow checks: formatting, the tests under the address, undefined-behaviour and thread sanitizers, and each fuzzer
# for a while (FUZZ_SECONDS, 60 by default).

source "$(dirname "$0")/common.sh"

require "${buildPackages[@]}" "${applicationPackages[@]}" "${displayPackages[@]}" "${testPackages[@]}" \
    "${checkPackages[@]}"

say "Formatting"
git ls-files '*.cpp' '*.h' | xargs clang-format --dry-run --Werror

# GLib synchronises by means that the thread sanitizer does not see; the web view brings processes of its own.
export TSAN_OPTIONS="suppressions=$PWD/tests/tsan.supp"
for preset in asan tsan; do
    build "$preset"
    say "Tests under $preset"
    ctest --test-dir "build/$preset" --output-on-failure -j "$(nproc)" -E window_tests
done

build fuzz fuzzers
for seeds in fuzz/seeds/*; do
    name=${seeds##*/}
    say "Fuzzing $name for ${FUZZ_SECONDS:-60} s"
    mkdir -p "build/fuzz/corpus/$name"
    "build/fuzz/fuzz/fuzz_$name" -max_total_time="${FUZZ_SECONDS:-60}" -timeout=10 -rss_limit_mb=4096 -max_len=65536 -print_final_stats=1 \
        -artifact_prefix="build/fuzz/$name-" "build/fuzz/corpus/$name" "$seeds" 2>&1 |
        tee "build/fuzz/$name.log" | grep -E 'ERROR|SUMMARY|stat::number_of_executed_units|Test unit written' || true
    if grep -q 'ERROR' "build/fuzz/$name.log"; then exit 1; fi
done
say "Clean"
