# Completion of pelistra-menubar's options and their values for bash.
# shellcheck shell=bash
_pelistra_menubar() {
    local options="--theme --scale --camera-housing --no-status-notifier --replace --display --help --version"
    local word=${COMP_WORDS[COMP_CWORD]} option=${COMP_WORDS[COMP_CWORD - 1]}
    # An equals sign is a word of its own.
    if [ "$word" = = ]; then
        word=
    elif [ "$option" = = ] && [ "$COMP_CWORD" -gt 1 ]; then
        option=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    COMPREPLY=()
    case $option in
    --theme) mapfile -t COMPREPLY < <(compgen -W "auto light dark" -- "$word") ;;
    --scale | --camera-housing | --display) ;;
    *) mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word") ;;
    esac
}
complete -F _pelistra_menubar pelistra-menubar
