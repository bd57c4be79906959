#!/usr/bin/env bash
# The module lets nothing be seen but the two functions by which it is entered.
set -euo pipefail
exported=$(nm -D --defined-only "$1" | awk '{print $3}' | sort | xargs)
# Sanitizers add symbols of their own.
exported=$(tr ' ' '\n' <<<"$exported" | grep -vE '^(__(asan|odr_asan|tsan|ubsan|sanitizer))' | xargs)
[ "$exported" = "CreateNodeFactory GetMaterialLibVersion" ] || {
    echo "exported: $exported"
    exit 1
}
