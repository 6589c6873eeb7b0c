#!/bin/sh
# Writes the changelog of the Debian package from the releases of the project's own one.
# usage: changelog.sh CHANGELOG.md OUTPUT
set -eu

maintainer="Tarnwick developers <tarnwick@localhost.invalid>"

release_days() { sed -n 's/^## [0-9.]* - \(....-..-..\)$/\1/p' "$1"; }

# One line a release, in the order of the file: its day as Debian writes it.
days=$(release_days "$1" | while read -r day; do LC_ALL=C date -u -R -d "$day"; done)

DAYS=$days awk -v maintainer="$maintainer" '
    function close_release() { if (version) printf "\n -- %s  %s\n\n", maintainer, days[count] }
    BEGIN { split(ENVIRON["DAYS"], days, "\n") }
    /^## / {
        close_release()
        version = $2 ~ /^[0-9]/ ? $2 : ""
        if (version) { count++; printf "tarnwick (%s) unstable; urgency=medium\n\n", version }
        next
    }
    !version { next }
    /^- / { sub(/^- /, "  * "); print; next }
    /^  [^ ]/ { print "  " $0 }
    END { close_release() }
' "$1" >"$2"
