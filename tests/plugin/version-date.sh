#!/usr/bin/env bash
# version-date.sh COMPILER ROOT: the version text carries the day that SOURCE_DATE_EPOCH names.
set -euo pipefail
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
ln -s "$2/plugin" "$work/plugin"
printf '%s\n' '#include <cstdio>' '#include "plugin/VSI.cpp"' 'int main() { std::puts(VSI::version().c_str()); }' \
    > "$work/print.cpp"
for day in "1000000000 2001-09-09" "1513987200 2017-12-23"; do
    SOURCE_DATE_EPOCH=${day% *} "$1" -std=c++20 -DOE_VERSION='"1.2.3"' -I"$work" "$work/print.cpp" -o "$work/print"
    [ "$("$work/print")" = "1.2.3 (${day#* })" ] || { echo "$("$work/print") instead of ${day#* }"; exit 1; }
done
