#!/usr/bin/env bash
# A program that runs out of memory says so and fails like any other; it is not ended in the middle.
# Usage: memory_end_test.sh MOX MATERIAL_MAKER
set -euo pipefail

mox=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
"$2" chain 20000 >chain.xml

# The program by itself takes less than the first limit of its addresses, and this chain more than the
# last.
failed=0
for limit in 250000 300000 350000; do
    status=0
    (ulimit -v $limit && exec "$mox" export chain.xml -o out) 2>messages || status=$?
    [ "$status" -le 1 ] || { echo "$limit kB: status $status: $(cat messages)" >&2; exit 1; }
    if [ "$status" -eq 1 ] && grep -q '^mox: .*bad_alloc' messages; then failed=$((failed + 1)); fi
done
[ "$failed" -gt 0 ] || { echo "memory did not run out: $(cat messages)" >&2; exit 1; }
