#!/usr/bin/env bash
# Completes command lines with the script for bash. Usage: completion_test.sh MOX
set -uo pipefail

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
mkdir folder
touch file 'a file'
source <("$1" completion bash)

# Words of the line, the last of which is to be completed, and what is expected.
expect() {
    local expected=$1
    shift
    COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
    _mox
    local found="${COMPREPLY[*]-}"
    if [ "$found" != "$expected" ]; then
        echo "completing \"$*\" gave \"$found\" instead of \"$expected\"" >&2
        exit 1
    fi
}

expect 'export' mox exp
expect '--plugins' mox --p
expect 'export' mox --plugins export exp
expect 'folder' mox --plugins f
expect 'file folder' mox export f
expect 'a file' mox export a
expect '--depfile --depfile-target' mox export --dep
expect '--plain --plugins' mox export --p
expect 'folder' mox export --output f
expect '' mox export -j f
expect '' mox catalogue f
expect 'bash fish zsh' mox completion ''
