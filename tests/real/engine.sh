#!/usr/bin/env bash
# A Docker engine and a registry of the test's own, on sockets and folders below $TARNWICK_REAL_STATE.
# usage: engine.sh start|stop|start-registry|publish CONTEXT TAG
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$here/../../scripts/lib/say.sh"

state=${TARNWICK_REAL_STATE:?names the state folder}
socket=$state/docker.sock
registry=127.0.0.1:5000
docker=/usr/bin/docker

engine_answers() { "$docker" -H "unix://$socket" info --format '{{.ServerVersion}}' >/dev/null 2>&1; }

# wait_for SECONDS COMMAND…: until the command succeeds.
wait_for() {
    local until=$((SECONDS + $1))
    shift
    until "$@"; do
        [ "$SECONDS" -lt "$until" ] || return 1
        sleep 0.2
    done
}

start_engine() {
    engine_answers && return 0
    mkdir -p "$state/engine"
    setsid dockerd --data-root "$state/engine/data" --exec-root "$state/engine/exec" \
        --pidfile "$state/engine/pid" --host "unix://$socket" --cgroup-parent /tarnwick-real \
        </dev/null >>"$state/engine/log" 2>&1 &
    wait_for 60 engine_answers || {
        tail -n 15 "$state/engine/log" >&2
        die "The Docker engine did not start."
    }
}

engine_is_gone() { ! kill -0 "$1" 2>/dev/null; }

stop_engine() {
    local pid
    [ -s "$state/engine/pid" ] || return 0
    pid=$(cat "$state/engine/pid")
    kill "$pid" 2>/dev/null || return 0
    wait_for 40 engine_is_gone "$pid" || die "The Docker engine did not stop."
}

registry_answers() { curl -sf --noproxy '*' -o /dev/null "http://$registry/v2/"; }

start_registry() {
    mkdir -p "$state/registry/data"
    printf 'version: 0.1\nlog:\n  level: warn\nstorage:\n  filesystem:\n    rootdirectory: %s\nhttp:\n  addr: %s\n' \
        "$state/registry/data" "$registry" >"$state/registry/config.yml"
    setsid docker-registry serve "$state/registry/config.yml" </dev/null >"$state/registry/log" 2>&1 &
    wait_for 20 registry_answers || {
        tail -n 5 "$state/registry/log" >&2
        die "The registry did not start."
    }
}

# Builds the image and leaves it in the registry alone, so that the engine has to download it.
publish() {
    local image=$registry/linuxserver/webtop:$2
    DOCKER_BUILDKIT=0 "$docker" -H "unix://$socket" build --quiet --tag "$image" "$1" >/dev/null
    "$docker" -H "unix://$socket" push --quiet "$image" >/dev/null
    "$docker" -H "unix://$socket" image rm "$image" >/dev/null
    "$docker" -H "unix://$socket" image prune --force >/dev/null
}

case ${1:-} in
    start) start_engine ;;
    stop) stop_engine ;;
    start-registry) start_registry ;;
    publish) publish "$2" "$3" ;;
    *) die "usage: engine.sh start|stop|start-registry|publish CONTEXT TAG" ;;
esac
