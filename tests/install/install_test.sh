#!/usr/bin/env bash
# Checks that the installed tree is complete and works from any location, without environment
# variables or the build tree. Usage: install_test.sh BUILD-FOLDER SOURCE-FOLDER
set -euo pipefail
build=$1
source=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

cmake --install "$build" --prefix "$work/first" >/dev/null
installed="$work/another place"
mv "$work/first" "$installed"
cd "$installed"

interface=$(sed -nE 's/.*InterfaceVersion = ([0-9]+);/\1/p' include/mox/InterfaceVersion.h)
for file in bin/mox libexec/mox/mox-decode lib*/libmox_materials.so lib*/libmox_materials.so."$interface" \
    lib*/libmox_{host,compile,decode,preview,pictures,editor}.a lib*/mox/mox_{core,library,surface}.so \
    lib*/mox/nodes/MathsArithmetic.xml lib*/cmake/Mox/MoxConfig.cmake \
    lib*/pkgconfig/mox{,-host,-compile,-preview,-pictures,-editor}.pc \
    include/mox/authoring/GuiNode.h include/mox/host/PluginSet.h include/mox/preview/MaterialPreview.h \
    share/mox/environment/environment.xml share/mox/environment/{unlit,depth,skinned}/environment.xml \
    share/mox/material.rng share/mox/node.rng share/man/man1/mox.1 \
    share/{bash-completion/completions/mox,fish/vendor_completions.d/mox.fish,zsh/site-functions/_mox} \
    share/doc/mox-materials/{README.md,docs/architecture.md,examples/rim_light.xml,examples/host/Main.cpp}; do
    [ -s "$file" ] || { echo "$file is missing"; exit 1; }
done

# Headers include only installed headers.
grep -rhoE '#include "[^"]+"' include | sort -u | sed -E 's/#include "(.*)"/\1/' |
    while read -r header; do
        [ -f "include/$header" ] || { echo "$header is included but not installed"; exit 1; }
    done

/usr/bin/python3 -B "$source/tests/docs/links_test.py" share/doc/mox-materials "$source"

# Nothing refers to the build or source tree.
if grep -rlIF -e "$build" -e "$source" .; then
    echo "the files above name the build tree"
    exit 1
fi
if readelf -d bin/mox libexec/mox/mox-decode lib*/*.so lib*/mox/*.so $(find . -name '_mox.*.so') | grep -E 'R(UN)?PATH' | grep -vF '[$ORIGIN'; then
    echo "the search paths above are not relative"
    exit 1
fi

example=$source/examples/rim_light.xml
run() { env -i "$@"; }
run "$installed/bin/mox" catalogue >"$work/catalogue"
run "$build"/bin/mox catalogue | cmp - "$work/catalogue"
run "$installed/bin/mox" export "$example" >"$work/export"
run "$build"/bin/mox export "$example" | cmp - "$work/export"
# The program finds its texture decoder, provided that there is a device to draw with.
if ! run "$installed/bin/mox" preview "$source/examples/tinted_texture.xml" -o "$work/picture.png" 2>"$work/errors"; then
    grep -q 'no Vulkan device' "$work/errors" || { cat "$work/errors"; exit 1; }
elif [ -s "$work/errors" ]; then
    cat "$work/errors"
    exit 1
fi
# The Python package, if it was built.
for package in "$installed"/lib/python3/dist-packages; do
    [ -d "$package" ] || break
    run PYTHONPATH="$package" /usr/bin/python3 -B -c 'import mox, sys
for part in mox.Library().open(sys.argv[1]).compile().files.values():
    sys.stdout.write(part.decode())' "$example" >"$work/python"
    grep -vx '' "$work/python" | cmp - <(grep -vxE '|// ------' "$work/export")
done
# Via a symbolic link to the program, and from a deleted folder.
ln -s "$installed/bin/mox" "$work/link"
run "$work/link" catalogue | cmp - "$work/catalogue"
mkdir "$work/gone" && cd "$work/gone" && rmdir "$work/gone"
run "$installed/bin/mox" catalogue | cmp - "$work/catalogue"

# A separate program builds against the installed tree with either build tool, and prints what mox
# prints.
cd "$work"
cp -r "$installed"/share/doc/mox-materials/examples/host "$work/host"
libraries=$(dirname "$installed"/lib*/libmox_materials.so)
export PKG_CONFIG_PATH=$libraries/pkgconfig
configure() { cmake -G Ninja -S "$1" -B "$work/$2" -DCMAKE_PREFIX_PATH="$installed" "${@:3}" >"$work/log" 2>&1; }
configure "$work/host" by-cmake && cmake --build "$work/by-cmake" >>"$work/log" || { cat "$work/log"; exit 1; }
mkdir "$work/by-pkgconf"
# shellcheck disable=SC2046 # the flags are words, and pkg-config quotes blanks in them
eval g++ -std=c++20 -o "'$work/by-pkgconf/build_material'" "'$work/host/Main.cpp'" \
    $(pkg-config --cflags --libs mox-host mox-preview) "'-Wl,-rpath,$libraries'"
for tool in by-cmake by-pkgconf; do
    "$work/$tool/build_material" "$example" "$work/$tool/out" >"$work/log" \
        2>"$work/errors" || { cat "$work/errors"; exit 1; }
    run "$installed/bin/mox" export "$example" --target essl -o "$work/essl" -q
    for text in vertex.essl fragment.essl reflection.json; do
        sed '/^\/\/ Made from/d' "$work/essl/rim_light.$text" | cmp - "$work/$tool/out/rim_light.$text"
    done
    run "$installed/bin/mox" format "$work/$tool/out/rim_light.xml" --check --tidy
    [ -s "$work/$tool/out/rim_light.png" ] || grep -q 'no Vulkan device' "$work/errors" ||
        { cat "$work/errors"; exit 1; }
done

# A component that is not requested needs none of its packages; a requested one names missing
# packages.
without=()
for package in SPIRV-Tools-opt Vulkan X11 assimp glm glslang nlohmann_json; do
    without+=("-DCMAKE_DISABLE_FIND_PACKAGE_$package=ON")
done
cp -r "$work/host" "$work/host-only"
sed -i 's/ preview)/)/; s/ Mox::preview)/)/' "$work/host-only/CMakeLists.txt"
configure "$work/host-only" host-alone "${without[@]}" || { cat "$work/log"; exit 1; }
! configure "$work/host" no-preview "${without[@]}" || { echo "previews without their packages"; exit 1; }
grep -q glslang "$work/log" || { cat "$work/log"; exit 1; }
rm "$libraries/cmake/Mox/Mox-preview.cmake"
! configure "$work/host" not-built || { echo "previews that are not installed"; exit 1; }
grep -q 'built without "preview"' "$work/log" || { cat "$work/log"; exit 1; }
