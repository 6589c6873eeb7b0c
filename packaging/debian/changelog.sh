#!/bin/sh
# Writes the changelog of the Debian package from the releases of the project's own one.
# usage: changelog.sh CHANGELOG.md OUTPUT
set -eu

maintainer="Tarnwick developers <tarnwick@localhost.invalid>"

# One line a release, in the order of the file: its day as Debian writes it.
days=$(sed -n 's/^## [0-9.]* - \(....-..-..\)$/\1/p' "$1" | while read -r day; do LC_ALL=C date -u -R -d "$day"; done)

# Debian keeps lines below 80 columns.
DAYS=$days awk -v maintainer="$maintainer" -v columns=78 '
    function close_item(   line, n, i, words) {
        n = split(item, words, " ")
        line = "  *"
        for (i = 1; i <= n; i++) {
            if (length(line " " words[i]) > columns) { print line; line = "   " }
            line = line " " words[i]
        }
        if (n) print line
        item = ""
    }
    function close_release() {
        close_item()
        if (version) printf "\n -- %s  %s\n\n", maintainer, days[count]
    }
    BEGIN { split(ENVIRON["DAYS"], days, "\n") }
    /^## / {
        close_release()
        version = $2 ~ /^[0-9]/ ? $2 : ""
        if (version) { count++; printf "tarnwick (%s) unstable; urgency=medium\n\n", version }
        next
    }
    !version { next }
    /^- / { close_item(); item = substr($0, 3); next }
    /^  [^ ]/ && item { item = item " " $0; next }
    { close_item() }
    END { close_release() }
' "$1" >"$2"
