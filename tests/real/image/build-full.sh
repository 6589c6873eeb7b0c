#!/usr/bin/env bash
# Makes the build context of the full XFCE image in a folder, from Debian packages. Needs root; takes minutes and 2 GB.
# usage: build-full.sh FOLDER       (a system that is there already is kept; remove the folder to make a new one)
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$here/../../../scripts/lib/say.sh"
. "$here/../../../scripts/lib/debian.sh"

packages=(
    nginx-light openssl novnc websockify tigervnc-standalone-server
    xfce4-session xfwm4 xfce4-panel xfdesktop4 xfce4-settings xfce4-terminal thunar
    dbus dbus-x11 adwaita-icon-theme fonts-dejavu-core
)

[ $# -eq 1 ] || die "usage: build-full.sh FOLDER"
[ "$(id -u)" -eq 0 ] || die "The full image can only be built as root."
context=$1
mkdir -p "$context"
context=$(cd "$context" && pwd)
root=$(mktemp -d)
site=$(mktemp -d)
cleanup() {
    if mountpoint -q "$root/proc"; then umount "$root/proc"; fi
    rm -rf --one-file-system "$root" "$site"
}
trap cleanup EXIT

make_system() {
    local mirror
    mirror=$(debian_mirror)
    [ -n "$mirror" ] || die "apt on this machine knows no Debian archive to build the image from."
    debootstrap --variant=minbase bookworm "$root" "$mirror"
    mount -t proc proc "$root/proc"
    # Nothing may start inside the folder while packages are set up.
    printf '#!/bin/sh\nexit 101\n' >"$root/usr/sbin/policy-rc.d"
    chmod +x "$root/usr/sbin/policy-rc.d"
    chroot "$root" env DEBIAN_FRONTEND=noninteractive apt-get -q install -y --no-install-recommends "${packages[@]}"
    umount "$root/proc"
    rm -rf "$root"/var/cache/apt/* "$root"/var/lib/apt/lists/* "$root"/usr/share/doc/* "$root"/usr/share/man/*
    tar --numeric-owner -C "$root" -cf "$context/root.tar.new" .
    mv "$context/root.tar.new" "$context/root.tar"
}
[ -e "$context/root.tar" ] || make_system

mkdir -p "$site/etc/site"
cp "$here"/site/* "$here/full/start.sh" "$here/full/locations.conf" "$site/etc/site/"
tar --owner=0 --group=0 --numeric-owner -C "$site" -cf "$context/site.tar" .
cp "$here/full/Dockerfile" "$context/"
