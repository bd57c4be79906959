#!/usr/bin/env bash
# Checks that materials with very many nodes, edges, properties and references are processed
# correctly with a stack of 256 KiB. growth_test.sh measures how the work grows.
# Usage: scale_test.sh MOX PER_MILLE, of the full sizes
set -euo pipefail

mox=$1
per_mille=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
ulimit -s 256

# A full chain of a million nodes requires 16 GB.
needed_kb=$((16 * 1000 * per_mille))
if [ "$(awk '/MemAvailable/ { print $2 }' /proc/meminfo)" -lt "$needed_kb" ]; then
    echo "skipped: this takes $needed_kb kB of memory"
    exit 77
fi

fail() {
    echo "$*" >&2
    exit 1
}

# material NAME NODES EDGES SIZE: writes a document from the output of two awk programs; n is the
# size.
material() {
    size=$(($4 * per_mille / 1000))
    {
        echo '<material version="1"><nodes>'
        awk -v n="$size" "BEGIN { $2 }"
        echo '</nodes><edges>'
        awk -v n="$size" "BEGIN { $3 }"
        echo '</edges></material>'
    } >"$1.xml"
}

# run NAME ARGUMENT...: writes the output to NAME.out and prints the resources used.
run() {
    local name=$1 begin=$EPOCHREALTIME status=0 took
    shift
    "$mox" "$@" >"$name.out" 2>"$name.err" || status=$?
    took=$(((${EPOCHREALTIME/./} - ${begin/./}) / 1000))
    echo "$name: size $size, $took ms, status $status"
    [ "$status" -le 1 ] || fail "$name: $(head -c 1000 "$name.err")"
}

# expect FILE PATTERN COUNT: checks the number of matching lines.
expect() {
    local count
    count=$(grep -c -- "$2" "$1" || true)
    [ "$count" -eq "$3" ] || fail "$1: $count lines are like \"$2\", not $3: $(head -c 500 "$1")"
}

maths='printf "<node id=\"n%d\" type=\"CoreMaths\" version=\"0\"/>\n", i'
surface='print "<node id=\"s\" type=\"Surface\" version=\"0\"/>"'
join='printf "<edge tail=\"n%d\" tailPort=\"out_value\" head=\"n%d\" headPort=\"in_value1\"/>\n"'
show='printf "<edge tail=\"n%d\" tailPort=\"out_value\" head=\"s\" headPort=\"in_colour\"/>\n", n - 1'
chain_nodes="for (i = 0; i < n; ++i) $maths; $surface"
chain_edges="for (i = 1; i < n; ++i) $join, i - 1, i; $show"

material chain "$chain_nodes" "$chain_edges" 1000000
run chain export --shader-graph chain.xml
expect chain.out '^\[.*"mathsCode"' "$size"
expect chain.out '\.out_value -> .*\.in_value1' $((size - 1))
rm chain.*

material programs "$chain_nodes" "$chain_edges" 100000
run programs export programs.xml
expect programs.out '^	mathsCode.*( value' "$size"

material fan "for (i = 0; i <= n; ++i) $maths" "for (i = 1; i <= n; ++i) $join, 0, i" 100000
run fan export --shader-graph fan.xml
expect fan.out '^\[1\]\.out_value -> .*\.in_value1' "$size"

material properties 'print "<node id=\"n\" type=\"CoreMaths\" version=\"0\">"
    for (i = 0; i < n; ++i) printf "<property name=\"p%d\" kind=\"string\" value=\"x\"/>\n", i
    print "</node>"' '' 10000
run properties check properties.xml
expect properties.out 'unknown-property' "$size"
run properties format properties.xml
expect properties.xml '<property name="p' "$size"

first='print "<node id=\"n0\" type=\"CoreTexture\" version=\"0\"/>"'
texture='printf "<node id=\"n%d\" type=\"CoreTexture\" version=\"0\"><property name=\"Reference\"" \
    " kind=\"node\" value=\"n%d\"/></node>\n", i'
material references "$first; for (i = 1; i <= n; ++i) $texture, 0" '' 100000
run references check references.xml
expect references.out 'please attach a texture coordinate' $((size + 1))

# Every node of a chain follows the references to their end for its name, so this work is quadratic.
material reference_chain "$first; for (i = 1; i <= n; ++i) $texture, i - 1" '' 10000
run reference_chain check reference_chain.xml
expect reference_chain.out 'please attach a texture coordinate' $((size + 1))
