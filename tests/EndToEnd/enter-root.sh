#!/bin/bash
# Runs a command in a system that lies in a folder: enter-root.sh ROOT SHARED COMMAND… It sees this machine's processes,
# devices and displays, and SHARED under its own name. The folder becomes the root by pivot_root: in a chroot no user
# namespace could be made, and so no sandbox.
set -euo pipefail
root=$1 shared=$2
shift 2
exec unshare --mount --propagation private bash -c '
    set -e
    root=$1 shared=$2
    shift 2
    mount --bind "$root" "$root"
    for part in proc dev sys; do mount --rbind "/$part" "$root/$part"; done
    for part in /tmp/.X11-unix "$shared"; do
        [[ -d $part ]] || continue
        mkdir -p "$root$part"
        mount --bind "$part" "$root$part"
    done
    cd "$root"
    pivot_root . mnt
    umount -l /mnt
    cd /
    exec "$@"' enter "$root" "$shared" "$@"
