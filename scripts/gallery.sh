#!/usr/bin/env bash
# Draws every window in its states, light and dark, at 100 % and 200 %, to be looked at.
# usage: gallery.sh BUILD-FOLDER PICTURE-FOLDER
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$here/lib/say.sh"
[ $# -eq 2 ] || die "usage: gallery.sh BUILD-FOLDER PICTURE-FOLDER"

rm -rf "$2"
mkdir -p "$2"
for drawing in "$1/tests/interface/tarnwick_gallery" "$1/tests/windows/tarnwick_windows_gallery"; do
    for scale in 1 2; do
        for theme in light dark; do
            QT_SCALE_FACTOR=$scale "$drawing" "$2" "$theme" >/dev/null
        done
    done
done
say "$(find "$2" -name '*.png' | wc -l) pictures in $2"
