#!/usr/bin/env bash
# Installs what is missing, builds everything and runs every test. Words are passed to ctest (-R NAME, for instance).

source "$(dirname "$0")/common.sh"

require "${buildPackages[@]}" "${applicationPackages[@]}" "${displayPackages[@]}" "${testPackages[@]}"
build release
say "Running the tests"
ctest --test-dir build/release --output-on-failure -j "$(nproc)" -LE end-to-end "$@"
