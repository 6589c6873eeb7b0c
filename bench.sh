#!/usr/bin/env bash
# Installs what is missing, builds the benchmarks as people's builds are built, and runs them.
# usage: ./bench.sh [OPTION OF GOOGLE BENCHMARK…]     for example: ./bench.sh --benchmark_filter=stream
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
. "$root/scripts/lib/say.sh"
. "$root/scripts/lib/build.sh"

bash "$root/scripts/install-packages.sh" build run bench headless
mkdir -p "$root/build"
say "Building into build/bench …"
build bench >"$root/build/bench-build.log" 2>&1 || {
    tail -n 40 "$root/build/bench-build.log" >&2
    die "The build failed; all of its output is in build/bench-build.log."
}

mapfile -t programs < <(find "$root/build/bench" -type f -name '*_bench' -perm -u+x | sort)
[ ${#programs[@]} -gt 0 ] || die "There are no benchmarks in build/bench."
for program in "${programs[@]}"; do
    heading "$(basename "$program")"
    "$root/scripts/in-virtual-display.sh" "$program" --benchmark_counters_tabular=true "$@"
done
