#!/usr/bin/env bash
# Checks that a program that runs out of memory reports it and fails normally instead of being
# aborted.
# Usage: memory_end_test.sh MOX MATERIAL_MAKER
set -euo pipefail

mox=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

# limited KILOBYTES ARGUMENT...: runs a command with a limited address space.
limited() {
    status=0
    (ulimit -v "$1" && exec "$mox" "${@:2}") 2>messages || status=$?
    [ "$status" -le 1 ] || { echo "$1 kB: status $status: $(cat messages)" >&2; exit 1; }
}

"$2" chain 20000 >chain.xml

# The program itself fits into the smallest address-space limit; this chain exceeds the largest.
failed=0
for limit in 250000 300000 350000; do
    limited "$limit" export chain.xml -o out
    if [ "$status" -eq 1 ] && grep -q '^mox: chain.xml: there is not enough memory' messages; then failed=$((failed + 1)); fi
done
[ "$failed" -gt 0 ] || { echo "memory did not run out: $(cat messages)" >&2; exit 1; }

# Many materials at a time: those for which memory runs out fail, and the summary counts them.
mkdir many
"$2" chain 2000 >many/1.xml
for i in {2..12}; do
    cp many/1.xml "many/$i.xml"
done
failed=0
for limit in 150000 180000 210000 250000 300000 400000; do
    rm -rf out
    limited "$limit" export many -o out -j 8
    exported=$(sed -n 's/^mox: \([0-9]*\) exported.*/\1/p' messages)
    [ "$(find out -name '*.cg' 2>/dev/null | wc -l)" -eq $((2 * ${exported:-0})) ] ||
        { echo "$limit kB: $(cat messages; ls out)" >&2; exit 1; }
    if grep -q '^mox: many/.*there is not enough memory' messages; then failed=$((failed + 1)); fi
done
[ "$failed" -gt 0 ] || { echo "memory did not run out for materials: $(cat messages)" >&2; exit 1; }
