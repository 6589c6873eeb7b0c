# shellcheck shell=bash
# Completion of tarnwick's options for bash.

_tarnwick() {
    local word=${COMP_WORDS[COMP_CWORD]}
    local options="--launch --background --settings --logs --stop --status --json --version --help"
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
}
complete -F _tarnwick tarnwick
