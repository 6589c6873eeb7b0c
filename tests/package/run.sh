#!/usr/bin/env bash
# The Debian package in a fresh system: installed with nothing but what it depends on, started with the practice engine,
# upgraded from an older version, and removed.
# usage: run.sh BUILD-FOLDER COUNTS-FILE     makes the packages from a release build and runs the test
#        run.sh --can-run                    says why not, with status 1, when it cannot run here
#
# The system lives in a folder below the build folder. Whatever is mounted there is mounted in a namespace of the test's
# own, and is gone with it, however it ends.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/../.." && pwd)
. "$root/scripts/lib/say.sh"
. "$root/scripts/lib/debian.sh"

isolated() {
    as_root unshare --mount --propagation unchanged --pid --fork --kill-child bash "$here/in-namespace.sh" "$@"
}

# By apt's own means, which know of proxies.
archive_answers() {
    local file status=0
    file=$(mktemp)
    /usr/lib/apt/apt-helper download-file "$(debian_mirror)dists/$(. /etc/os-release && echo "$VERSION_CODENAME")/InRelease" \
        "$file" >/dev/null 2>&1 || status=1
    rm -f "$file"
    return "$status"
}

can_run() {
    local tool reason
    for tool in debootstrap dpkg-shlibdeps lintian cpack unshare; do
        PATH=$PATH:/usr/sbin command -v "$tool" >/dev/null || {
            say "$tool is not installed"
            return 1
        }
    done
    [ -n "$(debian_mirror)" ] || {
        say "apt on this machine knows no Debian archive"
        return 1
    }
    archive_answers || {
        say "Debian's archive cannot be reached from here"
        return 1
    }
    if [ "$(id -u)" -ne 0 ] && ! sudo -n true 2>/dev/null; then
        say "a system in a folder can only be made by root, and sudo asks for a password"
        return 1
    fi
    reason=$(isolated --prepare-only 2>&1) || {
        say "this machine allows no namespaces of one's own: $(tail -n 1 <<<"$reason")"
        return 1
    }
}

# make_package BUILD FOLDER [VERSION]: of the program as it is built, by another version if one is given.
make_package() {
    local build=$1 folder=$2 log=$1/cpack.log
    cpack --config "$build/CPackConfig.cmake" -B "$folder" ${3:+-D "CPACK_PACKAGE_VERSION=$3"} >"$log" 2>&1 || {
        cat "$log" >&2
        return 1
    }
    rm -rf "$folder/_CPack_Packages"
}

case ${1:-} in
    --can-run)
        can_run
        ;;
    *)
        [ $# -eq 2 ] || die "usage: run.sh BUILD-FOLDER COUNTS-FILE"
        build=$(cd "$1" && pwd)
        place=$build/package-test
        as_root rm -rf --one-file-system "$place"
        trap 'as_root rm -rf --one-file-system "$place"' EXIT
        mkdir -p "$place/debs" "$root/build/package-cache"
        say "Making the packages …"
        make_package "$build" "$place/debs"
        # Older than any version that the program has had.
        make_package "$build" "$place/debs" 0.0.1
        isolated "$build" "$place" "$root/build/package-cache" "$2"
        # What has passed is what can be given away.
        mkdir -p "$build/package"
        find "$place/debs" -name '*.deb' ! -name '*_0.0.1_*' -exec cp {} "$build/package/" \;
        ;;
esac
