#!/usr/bin/env bash
# Installs what is missing of the named package groups (see scripts/packages), after saying what.
# usage: install-packages.sh GROUP…
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$here/lib/say.sh"
. "$here/lib/debian.sh"
. "$here/lib/packages.sh"

[ $# -gt 0 ] || die "usage: install-packages.sh GROUP…"

if ! is_debian_like; then
    warn "This script knows Debian 12 and its relatives only. Please install by your system's own means:

  to build   a C++20 compiler (g++ 12 or newer), CMake 3.25, Ninja, pkg-config, git
             Qt 6.4 or newer with its modules Widgets, Svg and WebEngineWidgets
             libsecret 0.20, libcurl 7.88, OpenSSL 3, nlohmann-json 3.11, fmt 9, utf8proc 2.8, cpp-httplib 0.11
  to run     lsof; without a display also Xvfb, openbox, D-Bus, AT-SPI 2, PyGObject, ImageMagick, xdotool
  to test    GoogleTest 1.12, Google Benchmark 1.7, clang 14 with its sanitizers, clang-tidy 14, clang-format 14,
             gnome-keyring, strace, iproute2, appstream, desktop-file-utils, groff

Then build with: cmake --preset release && cmake --build build/release, and start build/release/app/tarnwick."
    exit 1
fi

names=$(packages_of "$@")
mapfile -t wanted <<<"$names"
mapfile -t missing < <(missing_packages "${wanted[@]}")
[ ${#missing[@]} -gt 0 ] || exit 0

say "Missing on this machine (package groups: $*), to be installed with apt:"
printf '  %s\n' "${missing[@]}"

apt_install() {
    as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get -q -o Dpkg::Use-Pty=0 install -y --no-install-recommends "${missing[@]}" </dev/null
}

# Lists that were never fetched know no package; lists that are old name files that are gone.
known=$(apt-cache policy "${missing[@]}" 2>/dev/null | grep -c 'Candidate: [^(]' || true)
if [ "$known" -lt ${#missing[@]} ]; then
    as_root apt-get -q update </dev/null
    apt_install
else
    apt_install || {
        as_root apt-get -q update </dev/null
        apt_install
    }
fi

mapfile -t missing < <(missing_packages "${missing[@]}")
[ ${#missing[@]} -eq 0 ] || die "Still missing after the installation: ${missing[*]}"
