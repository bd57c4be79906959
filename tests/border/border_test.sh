#!/usr/bin/env bash
# Hosts and plug-ins that use only the installed package, each built with either compiler, work with
# each other and with the library of this build. Usage: border_test.sh BUILD-FOLDER
set -euo pipefail
build=$1
source=$(cd "$(dirname "$0")/../.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$build" --prefix "$work/installed" >/dev/null

build_apart() { # arguments: compiler, source folder
    local name
    name=$work/$(basename "$2")-$1
    cmake -G Ninja -S "$2" -B "$name" -DCMAKE_CXX_COMPILER="$1" -DCMAKE_BUILD_TYPE=Release \
        -DCMAKE_CXX_FLAGS="-Wall -Wextra -Werror" -DCMAKE_PREFIX_PATH="$work/installed" >"$work/log" &&
        cmake --build "$name" >>"$work/log" || {
        cat "$work/log"
        exit 1
    }
}

# Copies, so that nothing else in the source tree is accessible.
cp -r "$source/examples/plugin" "$source/examples/host" "$source/tests/border" "$work"
compilers=(g++ clang++)
for compiler in "${compilers[@]}"; do
    build_apart "$compiler" "$work/plugin"
    build_apart "$compiler" "$work/border"
    build_apart "$compiler" "$work/host"
    "$work/host-$compiler/build_material" "$source/examples/rim_light.xml" "$work/built-$compiler"
    "$work/installed/bin/mox" check "$work/built-$compiler/rim_light.xml"
done
for host in "${compilers[@]}"; do
    for plugin in "${compilers[@]}"; do
        "$work/border-$host/host" "$work/plugin-$plugin/checker.so" || {
            echo "a host by $host with a plug-in by $plugin"
            exit 1
        }
    done
done
"$source/tests/plugins/exports_test.sh" "$work/plugin-g++/checker.so"
"$source/tests/plugins/exports_test.sh" "$work/plugin-clang++/checker.so"

# Builds the same plug-in again, without CMake.
export PKG_CONFIG_PATH=$work/installed/lib/pkgconfig
read -ra flags < <(pkg-config --cflags --libs mox)
g++ -std=c++20 -fPIC -shared -fvisibility=hidden -o "$work/checker.so" "$work"/plugin/*.cpp \
    -Wl,--version-script="$(pkg-config --variable=pluginmap mox)" "${flags[@]}"
LD_LIBRARY_PATH=$work/installed/lib "$work/border-g++/host" "$work/checker.so"

# A plug-in installed next to the others is found automatically.
cmake --install "$work/plugin-clang++" --prefix "$work/installed" >/dev/null
"$work/installed/bin/mox" catalogue >"$work/catalogue"
grep -q '^Checker ' "$work/catalogue"
