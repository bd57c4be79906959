#!/usr/bin/env bash
# Checks that the classes shared by hosts and plug-ins have the layout recorded for this interface
# version: sizes, offsets, and the order of virtual functions; and that every exported function
# still exists. A change that breaks this must also raise InterfaceVersion and update the record
# with --record.
# Usage: abi_test.sh [--record]
set -euo pipefail
cd "$(dirname "$0")"
source=$(cd ../.. && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

version=$(sed -nE 's/.*InterfaceVersion = ([0-9]+);/\1/p' "$source/mox/InterfaceVersion.h")
record=mox_materials.$version.abi.xz

# Types are read from debug information, which depends on the compiler.
cmake -G Ninja -S "$source" -B "$work/build" -DCMAKE_CXX_COMPILER=g++ -DCMAKE_BUILD_TYPE=Debug \
    -DCMAKE_CXX_FLAGS="-ffile-prefix-map=$source/=" -DMOX_BUILD_TESTS=OFF \
    -DMOX_BUILD_COMPILER=OFF -DMOX_BUILD_PICTURES=OFF -DMOX_BUILD_PREVIEW=OFF >"$work/log" && cmake --build "$work/build" --target mox_materials \
    >>"$work/log" || { cat "$work/log"; exit 1; }
abidw --headers-dir "$source/mox" --drop-private-types --no-show-locs --no-corpus-path \
    --no-comp-dir-path --suppressions suppressions.ini \
    "$(readlink -f "$(find "$work/build" -name libmox_materials.so)")" >"$work/current.abi"

# Additions are allowed; existing entries must not change.
is_compatible() {
    xz -dc "$record" >"$work/recorded.abi"
    abidiff --no-added-syms --suppressions suppressions.ini "$work/recorded.abi" "$work/current.abi"
}

if [ "${1-}" = --record ]; then
    if [ -f "$record" ] && ! is_compatible; then
        echo "raise InterfaceVersion first: programs in use rely on version $version as it is"
        exit 1
    fi
    rm -f mox_materials.*.abi.xz
    xz -9c "$work/current.abi" >"$record"
    exit 0
fi
[ "$(echo mox_materials.*.abi.xz)" = "$record" ] || {
    echo "the record is not that of version $version: run tests/abi/abi_test.sh --record"
    exit 1
}
is_compatible || {
    echo "the binary interface of version $version has changed: raise InterfaceVersion"
    exit 1
}
