#!/usr/bin/env bash
# One start of the published image with the headless tour of run.sh, for its pictures.
# usage: tour.sh BUILD-FOLDER PICTURE-FOLDER     (inside in-namespaces.sh)
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/../.." && pwd)
mkdir -p "$TARNWICK_REAL_STATE"/{home,config,data,cache,tools,docker-config/cli-plugins}
"$here/engine.sh" start-registry
"$here/engine.sh" publish "$TARNWICK_REAL_IMAGE" latest
ln -s /usr/bin/docker "$here/tools/colima" "$TARNWICK_REAL_STATE/tools/"
ln -s "$TARNWICK_REAL_COMPOSE/docker-compose" "$TARNWICK_REAL_STATE/docker-config/cli-plugins/"
export HOME=$TARNWICK_REAL_STATE/home XDG_CONFIG_HOME=$TARNWICK_REAL_STATE/config
export XDG_DATA_HOME=$TARNWICK_REAL_STATE/data XDG_CACHE_HOME=$TARNWICK_REAL_STATE/cache
export TARNWICK_TOOL_FOLDERS=$TARNWICK_REAL_STATE/tools TARNWICK_IMAGE_REGISTRY=127.0.0.1:5000
export DOCKER_HOST=unix://$TARNWICK_REAL_STATE/docker.sock DOCKER_CONFIG=$TARNWICK_REAL_STATE/docker-config
# The session's desktop needs its moment to draw panel and icons.
export TARNWICK_TOUR_PAUSE=15
"$root/scripts/in-virtual-display.sh" --size 1440x960 /usr/bin/python3 "$root/scripts/headless-tour.py" \
    "$2" "$1/app/tarnwick"
