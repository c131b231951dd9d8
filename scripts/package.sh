#!/usr/bin/env bash
# Builds the program and a Debian package of it, and says where that is.

source "$(dirname "$0")/common.sh"

require "${buildPackages[@]}" "${applicationPackages[@]}" "${packagingPackages[@]}"
# The build of the tests serves as well where there is one: nothing of them is packed.
preset=run
if [[ -f build/release/build.ninja ]]; then preset=release; fi
build "$preset"
say "Packing"
cpack --config "build/$preset/CPackConfig.cmake" -B build/package >/dev/null
say "The package is $(ls build/package/*.deb); install it by: apt install ./$(ls build/package/*.deb)"
