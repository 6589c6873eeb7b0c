#!/usr/bin/env bash
# Inside fresh namespaces: makes a minimal Debian in a folder and takes the package through its life there.
# usage: in-namespace.sh BUILD-FOLDER PLACE CACHE COUNTS-FILE | in-namespace.sh --prepare-only       (by run.sh only)
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
project=$(cd "$here/../.." && pwd)
. "$project/scripts/lib/say.sh"
. "$project/scripts/lib/debian.sh"
export PATH=$PATH:/usr/sbin:/sbin LC_ALL=C.UTF-8 DEBIAN_FRONTEND=noninteractive
# The display, the bus and the system agree on one folder for their sockets.
unset TMPDIR

# What is mounted from here on must not appear outside.
awk '{ print $5 }' /proc/self/mountinfo | while read -r mounted; do mount --make-private "$(printf '%b' "$mounted")"; done
mount -t proc proc /proc
if [ "${1:-}" = --prepare-only ]; then exit 0; fi

build=$1
place=$2
cache=$3
counts=$4
system=$place/system
home=$system/root

# A step that fails ends the test: those after it would only say so again.
passed=0
failed=0
trap 'printf "%d %d 0\n" "$passed" "$failed" >"$counts"' EXIT
step() {
    printf '\n--- %s\n' "$1"
    shift
    failed=1
    "$@"
    failed=0
    passed=$((passed + 1))
}

# Shows what apt will do and what the package itself says; everything only when it fails.
inside_apt() {
    printf '# apt-get %s\n' "$*"
    chroot "$system" apt-get -q -y --no-install-recommends -o Dpkg::Use-Pty=0 "$@" >"$place/apt.log" 2>&1 </dev/null || {
        cat "$place/apt.log"
        return 1
    }
    awk '/Tarnwick is removed/ { told = 1 } told || /newly installed|tarnwick|additional disk/' "$place/apt.log"
}

# CPack calls ldconfig for any library below /usr/lib, also for one that no program is linked with.
judged_by_lintian() {
    lintian --allow-root --fail-on error,warning --suppress-tags maintscript-calls-ldconfig "$new"
}

make_system() {
    mkdir -p "$system"
    debootstrap --variant=minbase --cache-dir="$cache" "$codename" "$system" "$(debian_mirror)" >"$place/debootstrap.log" 2>&1 || {
        tail -n 30 "$place/debootstrap.log"
        return 1
    }
    # The archives, and how to get at them, as this machine's apt knows them.
    # shellcheck disable=SC2016  # apt's own variables
    apt-get indextargets --format '$(ORIGIN) $(REPO_URI) $(RELEASE) $(COMPONENT)' 'Created-By: Packages' |
        awk '$1 == "Debian" { print "deb", $2, $3, $4 }' >"$system/etc/apt/sources.list"
    apt-config dump | grep '^Acquire::' >"$system/etc/apt/apt.conf.d/90machine" || true
    cp /etc/hosts /etc/resolv.conf "$system/etc/"
    # Nothing may start in the folder, and nobody minds when it is lost.
    printf '#!/bin/sh\nexit 101\n' >"$system/usr/sbin/policy-rc.d"
    chmod +x "$system/usr/sbin/policy-rc.d"
    echo force-unsafe-io >"$system/etc/dpkg/dpkg.cfg.d/unsafe-io"

    mount -t proc proc "$system/proc"
    mount --rbind /sys "$system/sys"
    mount --rbind /dev "$system/dev"
    mount --bind "$cache" "$system/var/cache/apt/archives"
    # The display and the session's bus have their sockets there.
    mount --bind /tmp "$system/tmp"
    mkdir -p "$system/opt/debs"
    cp "$place"/debs/*.deb "$system/opt/debs/"
    chroot "$system" apt-get -q update >"$place/apt.log" 2>&1 || {
        cat "$place/apt.log"
        return 1
    }
    say "Debian $codename, $(chroot "$system" dpkg-query -W | wc -l) packages"
}

install_old() { inside_apt install "/opt/debs/$(basename "$old")"; }

# Every library of the program and of its module comes with the packages that it depends on.
libraries_are_there() {
    local missing
    missing=$(chroot "$system" ldd /usr/bin/tarnwick /usr/lib/tarnwick/libtarnwick_web.so) || return 1
    ! grep 'not found' <<<"$missing"
}

# With no display and no session: as in a terminal, or a script.
tells_version() {
    local told
    told=$(env -u DISPLAY -u WAYLAND_DISPLAY chroot "$system" tarnwick --version) || return 1
    printf '# tarnwick --version\n%s\n' "$told"
    [ "$told" = "tarnwick $version" ]
}

# The practice engine is no part of the package, and neither are the libraries of its web server.
bring_practice_engine() {
    local tool packages
    mkdir -p "$system/opt/practice/bin" "$place/shlibs/debian"
    cp "$build/practice/tarnwick-practice" "$build/practice/tarnwick-practice-desktop" "$system/opt/practice/"
    for tool in docker colima brew; do ln -s ../tarnwick-practice "$system/opt/practice/bin/$tool"; done
    printf 'Source: practice\n' >"$place/shlibs/debian/control"
    packages=$(cd "$place/shlibs" && dpkg-shlibdeps -O "$build"/practice/tarnwick-practice{,-desktop} 2>/dev/null) || return 1
    # Names alone, without their versions.
    packages=$(sed -e 's/.*Depends=//' -e 's/([^)]*)//g' -e 's/,/ /g' <<<"$packages")
    # shellcheck disable=SC2086  # several names
    inside_apt install $packages
}

launch() {
    "$project/scripts/in-virtual-display.sh" /usr/bin/python3 "$here/launch.py" "$system" "$build" "$1"
}

upgrade() {
    inside_apt install "/opt/debs/$(basename "$new")"
    chroot "$system" dpkg -s tarnwick | grep -qx "Version: $version"
}

# The user's settings, the program's data and the desktop's files: names and contents.
users_files() {
    (cd "$home" && find .config/tarnwick .local/share/Tarnwick practice/volumes -type f ! -path '*/web/*' -exec sha256sum {} +) | sort -k 2
}

remove() {
    chroot "$system" dpkg -L tarnwick | sed '/^\/\.$/d' >"$place/files"
    users_files >"$place/before"
    grep -q settings.json "$place/before" && grep -q tarnwick-config- "$place/before" || return 1
    inside_apt remove tarnwick
    local told
    for told in /.config/tarnwick /.local/share/Tarnwick tarnwick-config-; do
        grep -qF -- "$told" "$place/apt.log" || {
            say "The removal does not say a word of $told."
            return 1
        }
    done
}

nothing_is_left() {
    local file left=0
    while read -r file; do
        # Folders of others stay.
        if [ -e "$system$file" ] && { [ ! -d "$system$file" ] || [[ $file == *tarnwick* ]]; }; then
            say "left: $file"
            left=1
        fi
    done <"$place/files"
    (cd "$system" && find . -xdev -iname '*tarnwick*' ! -path './root/*' ! -path './opt/*' ! -path './proc/*' ! -path './tmp/*') |
        grep -v '^./var/lib/dpkg/' && left=1
    [ "$left" -eq 0 ] && say "$(wc -l <"$place/files") files and folders of the package looked for"
}

users_files_are_left() {
    users_files >"$place/after"
    cat "$place/after"
    diff "$place/before" "$place/after"
}

. /etc/os-release
codename=${VERSION_CODENAME:?}
old=$(find "$place/debs" -name '*_0.0.1_*.deb')
new=$(find "$place/debs" -name '*.deb' ! -name '*_0.0.1_*')
version=$(dpkg-deb -f "$new" Version)

step "what Debian's checker says of the package" judged_by_lintian
step "a fresh system" make_system
step "install an older version, and what it depends on" install_old
step "all libraries are there" libraries_are_there
step "it tells its version" tells_version
step "the practice engine, copied into the system" bring_practice_engine
step "first launch" launch first
step "upgrade to $version" upgrade
step "launch after the upgrade, by the command line" launch again
step "remove" remove
step "no file of the package is left" nothing_is_left
step "the user's settings, data and desktop files are left" users_files_are_left
