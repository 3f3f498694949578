# Completion of qvfilter's command lines, for bash 4.2 and later. Made by `qvfilter completion bash`.

# Offers the words that begin like $part; $head comes before it, $1 after it.
_qvfilter_offer() {
    local after=$1 word
    shift
    compopt +o default 2>/dev/null
    [[ -n $after ]] && compopt -o nospace 2>/dev/null
    for word; do
        printf -v word %q "$word"
        [[ $word == "$part"* ]] && COMPREPLY+=("$head$word$after")
    done
}

# Offers classes of the use $1, or what can be set of one.
_qvfilter_class() {
    local use=$1 key class setting IFS='|'
    local -a words=()
    if [[ $cur != *:* ]]; then
        for key in "${!_qvfilter_classes[@]}"; do
            [[ $key == "$use "* ]] && words+=("${key#* }")
        done
        _qvfilter_offer "" "${words[@]}"
        compopt -o nospace 2>/dev/null
        return
    fi
    class=${cur%%:*}
    key=${class,,}
    class=${_qvfilter_classes[$use $class]:-${_qvfilter_classes[$use ${key//[-_ ]/}]}}
    part=${cur##*:}
    head=${cur%"$part"}
    for setting in ${_qvfilter_properties[${class:-none}]}; do
        if [[ $part != *=* ]]; then
            words+=("${setting%%=*}")
        elif [[ $setting == "${part%%=*}="* ]]; then
            head+=${part%%=*}=
            part=${part#*=}
            IFS=,
            _qvfilter_offer "" ${setting#*=}
            return
        fi
    done
    _qvfilter_offer = "${words[@]}"
}

# Offers what stands in the table of values as $1.
_qvfilter_value() {
    local IFS='|'
    case $1 in
        @none) compopt +o default 2>/dev/null ;;
        @*) _qvfilter_class "${1#@}" ;;
        ?*) _qvfilter_offer "" $1 ;;
    esac
}

_qvfilter() {
    local line=${COMP_LINE:0:COMP_POINT} cur= part head= command= before i
    local -a words
    COMPREPLY=()
    read -ra words <<<"$line"
    if [[ $line != *[[:space:]] ]]; then
        cur=${words[-1]}
        unset 'words[-1]'
    fi
    [[ $cur == [\"\']* ]] && cur=${cur:1}
    part=$cur
    before=${words[-1]}
    for ((i = 1; i < ${#words[@]}; ++i)); do
        if [[ ${words[i]} != -* ]]; then
            command=${words[i]}
            break
        fi
    done
    if [[ -z $command ]]; then
        _qvfilter_offer "" "${!_qvfilter_commands[@]}" --help --help-all --version
    elif [[ $cur == --*=* ]]; then
        before=${cur%%=*}
        head=$before=
        part=${cur#*=}
        _qvfilter_value "${_qvfilter_values[$command $before]}"
    elif [[ $cur == -* ]]; then
        _qvfilter_offer "" ${_qvfilter_options[$command]}
    elif [[ -n ${_qvfilter_values[$command $before]+there} ]]; then
        _qvfilter_value "${_qvfilter_values[$command $before]}"
    else
        _qvfilter_value "${_qvfilter_values[$command ]}"
    fi
    # What is before a word break, as bash counts them, stays on the line.
    if [[ $cur == *[:=]* && $COMP_WORDBREAKS == *:* && $COMP_WORDBREAKS == *=* ]]; then
        head=${cur%"${cur##*[:=]}"}
        COMPREPLY=("${COMPREPLY[@]#"$head"}")
    fi
}

complete -o default -F _qvfilter qvfilter
