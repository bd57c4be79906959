#!/usr/bin/env bash
# The installed tree is complete and works from any place, without help of environment variables or
# of the build tree. Usage: install_test.sh BUILD-FOLDER SOURCE-FOLDER
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
for file in bin/mox libexec/mox/mox-decode lib*/libmox_materials.so lib*/libmox_materials.so."$interface" lib*/libmox_host.a lib*/mox/mox_core.so \
    lib*/mox/mox_library.so lib*/mox/nodes/MathsArithmetic.xml lib*/mox/mox_surface.so lib*/cmake/Mox/MoxConfig.cmake lib*/pkgconfig/mox.pc lib*/pkgconfig/mox-host.pc \
    include/mox/authoring/GuiNode.h include/mox/host/PluginSet.h share/man/man1/mox.1 \
    share/mox/environment/environment.xml share/mox/environment/{unlit,depth,skinned}/environment.xml share/mox/material.rng share/mox/node.rng share/bash-completion/completions/mox; do
    [ -s "$file" ] || { echo "$file is missing"; exit 1; }
done
# A header whose library is not there helps nobody.
for room in nodes plugin compile decode decoders editor pictures preview; do
    [ ! -e include/mox/$room ] || { echo "the headers of $room are installed"; exit 1; }
done

# A header needs nothing that is not installed.
grep -rhoE '#include "[^"]+"' include | sort -u | sed -E 's/#include "(.*)"/\1/' |
    while read -r header; do
        [ -f "include/$header" ] || { echo "$header is included but not installed"; exit 1; }
    done

# Nothing points back to where it was built.
if grep -rlIF -e "$build" -e "$source" .; then
    echo "the files above name the build tree"
    exit 1
fi
if readelf -d bin/mox libexec/mox/mox-decode lib*/*.so lib*/mox/*.so | grep -E 'R(UN)?PATH' | grep -vF '[$ORIGIN'; then
    echo "the search paths above hang on a place"
    exit 1
fi

example=$source/examples/rim_light.xml
run() { env -i "$@"; }
run "$installed/bin/mox" catalogue >"$work/catalogue"
run "$build"/bin/mox catalogue | cmp - "$work/catalogue"
run "$installed/bin/mox" export "$example" >"$work/export"
run "$build"/bin/mox export "$example" | cmp - "$work/export"
# The program finds what decodes its textures, if there is a device to draw with.
if ! run "$installed/bin/mox" preview "$source/examples/tinted_texture.xml" -o "$work/picture.png" 2>"$work/errors"; then
    grep -q 'no Vulkan device' "$work/errors" || { cat "$work/errors"; exit 1; }
elif [ -s "$work/errors" ]; then
    cat "$work/errors"
    exit 1
fi
# By a link to the program, and from a folder that has gone.
ln -s "$installed/bin/mox" "$work/link"
run "$work/link" catalogue | cmp - "$work/catalogue"
mkdir "$work/gone" && cd "$work/gone" && rmdir "$work/gone"
run "$installed/bin/mox" catalogue | cmp - "$work/catalogue"
