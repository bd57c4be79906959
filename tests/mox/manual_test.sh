#!/usr/bin/env bash
# The manual page passes the linter; only a date it has none. Usage: manual_test.sh MOX
set -euo pipefail

page=$("$1" manual)
complaints=$(mandoc -T lint <<<"$page" | grep -v 'missing date' || true)
[ -z "$complaints" ] || { echo "$complaints" >&2; exit 1; }
text=$(mandoc -T ascii <<<"$page" | col -b)
for part in 'mox export \[options\] FILE\.\.\.' '--depfile FILE' 'MOX_PLUGIN_PATH' 'EXIT STATUS'; do
    grep -q -e "$part" <<<"$text" || { echo "the page lacks $part" >&2; exit 1; }
done
