#!/usr/bin/env bash
# SPDX-FileCopyrightText: 2026 the OverlayEditor authors
# SPDX-License-Identifier: MIT
# pictures.sh SANDBOX OUT: draws the examples of the format's reference, OUT/NAME.png for each NAME.zel beside this
# script. Fails when one cannot be drawn or has a message.
set -eu
sandbox=$1 out=$2
examples=$(cd "$(dirname "$0")" && pwd)
mkdir -p "$out"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
# The pictures that the examples show are looked for next to them.
cp "$examples"/*.zel "$examples"/../../../samples/{anchor,chart}.png "$work"
# The coastlines, grey for white paper.
sed 's/^linecolor .*/linecolor hex ffb0b0b0/' "$examples/../../../samples/coast-110m.zel" >"$work/coast.ground"
for file in "$work"/*.zel; do
    name=$(basename "$file" .zel)
    files=("$file")
    case $name in
        altitudes) view=21.31,-157.92,24000,20,30 ;;
        annotation) view=21.3,-157.8695,1700 ;;
        labels) view=21.302,-157.9,18000 ;;
        line) view=21.285,-157.925,40000 ;;
        linesegs) view=21.29,-157.92,28000 ;;
        offsets) view=21.3,-157.9,8500 ;;
        orbit) view=21.3,-157.925,32000 ;;
        paths) view=42,-171,10500000 files=("$work/coast.ground" "$file") ;;
        points) view=21.308,-157.865,16000 ;;
        polygon) view=21.26,-157.925,42000 ;;
        harbour | positions) continue ;;
        sphere) view=21.335,-157.886,19000,20,25 ;;
        styles) view=21.31,-157.9,30000 ;;
        cone | cylinder | ellipsoid | hemisphere | latlonaltbox | wedge) view=21.316,-157.894,17000,20,25 ;;
        *) view= ;;
    esac
    "$sandbox" --render "${files[@]}" -o "$out/$name.png" --size 480x300 --density 2.5 --background white \
        ${view:+--view "$view"}
done
