#!/usr/bin/env bash
# Runs a command with an unlocked keyring on its session bus, kept in a folder that goes away.
# usage: with-keyring.sh COMMAND…
set -euo pipefail
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
printf 'keyring of the tests\n' | XDG_DATA_HOME=$folder gnome-keyring-daemon --unlock --components=secrets >/dev/null 2>&1
"$@"
