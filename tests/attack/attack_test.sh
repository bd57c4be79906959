#!/usr/bin/env bash
# Repeats a small-scale attack on the program. Whatever its input, the program must exit by itself
# with one of its own statuses, print only lines that are safe for a terminal, run no command taken
# from a document, and leave no temporary files or processes behind. Most of it runs under the
# address sanitizer; memory limits require the ordinary program. The same seed makes the same inputs
# and choices.
# Usage: attack_test.sh SOURCE_TREE MATERIAL_MAKER MOX ASAN_BUILD [SEED]
set -euo pipefail

source=$1
maker=$2
ordinary=$3
asan=$4
mox=$asan/bin/mox
[ -x "$mox" ] || {
    echo "$mox is missing: cmake --preset asan && cmake --build --preset asan" >&2
    exit 1
}
RANDOM=${5-20240}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
export TMPDIR=$work/tmp LC_ALL=C
mkdir tmp in

fail() {
    echo "$*" >&2
    head -c 2000 "$work/messages" >&2
    exit 1
}

# Lists processes other than the test that run in its folder. Call it in a subshell.
processes() {
    cd /
    find /proc/[0-9]*/cwd -maxdepth 0 -lname "$work*" ! -path "/proc/$$/*" 2>/dev/null || true
}

# Runs a command and checks how it ends. Usage: attack STATUS|STATUS... COMMAND...
attack() {
    local statuses=$1 status=0 i
    shift
    timeout --kill-after 10 60 "$@" >"$work/output" 2>"$work/messages" </dev/null || status=$?
    [[ $status =~ ^($statuses)$ ]] || fail "status $status: $*"
    ! grep -q -e Sanitizer -e 'runtime error:' -e 'the decoder failed' "$work/messages" ||
        fail "a fault: $*"
    ! grep -q -P '[\x00-\x08\x0b-\x1f\x7f]|\xc2[\x80-\x9f]|\xe2\x80[\x8e\x8f\xa8-\xae]' \
        "$work/messages" || fail "a message with control characters: $*"
    [ ! -e PWNED ] || fail "a command of a document was run: $*"
    local left
    left=$(find . -name '.mox-*.tmp' -o -path './tmp/*')
    [ -z "$left" ] || fail "left $left: $*"
    for ((i = 0; i < 20; ++i)); do # a killed process needs a moment to disappear
        [ -n "$(processes)" ] || return 0
        sleep 0.1
    done
    fail "left $(processes): $*"
}

# Documents
cp "$source/examples/rim_light.xml" "$source/examples/two_maths.xml" . # the second one causes a warning
attack 0 "$mox" export rim_light.xml two_maths.xml -o expected
"$maker" "$RANDOM" 300 in "$source"/examples/*.xml "$source"/tests/mox/bad/*.xml
mkfifo in/fifo
head -c 200 "$source/examples/textures/rock.png" >in/broken.png
attack 1 "$mox" export in -o out -j 2 --depfile dependencies
for target in vertex fragment; do
    [ "$(ls out | grep -c "attack_.*$target.cg")" -gt 20 ] || fail 'hardly a broken material is exported'
done
attack '0|1' "$mox" export in -o out -j 2 --by-content --target glsl,spirv,msl
attack '0|1' "$mox" export in -o graphs --shader-graph
for format in '' --json --sarif --strict; do
    attack '0|1' "$mox" check in $format
done
rm in/*.xml
"$maker" "$RANDOM" 60 in "$source"/examples/*.xml
"$mox" export in/attack_*.xml -o out --depfile dependencies 2>messages || true
attack '0|1|2' make -n -f dependencies
attack '0|1' "$mox" format --check in
cp -r in formatted
attack '0|1' "$mox" format formatted
for i in {0..29}; do
    file=in/attack_$i.xml
    attack '0|1|2' "$mox" diff "$file" "in/attack_$((i + 1)).xml"
    attack '0|1|2' "$mox" diff "$file" "formatted/attack_$i.xml"
    attack '0|1' "$mox" bindings "$file"
    cp output bindings.xml
    attack '0|1' "$mox" bindings --read bindings.xml
    attack '0|1' "$mox" bindings --read "$file"
    attack '0|1' "$mox" graph "$file" -o graph.dot --shader
done

# Pictures
head -c 300 "$source/tests/preview/square.gltf" >broken.gltf
printf '#?RADIANCE\nFORMAT=32-bit_rle_rgbe\n\n-Y 0 +X 0\n' >in/empty.hdr
printf '\x89PNG\r\n\x1a\n\0\0\0\rIHDR\x7f\xff\xff\xff\x7f\xff\xff\xff\x08\x02\0\0\0' >in/huge.png
for i in {0..5}; do
    attack '0|1' "$mox" graph "in/attack_$i.xml" -o graph.svg
    attack '0|1' "$mox" preview "in/attack_$i.xml" -o preview.png --size 16
done
cp "$source/examples/tinted_texture.xml" in/
for texture in fifo broken.png empty.hdr huge.png . /dev/zero; do
    attack '0|1' "$mox" preview in/tinted_texture.xml -o preview.png --size 16 \
        --set "paintTexture=$texture" --max-decode-time 5
done
for mesh in broken.gltf in/fifo in/huge.png /dev/zero.obj in; do
    attack '0|1' "$mox" preview in/tinted_texture.xml -o preview.png --size 16 --mesh "$mesh"
done

# Plug-ins
hostile=$asan/tests/host/hostile
export MOX_PLUGIN_PATH=$hostile # its node types are named OPERATION-FAULT
words_of() {
    sed -n "/ $1\[\] =/,/};/p" "$source/tests/host/HostilePlugin.cpp" | grep -o '"[^"]*"' | tr -d '"'
}
mapfile -t faults < <(words_of faults)
for operation in $(words_of operations); do
    {
        echo '<material version="1"><nodes>'
        printf "<node id=\"%s\" type=\"$operation-%s\" version=\"0\"/>" \
            $(printf '%s\n' "${faults[@]}" "${faults[@]}" | sort)
        echo '</nodes><edges/><bindings><binding stream="float" tag="hostile" default="1"/>'
        echo '</bindings></material>'
    } >hostile.xml
    for command in 'check hostile.xml' 'bindings hostile.xml' 'export hostile.xml -o out' \
        'graph hostile.xml -o graph.dot' 'format --check hostile.xml' 'diff hostile.xml rim_light.xml' \
        "preview hostile.xml -o preview.png --node $operation-number.out_value --size 16" \
        "new $operation-number" "new $operation-bag"; do
        attack '0|1|2' "$mox" $command
    done
done
for row in label type library 'null row' 'null colour' 'short row' 'null header'; do
    HOSTILE_ROW=$row attack '0|1' "$mox" catalogue Faulty --icons icons
done
unset MOX_PLUGIN_PATH

# Command lines
words=(export check diff format bindings catalogue graph new preview complete manual --json -o
    --depfile --target glsl,spirv --set 'a=1;2' --frame nan --size 0 -1 '' . in/attack_1.xml
    /dev/null "$(printf '\033[31m\302\233')" CoreMaths ../../x)
for i in {1..60}; do
    line=()
    for ((n = 1 + RANDOM % 4; n > 0; --n)); do
        line+=("${words[RANDOM % ${#words[@]}]}")
    done
    attack '0|1|2' "$mox" "${line[@]}"
done

# Descriptors
for closed in '<&-' '>&-' '2>&-' '<&- >&-' '>&- 2>&-' '<&- >&- 2>&-'; do
    rm -rf out
    attack '0|1' bash -c \
        "'$mox' export rim_light.xml two_maths.xml -o out --depfile dependencies $closed"
    diff -r expected out || fail "other programs with $closed"
    ! grep -q 'warning' dependencies || fail "messages in a file with $closed"
done

# Limits
for kilobytes in 30000 60000 100000 140000 180000 250000; do
    for command in 'export in -o low -j 2' 'export in -o low -j 8 --target glsl' 'check in' \
        'format --check in' catalogue; do
        attack '0|1|127' bash -c "ulimit -v $kilobytes; '$ordinary' $command"
    done
done
for files in 4 6 8 12; do
    attack '0|1|127' bash -c "ulimit -n $files; '$ordinary' export in -o low -j 2"
done
attack '0|1' bash -c "ulimit -f 1; '$ordinary' export in -o low -j 2 --depfile dependencies"
