# Completes tessarok's commands, options and values in bash.

_tessarok_words() {
    COMPREPLY=($(compgen -W "$1" -- "$2"))
}

_tessarok_paths() {
    local IFS=$'\n'
    compopt -o filenames 2> /dev/null
    COMPREPLY=($(compgen "$1" -- "$2"))
}

# The words are anything that was typed once, so no shell may take them for its own.
_tessarok_learned() {
    local line word
    while IFS= read -r line; do
        word=${line%%: *}
        [[ $word != "$line" && $word == "$1"* ]] && COMPREPLY+=("$(printf %q "$word")")
    done < <(tessarok learned 2> /dev/null)
}

_tessarok() {
    local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD - 1]}
    COMPREPLY=()
    # bash takes --from=ru for three words.
    if [[ $cur == '=' ]]; then
        cur=''
    elif [[ $prev == '=' ]]; then
        prev=${COMP_WORDS[COMP_CWORD - 2]}
    fi

    # The command, and where it stands: behind the program's own options.
    local command='' at=0 i
    for ((i = 1; i < COMP_CWORD; i++)); do
        case ${COMP_WORDS[i]} in
            --resources)
                ((i++))
                [[ ${COMP_WORDS[i]} == '=' ]] && ((i++))
                ;;
            -*) ;;
            *)
                command=${COMP_WORDS[i]} at=$i
                break
                ;;
        esac
    done

    # What follows -- in a terminal is a command line of its own.
    for ((i = at + 1; i < COMP_CWORD; i++)); do
        [[ $command == terminal && ${COMP_WORDS[i]} == -- ]] || continue
        if declare -F _command_offset > /dev/null; then
            _command_offset $((i + 1))
        else
            _tessarok_paths -c "$cur"
        fi
        return
    done

    case $prev in
        --resources | --home) _tessarok_paths -d "$cur" && return ;;
        --from) _tessarok_words 'en ru' "$cur" && return ;;
        --ru-streak | --en-streak) return ;;
    esac

    if [[ $cur == -* ]]; then
        local options='--help --resources'
        case $command in
            '') options+=' --version' ;;
            type) options+=' --from --no-lists' ;;
            explain) options+=' --json --no-lists --ru-streak --en-streak' ;;
            learned | status) options+=' --json' ;;
            replay) options+=' --home' ;;
            x11) options+=' --autostart' ;;
        esac
        _tessarok_words "$options" "$cur"
        return
    fi

    case $command in
        '')
            _tessarok_words 'type explain learned replay terminal on off pause quit layout status x11
                report check-data' "$cur"
            ;;
        learned)
            if [[ ${COMP_WORDS[at + 1]} == forget ]] && ((COMP_CWORD > at + 1)); then
                _tessarok_learned "$cur"
            else
                _tessarok_words forget "$cur"
            fi
            ;;
        replay | report) _tessarok_paths -f "$cur" ;;
        check-data) _tessarok_paths -d "$cur" ;;
    esac
}

complete -F _tessarok tessarok
