# shellcheck shell=bash
# Sourced: running test levels and adding up what they counted.
# shellcheck disable=SC2154  # root, the folder of the checkout, is the caller's

passed=0
failed=0
skipped=0
summary=()
logs=$root/build/logs

# A level's function prints what it does, returns whether all went well, and leaves "passed failed skipped" in the file
# $counts; when it leaves nothing there, the level counts as one.
counts=

# skip NAME REASON: a level that cannot run, or was not asked for.
skip() {
    heading "$1"
    say "SKIPPED: $2"
    summary+=("skipped  $1: $2")
    skipped=$((skipped + 1))
}

# level NAME FUNCTION [ARGUMENT…]
level() {
    local name=$1 began=$SECONDS result=passed p f s log
    shift
    log=$logs/${name//[^A-Za-z0-9]/-}.log
    counts=$log.counts
    rm -f "$counts"
    heading "$name"
    "$@" >"$log" 2>&1 </dev/null || result=failed
    if [ ! -s "$counts" ] || ! read -r p f s <"$counts"; then
        p=0 f=0 s=0
        if [ "$result" = passed ]; then p=1; else f=1; fi
    fi
    rm -f "$counts"
    # A level that failed without a failed test of its own (a build, say) must not look like a good one.
    if [ "$result" = failed ] && [ "$f" -eq 0 ]; then f=1; fi
    if [ "$f" -gt 0 ]; then
        result=failed
        tail -n 120 "$log"
        say "(all of it: $log)"
    fi
    passed=$((passed + p)) failed=$((failed + f)) skipped=$((skipped + s))
    summary+=("$(printf '%-8s %s: %d passed, %d failed, %d skipped, %d s' "$result" "$name" "$p" "$f" "$s" $((SECONDS - began)))")
    say "${summary[-1]}"
    [ "$result" = passed ]
}

# run_ctest PRESET [CTEST ARGUMENT…]: the tests of build/PRESET, counted into the level.
run_ctest() {
    local preset=$1 report=$root/build/$1/ctest.xml status=0
    shift
    rm -f "$report"
    ctest --test-dir "$root/build/$preset" --output-on-failure --no-tests=error --timeout 300 \
        --parallel "$(nproc)" --output-junit "$report" "$@" || status=1
    count_junit "$report" >"$counts" || status=1
    return "$status"
}

count_junit() {
    awk -F'"' '
        function value(name,   i) { for (i = 1; i < NF; i++) if ($i ~ name "=$") return $(i + 1); return 0 }
        /tests="/ && !tests { tests = value("tests") }
        /failures="/ && !seen { failures = value("failures"); seen = 1 }
        /disabled="/ && !disabled { disabled = value("disabled") }
        /skipped="/ && !left { left = value("skipped") }
        END { left += disabled; print tests - failures - left, failures, left }
    ' "$1"
}

# The closing line, and the status of the whole run.
finish() {
    heading "Summary"
    printf '%s\n' "${summary[@]}"
    say ""
    say "$passed passed, $failed failed, $skipped skipped"
    [ "$failed" -eq 0 ]
}
