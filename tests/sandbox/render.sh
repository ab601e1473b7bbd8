#!/usr/bin/env bash
# render.sh SANDBOX SAMPLES: pictures without a window; statuses, messages with their place, the same bytes each
# time.
set -u
sandbox=$1 samples=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
failed=0
expect() {
    "$sandbox" --render "${@:3}" 2>"$work/messages"
    status=$?
    [ $status -eq "$1" ] && { [ -z "$2" ] || grep -q -- "$2" "$work/messages"; } && return
    echo "status $status, not $1 with \"$2\": ${*:3}"; cat "$work/messages"; failed=1
}
printf 'start\ncircle\ncenterll 10 20\nradius 1000\nbogus 1\nend\n' >"$work/bad.zel"
expect 0 '' "$samples/coast-110m.zel" -o "$work/a.png" --size 320x240
expect 0 '' "$samples/coast-110m.zel" -o "$work/b.png" --size 320x240
cmp "$work/a.png" "$work/b.png" || failed=1
expect 1 "$work/bad.zel:5: Found unknown ZEL command" "$work/bad.zel" -o "$work/bad.png" --view 10,20,5000
[ -s "$work/bad.png" ] || { echo "the good shapes were not drawn"; failed=1; }
expect 1 missing.zel "$work/missing.zel" "$work/bad.zel" -o "$work/c.png" --background none
printf 'start\nannotation A\nll 1 1\nend\nstart\n# kml_groundoverlay\n# kml_icon none.png\n# kml_latlonbox 1 0 1 0 0\nend\n' \
    >"$work/picture.zel"
expect 1 "$work/picture.zel:5: picture none.png cannot be read" "$work/picture.zel" -o "$work/e.png"
cp "$samples/chart.png" "$work/none.png"
expect 0 '' "$work/picture.zel" -o "$work/e.png"
expect 2 'cannot be written' "$samples/coast-110m.zel" -o "$work/none/a.png"
expect 2 '--view' "$samples/coast-110m.zel" -o "$work/d.png" --view north
exit $failed
