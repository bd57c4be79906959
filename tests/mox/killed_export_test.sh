#!/usr/bin/env bash
# Checks that a killed export leaves either the old or the new content under each name, never part
# of it. An export that is asked to terminate also removes its temporary files.
# Usage: killed_export_test.sh MOX DOCUMENT DOCUMENT
set -euo pipefail

mox=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
mkdir 0 1
for i in {1..300}; do
    cp "$2" "0/m$i.xml"
    cp "$3" "1/m$i.xml"
done
for i in 0 1; do
    "$mox" export $i/m1.xml -o whole$i 2>/dev/null
done
md5sum whole?/* | cut -d' ' -f1 >sums

start=$(date +%s%N)
"$mox" export 0 -o out -j 4 2>/dev/null
duration=$(($(date +%s%N) - start))

# Sends a signal at a random time during an export.
kill_one() {
    status=0
    delay=$(((1 + RANDOM % 9) * duration / 10))
    timeout --foreground --preserve-status --signal "$2" \
        "$(printf '%d.%09d' $((delay / 1000000000)) $((delay % 1000000000)))" \
        "$mox" export $(($1 % 2)) -o out -j 4 2>messages || status=$?
    local parts
    parts=$(find out -name '*.cg' -exec md5sum {} + 2>/dev/null | grep -v -F -f sums || true)
    [ -z "$parts" ] || { echo "these are parts of a text: $parts" >&2; exit 1; }
}

killed=0
for run in {1..12}; do
    [ $((run % 3)) -ne 0 ] || rm -rf out # new files take a different code path
    kill_one "$run" KILL
    [ "$status" -eq 0 ] || killed=$((killed + 1))
done
[ "$killed" -gt 0 ] || { echo "every export was over before it was killed" >&2; exit 1; }

rm -rf out
stopped=0
signals=(TERM INT HUP)
for run in {1..12}; do
    kill_one "$run" "${signals[run % 3]}"
    if [ "$status" -gt 128 ] && grep -q 'stopped before' messages; then stopped=$((stopped + 1)); fi
    left=$(find . -name '.mox-*.tmp')
    [ -z "$left" ] || { echo "an ended export left $left" >&2; exit 1; }
done
[ "$stopped" -gt 0 ] || { echo "no export was stopped on its way" >&2; exit 1; }
