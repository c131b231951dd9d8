#!/usr/bin/env bash
# Uses the built program as a person does, under a display of its own: real keys, clicks, panels and drops, in both
# languages and with a poisoned heap. Words are passed to ctest (-R end-to-end.closing, for instance). Pictures are in
# build/release/end-to-end.

source "$(dirname "$0")/common.sh"

require "${buildPackages[@]}" "${applicationPackages[@]}" "${displayPackages[@]}" "${testPackages[@]}" \
    "${endToEndPackages[@]}"
cmake --preset release -DTESSEL_END_TO_END=ON >/dev/null
build release tessel-mail
ctest --test-dir build/release --output-on-failure -j "$(nproc)" -L end-to-end "$@"
