#!/usr/bin/env bash
# tests/kit/probed.sh PROBED-HOST HOST-PROBE ROOT
# The probe finds nothing wrong with the example host, whose README tells what it leaves out, and each falsified service by
# its number.
set -euo pipefail
host=$1 probe=$2 root=$3
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export HOST_PROBE_REPORT=$scratch/report HOME=$scratch
cd "$scratch"

fail() {
    echo "$1"
    cat report messages
    exit 1
}
"$host" "$probe" >messages 2>&1 || fail "the host failed"
! grep -q '^WRONG' report || fail "the example host is taken for a wrong one"
left=$(sed -n 's/^This host leaves out something of //p' report)
tr '\n' ' ' <"$root/samples/host/README.md" | grep -F "$left" >/dev/null || fail "its README does not name $left"
while read -r fault message; do
    BROKEN=$fault "$host" "$probe" >messages 2>&1 || true
    grep "^WRONG    $message" report >/dev/null || fail "$fault: not found"
done <<'END'
throws 102 reads a setting: it throws "lost settings"
trusting 100 refuses a canvas that is gone
trusting 100 refuses a widget whose parent is gone
degrees 424 it is in radians
in-front 428 loads an overlay from a stream: the results do not stand behind
forgetful 102 it is the one that was stored
echoes 119 a change by a service calls no callback: [1-9]
off-by-one 908 its value is the chosen index: returned 1, integer 2
END
