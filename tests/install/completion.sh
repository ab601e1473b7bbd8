#!/usr/bin/env bash
# completion.sh SANDBOX ROOT: the completion and the manual page know every option of the help, and files by their kind.
set -euo pipefail
sandbox=$1 root=$2
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
touch map.zel ships.csv play.js host.so earth.jpg out.svg notes.txt 'two words.zel'
source "$root/sandbox/halvis-sandbox.bash"
failed=0
page=$(sed 's/\\//g' "$root/sandbox/halvis-sandbox.1")

# complete WORD...: what Tab offers for the last word, sorted
complete_words() {
    COMP_WORDS=(halvis-sandbox "$@") COMP_CWORD=$# COMPREPLY=()
    _halvis_sandbox
    printf '%s\n' "${COMPREPLY[@]}" | sort | paste -sd '|'
}
expect() {
    local found
    found=$(complete_words "${@:2}")
    [ "$found" = "$1" ] || { echo "${*:2}: $found, not $1"; failed=1; }
}
expect 'map.zel|ships.csv|two words.zel' ''
expect 'map.zel' --verbose m
expect 'play.js' --script p
expect 'host.so|none' --plugin ''
expect 'light' --palette l
expect '--script|--settings|--size' --s
expect 'notes.txt' --settings n
expect '--background' --render --b
expect 'earth|earth.jpg' --render --background e
expect 'out.svg' --render map.zel -o o
expect 'borders' --render --map b
expect '' --size ''

for mode in '' --render; do
    # shellcheck disable=SC2086
    "$sandbox" $mode --help >help
    while read -r option; do
        [[ "|$(complete_words $mode "$option")|" == *"|$option|"* ]] || { echo "$mode $option cannot be completed"; failed=1; }
        [[ $page =~ (^|[^-a-z])$option([^-a-z]|$) ]] ||
            { echo "$mode $option is not in the manual page"; failed=1; }
    done < <(grep -oE '^ +(-[a-z], )?--[a-z-]+' help | grep -oE -- '--[a-z-]+')
done
exit $failed
