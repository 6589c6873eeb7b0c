#!/usr/bin/env bash
# Puts a compose v2 plug-in into a folder: Debian 13's package, downloaded with lists and caches of its own beside those
# of this machine, unpacked and not installed. Debian 12's own compose tool is too old for a file that names its project.
# usage: fetch-compose.sh FOLDER      (does nothing when the plug-in is there)
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$here/../../scripts/lib/say.sh"
. "$here/../../scripts/lib/debian.sh"

[ $# -eq 1 ] || die "usage: fetch-compose.sh FOLDER"
mkdir -p "$1"
folder=$(cd "$1" && pwd)
[ -x "$folder/docker-compose" ] && exit 0
mirror=$(debian_mirror)
[ -n "$mirror" ] || die "apt on this machine knows no Debian archive."

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
chmod 755 "$work"
mkdir -p "$work"/{lists/partial,cache/archives/partial,download,root}
printf 'deb [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] %s trixie main\n' "$mirror" >"$work/sources.list"
options=(
    -q
    -o "Dir::Etc::SourceList=$work/sources.list"
    -o "Dir::Etc::SourceParts=-"
    -o "Dir::State::Lists=$work/lists"
    -o "Dir::Cache=$work/cache"
    -o "Dir::State::Status=/dev/null"
    -o "APT::Sandbox::User="
    -o "Acquire::Languages=none"
)
apt-get "${options[@]}" update
(cd "$work/download" && apt-get "${options[@]}" download docker-compose)
dpkg-deb -x "$work"/download/docker-compose_*.deb "$work/root"
plugin=$(find "$work/root" -type f -name docker-compose -path '*cli-plugins*' | head -n 1)
[ -n "$plugin" ] || die "The package holds no compose plug-in."
install -m 755 "$plugin" "$folder/docker-compose"
