#!/usr/bin/env bash
# Installs what is missing, builds, and starts Tarnwick.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$root/scripts/lib/say.sh"
. "$root/scripts/lib/tools.sh"
. "$root/scripts/lib/build.sh"

usage() {
    cat <<'TEXT'
usage: ./run.sh [--practice | --real] [--screenshots FOLDER] [--help] [-- ARGUMENTS]

Installs what is missing with apt (after saying what), builds Tarnwick and starts it.

  --practice             use the practice engine: nothing is really downloaded, the desktop is a small page
  --real                 use this machine's own docker and colima, or Homebrew to install them
  --screenshots FOLDER   where the pictures go when there is no display (default: build/screenshots)
  -- ARGUMENTS           are passed to the program

Without --practice or --real it takes this machine's tools when docker and colima, or brew, are in the tool folders
(TARNWICK_TOOL_FOLDERS, or /opt/homebrew/bin and /usr/local/bin), and the practice engine otherwise.

Without a display it opens the window in a virtual one, presses the main button, waits for the desktop, takes
pictures of the home screen, the progress and the desktop, and exits.
TEXT
}

engine=auto
screenshots=$root/build/screenshots
arguments=()
while [ $# -gt 0 ]; do
    case $1 in
        --practice) engine=practice ;;
        --real) engine=real ;;
        --screenshots)
            [ $# -ge 2 ] || die "--screenshots needs a folder."
            screenshots=$2
            shift
            ;;
        --help | -h)
            usage
            exit 0
            ;;
        --)
            shift
            arguments=("$@")
            break
            ;;
        *)
            usage >&2
            exit 2
            ;;
    esac
    shift
done

if [ "$engine" = auto ]; then
    if has_real_engine; then
        engine=real
    else
        engine=practice
        say "Neither docker and colima together nor brew are on this machine: starting with the practice engine."
        say "(./run.sh --real starts with this machine's tools all the same.)"
    fi
fi

headless=no
[ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] || headless=yes

groups=(build run)
[ "$headless" = no ] || groups+=(headless)
bash "$root/scripts/install-packages.sh" "${groups[@]}"

say "Building into build/release …"
mkdir -p "$root/build"
build release >"$root/build/release-build.log" 2>&1 || {
    tail -n 40 "$root/build/release-build.log" >&2
    die "The build failed; all of its output is in build/release-build.log."
}

if [ "$engine" = practice ]; then
    export TARNWICK_TOOL_FOLDERS=$root/build/release/practice/bin
    say "Practice engine: nothing is really installed or downloaded, and the desktop is a small page."
fi

# The web engine does not start its sandbox for root, so that root can only have it without.
if [ "$(id -u)" -eq 0 ]; then
    say "Started by root: the web engine runs without its sandbox. Prefer an ordinary user for daily use."
    export QTWEBENGINE_DISABLE_SANDBOX=1
fi

if [ "$headless" = no ]; then
    exec "$root/build/release/app/tarnwick" ${arguments[0]+"${arguments[@]}"}
fi

say "There is no display: starting in a virtual one."
tour=("$root/scripts/headless-tour.py")
[ "$engine" = real ] || tour+=(--practice "$root/build/release")
exec "$root/scripts/in-virtual-display.sh" /usr/bin/python3 "${tour[@]}" \
    "$screenshots" "$root/build/release/app/tarnwick" ${arguments[0]+"${arguments[@]}"}
