#!/usr/bin/env bash
# tests/samples/stand-alone.sh SOURCE-DIRECTORY BUILD-DIRECTORY
# The example host builds and runs from the installed plug-in and development files alone, wherever they are.
set -euo pipefail
sources=$1 build=$2

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
export HOME=$scratch
prefix="$scratch/a prefix, naïve"
for component in plugin development; do
    cmake --install "$build" --prefix "$prefix" --component $component >"$scratch/log"
done
cp -r "$sources/samples/host" "$scratch/host"
cmake -S "$scratch/host" -B "$scratch/build" -D CMAKE_PREFIX_PATH="$prefix" \
    -D CMAKE_CXX_FLAGS="-Wall -Wextra -Wpedantic -Wconversion -Werror" >"$scratch/log" || { cat "$scratch/log"; exit 1; }
cmake --build "$scratch/build" >"$scratch/log" || { cat "$scratch/log"; exit 1; }
ctest --test-dir "$scratch/build" --output-on-failure
