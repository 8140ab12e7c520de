# Completion of the command noctara in bash.

# _noctara_files WORD [ENDING]: offers folders and files, or folders and the files with this ending.
# The ending / gives folders only.
_noctara_files() {
    compopt -o filenames 2> /dev/null
    mapfile -t COMPREPLY < <({ compgen -d -- "$1"; compgen -f -X "!*${2-}" -- "$1"; } | sort -u)
}

# _noctara_words WORD CHOICE...: offers the choices that begin with the word.
_noctara_words() {
    mapfile -t COMPREPLY < <(compgen -W "${*:2}" -- "$1")
}

_noctara() {
    local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    COMPREPLY=()

    # bash splits --unit=g into three words.
    if [[ $word == = ]]; then
        word=
    elif [[ $previous == = ]]; then
        previous=${COMP_WORDS[COMP_CWORD - 2]}
    fi

    if ((COMP_CWORD == 1)); then
        _noctara_words "$word" night replay detect capabilities -h --help
        return
    fi

    case $previous in
    --unit) _noctara_words "$word" g mg m/s2 && return ;;
    --axes) _noctara_words "$word" android ios && return ;;
    --sensitivity) _noctara_words "$word" {0..9} && return ;;
    --timezone)
        _noctara_words "$word" UTC "$(awk '!/^#/ { print $3 }' /usr/share/zoneinfo/zone.tab)"
        return
        ;;
    --trace) _noctara_files "$word" && return ;;
    --root) _noctara_files "$word" / && return ;;
    --settings) _noctara_files "$word" .plist && return ;;
    --scenario) _noctara_files "$word" .toml && return ;;
    --motion) _noctara_files "$word" .csv && return ;;
    --motion-at | --rate | --start | --end) return ;;
    esac

    local options='-h --help' recording='--unit --axes --rate'
    case ${COMP_WORDS[1]} in
    night)
        options+=" --log --trace --settings --root --motion --motion-at $recording"
        options+=" --start --end --timezone"
        ;;
    replay) options+=" --scenario --log --start --end --timezone" ;;
    detect) options+=" --sensitivity $recording" ;;
    capabilities) ;;
    *) return ;;
    esac

    if [[ $word == -* ]]; then
        _noctara_words "$word" "$options"
    elif [[ ${COMP_WORDS[1]} == replay ]]; then
        _noctara_files "$word" .jsonl
    elif [[ ${COMP_WORDS[1]} == detect ]]; then
        _noctara_files "$word" .csv
    else
        _noctara_files "$word" .toml
    fi
}

complete -F _noctara noctara
