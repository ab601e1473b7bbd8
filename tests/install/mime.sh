#!/usr/bin/env bash
# mime.sh DESKTOP_DIRECTORY SANDBOX: a desktop that has our files knows a ".zel" file and opens it with the sandbox.
set -euo pipefail
export LC_ALL=C.UTF-8 PATH=${2%/*}:$PATH
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export XDG_DATA_HOME=$work/data XDG_DATA_DIRS=$work/data XDG_CONFIG_HOME=$work/config XDG_CONFIG_DIRS=$work/config
mkdir -p "$work/data/mime/packages" "$work/data/applications"
cp "$1"/*.zel.xml "$work/data/mime/packages"
cp "$1"/*.desktop "$work/data/applications"
update-mime-database "$work/data/mime"
update-desktop-database "$work/data/applications"
printf 'start\ncircle\nend\n' >"$work/MAP.ZEL"
type=$(gio info -a standard::content-type "$work/MAP.ZEL" | sed -n 's/.*content-type: //p')
[ "$type" = text/x-zel ] || { echo "MAP.ZEL is $type"; exit 1; }
opener=$(gio mime text/x-zel)
[[ $opener == *Default*org.overlayeditor.HalvisSandbox.desktop* ]] || { echo "$opener"; exit 1; }
for icon in org.overlayeditor.HalvisSandbox text-x-zel; do xmllint --noout "$1/$icon.svg"; done
