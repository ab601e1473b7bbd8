#!/usr/bin/env bash
# ends.sh SANDBOX PLUGIN DIRECTORY: however the sandbox is ended, what nobody saved is rescued.
set -uo pipefail
sandbox=$1 plugin=$2 directory=$3/ends
work=$(mktemp -d)
pids=()
trap 'kill "${pids[@]}" 2>/dev/null; rm -rf "$work"' EXIT
failed=0
for way in TERM HUP INT logout screen; do
    home=$work/$way
    mkdir "$home"
    display=$DISPLAY
    if [ $way = screen ]; then
        mkfifo "$home/number"
        Xvfb -displayfd 3 -screen 0 1024x768x24 -nolisten tcp +extension GLX 3>"$home/number" >/dev/null 2>&1 &
        screen=$!
        pids+=($screen)
        read -r number <"$home/number"
        display=:$number
    fi
    session=()
    [ $way = logout ] && session=(python3 "$directory/logout.py" "$home/ready")
    # A shell that is no terminal's ignores SIGINT for what it runs behind it.
    DISPLAY=$display HOME=$home python3 -c 'import os, signal, sys
signal.signal(signal.SIGINT, signal.SIG_DFL)
os.execvp(sys.argv[1], sys.argv[1:])' "${session[@]}" "$sandbox" --settings "$home/settings.ini" --plugin "$plugin" \
        --script "$directory/unsaved.js" "$home/ready" >"$home/output" 2>&1 &
    pid=$!
    pids+=($pid)
    for ((i = 0; i < 600; ++i)); do [ -e "$home/ready" ] && break || sleep 0.1; done
    case $way in
        screen) kill $screen ;;
        logout) ;;
        *) kill -$way $pid ;;
    esac
    for ((i = 0; i < 300; ++i)); do kill -0 $pid 2>/dev/null && sleep 0.1 || break; done
    if kill -0 $pid 2>/dev/null; then
        echo "$way: does not end"
        kill -9 $pid
        failed=1
    fi
    if [ "$(find "$home" -name 'Unsaved *.zel' -exec grep -l '^3d name Circle 1$' {} + | wc -l)" != 1 ]; then
        echo "$way: nothing is rescued"
        cat "$home/output"
        failed=1
    fi
done
exit $failed
