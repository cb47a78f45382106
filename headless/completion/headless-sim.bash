# Completion for headless-sim; the options come from its --help.
_headless_sim() {
    local word="${COMP_WORDS[COMP_CWORD]}"
    if [[ "$word" == -* ]]; then
        local options
        options="$("${COMP_WORDS[0]}" --help 2> /dev/null |
            sed -n 's/^ *\(-[a-z],\)\?\(--[a-z-]*\).*/\2/p')"
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
    else
        compopt -o filenames 2> /dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
    fi
}
complete -F _headless_sim headless-sim
