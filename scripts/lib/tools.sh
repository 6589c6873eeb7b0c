# shellcheck shell=bash
# Sourced: which engine the program will find, by the rules of the program itself.

# The folders in which the program looks for docker, colima and brew, one a line.
tool_folders() {
    if [ -n "${TARNWICK_TOOL_FOLDERS:-}" ]; then
        tr ':' '\n' <<<"$TARNWICK_TOOL_FOLDERS"
    else
        printf '%s\n' /opt/homebrew/bin /usr/local/bin /Applications/Docker.app/Contents/Resources/bin
    fi
}

has_tool() {
    local folder
    while read -r folder; do
        if [ -f "$folder/$1" ] && [ -x "$folder/$1" ]; then return 0; fi
    done < <(tool_folders)
    return 1
}

# Whether the program could start a real desktop here, or install what that needs.
has_real_engine() { { has_tool docker && has_tool colima; } || has_tool brew; }
