#!/usr/bin/env bash
# tests/structure/layout.sh ROOT: every source file is laid out as clang-format would.
set -euo pipefail
cd "$1"
find common geo format gdal pi model tools gui plugin cli kit globe sandbox tests bench fuzz samples \
    \( -name '*.h' -o -name '*.cpp' -o -name '*.c' \) -print0 | xargs -0 clang-format --dry-run -Werror
