#!/usr/bin/env bash
# Runs a command in a display, a session bus and a runtime folder of its own, all gone when it ends.
# usage: in-virtual-display.sh [--size WIDTHxHEIGHT] COMMAND…
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$here/lib/say.sh"

size=1280x900
if [ "${1:-}" = --size ]; then
    size=$2
    shift 2
fi
[ $# -gt 0 ] || die "usage: in-virtual-display.sh [--size WIDTHxHEIGHT] COMMAND…"

session=$(mktemp -d)
server=
cleanup() {
    if [ -n "$server" ]; then
        kill "$server" 2>/dev/null || true
        wait "$server" 2>/dev/null || true
    fi
    rm -rf "$session"
}
trap cleanup EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

# The server takes the cookie whatever display it stands for; the clients look theirs up by the display.
cookie=$(mcookie)
touch "$session/server.auth" "$session/client.auth"
xauth -q -f "$session/server.auth" add :0 . "$cookie"
mkfifo "$session/number"
Xvfb -displayfd 3 -screen 0 "${size}x24" -nolisten tcp -noreset -auth "$session/server.auth" \
    3>"$session/number" </dev/null >"$session/server.log" 2>&1 &
server=$!
read -r -t 20 number <"$session/number" || {
    cat "$session/server.log" >&2
    die "The virtual display did not start."
}
xauth -q -f "$session/client.auth" add ":$number" . "$cookie"

mkdir -m 700 "$session/runtime"
unset WAYLAND_DISPLAY SESSION_MANAGER DBUS_SESSION_BUS_ADDRESS AT_SPI_BUS_ADDRESS NO_AT_BRIDGE
export DISPLAY=":$number" XAUTHORITY="$session/client.auth" XDG_RUNTIME_DIR="$session/runtime"
export XDG_SESSION_TYPE=x11 QT_QPA_PLATFORM=xcb GSETTINGS_BACKEND=memory LIBGL_ALWAYS_SOFTWARE=1
export QT_LINUX_ACCESSIBILITY_ALWAYS_ON=1
# Names and texts are UTF-8 whatever a bare machine's locale is.
export LC_ALL=C.UTF-8

# A window manager, so that windows get sizes, focus and full screen as on a person's display. What the bus and its
# services say is not the command's output and stays apart.
dbus-run-session -- bash -c '
    exec 1>&5 2>&4 4>&- 5>&-
    openbox --sm-disable >/dev/null 2>&1 &
    exec "$@"
' session "$@" 4>&2 5>&1 >"$session/bus.log" 2>&1
