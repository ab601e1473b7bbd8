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
# A picture that lacks a file is none.
expect 2 missing.zel "$work/missing.zel" "$work/bad.zel" -o "$work/c.png" --background none
[ -e "$work/c.png" ] && { echo "half a picture"; failed=1; }
printf 'start\nannotation A\nll 1 1\nend\nstart\n# kml_groundoverlay\n# kml_icon none.png\n# kml_latlonbox 1 0 1 0 0\nend\n' \
    >"$work/picture.zel"
expect 1 "$work/picture.zel:5: picture none.png cannot be read" "$work/picture.zel" -o "$work/e.png"
cp "$samples/chart.png" "$work/none.png"
expect 0 '' "$work/picture.zel" -o "$work/e.png"
printf 'start\nline\nxy 0 0\nxy 5 5\nend\nstart\ncircle\ncenterll 1 1\nend\nstart\ncircle\noff\nend\nstart\nline\nxy 1 0\nxy 5 5\nend\n' \
    >"$work/lacking.zel"
expect 1 "$work/lacking.zel:1: is not drawn: it has no \"ref\", or a platform that it is attached to (2 shapes in all)" \
    "$work/lacking.zel" -o "$work/l.png"
expect 1 "$work/lacking.zel:6: is not drawn: it has no radius" "$work/lacking.zel" -o "$work/l.png"
# For print: the same bytes each time; a circle's half behind the earth is not there, nor is a shape that is off.
printf 'start\ncircle\ncenterll 0 90\nradius 3000\nrangeunits km\nlinecolor red\nend\nstart\nline\nll 0 -100\nll 0 100\nlinecolor blue\noff\nend\nstart\nannotation Here_&_there\nll 0 10\nlinecolor green\nend\nstart\npolygon\nll -5 -5\nll -5 5\nll 5 5\nll 5 -5\nfilled\nfillcolor hex 80ffff00\nlinecolor white\nend\n' >"$work/print.zel"
for name in a b; do
    expect 0 '' "$work/print.zel" -o "$work/$name.svg" --view 0,0,20000000 --background none --size 400x300
done
cmp "$work/a.svg" "$work/b.svg" || failed=1
python3 - "$work/a.svg" <<'END' || failed=1
import re, sys, xml.etree.ElementTree as tree
root = tree.parse(sys.argv[1]).getroot()
text = tree.tostring(root, encoding="unicode")
assert "Here &amp; there" in text, "the label is text"
assert "#0000ff" not in text, "off"
red = [g for g in root.iter("{http://www.w3.org/2000/svg}g") if g.get("stroke") == "#ff0000"]
numbers = [float(n) for g in red for n in re.findall(r"-?\d+\.?\d*", " ".join(p.get("d", "") for p in g))]
xs = numbers[0::2]
# By spherical trigonometry: nearest to the middle 63 degrees east at 262.9 pixels, into the limb at 259.5.
assert xs and abs(min(xs) - 259.5) < 0.3 and abs(max(xs) - 262.9) < 0.3, (min(xs), max(xs))
assert "#00ffff" in text, "the area"
END
# A straight piece has no points but its ends and where a body hides it; what has one pen is in one group.
printf 'start\nlinesegs\nlinecolor red\nll 9.99 19.98\nll 9.99 20.02\nll 10 19.98\nll 10 20.02\nend\nstart\nsphere\ncenterll 10 20\nradius 500\nfilled\nlinecolor white\nfillcolor white\nend\n' >"$work/behind.zel"
expect 0 '' "$work/behind.zel" -o "$work/behind.svg" --view 10,20,8000 --background none --size 400x300
python3 - "$work/behind.svg" <<'END' || failed=1
import re, sys
groups = [g for g in open(sys.argv[1]).read().split("<g ") if 'stroke="#ff0000"' in g and "<path" in g]
paths = [re.findall(r"([ML])(\S+),", d) for g in groups for d in re.findall(r' d="([^"]*)"', g)]
assert len(groups) == 1 and ["".join(kind for kind, x in path) for path in paths] == ["ML", "MLML"], paths
xs = [float(x) for kind, x in paths[1]]
# The ball hides asin(500 / 8000) to each side, 16.3 pixels; within two of its rim lines may be drawn.
assert all(13 < abs(x - 200) < 16.4 for x in xs[1:3]), xs
END
# Platforms, where they are at a time, and what is attached to them.
for minutes in 30 60; do
    expect 0 '' "$samples/islands.csv" -o "$work/$minutes.svg" --view 21.2,-157.6,300000 --time "2026-03-01T18:$((minutes - 1)):00Z"
    grep -q '>Ferry Kahana<' "$work/$minutes.svg" && grep -q '>10 nm<' "$work/$minutes.svg" || { echo "no ferry"; failed=1; }
done
cmp -s "$work/30.svg" "$work/60.svg" && { echo "the ferry stands still"; failed=1; }
expect 2 '--time no\\x1bon' "$samples/islands.csv" -o "$work/t.png" --time $'no\eon'
printf 'time,name,lat,lon\n0,A,95,1\n0,B,1,1\n' >"$work/bad.csv"
expect 1 "$work/bad.csv:2: latitude" "$work/bad.csv" -o "$work/t.png" --view 1,1,50000
# Texts need no screen.
for option in --help --version '--render --help'; do
    env -u DISPLAY -u WAYLAND_DISPLAY PATH= "$sandbox" $option >"$work/text" && [ -s "$work/text" ] || { echo "$option"; failed=1; }
done
for option in bogus plugin=none; do
    env -u DISPLAY -u WAYLAND_DISPLAY -u QT_QPA_PLATFORM "$sandbox" --$option 2>"$work/text"
    [ $? -le 2 ] && grep -q -e bogus -e DISPLAY "$work/text" || { echo "$option: $(cat "$work/text")"; failed=1; }
done
expect 2 'cannot be written' "$samples/coast-110m.zel" -o "$work/none/a.svg"
expect 2 'cannot be written' "$samples/coast-110m.zel" -o "$work/none/a.png"
expect 0 '' -o "$work/map.png" --view 21,-157,100000 --size 320x240
expect 2 'which files' -o "$work/none.png"
expect 2 '--view' "$samples/coast-110m.zel" -o "$work/d.png" --view north
exit $failed
