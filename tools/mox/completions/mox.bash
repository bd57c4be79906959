# Completes the command line of mox in bash.
_mox()
{
    local word=${COMP_WORDS[COMP_CWORD]}
    local -a candidates source
    mapfile -t candidates < <("$1" complete -- "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null)
    case ${candidates-} in
    :files) source=(-f) ;;
    :folders) source=(-d) ;;
    *) source=(-W "${candidates[*]%%$'\t'*}") ;;
    esac
    [[ ${source[0]} == -W ]] || compopt -o filenames 2>/dev/null
    mapfile -t COMPREPLY < <(compgen "${source[@]}" -- "$word")
}
complete -F _mox mox
