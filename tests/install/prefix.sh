#!/usr/bin/env bash
# prefix.sh BUILD ROOT: an installation into a directory with blanks and other letters, which then gets another name.
set -euo pipefail
build=$1 root=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cmake --install "$build" --prefix "$work/Prefix mit Ümlaut" >"$work/log"
prefix="$work/zweites Präfix → $"
mv "$work/Prefix mit Ümlaut" "$prefix"

"$prefix/bin/zel" check "$root/samples/gallery.zel"
"$root/scripts/headless" "$prefix/bin/halvis-sandbox" --settings "$work/settings.ini" --script \
    "$prefix/share/halvis-sandbox/samples/circle.js" "$work/out"
"$prefix/bin/zel" check "$work/out/circle.zel"
echo 'assert(environment("HALVIS_DIR") === args[0], environment("HALVIS_DIR"));' >"$work/directory.js"
env --unset=HALVIS_DIR "$root/scripts/headless" "$prefix/bin/halvis-sandbox" --settings "$work/settings.ini" --script \
    "$work/directory.js" "$prefix/share/halvis-sandbox"

while IFS= read -r -d '' program; do
    ! readelf -d "$program" | grep -E 'RPATH|RUNPATH' || { echo "$program looks into the build tree"; exit 1; }
done < <(find "$prefix" \( -path '*/bin/*' -o -name '*.so' \) -type f -print0)
if grep -rlF "$build" "$prefix"; then
    echo "those files name the build tree"
    exit 1
fi
