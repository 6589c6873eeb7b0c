#!/usr/bin/env bash
# Runs the fuzz targets of a build, two at a time, and counts them. What is found is kept in build/fuzz-findings.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
root=$(cd "$here/.." && pwd)
. "$root/scripts/lib/say.sh"

usage() {
    cat <<'TEXT'
usage: fuzz/run.sh [--seconds N] [--jobs N] [--build FOLDER] [--counts FILE] [TARGET…]

Runs each target, or those named, for N seconds (60) beginning with the inputs in fuzz/corpus; the tree is not written
to. Build them first:

  cmake --preset fuzz && cmake --build build/fuzz --target fuzzers

  --jobs N        how many run at a time (2)
  --build FOLDER  where they were built (build/fuzz)
  --counts FILE   receives "passed failed skipped"
TEXT
}

wrong_use() {
    usage >&2
    exit 2
}

seconds=60
jobs=2
build=$root/build/fuzz
counts=
targets=()
while [ $# -gt 0 ]; do
    case $1 in
        --seconds | --jobs | --build | --counts)
            [ $# -ge 2 ] || wrong_use
            printf -v "${1#--}" '%s' "$2"
            shift
            ;;
        --help | -h)
            usage
            exit 0
            ;;
        -*) wrong_use ;;
        *) targets+=("$1") ;;
    esac
    shift
done
if [[ ! $seconds =~ ^[1-9][0-9]*$ || ! $jobs =~ ^[1-9][0-9]*$ ]]; then wrong_use; fi

if [ ${#targets[@]} -eq 0 ]; then
    for source in "$here"/*.cpp; do targets+=("$(basename "$source" .cpp)"); done
fi
for target in "${targets[@]}"; do
    [ -x "$build/fuzz/fuzz_$target" ] || die "There is no $build/fuzz/fuzz_$target; see fuzz/run.sh --help."
done

findings=$root/build/fuzz-findings
mkdir -p "$findings"
# The targets that work on files do so in memory where that is possible: it is several times as fast.
if [ -d /dev/shm ] && [ -w /dev/shm ]; then export TMPDIR=/dev/shm; fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export TMPDIR=$work

# run_target NAME: leaves its log in $work/NAME.log, and $work/NAME.bad when it did not end well.
run_target() {
    local name=$1
    local options=("-max_total_time=$seconds" -max_len=4096 -timeout=25 -rss_limit_mb=2048 -print_final_stats=1
        "-artifact_prefix=$findings/$name-")
    [ ! -f "$here/corpus/$name.dict" ] || options+=("-dict=$here/corpus/$name.dict")
    mkdir "$work/$name"
    # New inputs go into the first folder.
    "$build/fuzz/fuzz_$name" "${options[@]}" "$work/$name" "$here/corpus/$name" >"$work/$name.log" 2>&1 ||
        printf '%s\n' $? >"$work/$name.bad"
}

# number TEXT LOG: the number behind the last TEXT in the log.
number() { grep -oE "$1 *[0-9]+" "$2" | tail -n 1 | grep -oE '[0-9]+$' || printf '0\n'; }

passed=0
failed=0
report() {
    local name=$1 log=$work/$1.log executions kept
    executions=$(number 'number_of_executed_units:' "$log")
    local figures
    figures="$executions runs, $(number 'cov:' "$log") edges, $(number 'ft:' "$log") features"
    # A target that never got beyond its seeds has tested nothing.
    if [ ! -e "$work/$name.bad" ] && [ "$executions" -gt 100 ]; then
        say "good    $name: $figures"
        passed=$((passed + 1))
        return
    fi
    failed=$((failed + 1))
    cp "$log" "$findings/$name.log"
    say "FAILED  $name: $figures"
    grep -E '^Does not hold|ERROR: |runtime error:|SUMMARY: ' "$log" || tail -n 5 "$log"
    kept=$(sed -n 's/.*Test unit written to //p' "$log" | tail -n 1)
    say "  all of it: $findings/$name.log"
    [ -z "$kept" ] || say "  replay:    $build/fuzz/fuzz_$name $kept"
}

say "${#targets[@]} targets, $seconds seconds each, $jobs at a time"
running=0
for target in "${targets[@]}"; do
    if [ "$running" -ge "$jobs" ]; then
        wait -n
        running=$((running - 1))
    fi
    run_target "$target" &
    running=$((running + 1))
done
wait
for target in "${targets[@]}"; do report "$target"; done
say "$passed passed, $failed failed"
[ -z "$counts" ] || printf '%s\n' "$passed $failed 0" >"$counts"
[ "$failed" -eq 0 ]
