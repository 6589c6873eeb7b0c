# shellcheck shell=bash
# Sourced: how the scripts talk.

say() { printf '%s\n' "$*"; }
heading() { printf '\n=== %s ===\n' "$*"; }
warn() { printf '%s\n' "$*" >&2; }
die() {
    warn "$*"
    exit 1
}
