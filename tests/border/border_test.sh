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

write_material() { # argument: a number of squares, which the plug-in refuses below 1
    cat <<END
<material version="1">
  <nodes>
    <node id="uv" type="CoreUv" version="0"/>
    <node id="squares" type="Checker" version="0">
      <property name="Squares" kind="integer" value="$1"/>
    </node>
    <node id="surface" type="Surface" version="0"/>
  </nodes>
  <edges>
    <edge tail="uv" tailPort="read" head="squares" headPort="in_uv"/>
    <edge tail="squares" tailPort="out_value" head="surface" headPort="in_alpha"/>
  </edges>
</material>
END
}

# Builds materials with the installed plug-in: its code is in the program, and its exception arrives
# as a message.
use_plugin() { # arguments: compiler of the host, what the plug-in was built with
    local host=$work/host-$1/build_material
    rm -rf "$work/built"
    "$host" "$work/squares.xml" "$work/built" >/dev/null 2>"$work/errors" &&
        grep -q 'floor(.*8' "$work/built/squares.fragment.essl" &&
        ! "$host" "$work/refused.xml" "$work/built" >/dev/null 2>"$work/errors" &&
        grep -q '"Squares" must be at least 1' "$work/errors" || {
        echo "a host by $1 with a plug-in by $2"
        cat "$work/errors"
        exit 1
    }
}

# Copies, so that nothing else in the source tree is accessible.
cp -r "$source/examples/plugin" "$source/examples/host" "$work"
write_material 8 >"$work/squares.xml"
write_material 0 >"$work/refused.xml"
compilers=(g++ clang++)
for compiler in "${compilers[@]}"; do
    build_apart "$compiler" "$work/plugin"
    build_apart "$compiler" "$work/host"
    "$source/tests/plugins/exports_test.sh" "$work/plugin-$compiler/checker.so"
    "$work/host-$compiler/build_material" "$source/examples/rim_light.xml" "$work/built-$compiler"
    "$work/installed/bin/mox" check "$work/built-$compiler/rim_light.xml"
done
for plugin in "${compilers[@]}"; do
    # A plug-in installed next to the others is found automatically.
    cmake --install "$work/plugin-$plugin" --prefix "$work/installed" >/dev/null
    for host in "${compilers[@]}"; do
        use_plugin "$host" "$plugin"
    done
done

# Builds the same plug-in again, without CMake.
export PKG_CONFIG_PATH=$work/installed/lib/pkgconfig
read -ra flags < <(pkg-config --cflags --libs mox)
g++ -std=c++20 -fPIC -shared -fvisibility=hidden -o "$(pkg-config --variable=plugindir mox)/checker.so" \
    "$work"/plugin/*.cpp -Wl,--version-script="$(pkg-config --variable=pluginmap mox)" "${flags[@]}"
use_plugin g++ pkg-config
