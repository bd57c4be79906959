#!/usr/bin/env bash
# Ninja and Make export a material when one of its inputs is newer, and else do nothing, whatever
# signs are in the names. Usage: build_systems_test.sh MOX PLUGIN DOCUMENT
set -euo pipefail

mox=$1 plugin=$2 document=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
name='a b$c#1:2'
mkdir 'in put' 'plug ins'
cp "$document" "in put/$name.xml"
cp "$plugin" 'plug ins/own.so'
printf '"%s" --plugins "plug ins" export "in put/$1.xml" -o out --depfile out/d && echo >>runs\n' \
    "$mox" >export.sh

expect_runs() {
    local count
    count=$(wc -l <runs)
    if [ "$count" -ne "$1" ]; then
        echo "$builder: $count exports instead of $1 after $2" >&2
        exit 1
    fi
}

check() {
    builder=$1
    : >runs
    rm -rf out
    "$@" >/dev/null
    expect_runs 1 'the first build'
    "$@" >/dev/null
    expect_runs 1 'a build with nothing to do'
    local runs=1
    for input in "in put/$name.xml" 'plug ins/own.so'; do
        sleep 0.02
        touch "$input"
        "$@" >/dev/null
        expect_runs $((++runs)) "touching $input"
        "$@" >/dev/null
        expect_runs $runs "building again behind $input"
    done
}

cat >build.ninja <<'END'
rule export
  command = bash export.sh 'a b$$c#1:2'
  depfile = out/d
  restat = 1
build out/a$ b$$c#1$:2.vertex.cg out/a$ b$$c#1$:2.fragment.cg: export
END
check ninja

cat >Makefile <<'END'
out/a\ b$$c\#1\:2.vertex.cg out/a\ b$$c\#1\:2.fragment.cg &:
	bash export.sh 'a b$$c#1:2'
	touch 'out/a b$$c#1:2.vertex.cg' 'out/a b$$c#1:2.fragment.cg'
-include out/d
END
check make

# A deleted input is no error but a reason to export again.
rm 'plug ins/own.so'
make >/dev/null
expect_runs 4 'deleting a plug-in'
