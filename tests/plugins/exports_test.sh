#!/usr/bin/env bash
# Checks that a plug-in exports only its two entry functions.
set -euo pipefail
exported=$(nm -D --defined-only "$1" | awk '{print $3}' | sort | xargs)
# Sanitizers add symbols of their own.
exported=$(tr ' ' '\n' <<<"$exported" | grep -vE '^(__(asan|odr_asan|tsan|ubsan|sanitizer))' | xargs)
[ "$exported" = "CreateNodeFactory GetMaterialLibVersion" ] || {
    echo "exported: $exported"
    exit 1
}
