#compdef mox
# Completes the command line of mox in zsh.
local -a candidates
candidates=("${(@f)$($words[1] complete -- "${(@Q)words[2,CURRENT]}" 2>/dev/null)}")
case $candidates[1] in
:files) _files ;;
:folders) _files -/ ;;
*)
    candidates=("${(@)candidates//:/\\:}")
    candidates=("${(@)candidates/$'\t'/:}")
    _describe 'mox' candidates ;;
esac
