# shellcheck shell=bash
# Sourced: the checks that need no build.
# shellcheck disable=SC2154  # root, the folder of the checkout, is the caller's

# The files of the project that match the patterns, also those not committed yet; build folders are ignored files. The
# checkout may belong to another user than the one that tests it.
project_files() {
    local file
    git -c safe.directory='*' -C "$root" ls-files -co --exclude-standard -- "$@" |
        while read -r file; do if [ -f "$root/$file" ]; then printf '%s\n' "$file"; fi; done
}

check_format() {
    local files
    mapfile -t files < <(project_files '*.cpp' '*.h')
    (cd "$root" && clang-format-14 --dry-run -Werror "${files[@]}")
}

check_coroutines() {
    local files
    mapfile -t files < <(project_files '*.cpp' '*.h')
    (cd "$root" && scripts/lint-coroutines.sh "${files[@]}")
}

check_shell_scripts() {
    local files
    mapfile -t files < <(project_files '*.sh' '*.bash' packaging/debian/postrm .ci/run tests/real/tools/colima)
    (cd "$root" && shellcheck --external-sources --source-path=SCRIPTDIR "${files[@]}")
}

# Words that belong in no file of the project: of documents that its readers do not have, and of one machine's folders.
check_wording() {
    local files words='\b[s]pecs?\b|[s]pecification|\b[P]arts? [0-9]+\b|/[w]ork/|/[t]mp/[a-z]'
    local allowed='volume [s]pecification|/[t]mp/\.X11-unix'
    mapfile -t files < <(project_files)
    (cd "$root" && ! grep -nIE "$words" "${files[@]}" | grep -vE "$allowed")
}

# The core knows neither the interface's toolkit nor the layers above it. CMake already hides the headers of layers that a
# folder does not link; this catches what is installed system-wide.
check_layers() {
    local status=0
    (
        cd "$root"
        ! grep -rnE '#include [<"](Q[A-Z]|Qt|q[a-z]+\.h)' core practice
    ) || status=1
    (
        cd "$root"
        ! grep -rnE '#include "(ui|app|platform|practice)/' core
    ) || status=1
    return "$status"
}
