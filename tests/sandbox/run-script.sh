#!/usr/bin/env bash
# run-script.sh ROOT SANDBOX PLUGIN SCRIPT [FAILURE]: runs a script with settings of its own. With FAILURE, a
# regular expression, the script must fail with a message that matches it.
set -uo pipefail
root=$1 sandbox=$2 plugin=$3 script=$4 failure=${5:-}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
output=$("$root/scripts/headless" "$sandbox" --settings "${SANDBOX_SETTINGS:-$work/settings.ini}" --plugin "$plugin" --size "${SANDBOX_SIZE:-1200x800}" \
    --script "$script" 2>&1)
status=$?
echo "$output"
[ -n "$failure" ] || exit $status
if [ $status -ne 1 ]; then
    echo "status $status instead of 1"
    exit 1
fi
echo "$output" | grep -Eq "FAILED: .*$failure" || { echo "no message that matches $failure"; exit 1; }
