# Completion of yfw for bash: the program itself knows the answers. Installed as
# /usr/share/bash-completion/completions/yfw.
_yfw() {
    local IFS=$'\n'
    COMPREPLY=($("$1" complete --line "${COMP_LINE:0:COMP_POINT}" --breaks "$COMP_WORDBREAKS" 2>/dev/null))
    if [[ ${COMPREPLY[0]} == :files ]]; then
        compopt -o filenames 2>/dev/null
        COMPREPLY=("${COMPREPLY[@]:1}" $(compgen -f -- "$2"))
    elif [[ ${COMPREPLY[0]} == *[]/=:[] ]]; then
        compopt -o nospace 2>/dev/null
    fi
}
complete -F _yfw yfw
