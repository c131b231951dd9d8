#!/usr/bin/env bash
# Installs the Debian package on a bare Debian 12, uses what was installed as the desktop does, and removes it again. The
# bare system and the packages it needs are kept in build/bare. Where there is none to be had, a line says so.

source "$(dirname "$0")/common.sh"

notRun() {
    say "NOT RUN: the package on a bare Debian 12: $1"
    exit 0
}

((EUID == 0)) || notRun "only root may set one up"
unshare --mount --propagation private true 2>/dev/null || notRun "no mounts of its own here"
require "${buildPackages[@]}" "${applicationPackages[@]}" "${displayPackages[@]}" "${packagingPackages[@]}" \
    "${endToEndPackages[@]}"
(require debootstrap) || notRun "debootstrap cannot be installed"
sources=()
for file in /etc/apt/sources.list /etc/apt/sources.list.d/debian.list /etc/apt/sources.list.d/debian.sources; do
    if [[ -s $file ]]; then sources+=("$file"); fi
done
mirror=$(grep -hoE '\bhttps?://[^ ]+/debian/?( |$)' "${sources[@]}" /dev/null | grep -v snapshot | head -n 1) || true
mirror=${mirror% }

bare=$PWD/build/bare
began=$SECONDS
if [[ ! -f $bare/clean.ready ]]; then
    [[ -n $mirror ]] || notRun "this machine knows no mirror of Debian"
    say "Setting up a bare Debian 12 in build/bare"
    rm -rf "$bare/clean"
    mkdir -p "$bare/archives/partial"
    timeout 600 debootstrap --variant=minbase --cache-dir="$bare/archives" bookworm "$bare/clean" "$mirror" >"$bare/log" 2>&1 ||
        notRun "no bookworm from $mirror (build/bare/log)"
    rm "$bare/clean/etc/apt/sources.list"
    cp "${sources[@]}" "$bare/clean/etc/apt/sources.list.d/"
    if [[ -f $bare/clean/etc/apt/sources.list.d/sources.list ]]; then
        mv "$bare/clean/etc/apt/sources.list.d/sources.list" "$bare/clean/etc/apt/sources.list"
    fi
    cp -L /etc/resolv.conf "$bare/clean/etc/resolv.conf"
    echo force-unsafe-io >"$bare/clean/etc/dpkg/dpkg.cfg.d/quick"
    # Nothing inside is to start a service outside.
    printf '#!/bin/sh\nexit 101\n' >"$bare/clean/usr/sbin/policy-rc.d"
    chmod +x "$bare/clean/usr/sbin/policy-rc.d"
    # What every desktop has, so that what the package itself brings and leaves can be told from it.
    tests/EndToEnd/enter-root.sh "$bare/clean" "$bare/archives" bash -ec '
        export DEBIAN_FRONTEND=noninteractive
        apt-get -q update
        apt-get -qy -o Dir::Cache::archives="$0" install --no-install-recommends dbus-daemon dbus-bin at-spi2-core \
            xdg-utils libglib2.0-bin shared-mime-info desktop-file-utils fonts-dejavu-core' "$bare/archives" \
        >>"$bare/log" 2>&1 || notRun "its desktop cannot be installed (build/bare/log)"
    touch "$bare/clean.ready"
    say "That took $((SECONDS - began)) s"
fi

began=$SECONDS
rm -f build/package/*.deb
scripts/package.sh
say "That took $((SECONDS - began)) s"
/usr/bin/python3 tests/EndToEnd/package.py --bare "$bare" --package build/package/tessel-mail_*.deb
