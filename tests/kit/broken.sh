#!/usr/bin/env bash
# tests/kit/broken.sh CHECKER BROKEN-PLUGIN DIRECTORY-OF-LIBRARIES
# The checker finds nothing in a plug-in without a fault, and each fault by its name, in the right check.
set -euo pipefail
checker=$1 broken=$2 libraries=$3
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$scratch"

fail() {
    echo "$1"
    cat output
    exit 1
}
"$checker" "$broken" >output || fail "a fault in the plug-in that has none"
while read -r fault check message; do
    library=$broken
    [ -e "$libraries/$fault.so" ] && library=$libraries/$fault.so
    status=0
    BROKEN=$fault "$checker" --strict --limit 5 --memory 500 --only "$check" "$library" >output 2>&1 || status=$?
    [ $status -eq 1 ] || fail "$fault: status $status"
    grep -qE "^        (fault|remark): .*$message" output || fail "$fault: not found"
done <<'END'
probe-incomplete exports does not export HPI_CleanUpPlugin
probe-pinned loading still mapped after dlclose
pinned loading still mapped after dlclose
version versions HPI_MinimumVersion is 13001
foreign-locale loading the process is not as it was: locale
nameless texts the plug-in has no name
result dispatch event .* returns 1, not 0
leaves use left in the host after Close: timeout
dangling use service 154: the handle is of no widget
record use service 143: its record is a PI_DATA_POINTER_AND_INT, not a PI_DATA_POINTER_AND_BOOL
thread use service 115 is called on another thread
late use is called after Close
latin use service 114: .* is no UTF-8
filters use service 163: the filter row .* is not a text, a tab, and patterns
nosy use command line is asked for after StartUp has returned
assumes use signal 11 .*in an observer of context menus
unclosed orders left in the host after a clean-up without a Close
trusting refused-once signal 6 .*service call
throws throwing-once an exception comes out of .*deliberate
greedy interrupted a mouse event is consumed from inside another entry
hangs use it takes longer than 5 seconds .*event 2
hungry use it takes more than 500 MiB of memory .*event 2
forgetful rounds memory is lost: 2[0-9][0-9] bytes
astray loading the process is not as it was: working directory
breeds loading the process is not as it was: child processes
alarms loading the process is not as it was: timers: "interval timer 0
traps loading the process is not as it was: exceptions of numbers that are caught
prints loading the process is not as it was: std::cout
terminates loading the process is not as it was: handler of std::terminate
blocks loading the process is not as it was: blocked signals: "10;
flushes loading the process is not as it was: small numbers: "become zero", before "stay"
brings loading a library that it has loaded is not unloaded: .*libutil
maps rounds address space is lost: 65536 bytes
END
"$checker" --json --only use "$broken" | python3 -c 'import json, sys; report = json.load(sys.stdin)
assert report["passed"] and report["checks"][0]["figures"]["service-calls"] > 100, report'
[ "$("$checker" --only nonsense "$broken" 2>&1; echo $?)" = 'hpi-check-plugin: there is no check "nonsense"; --list names them
2' ] || fail "an unknown check"
[ "$("$checker" --only exports --seed 010 --json "$broken" | python3 -c 'import json, sys; print(json.load(sys.stdin)["seed"])')" = 10 ] ||
    fail "a seed that begins with 0"
"$checker" --list --json | python3 -c 'import json, sys; assert [each for each in json.load(sys.stdin) if each["strict"]]'
refuses() {
    [ "$("$checker" "$2" 2>&1; echo $?)" = "hpi-check-plugin: $2: $1
2" ] || fail "$2"
}
for length in 3000 -10; do
    head -c $length "$broken" >cut.so
    refuses "the library is cut short" cut.so
done
echo 'int f;' | c++ -x c++ -c -o object.so - 2>/dev/null && refuses "this is an object file, which is to be linked to a library" object.so
# Who ends it leaves nothing behind.
mkdir temporary
BROKEN=hangs TMPDIR=$scratch/temporary "$checker" --only use "$broken" >output &
sleep 1
ls -d temporary/hpi-check-* >output
kill -TERM $!
status=0
wait $! || status=$?
[ $status -eq 143 ] || fail "ended by SIGTERM: status $status"
[ -z "$(ls temporary)" ] || fail "ended by SIGTERM: something is left"
[ "$("$checker" "$0" 2>&1; echo $?)" = "hpi-check-plugin: $0: this is no library of 64 bits
2" ] || fail "a text as a library"
