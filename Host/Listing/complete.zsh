#compdef qvfilter
# Completion of qvfilter's command lines, for zsh. Made by `qvfilter completion zsh`.

# Classes of the use $1, or what can be set of one.
_qvfilter_class() {
    local use=$1 class setting
    local -a found
    if [[ $PREFIX != *:* ]]; then
        found=(${${(k)_qvfilter_classes[(I)$use *]}#* })
        compadd -S '' -a found
        return
    fi
    class=${PREFIX%%:*}
    class=${_qvfilter_classes[$use $class]:-$_qvfilter_classes[$use ${${(L)class}//[-_ ]/}]}
    compset -P '*:'
    for setting in ${(s:|:)_qvfilter_properties[$class]}; do
        if [[ $PREFIX != *=* ]]; then
            found+=(${setting%%=*})
        elif [[ $setting == ${PREFIX%%=*}=* ]]; then
            compset -P '*='
            found=(${(s:,:)${setting#*=}})
            compadd -a found
            return
        fi
    done
    [[ $PREFIX == *=* ]] || compadd -S = -a found
}

# What stands in the table of values as $1.
_qvfilter_value() {
    local -a found
    case $1 in
        @none) _message 'a number' ;;
        @*) _qvfilter_class ${1#@} ;;
        ?*) found=(${(s:|:)1}); compadd -a found ;;
        *) _files ;;
    esac
}

_qvfilter() {
    local command name key
    local -a names
    local i
    for ((i = 2; i < CURRENT; ++i)); do
        [[ $words[i] == -* ]] && continue
        command=$words[i]
        break
    done
    if [[ -z $command ]]; then
        for key in ${(ok)_qvfilter_commands}; do names+=("$key:$_qvfilter_commands[$key]"); done
        _describe command names
        return
    fi
    if [[ $PREFIX == --*=* ]]; then
        name=${PREFIX%%=*}
        compset -P '*='
        _qvfilter_value "$_qvfilter_values[$command $name]"
        return
    fi
    if [[ $PREFIX == -* ]]; then
        for name in ${=_qvfilter_options[$command]}; do names+=("$name:$_qvfilter_helps[$command $name]"); done
        _describe option names
        return
    fi
    key="$command $words[CURRENT-1]"
    (( ${+_qvfilter_values[$key]} )) || key="$command "
    _qvfilter_value "$_qvfilter_values[$key]"
}

# As a file in fpath this is the function itself, called for the first time; sourced it only names it.
if [[ $zsh_eval_context[-1] == loadautofunc ]]; then
    _qvfilter "$@"
else
    compdef _qvfilter qvfilter
fi
