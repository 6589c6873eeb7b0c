# shellcheck shell=bash
# Sourced: the package lists of scripts/packages.

packages_folder=$(cd "$(dirname "${BASH_SOURCE[0]}")/../packages" && pwd)

# packages_of GROUP…: the names in the groups' lists, each once.
packages_of() {
    local group
    for group in "$@"; do
        [ -r "$packages_folder/$group.txt" ] || {
            warn "There is no package list \"$group\"."
            return 1
        }
        sed -e 's/#.*//' -e 's/[[:space:]]//g' -e '/^$/d' "$packages_folder/$group.txt"
    done | sort -u
}

# missing_packages NAME…: those that are not installed.
missing_packages() {
    local name
    for name in "$@"; do
        [ "$(dpkg-query -W -f '${db:Status-Status}\n' "$name" 2>/dev/null | head -n 1)" = installed ] || printf '%s\n' "$name"
    done
}
