#!/usr/bin/env bash
# packages.sh BUILD COUNT: the Debian packages of a build can be made, and lintian finds nothing in them.
set -euo pipefail
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cpack --config "$1/CPackConfig.cmake" -B "$work" >"$work/log" || { cat "$work/log"; exit 1; }
packages=("$work"/*.deb)
[ ${#packages[@]} -eq "$2" ] || { echo "${packages[*]}"; exit 1; }
lintian --allow-root --fail-on error,warning "${packages[@]}"
