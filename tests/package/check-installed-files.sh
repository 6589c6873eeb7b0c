#!/usr/bin/env bash
# Installs a build into a folder of its own and judges what goes along with the program: desktop file, metainfo, icons,
# man page, changelog and completions; and whether those that name the options name the same as the program.
# usage: check-installed-files.sh BUILD-FOLDER COUNTS-FILE
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$here/../../scripts/lib/say.sh"

[ $# -eq 2 ] || die "usage: check-installed-files.sh BUILD-FOLDER COUNTS-FILE"
build=$1
counts=$2
stage=$(mktemp -d)
trap 'rm -rf "$stage"' EXIT
cmake --install "$build" --prefix "$stage" >"$build/install.log" || {
    cat "$build/install.log" >&2
    die "The build could not be installed."
}
share=$stage/share
metainfo=$share/metainfo/invalid.localhost.tarnwick.metainfo.xml
man_page=$share/man/man1/tarnwick.1.gz
completion=$share/bash-completion/completions/tarnwick
documents=$share/doc/tarnwick

passed=0
failed=0
check() {
    local name=$1
    shift
    if "$@"; then
        say "good    $name"
        passed=$((passed + 1))
    else
        say "FAILED  $name"
        failed=$((failed + 1))
    fi
}

# Says what differs between two texts, and fails when anything does.
same() { diff -u --label expected --label found <(printf '%s\n' "$1") <(printf '%s\n' "$2"); }

program_version() { sed -n 's/^CMAKE_PROJECT_VERSION:STATIC=//p' "$build/CMakeCache.txt"; }

desktop_file() {
    local file=$share/applications/tarnwick.desktop actions options unknown
    desktop-file-validate "$file" || return 1
    # Each action must be an option that the program has.
    actions=$(sed -n 's/^Exec=tarnwick \(.*\)/\1/p' "$file" | sort)
    options=$(help_options) || return 1
    unknown=$(comm -23 <(printf '%s\n' "$actions") <(printf '%s\n' "$options"))
    [ -n "$actions" ] && same "" "$unknown"
}

appstream() { appstreamcli validate --no-net "$metainfo"; }

# By the file's own first bytes: the picture's size is in the sixteenth to the twenty-third.
icons() {
    local size file
    for size in 16 22 24 32 48 64 128 256 512; do
        file=$share/icons/hicolor/${size}x${size}/apps/tarnwick.png
        same "$(printf '%08x%08x' "$size" "$size")" "$(od -An -tx1 -j16 -N8 "$file" | tr -d ' \n')" || return 1
        # A picture of one colour is much smaller than a logo.
        [ "$(stat -c %s "$file")" -gt $((size * 15)) ] || {
            say "$file is nearly empty."
            return 1
        }
    done
    file=$share/icons/hicolor/scalable/apps/tarnwick.svg
    # A shadow, two backgrounds, a bar, three dots, a terminal and its prompt.
    [ "$(grep -cE '<(path|circle|ellipse)' "$file")" -ge 12 ]
}

man_page_renders() {
    local complaints
    complaints=$(zcat "$man_page" | groff -man -Tutf8 -ww -rLL=100n -z 2>&1) || return 1
    same "" "$complaints"
}

# What the program says of itself, each long option once.
help_options() { "$stage/bin/tarnwick" --help | grep -oE -- '(^|[ ,])--[a-z]+' | tr -d ' ,' | sort -u; }

man_options() {
    zcat "$man_page" | sed 's/\\-/-/g' | awk '/^\.SH/ { on = $2 == "OPTIONS" } on && /^\.BR? -/' |
        grep -oE -- '--[a-z]+' | sort -u
}

# As bash would offer them after "tarnwick --".
bash_options() {
    bash -c '. "$1"; COMP_WORDS=(tarnwick --); COMP_CWORD=1; _tarnwick; printf "%s\n" "${COMPREPLY[@]}"' bash \
        "$completion" | sort -u
}

zsh_options() { grep -oE -- "'--[a-z]+" "$share/zsh/vendor-completions/_tarnwick" | tr -d "'" | sort -u; }

fish_options() { sed -n 's/.* -l \([a-z]*\).*/--\1/p' "$share/fish/vendor_completions.d/tarnwick.fish" | sort -u; }

options_agree() {
    local wanted
    wanted=$(help_options)
    [ "$(wc -l <<<"$wanted")" -gt 5 ] && same "$wanted" "$("$1")"
}

# One version, from one place.
versions_agree() {
    local version
    version=$(program_version)
    same "tarnwick $version" "$("$stage/bin/tarnwick" --version)" &&
        same "$version" "$(grep -oP '<release version="\K[^"]+' "$metainfo")" &&
        same "\"Tarnwick $version\"" "$(zcat "$man_page" | grep '^\.TH' | grep -o '"Tarnwick [^"]*"')" &&
        same "tarnwick ($version) unstable; urgency=medium" "$(zcat "$documents/changelog.gz" | head -n 1)"
}

debian_changelog() { zcat "$documents/changelog.gz" | dpkg-parsechangelog -l- >/dev/null; }

# The program looks for the module in this place, seen from its own folder.
module_in_place() { [ -f "$stage/bin/../lib/tarnwick/libtarnwick_web.so" ]; }

check "desktop file" desktop_file
check "metainfo" appstream
check "icons" icons
check "man page" man_page_renders
check "options of the man page" options_agree man_options
check "options of the completion for bash" options_agree bash_options
check "options of the completion for zsh" options_agree zsh_options
check "options of the completion for fish" options_agree fish_options
check "one version" versions_agree
check "changelog of the package" debian_changelog
check "web module" module_in_place
printf '%d %d 0\n' "$passed" "$failed" >"$counts"
[ "$failed" -eq 0 ]
