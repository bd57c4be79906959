#!/usr/bin/env bash
# Installs missing Debian packages for a task. Usage: tools/setup.sh build|run|test|full|bench
set -euo pipefail

packages=(g++ cmake ninja-build libboost-dev libxml2-dev libcli11-dev nlohmann-json3-dev
    libpng-dev libxxhash-dev libmimalloc-dev
    glslang-dev glslang-tools spirv-tools
    graphviz fonts-dejavu-core
    libvulkan-dev mesa-vulkan-drivers libglm-dev
    libassimp-dev libopenexr-dev libturbojpeg0-dev libjpeg62-turbo-dev)
# Node.js packages from other sources include npm and conflict with Debian's npm.
command -v npm >/dev/null || packages+=(nodejs npm)
# For the Python package. mypy checks its stubs; the tests load lxml and numpy into the same
# process.
python=(python3-dev pybind11-dev mypy python3-lxml python3-numpy)
case "${1:?build, run, test, full or bench}" in
build) ;;
# imagemagick: assembles the contact sheet.
run) packages+=(imagemagick) ;;
# locales-all: the tests run in a locale with a decimal comma.
test) packages+=(libgtest-dev locales-all binutils make mandoc bsdutils vulkan-validationlayers
    clang libclang-rt-dev clang-format pkgconf python3-clang valgrind chromium "${python[@]}")
    ;;
full) packages+=(libgtest-dev locales-all binutils make mandoc bsdutils vulkan-validationlayers
    clang libclang-rt-dev clang-format clang-tidy abigail-tools debootstrap dpkg-dev pkgconf
    python3-clang xz-utils valgrind libbenchmark-dev chromium "${python[@]}")
    ;;
bench)
    packages+=(libbenchmark-dev python3 valgrind)
    ;;
*)
    echo "tools/setup.sh: unknown job \"$1\"" >&2
    exit 2
    ;;
esac

missing=()
for package in "${packages[@]}"; do
    status=$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null || true)
    [ "$status" = installed ] || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo)
echo "Installing: ${missing[*]}"
"${as_root[@]}" apt-get update -qq
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
    "${missing[@]}" >/dev/null
