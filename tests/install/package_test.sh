#!/usr/bin/env bash
# Checks that the Debian packages install on a bare machine and work there: the first package
# contains the program; with the second a plug-in can be built, and with its recommended packages a
# host program. Needs root and the network.
# Usage: package_test.sh BUILD-FOLDER SOURCE-FOLDER
set -euo pipefail
build=$1
source=$2
work=$(mktemp -d)
trap 'rm -rf --one-file-system "$work"' EXIT

[ "$(id -u)" -eq 0 ] || { echo "skipped: only root can set up a bare machine"; exit 77; }
cpack --config "$build/CPackConfig.cmake" -B "$work/packages" >"$work/log" || { cat "$work/log"; exit 1; }

machine=$work/machine
mirror=$(sed -nE 's/^(URIs:|deb) *(\[.*\] *)?(https?:[^ ]+).*/\3/p' /etc/apt/sources.list \
    /etc/apt/sources.list.d/* 2>/dev/null | sed -n 1p || true)
debootstrap --variant=minbase bookworm "$machine" "${mirror:-http://deb.debian.org/debian}" \
    >"$work/log" || { tail -20 "$work/log"; exit 1; }
cp "$work"/packages/*.deb "$machine/root"
cp -r "$source/examples" "$machine/root"

inside() { chroot "$machine" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin DEBIAN_FRONTEND=noninteractive sh -euc "$1"; }
install='apt-get install -y -qq --no-install-recommends'
inside "$install /root/mox-materials_*.deb >/dev/null"
inside 'mox catalogue | grep -q ^CoreMaths'
inside 'mox export /root/examples/rim_light.xml' >"$work/export"
"$build/bin/mox" export "$source/examples/rim_light.xml" | cmp - "$work/export"
inside '/usr/libexec/mox/mox-decode image 16384 536870912 60 </root/examples/textures/paint.png | head -c 8 | grep -q moxdec'

for package in "$machine"/root/python3-mox_*.deb; do
    [ -e "$package" ] || break # this package was not built
    inside "$install /root/python3-mox_*.deb >/dev/null"
    inside 'python3 -c "
import mox
material = mox.Library().open(\"/root/examples/rim_light.xml\")
files = material.compile().files
print(files[\".vertex.cg\"].decode(), end=\"\n// ------\n\")
print(files[\".fragment.cg\"].decode(), end=\"\")"' | cmp - "$work/export"
    inside 'cd /root/examples && python3 -m mox check rim_light.xml'
    inside 'apt-get purge -y -qq python3-mox >/dev/null'
done

inside "$install /root/mox-materials-dev_*.deb g++ cmake make >/dev/null"
inside 'cmake -S /root/examples/plugin -B /root/checker >/dev/null && cmake --build /root/checker >/dev/null'
inside 'mox --plugins /root/checker catalogue | grep -q "^Checker "'
inside "$install /root/mox-materials-doc_*.deb \
    $(dpkg-deb -f "$machine"/root/mox-materials-dev_*.deb Recommends | tr -d ,) >/dev/null"
inside 'cp -r /usr/share/doc/mox-materials/examples/host /root/host
    cmake -S /root/host -B /root/built >/dev/null && cmake --build /root/built >/dev/null
    /root/built/build_material /root/examples/rim_light.xml /root/out && mox check /root/out/rim_light.xml'
inside 'apt-get purge -y -qq mox-materials mox-materials-dev mox-materials-doc >/dev/null; ! find /usr -name "*mox*" | grep .'
