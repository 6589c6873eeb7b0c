#!/usr/bin/env bash
# Inside fresh namespaces: sets up what an engine needs, proves that it starts, runs a command, and cleans up.
# usage: in-namespaces.sh EMPTY-FOLDER COMMAND… | in-namespaces.sh EMPTY-FOLDER --prepare-only       (by run.sh only)
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$here/../../scripts/lib/say.sh"
export PATH=$PATH:/usr/sbin:/sbin

place=$1
shift
if [ "${TARNWICK_REAL_PRIVATE:-}" != yes ]; then
    # What is mounted from here on must not appear outside.
    awk '{ print $5 }' /proc/self/mountinfo | while read -r mounted; do mount --make-private "$(printf '%b' "$mounted")"; done
    mount -t proc proc /proc
    export TARNWICK_REAL_PRIVATE=yes
    # In a chroot the root folder is no mount, and containers cannot be started: make it one.
    if ! awk '$5 == "/" { found = 1 } END { exit !found }' /proc/self/mountinfo; then
        mount --rbind / "$place"
        exec chroot "$place" "$here/in-namespaces.sh" "$place" "$@"
    fi
fi
ip link set lo up
if [ "${1:-}" = --prepare-only ]; then exit 0; fi

# A socket's path may be 107 bytes long: the state cannot live below a deep build folder.
state=$(mktemp -d)
export TARNWICK_REAL_STATE=$state TARNWICK_REAL_SCRIPTS=$here
cleanup() {
    "$here/engine.sh" stop >/dev/null 2>&1 || true
    findmnt -rno TARGET | grep "^$state/" | sort -r | while read -r place; do umount -l "$place"; done || true
    rm -rf --one-file-system "$state"
    # Control groups are the one thing that outlives the namespaces.
    find /sys/fs/cgroup -depth -type d -path '*/tarnwick-real*' -exec rmdir {} + 2>/dev/null || true
}
trap cleanup EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

# A compose plug-in of the machine would decide which of the two ways a test takes.
for folder in /usr/libexec /usr/lib /usr/local/libexec /usr/local/lib; do
    if [ -d "$folder/docker/cli-plugins" ]; then mount -t tmpfs none "$folder/docker/cli-plugins"; fi
done

"$here/engine.sh" start
"$@"
