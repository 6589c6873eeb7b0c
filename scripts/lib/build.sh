# shellcheck shell=bash
# Sourced: building with the presets.
# shellcheck disable=SC2154  # root, the folder of the checkout, is the caller's

# Parallel compilations: one per processor, fewer when memory is short (a file can take 1 GB).
build_jobs() {
    local processors memory
    processors=$(nproc)
    memory=$(awk '/^MemAvailable/ { print int($2 / 1048576) }' /proc/meminfo)
    [ "$memory" -ge 1 ] || memory=1
    printf '%s\n' $((processors < memory ? processors : memory))
}

# configure PRESET [OPTION…]: into build/PRESET.
configure() {
    local preset=$1
    shift
    (cd "$root" && cmake --preset "$preset" "$@" >"$root/build/$preset-configure.log" 2>&1) || {
        cat "$root/build/$preset-configure.log" >&2
        return 1
    }
}

# build PRESET [TARGET…]
build() {
    local preset=$1
    shift
    mkdir -p "$root/build"
    configure "$preset" || return 1
    cmake --build "$root/build/$preset" --parallel "$(build_jobs)" ${1:+--target "$@"}
}
