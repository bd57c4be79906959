#!/usr/bin/env bash
# The rooms of mox_host include only those that docs/architecture.md lists before them.
# Usage: rooms_test.sh SOURCE_TREE
set -euo pipefail
cd "$1"

mapfile -t rooms < <(sed -n '/that come before it in this$/,/`json`\./p' docs/architecture.md |
    sed -n 's/^list: //; 2,$p' | sed 's/`json`\..*/`json`/' | grep -oE '`[a-z]+`' | tr -d '`')
[ "${#rooms[@]}" -ge 12 ] || { echo "there is no list of rooms"; exit 1; }
status=0
for ((i = 0; i + 1 < ${#rooms[@]}; ++i)); do
    later=$(IFS='|'; echo "${rooms[*]:i+1}")
    if grep -rnE "#include [\"<]mox/($later)/" "mox/${rooms[i]}"; then status=1; fi
done
others=$(IFS='|'; echo "${rooms[*]}")
if grep -rnE "#include [\"<]mox/($others)/" mox/{authoring,bindings,cg,languages,nodekit,shader}; then status=1; fi
exit $status
