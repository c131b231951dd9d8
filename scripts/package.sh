#!/usr/bin/env bash
# Builds the program and a Debian package of it, and says where that is.

source "$(dirname "$0")/common.sh"

require "${buildPackages[@]}" "${applicationPackages[@]}" "${packagingPackages[@]}"
build run
say "Packing"
cpack --config build/run/CPackConfig.cmake -B build/package >/dev/null
say "The package is $(ls build/package/*.deb); install it by: apt install ./$(ls build/package/*.deb)"
