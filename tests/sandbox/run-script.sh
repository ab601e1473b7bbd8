#!/usr/bin/env bash
# run-script.sh ROOT SANDBOX PLUGIN SCRIPT [FAILURE]: runs a script with settings of its own. With FAILURE, a
# regular expression, the script must fail with a message that matches it. SANDBOX_SIZE is the window's,
# SANDBOX_SCALE the number of the device's pixels to one of the mouse, SANDBOX_PALETTE "dark" or "light".
# With SMALL_DISKS=wanted, and where the user may mount any, the script finds a disk of 64 KiB at $FULL_DISK, with a
# link "device.zel" to /dev/full, and a read-only disk at $READ_ONLY_DISK. PICTURES is a directory that is passed to
# the script.
set -uo pipefail
root=$1 sandbox=$2 plugin=$3 script=$4 failure=${5:-}
if [ "${SMALL_DISKS:-}" = wanted ] && unshare --map-root-user --mount mount -t tmpfs none /tmp 2>/dev/null; then
    SMALL_DISKS=here exec unshare --map-root-user --mount "$0" "$@"
fi
work=$(mktemp -d)
disks=()
trap '[ ${#disks[@]} -eq 0 ] || umount "${disks[@]}"; rm -rf "$work"' EXIT
if [ "${SMALL_DISKS:-}" = here ]; then
    export FULL_DISK=$work/disk READ_ONLY_DISK=$work/read-only
    disks=("$FULL_DISK" "$READ_ONLY_DISK")
    mkdir "${disks[@]}"
    mount -t tmpfs -o size=64k none "$FULL_DISK"
    ln -s /dev/full "$FULL_DISK/device.zel"
    mount -t tmpfs -o ro none "$READ_ONLY_DISK"
fi
# What is saved without being asked for a place must not end among the user's own files.
mkdir "$work/home"
places=(HOME="$work/home" XDG_CACHE_HOME="${XDG_CACHE_HOME:-$HOME/.cache}")
output=$("$root/scripts/headless" env "${places[@]}" ${SANDBOX_SCALE:+QT_SCALE_FACTOR=$SANDBOX_SCALE} "$sandbox" \
    --settings "${SANDBOX_SETTINGS:-$work/settings.ini}" --plugin "$plugin" --size "${SANDBOX_SIZE:-1200x800}" \
    --palette "${SANDBOX_PALETTE:-system}" --script "$script" ${PICTURES:+"$PICTURES"} 2>&1)
status=$?
echo "$output"
[ -n "$failure" ] || exit $status
if [ $status -ne 1 ]; then
    echo "status $status instead of 1"
    exit 1
fi
echo "$output" | grep -Eq "FAILED: .*$failure" || { echo "no message that matches $failure"; exit 1; }
