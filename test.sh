#!/usr/bin/env bash
# Installs what the tests need, and runs all of them.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$root/scripts/lib/say.sh"
. "$root/scripts/lib/build.sh"
. "$root/scripts/lib/levels.sh"
. "$root/scripts/lib/checks.sh"

usage() {
    cat <<'TEXT'
usage: ./test.sh [--quick] [--real-engine] [--package] [--help]

Installs what is missing with apt (after saying what), builds, and runs the test levels one after the other. The last
line adds them up.

  --quick         the checks of the sources, and the tests of one build
  --real-engine   also the tests on a real Docker engine, started for them alone: installs Debian's docker.io and
                  docker-registry, and needs root (or sudo)
  --package       also the Debian package: made from a release build, installed, upgraded and removed in a fresh
                  system in a folder; needs root (or sudo) and downloads some 200 MB once
TEXT
}

quick=no
real=no
package=no
for argument in "$@"; do
    case $argument in
        --quick) quick=yes ;;
        --real-engine) real=yes ;;
        --package) package=yes ;;
        --help | -h)
            usage
            exit 0
            ;;
        *)
            usage >&2
            exit 2
            ;;
    esac
done

groups=(build run headless test)
[ "$real" = no ] || groups+=(real)
[ "$package" = no ] || groups+=(package)
bash "$root/scripts/install-packages.sh" "${groups[@]}"
mkdir -p "$logs"

in_display() { "$root/scripts/in-virtual-display.sh" "$@"; }

# Everything with g++; the other g++ levels share this build. The tests get a bus and a display of their own, so that
# none of them can reach a person's keyring or windows.
debug_tests() {
    build debug || return 1
    export -f run_ctest count_junit
    export counts root
    in_display bash -c 'run_ctest debug'
}

# The core alone: Qt may not even be looked for, and no header of it may have been read.
# usage: sanitizer_tests PRESET [CTEST ARGUMENT…]
sanitizer_tests() {
    local preset=$1
    shift
    mkdir -p "$root/build"
    build_without_qt "$preset" || return 1
    if ninja -C "$root/build/$preset" -t deps | grep -iE '/qt6?/|/Q[A-Z][A-Za-z]+$'; then
        say "The core's build has read headers of Qt."
        return 1
    fi
    run_ctest "$preset" "$@"
}

build_without_qt() {
    configure "$1" -DCMAKE_DISABLE_FIND_PACKAGE_Qt6=TRUE || return 1
    cmake --build "$root/build/$1" --parallel "$(build_jobs)"
}

# Reads the core by the commands of clang's build and the rest by those of g++'s.
tidy() {
    local status=0
    run-clang-tidy-14 -quiet -j "$(nproc)" -p "$root/build/tsan" "^$root/core/" || status=1
    run-clang-tidy-14 -quiet -j "$(nproc)" -p "$root/build/debug" "^$root/(platform|practice|ui|app)/" || status=1
    return "$status"
}

static_analysis() {
    local sources
    mapfile -t sources < <(cd "$root" && git ls-files '*.cpp' | grep -Ev '^(tests|bench|fuzz|packaging)/')
    (cd "$root" && cppcheck -I . --std=c++20 --enable=warning,performance,portability --inline-suppr --quiet \
        --suppressions-list=scripts/cppcheck-suppressions.txt --error-exitcode=1 "${sources[@]}")
}

pictures() { "$root/scripts/gallery.sh" "$root/build/debug" "$root/build/gallery"; }

end_to_end() {
    export TARNWICK_BUILD=$root/build/debug TARNWICK_REPORTS=$root/build/reports
    in_display /usr/bin/python3 "$root/tests/e2e/run.py" "$counts" "$root/tests/e2e"
}

# Each target is one test, and passes when nothing was found.
fuzzing() {
    configure fuzz -DCMAKE_DISABLE_FIND_PACKAGE_Qt6=TRUE || return 1
    cmake --build "$root/build/fuzz" --parallel "$(build_jobs)" --target fuzzers || return 1
    "$root/fuzz/run.sh" --jobs "$(nproc)" --counts "$counts"
}

desktop_files() { "$root/tests/package/check-installed-files.sh" "$root/build/debug" "$counts"; }

fresh_debian() {
    build release || return 1
    "$root/tests/package/run.sh" "$root/build/release" "$counts"
}

real_engine() { "$root/tests/real/run.sh" "$root/build/debug" "$counts"; }

level "source format" check_format || true
level "coroutine forms" check_coroutines || true
level "layers" check_layers || true
level "wording" check_wording || true
level "shell scripts" check_shell_scripts || true

built=yes
level "all tests, g++" debug_tests || [ -x "$root/build/debug/app/tarnwick" ] || built=no

if [ "$built" = yes ]; then
    level "desktop files" desktop_files || true
else
    skip "desktop files" "the program was not built"
fi

if [ "$quick" = yes ]; then
    reason="left out by --quick"
    for name in "core tests, address and undefined sanitizers" "core tests, clang, thread sanitizer" \
        "fuzzing, a minute each" "clang-tidy" "cppcheck" "pictures of every window" "whole program, practice engine" \
        "whole program, real Docker engine" "package in a fresh Debian"; do
        skip "$name" "$reason"
    done
    finish
    exit
fi

level "core tests, address and undefined sanitizers" sanitizer_tests asan-ubsan || true
# Only the core: libraries that are not built for this sanitizer make it see races where there are none.
level "core tests, clang, thread sanitizer" sanitizer_tests tsan -L core || true
level "fuzzing, a minute each" fuzzing || true
level "clang-tidy" tidy || true
level "cppcheck" static_analysis || true

if [ "$built" = no ]; then
    skip "pictures of every window" "the program was not built"
    skip "whole program, practice engine" "the program was not built"
    skip "whole program, real Docker engine" "the program was not built"
    skip "package in a fresh Debian" "the program was not built"
    finish
    exit
fi
level "pictures of every window" pictures || true
level "whole program, practice engine" end_to_end || true

# A level that is asked for by an option, and can run on some machines only.
# usage: asked_level NAME yes|no REASON-WHEN-NOT-ASKED SCRIPT FUNCTION
asked_level() {
    local name=$1 asked=$2 reason=$3 script=$4 run=$5
    if [ "$asked" = no ] || ! reason=$("$script" --can-run); then
        skip "$name" "$reason"
    else
        level "$name" "$run" || true
    fi
}
asked_level "whole program, real Docker engine" "$real" \
    "runs with --real-engine only, since it installs and starts a Docker engine" \
    "$root/tests/real/run.sh" real_engine
asked_level "package in a fresh Debian" "$package" \
    "runs with --package only, since it builds the release and makes a whole system" \
    "$root/tests/package/run.sh" fresh_debian
summary+=("to look at: $root/build/gallery, every window light and dark, at 100 % and 200 %")
summary+=("to look at: $root/build/reports, what assistive tools are told and what is read when a tool fails")
finish
