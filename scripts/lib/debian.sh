# shellcheck shell=bash
# Sourced: what the scripts need to know of apt.

is_debian_like() { command -v dpkg-query >/dev/null && command -v apt-get >/dev/null; }

# Runs a command as root: directly, or by sudo.
as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        warn "This needs root, and sudo is not installed: $*"
        return 1
    fi
}

# The mirror that this machine's own apt takes Debian's main archive from.
debian_mirror() {
    # shellcheck disable=SC2016  # apt's own variables
    apt-get indextargets --format '$(SITE) $(ORIGIN) $(LABEL) $(REPO_URI)' 'Created-By: Packages' 2>/dev/null |
        awk '$2 == "Debian" && $3 == "Debian" { print $NF; exit }'
}
