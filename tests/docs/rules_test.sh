#!/usr/bin/env bash
# docs/checks.md explains every rule of the table of rules and no other, and a source raises each.
# Usage: rules_test.sh SOURCE_TREE
set -euo pipefail
cd "$1"

table=mox/host/ProblemRule.h
rules=$(sed -n '/problemRules\[\]/,/};/p' $table | grep -oE '"[a-z-]+"' | tr -d '"' | sort)
explained=$(grep -E '^\| `' docs/checks.md | cut -d'|' -f2 | grep -oE '`[a-z-]+`' | tr -d '`' | sort)
diff <(echo "$rules") <(echo "$explained")
for rule in $rules; do
    grep -rqF --exclude=$(basename $table) "\"$rule\"" mox tools || { echo "nothing raises $rule"; exit 1; }
done
