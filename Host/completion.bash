# Completion of qvfilter's command line in bash; what there is, the tool itself tells.
_qvfilter() {
    local tool=${COMP_WORDS[0]} command=${COMP_WORDS[1]} current=${COMP_WORDS[COMP_CWORD]} words=
    if ((COMP_CWORD == 1)); then
        words="--help --version $("$tool" --help 2>/dev/null | sed -n '/^Subcommands:/,$s/^  \([a-z]*\) .*/\1/p')"
    elif [[ $current == -* ]]; then
        words=$("$tool" "$command" --help 2>/dev/null | grep -oE '^ +-[^ ]+' | tr ',' ' ')
    else
        case ${COMP_WORDS[COMP_CWORD - 1]} in
            -e | --effect) words=$("$tool" list --kind effect 2>/dev/null | cut -d ' ' -f 1) ;;
            transition) words=$("$tool" list --kind transition 2>/dev/null | cut -d ' ' -f 1) ;;
            show | graph | bench) words=$("$tool" list 2>/dev/null | cut -d ' ' -f 1) ;;
            export) words=kdenlive ;;
        esac
    fi
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
}
complete -o default -F _qvfilter qvfilter  # files where nothing else fits
