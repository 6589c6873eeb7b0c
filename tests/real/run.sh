#!/usr/bin/env bash
# The whole program on a real Docker engine with a real registry.
# usage: run.sh BUILD-FOLDER COUNTS-FILE     runs the tests
#        run.sh --can-run                    says why not, with status 1, when they cannot run here
#        run.sh --full BUILD-FOLDER PICTURES starts a true XFCE desktop once and takes pictures of it
#
# Everything runs in namespaces of its own (network, mounts, processes): no port, bridge, packet filter rule, mount or
# process of the engine is seen by the machine, and all of them end with the run, however it ends.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/../.." && pwd)
. "$root/scripts/lib/say.sh"
. "$root/scripts/lib/debian.sh"
cache=$root/build/real-cache

can_run() {
    local tool
    for tool in dockerd docker-registry debootstrap unshare; do
        PATH=$PATH:/usr/sbin command -v "$tool" >/dev/null || {
            say "$tool is not installed"
            return 1
        }
    done
    if [ "$(id -u)" -ne 0 ] && ! sudo -n true 2>/dev/null; then
        say "a Docker engine can only be started by root, and sudo asks for a password"
        return 1
    fi
    local reason
    reason=$(isolated --prepare-only 2>&1) || {
        say "this machine allows no namespaces of one's own: $(tail -n 1 <<<"$reason")"
        return 1
    }
    # An engine that cannot even start says so here, and not as a failed test.
    reason=$(isolated true 2>&1) || {
        say "no Docker engine can start here: $(tail -n 1 <<<"$reason")"
        return 1
    }
}

# isolated COMMAND…: in namespaces of its own, with an engine that has just started.
isolated() {
    local place status=0
    place=$(mktemp -d)
    as_root unshare --net --mount --propagation unchanged --pid --fork --kill-child \
        bash "$here/in-namespaces.sh" "$place" "$@" || status=$?
    rmdir "$place"
    return "$status"
}

case ${1:-} in
    --can-run)
        can_run
        ;;
    --full)
        [ $# -eq 3 ] || die "usage: run.sh --full BUILD-FOLDER PICTURES"
        as_root bash "$here/image/build-full.sh" "$cache/full"
        bash "$here/fetch-compose.sh" "$cache/compose"
        mkdir -p "$3"
        isolated env TARNWICK_REAL_COMPOSE="$cache/compose" TARNWICK_REAL_IMAGE="$cache/full" \
            bash "$here/tour.sh" "$(cd "$2" && pwd)" "$(cd "$3" && pwd)"
        ;;
    *)
        [ $# -eq 2 ] || die "usage: run.sh BUILD-FOLDER COUNTS-FILE"
        bash "$here/image/build-small.sh" "$cache/small"
        bash "$here/fetch-compose.sh" "$cache/compose"
        isolated env TARNWICK_BUILD="$(cd "$1" && pwd)" \
            TARNWICK_REAL_COMPOSE="$cache/compose" TARNWICK_REAL_IMAGE="$cache/small" \
            "$root/scripts/in-virtual-display.sh" bash "$here/with-keyring.sh" \
            /usr/bin/python3 "$root/tests/e2e/run.py" "$2" "$here"
        ;;
esac
