#!/usr/bin/env bash
# Checks the stubs against the package, and the scripts in the documentation against the stubs.
# Usage: stubs_test.sh PYTHON SOURCE-FOLDER, with the package in PYTHONPATH
set -euo pipefail
python=$1
source=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export MYPYPATH=$PYTHONPATH MYPY_CACHE_DIR=$work/cache

# Not part of the interface: pybind11's metaclass, and the __init__ of classes that users cannot
# instantiate.
printf '%s\n' 'mox\._mox\.[A-Z]\w+' 'mox\._mox\.\w+\.__init__' >"$work/allowed"
"$python" -m mypy.stubtest mox._mox --allowlist "$work/allowed" --ignore-unused-allowlist --concise
"$python" -m mypy --strict -p mox
awk -v folder="$work" '/^```python /{file = folder "/" $2; next} /^```$/{file = ""} file{print > file}' "$source/docs/python.md"
for script in "$work"/*.py; do
    "$python" -m mypy --ignore-missing-imports --check-untyped-defs "$script"
done
