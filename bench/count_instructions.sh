#!/usr/bin/env bash
# Compares the instruction counts of three fixed exports with the record next to this script, and
# fails if one has grown by more than 10%.
# Usage: bench/count_instructions.sh MOX MATERIAL_MAKER [--update]
# --update rewrites the record; commit it together with the change that causes the difference.
set -euo pipefail

mox=$1
maker=$2
here=$(cd "$(dirname "$0")" && pwd)
record=$here/instruction_counts.txt
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cp "$here/../examples/waving_flag.xml" "$work/waving_flag.xml"
"$maker" chain 1000 >"$work/chain_1000.xml"
"$maker" layered 1000 >"$work/layered_1000.xml"

# The C library selects its string functions by processor. With the wide ones disabled, all machines
# execute the same instructions.
export GLIBC_TUNABLES=glibc.cpu.hwcaps=-AVX2,-AVX512F,-AVX512VL,-AVX512BW,-ERMS,-FSRM,-BMI2,-MOVBE
export LC_ALL=C

count() {
    valgrind --tool=callgrind --callgrind-out-file=/dev/null "$mox" export "$work/$1.xml" \
        2>&1 >"$work/$1.out" | sed -n 's/.*Collected : *//p'
}

if [ "${3-}" = --update ]; then
    for name in waving_flag chain_1000 layered_1000; do
        echo "$name $(count "$name")"
    done >"$record"
    cat "$record"
    exit
fi

status=0
while read -r name recorded; do
    counted=$(count "$name")
    change=$(((counted - recorded) * 1000 / recorded))
    echo "$name: $counted instructions, $recorded recorded, change $change in a thousand"
    if [ "$change" -gt 100 ]; then
        echo "$name has grown by more than a tenth. Find out why; if it has to be, update the record:"
        echo "bench/count_instructions.sh $mox $maker --update"
        status=1
    elif [ "$change" -lt -100 ]; then
        echo "$name has become quicker by more than a tenth: update the record, so that it stays so."
    fi
done <"$record"
exit $status
