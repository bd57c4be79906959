#!/usr/bin/env bash
# Every rule that the sources raise stands in docs/checks.md, and no other.
# Usage: rules_test.sh SOURCE_TREE
set -euo pipefail
cd "$1"

raised=$(grep -rhozE '([Ff]ail|FailHere|Warn)\(\s*"[a-z-]+"|[rR]ule = "[a-z-]+"' mox | tr '\0' '\n' |
    grep -oE '"[a-z-]+"' | tr -d '"' | sort -u)
told=$(grep -E '^\| `' docs/checks.md | cut -d'|' -f2 | grep -oE '`[a-z-]+`' | tr -d '`' | sort -u)
diff <(echo "$raised") <(echo "$told")
