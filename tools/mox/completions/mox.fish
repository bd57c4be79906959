# Completes the command line of mox in fish.
function __mox_candidates
    set -l words (commandline -opc)
    set -l word (commandline -ct)
    env $words[1] complete -- $words[2..] "$word" 2>/dev/null
end
complete -c mox -f -a '(__mox_candidates | string match -v ":*")'
complete -c mox -n '__mox_candidates | string match -q :files' -F
complete -c mox -n '__mox_candidates | string match -q :folders' -a '(__fish_complete_directories)'
