#!/usr/bin/env bash
# Makes the build context of the small image in a folder: layers from Debian packages, unpacked and not installed.
# usage: build-small.sh FOLDER      (does nothing when the folder is complete and no source of it has changed since)
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$here/../../../scripts/lib/say.sh"

base_packages=(libc6 busybox-static)
tls_packages=(libssl3 openssl)
web_packages=(libcrypt1 libpcre2-8-0 zlib1g nginx)

[ $# -eq 1 ] || die "usage: build-small.sh FOLDER"
context=$1
if [ -e "$context/complete" ] &&
    [ -z "$(find "$here/site" "$here/small" "${BASH_SOURCE[0]}" -newer "$context/complete")" ]; then
    exit 0
fi
rm -rf "$context"
mkdir -p "$context/packages"
context=$(cd "$context" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fetch() { (cd "$context/packages" && apt-get -q download "$@"); }

# The libraries live where the links /lib and /lib64 of a Debian system point: under /usr.
unpack() {
    local root=$1 name
    shift
    mkdir -p "$root/usr/lib" "$root/usr/lib64"
    ln -s usr/lib "$root/lib"
    ln -s usr/lib64 "$root/lib64"
    for name in "$@"; do
        dpkg-deb --fsys-tarfile "$context"/packages/"${name}"_*.deb | tar -x --keep-directory-symlink -C "$root"
    done
    rm -rf "$root"/usr/share/{doc,man,locale,lintian,bash-completion} "$root"/etc/nginx
}

# The links belong to the first layer only; a later layer would replace them by the same.
pack() { tar --owner=0 --group=0 --numeric-owner -C "$1" -cf "$context/$2" .; }

if ! fetch "${base_packages[@]}" "${tls_packages[@]}" "${web_packages[@]}" >/dev/null 2>&1; then
    . "$here/../../../scripts/lib/debian.sh"
    as_root apt-get -q update >/dev/null
    fetch "${base_packages[@]}" "${tls_packages[@]}" "${web_packages[@]}"
fi

unpack "$work/base" "${base_packages[@]}"
mkdir -p "$work/base"/{config,dev,etc,proc,root,run,sys,tmp,usr/bin,var/log/nginx,var/lib/nginx}
chmod 1777 "$work/base/tmp"
[ -e "$work/base/bin" ] || mkdir -p "$work/base/bin"
for applet in sh cat dirname echo grep head id ls mkdir printf ps rm sed sleep test touch; do
    ln -sf /bin/busybox "$work/base/usr/bin/$applet"
done
ln -sf busybox "$work/base/bin/sh"
printf 'root:x:0:0:root:/root:/bin/sh\nnobody:x:65534:65534:nobody:/:/bin/false\n' >"$work/base/etc/passwd"
printf 'root:x:0:\nnogroup:x:65534:\n' >"$work/base/etc/group"
unpack "$work/tls" "${tls_packages[@]}"
unpack "$work/web" "${web_packages[@]}"

mkdir -p "$work/site/etc/site"
cp "$here"/site/* "$here/small/start.sh" "$here/small/index.html" "$here/small/locations.conf" "$work/site/etc/site/"

# Bytes that do not compress, so that the download takes long enough to be seen and to be cancelled.
for n in 1 2 3; do
    mkdir -p "$work/ballast-$n/usr/share/ballast"
    head -c 33554432 /dev/urandom >"$work/ballast-$n/usr/share/ballast/$n"
done

for layer in base tls web site ballast-1 ballast-2 ballast-3; do
    pack "$work/$layer" "$layer.tar"
done
cp "$here/small/Dockerfile" "$context/"
touch "$context/complete"
