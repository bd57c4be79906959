#!/usr/bin/env bash
# Checks that docs/checks.md explains exactly the rules in the table of rules, and that a source
# file raises each of them.
# Usage: rules_test.sh SOURCE_TREE
set -euo pipefail
cd "$1"

table=mox/host/Problem.h
rules=$(sed -n '/problemRules\[\]/,/};/p' $table | grep -oE '"[a-z-]+"' | tr -d '"' | sort)
explained=$(grep -E '^\| `' docs/checks.md | cut -d'|' -f2 | grep -oE '`[a-z-]+`' | tr -d '`' | sort)
diff <(echo "$rules") <(echo "$explained")
for rule in $rules; do
    grep -rqF --exclude=$(basename $table) "\"$rule\"" mox tools || { echo "nothing raises $rule"; exit 1; }
done
