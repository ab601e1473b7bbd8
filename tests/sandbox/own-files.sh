#!/usr/bin/env bash
# own-files.sh SANDBOX: the settings, the trace and what scripts write: what cannot be written or must not be is told.
set -u
sandbox=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1
failed=0
# expect STATUS MESSAGE ARGUMENTS...: the sandbox's end; the message is on standard error, empty for none.
expect() {
    local status=$1 message=$2
    shift 2
    timeout 60 "$sandbox" --plugin none "$@" >output 2>error
    local was=$?
    if [ $was -ne "$status" ] || ! grep -qF -- "$message" error; then
        echo "$*: status $was instead of $status; \"$message\" expected, but told was:"
        cat error
        failed=1
    fi
}
echo 'menu("View", "Graticule"); openOverlay("nothing"); wait(600)
      assert(!log().some(entry => entry.text.includes("cannot be written")))' >nothing.js
echo 'writeFile("/dev/full", "text")' >full.js
echo 'writeFile("large", "x".repeat(100000))' >large.js

mkfifo fifo
expect 2 '--settings fifo: not a regular file' --settings fifo --script nothing.js
expect 2 '--settings /dev/full: not a regular file' --settings /dev/full --script nothing.js

# Kept before it is written anew, and the next one beside it.
for copy in damaged.ini.damaged damaged.ini.damaged2; do
    { echo '[Window'; head -c 1000 /dev/urandom; } >damaged.ini
    cp damaged.ini before
    expect 0 "damaged.ini is damaged: its values may be lost; it is kept as $work/$copy" \
        --settings "$work/damaged.ini" --verbose --script nothing.js
    cmp before $copy && grep -q 'Graticule=false' damaged.ini || failed=1
done

expect 0 '--trace /dev/full: No space left on device' --settings trace.ini --trace /dev/full --script nothing.js
expect 1 '/dev/full: No space left on device' --settings script.ini --script full.js
# More than the user may write (in blocks of 1 KiB) ends nobody.
touch large.ini
(ulimit -f 4; expect 1 'large: File too large' --settings large.ini --script large.js; exit $failed) || failed=1
# Nor does it cost an older picture.
for i in $(seq 100); do printf 'start\ncircle\ncenterll 0 %s\nradius 9000\nend\n' "$i"; done >circles.zel
for kind in png svg; do
    echo old >picture.$kind
    (ulimit -f 4; "$sandbox" --render circles.zel -o picture.$kind 2>error)
    [ $? -eq 2 ] && grep -q 'cannot be written: the file is too large' error && grep -qx old picture.$kind ||
        { cat error; failed=1; }
done
exit $failed
