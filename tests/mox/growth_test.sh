#!/usr/bin/env bash
# The work of a command grows with its material and not with the square of it. Work is counted in
# instructions: from n to 2n things it grows by what it grew from none to n, and a little more.
# Usage: growth_test.sh MOX
set -euo pipefail

mox=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

# lines N TEXT: so many lines of it, with their numbers for each &.
lines() {
    seq "$1" | sed "s|.*|$2|"
}

# material N NODES EDGES BINDINGS: each of these is the text of a line.
material() {
    echo '<material version="1"><nodes><node id="p" type="Lost" version="0"/>'
    echo '<node id="t" type="CoreTexture" version="0"/>'
    lines "$1" "$2"
    echo '</nodes><edges>'
    lines "$1" "$3"
    echo '</edges><bindings>'
    lines "$1" "$4"
    echo '</bindings></material>'
}

# count ARGUMENT...: the instructions of a command.
count() {
    local status=0
    valgrind --tool=cachegrind --cache-sim=no --cachegrind-out-file=/dev/null "$mox" "$@" \
        >out 2>messages || status=$?
    [ "$status" -le 1 ] || {
        tail -n 5 messages >&2
        return 1
    }
    sed -n 's/.*I *refs: *//p' messages | tr -d ,
}

# grows COMMAND NODES EDGES BINDINGS
grows() {
    local n=2000 none once twice
    material 0 "${@:2}" >m.xml
    none=$(count $1 m.xml)
    material $n "${@:2}" >m.xml
    once=$(count $1 m.xml)
    material $((2 * n)) "${@:2}" >m.xml
    twice=$(count $1 m.xml)
    echo "$1: $none, $once, $twice instructions"
    [ $(((twice - once) * 5)) -lt $(((once - none) * 6)) ] || {
        echo "the work of mox $1 grows too fast with $2 $3" >&2
        exit 1
    }
}

maths='<node id="n&" type="CoreMaths" version="0"/>'
named='<node id="n&" type="CoreConstant" version="0"><property name="Name" kind="string" value="c&"/></node>'
referring='<node id="n&" type="CoreTexture" version="0"><property name="Reference" kind="node" value="t"/></node>'
into='<edge tail="t" tailPort="out_red" head="p" headPort="in&"/>'
from='<edge tail="p" tailPort="out&" head="n&" headPort="in_value1"/>'
values='<binding stream="float" tag="c&" default="1"/>'

grows check "$referring" '' ''
grows check '' "$into" ''
grows graph "$maths" "$from" ''
grows check "$named" '' "$values"
grows bindings "$named" '' "$values"
