# bash completion for orvane

_orvane_options() {
    case $1 in
    watch) echo "-n --count -T --seconds -i --interval --first --udp" ;;
    "command hold") echo "-T --seconds" ;;
    "command observe") echo "-n --count -T --seconds -i --interval" ;;
    latency) echo "-T --seconds" ;;
    drive)
        echo "--check --input --period --amplitude --rate -n --count -T --seconds" \
            "-o --output --force --reconnect --strict --plain --summary"
        ;;
    record) echo "-o --output --force --rate -n --count -T --seconds" ;;
    replay) echo "--speed --loop" ;;
    dump) echo "--absolute" ;;
    esac
}

_orvane_subcommands() {
    case $1 in
    "") echo "info get set watch command latency drive record replay config dump" ;;
    command) echo "once begin end hold observe" ;;
    config) echo "check" ;;
    esac
}

# Whether an option takes the word after it.
_orvane_takes_value() {
    case $1 in
    --host | --port | --timeout | --count | --seconds | --interval | --input | --period | \
        --amplitude | --rate | --output | --speed | --first | --udp | -[nTio]) return 0 ;;
    esac
    return 1
}

# Sets `path` to the subcommands before the word that is completed.
_orvane_find_path() {
    local i word
    path=
    for ((i = 1; i < COMP_CWORD; i++)); do
        word=${COMP_WORDS[i]}
        if _orvane_takes_value "$word"; then
            i=$((i + 1))
        elif [[ " $(_orvane_subcommands "$path") " == *" $word "* ]]; then
            path=${path:+$path }$word
        fi
    done
}

_orvane_files() {
    compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen -f -- "$1")
}

_orvane_words() {
    mapfile -t COMPREPLY < <(compgen -W "$1" -- "$2")
}

_orvane() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} path
    COMPREPLY=()
    _orvane_find_path
    case $previous in
    --input)
        _orvane_files "$current"
        mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(
            compgen -W "sine triangle square sweep -" -- "$current")
        return
        ;;
    -o | --output)
        _orvane_files "$current"
        return
        ;;
    esac
    if _orvane_takes_value "$previous"; then
        return
    fi
    if [[ $current == -* ]]; then
        _orvane_words "$(_orvane_options "$path") --host --port --timeout --json --csv -h --help" \
            "$current"
        return
    fi
    case $path in
    drive | replay | "config check" | dump) _orvane_files "$current" ;;
    *) _orvane_words "$(_orvane_subcommands "$path")" "$current" ;;
    esac
}

complete -F _orvane orvane
