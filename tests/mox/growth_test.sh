#!/usr/bin/env bash
# Checks that a command's work grows with the size of its material rather than with its square. Work
# is counted in instructions: from n to 2n it may grow only slightly more than from 0 to n.
# Usage: growth_test.sh MOX
set -euo pipefail

mox=$1
tests=$(cd "$(dirname "$0")" && pwd)
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"

# lines N TEXT: prints N lines, with @ replaced by their numbers from 1 and % by the preceding
# number.
lines() {
    awk -v n="$1" -v text="$2" 'BEGIN {
        for (i = 1; i <= n; ++i) {
            line = text
            gsub(/@/, i, line)
            gsub(/%/, i - 1, line)
            print line
        }
    }'
}

# material N TYPE NODES EDGES BINDINGS: prints a material with a node n0 of the type and N lines of
# each text. If surface is set, it adds one more node and an edge to it.
surface=() # node, edge
material() {
    echo "<material version=\"1\"><nodes><node id=\"n0\" type=\"$2\" version=\"0\"/>${surface[0]-}"
    lines "$1" "$3"
    echo "</nodes><edges>${surface[1]-}"
    lines "$1" "$4"
    echo '</edges><bindings>'
    lines "$1" "$5"
    echo '</bindings></material>'
}

# count ARGUMENT...: prints the number of instructions of a command.
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

# grows COMMAND TYPE NODES EDGES BINDINGS [N]: checks the growth; arguments as for material. The
# command may name renamed.xml, which is the material with other ids.
grows() {
    local n=${6-2000} size work=()
    for size in 0 $n $((2 * n)); do
        material $size "${@:2:4}" >m.xml
        sed 's/="n\([0-9]\)/="m\1/g' m.xml >renamed.xml
        work+=("$(count $1 m.xml)")
    done
    echo "$1: ${work[*]} instructions"
    [ $(((work[2] - work[1]) * 5)) -lt $(((work[1] - work[0]) * 6)) ] || {
        echo "the work of mox $1 grows too fast with $2 $3" >&2
        exit 1
    }
}

maths='<node id="n@" type="CoreMaths" version="0"/>'
named='<node id="n@" type="CoreConstant" version="0"><property name="Name" kind="string" value="c@"/></node>'
referring='<node id="n@" type="CoreTexture" version="0"><property name="Reference" kind="node" value="n0"/></node>'
chain='<edge tail="n%" tailPort="out_value" head="n@" headPort="in_value1"/>'
fan='<edge tail="n0" tailPort="out_value" head="n@" headPort="in_value1"/>'
into='<edge tail="n@" tailPort="out_value" head="n0" headPort="in@"/>'
from='<edge tail="n0" tailPort="out@" head="n@" headPort="in_value1"/>'
values='<binding stream="float" tag="c@" default="1"/>'

grows 'export --shader-graph' CoreMaths "$maths" "$chain" ''
grows 'export --shader-graph' CoreMaths "$maths" "$fan" ''
grows 'diff renamed.xml' CoreMaths "$maths" "$chain" ''
grows graph Lost "$maths" "$from" ''
grows check Lost "$maths" "$into" ''
grows check CoreTexture "$referring" '' ''
grows check CoreMaths "$named" '' "$values"
grows bindings CoreMaths "$named" '' "$values"

# Every node has a different function in the programs, and all of them reach the surface.
surface=('<node id="end" type="Surface" version="0"/>'
    '<edge tail="n0" tailPort="out_value" head="end" headPort="in_emission"/>')
own='<node id="n@" type="CoreMaths" version="0"><property name="Default Value 2" kind="float" value="@"/></node>'
towards='<edge tail="n@" tailPort="out_value" head="n%" headPort="in_value1"/>'
grows 'export --target essl' CoreMaths "$own" "$towards" '' 5000
surface=()

# A hundred node types from files add at most 5% to the work for a material that uses none of them.
mkdir nodes
for i in $(seq 100); do
    sed "s/type=\"TestDetail\"/type=\"Test$i\"/" "$tests/nodes/TestDetail.xml" >"nodes/$i.xml"
done
material 10 CoreMaths "$maths" "$chain" '' >m.xml
without=$(count export m.xml)
with=$(MOX_NODE_PATH=nodes count export m.xml)
echo "export: $without instructions, $with with a hundred node files"
[ $(((with - without) * 20)) -le "$without" ] || {
    echo "node files that are not used cost too much" >&2
    exit 1
}
