#!/usr/bin/env bash
# Checks that a program terminated by a signal stops in the middle of its work and leaves no partial
# files, temporary files or child processes behind. Usage: signals_test.sh MOX MATERIAL_MAKER
set -euo pipefail

mox=$1
work=$(mktemp -d)
# A child that a signal ends before it runs its program also runs this.
trap '[ "$BASHPID" != $$ ] || rm -rf "$work"' EXIT
cd "$work"
mkdir tmp
export TMPDIR=$work/tmp

fail() {
    echo "$*" >&2
    exit 1
}

# await COMMAND...: waits until it succeeds.
await() {
    local i
    for i in {1..3000}; do
        ! "$@" 2>/dev/null || return 0
        sleep 0.02
    done
    fail "this does not happen: $*"
}

# end PID: sends the signal that build systems send, and expects that the program is terminated by
# it.
end() {
    local status=0
    kill -TERM "$1"
    wait "$1" || status=$?
    [ "$status" -eq 143 ] || fail "status $status: $(cat messages)"
}

# The first material takes long, so the second one is written in the meantime. An export that waited
# for the first would report both.
"$2" chain 100000 >long.xml
"$2" chain 2 >short.xml
"$mox" export long.xml short.xml -o out -j 2 --depfile out.d 2>messages &
await test -s out/short.fragment.cg
sleep 1 # until the export has counted it
end $!
grep -q '^mox: 1 exported, 1 distinct, 0 failed, .*; stopped before exporting 1 more$' messages ||
    fail "another summary: $(cat messages)"
[ "$(find . -newer short.xml -type f | sort | tr '\n' ' ')" = \
    "./messages ./out/.mox-outputs ./out/short.fragment.cg ./out/short.vertex.cg " ] || fail "$(find .)"
rm long.xml

# Every document has either its old or its new content.
mkdir documents
for i in {1..60}; do
    "$2" chain 20 | sed 's/^ *//' >"documents/$i.xml"
done
cp documents/1.xml old.xml
cp old.xml new.xml
"$mox" format new.xml
for run in {1..6}; do
    "$mox" format documents &
    sleep "0.0$((RANDOM % 10))"
    kill -TERM $! 2>/dev/null || true
    wait $! || true
    for document in documents/*; do
        cmp -s "$document" old.xml || cmp -s "$document" new.xml || fail "$document is broken"
    done
    [ -z "$(find . -name '.mox-*.tmp')" ] || fail "left: $(find . -name '.mox-*.tmp')"
    cp old.xml "documents/$run.xml"
done

# A diagram that takes Graphviz long. Checks whether processes run in the temporary folder:
is_drawing() {
    [ -n "$(find /proc -maxdepth 2 -path '/proc/[0-9]*/cwd' -lname "$TMPDIR/*" 2>/dev/null)" ]
}
"$mox" --help | grep -q '^  graph ' || exit 0
"$2" chain 3000 >wide.xml
"$mox" graph wide.xml -o wide.svg 2>messages &
await is_drawing
end $!
! is_drawing || fail "a process is left"
[ -z "$(ls -A tmp)" ] || fail "left: $(find tmp)"
[ ! -e wide.svg ] || fail "a diagram is there"
