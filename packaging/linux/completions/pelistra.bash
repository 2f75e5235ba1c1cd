# Completion of pelistra's options for bash.
# shellcheck shell=bash
_pelistra() {
    local options="--show-settings --show-onboarding --start-collapsed --verify-section-layout
        --start-menu-bar --list-items --json --help --version"
    COMPREPLY=()
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "${COMP_WORDS[COMP_CWORD]}")
}
complete -F _pelistra pelistra
