#!/usr/bin/env bash
# tests/structure/hardened.sh FILE...: every program and library guards its stacks, checks its buffers, and binds its addresses
# before it runs.
set -euo pipefail
status=0
for file in "$@"; do
    tables=$(readelf --wide --dynamic --segments "$file")
    symbols=$(nm --dynamic --undefined-only "$file")
    for sign in "BIND_NOW|FLAGS_1.*NOW:$tables" "GNU_RELRO:$tables" "__stack_chk_fail:$symbols"; do
        grep -qE "${sign%%:*}" <<<"${sign#*:}" || { echo "$file: no ${sign%%:*}"; status=1; }
    done
done
symbols=$(nm --dynamic --undefined-only "$@")
grep -qE '__[a-z]+_chk@' <<<"${symbols//__stack_chk/}" || { echo "no buffer is checked anywhere"; status=1; }
exit $status
