#!/usr/bin/env bash
# trace.sh SANDBOX PROBE SCRIPTS: every call, event and violation is in the trace, in order and well formed.
set -u
sandbox=$1 probe=$2 scripts=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
trace=$work/trace.txt
run() { "$sandbox" --settings "$work/settings.ini" --plugin "$probe" --script "$1" --trace "$trace"; }
fail() { echo "$1"; failed=1; }
failed=0

run "$scripts/misuse.js" || fail "the script failed"
line='^[0-9]+\.[0-9]{6} (  )*(= .*us|log .*|host -> .*|[^ ]+ -> -?[0-9]+( \([^)]*\))?.*)$'
grep -vE "$line" "$trace" && fail "lines of no known form"
sort -c -n -s -k1,1 "$trace" || fail "not in the order of time"
for expected in \
    '^[0-9.]+ host -> Probe event 0 pointers 23:' \
    '^[0-9.]+ host -> Probe callback of text field' \
    '^[0-9.]+   Probe -> 317 integers 55' \
    'log error Probe: misuse of the host: service 317: unknown selector 55' \
    'log error Probe: misuse of the host: service 145 \(check\): handle of a widget that is gone' \
    '^[0-9.]+   Probe -> 908 \(value as text\) .* = 1 texts "on-thread call 152 int text 1", [0-9]+ us$' \
    '^[0-9.]+ host -> Probe event 2$'; do
    grep -qE "$expected" "$trace" || fail "missing: $expected"
done
opened=$(grep -cE ' -> ' "$trace") ended=$(grep -cE '= .*us$' "$trace")
[ "$opened" -eq "$ended" ] || fail "$opened calls, $ended ends"

"$sandbox" --settings "$work/settings.ini" --plugin none --trace "$work" --script "$scripts/view.js" 2>"$work/error"
[ $? -eq 2 ] && grep -q -- "--trace $work: " "$work/error" || fail "a trace that cannot be written goes unnoticed"
[ $failed -eq 0 ] || cat "$trace"
exit $failed
