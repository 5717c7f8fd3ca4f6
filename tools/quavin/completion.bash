# Completes quavin's commands and options, which it asks for itself, and file names. For zsh, first:
# autoload -U +X bashcompinit && bashcompinit

_quavin() {
    local tool=${COMP_WORDS[0]} command=${COMP_WORDS[1]} word=${COMP_WORDS[COMP_CWORD]} words=
    if [ "$COMP_CWORD" -eq 1 ] || [ "$command" = help ]; then
        words=$("$tool" help 2>/dev/null | sed -n '/^Commands:/,$s/^  \([a-z]*\) .*/\1/p')
        [ "$command" = help ] || words+=" help --help --version"
    elif [ "${word:0:1}" = - ]; then
        words=$("$tool" help "$command" 2>/dev/null | sed -n 's/^  \(-[^ ]*\).*/\1/p' | tr , ' ')
    fi
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
}
complete -o default -F _quavin quavin
