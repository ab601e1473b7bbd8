#!/usr/bin/env bash
# tests/samples/host.sh EXAMPLE-HOST PLUGIN DIRECTORY-OF-LIBRARIES
# The example host draws, saves and prints a circle, and says what is wrong when something is.
set -euo pipefail
host=$1 plugin=$2 libraries=$3

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export HOME=$scratch
cd "$scratch"

fail() {
    echo "$1"
    sed 's/^/    /' output messages
    exit 1
}
play() {
    rm -f circle.zel
    "$host" "$@" >output 2>messages
}

play "$plugin" circle.zel || fail "the host failed"
cmp -s output circle.zel || fail "what it prints is not what the editor saved"
# Pixel 500, 200 lies 1000 km east and north of the middle of the view, pixel 550, 200 500 km further east.
# GeographicLib's Geocentric and Geodesic: 9.08091118612949 9.13506753832052, and from there to
# 9.08091118612949 13.77699807424730 it is 510299.858681361 m.
awk 'function near(value, wanted, tolerance) { d = value - wanted; return d < tolerance && -d < tolerance }
     $1 == "centerlla" { center = near($2, 9.08091118612949, 1e-9) && near($3, 9.13506753832052, 1e-9) && $4 == 0 }
     $1 == "radius"    { radius = near($2, 510299.858681361, 1e-3) }
     $0 == "circle"    { ++circles }
     END { exit !(center && radius && circles == 1) }' output || fail "another circle than was drawn"

# Without one of these services there is no circle, and the host says what it misses.
while read -r service message; do
    ! play "$plugin" circle.zel "$service" || fail "without service $service: no failure"
    grep -qx "example-host: $message" messages || fail "without service $service: another message"
done <<'END'
105 there is no "Overlay Editor..."
118 there is no "Save As..."
124 there is no option "Circle"
163 nothing was saved
424 nothing was drawn
428 nothing was drawn
END
# Without any of these it draws all the same.
for service in 16 101 102 113 114 115 119 126 141 146 152 154 155 325 901 910; do
    play "$plugin" circle.zel "$service" || fail "without service $service"
done

# What is no plug-in, or does not fit.
while read -r library message; do
    ! play "$libraries/$library" circle.zel || fail "$library: no failure"
    grep -q "^example-host: .*$message" messages || fail "$library: another message"
done <<'END'
missing.so cannot open shared object file
probe-incomplete.so does not export HPI_CleanUpPlugin
probe-demanding.so does not fit this host
END
