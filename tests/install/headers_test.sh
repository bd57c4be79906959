#!/usr/bin/env bash
# Checks that all functions and variables declared in a component's installed headers link with the
# flags that pkg-config reports for it. With --each, also compiles every header separately (slow).
# Usage: headers_test.sh BUILD-FOLDER [--each]
set -euo pipefail
build=$1
each=${2-}
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

installed=$work/installed
cmake --install "$build" --prefix "$installed" >/dev/null
libraries=$(dirname "$installed"/lib*/libmox_materials.so)
export PKG_CONFIG_PATH=$libraries/pkgconfig
echo 'int main() {}' >"$work/main.cpp"

for component in materials host compile preview pictures editor; do
    targets=$libraries/cmake/Mox/Mox-$component.cmake
    [ -e "$targets" ] || continue # the component was not built
    package=mox-$component
    [ $component != materials ] || package=mox
    mapfile -t headers < <(grep -oE 'include/mox/[A-Za-z/]+\.h' "$targets" | sed 's#^include/##' | sort -u)
    if [ "$each" != --each ]; then
        printf '#include "%s"\n' "${headers[@]}" >"$work/$component.h"
        headers=("$work/$component.h")
    fi
    read -ra compiling < <(pkg-config --cflags $package)
    "$here/declared_functions.py" "$installed/include" "${headers[@]}" -- "${compiling[@]}" >"$work/symbols"
    [ -s "$work/symbols" ] || { echo "the headers of $component declare nothing"; exit 1; }
    { echo .data; sed 's/^/.quad /' "$work/symbols"; } >"$work/addresses.s"
    read -ra linking < <(pkg-config --libs $package)
    g++ -o "$work/program" "$work/main.cpp" "$work/addresses.s" "${linking[@]}" 2>"$work/errors" || {
        echo "headers of $component declare what $package does not have:"
        { grep -o 'undefined reference.*' "$work/errors" || cat "$work/errors"; } | sort -u
        exit 1
    }
done
