# bash completion for orvane, which supplies the candidates.

_orvane() {
    local line current=${COMP_WORDS[COMP_CWORD]} files=()
    COMPREPLY=()
    while IFS= read -r line; do
        if [[ $line == :files ]]; then
            compopt -o filenames 2>/dev/null
            mapfile -t files < <(compgen -f -- "$current")
        else
            COMPREPLY+=("${line%%$'\t'*}")
        fi
    done < <("${COMP_WORDS[0]}" __complete "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null)
    COMPREPLY+=("${files[@]}")
}

complete -F _orvane orvane
