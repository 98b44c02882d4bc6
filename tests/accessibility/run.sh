#!/usr/bin/env bash
# Plays journey.py twice, on X11 and on Wayland, each on a screen and a session bus of its own.
#   run.sh PROGRAM FOLDER
set -euo pipefail
# shellcheck source=scripts/stage.sh
. "$(dirname "$0")/../../scripts/stage.sh"

if [ "${1:-}" != --on ]; then
    program=$(realpath "$1")
    mkdir -p "$2"
    for system in x11 wayland; do
        echo "== $system"
        # The bus inside the screen: the keys of assistive technology go to the screen that the bus knows.
        xvfb-run --auto-servernum --server-args="-screen 0 1280x1000x24" \
            dbus-run-session -- "$0" --on "$system" "$program" "$(realpath "$2")" 2>"$2/$system.err" ||
            { cat "$2/$system.err" >&2; exit 1; }
    done
    exit 0
fi

system=$2 program=$3 folder=$4
XDG_RUNTIME_DIR=$(mktemp -d)
export XDG_RUNTIME_DIR
players=()
trap 'kill "${players[@]}" 2>/dev/null || true; rm -rf "$XDG_RUNTIME_DIR"' EXIT

if [ "$system" = x11 ]; then
    manage_windows
    display=(QT_QPA_PLATFORM=xcb)
else
    # A window of the virtual screen, which gives it a keyboard: alone there, for the keys go to what has the pointer.
    weston --no-config --use-pixman --idle-time=0 --width=1280 --height=1000 --socket=journey >&2 &
    players+=($!)
    # shellcheck disable=SC2016 # the inner shell's own parameter
    timeout 30 sh -c 'until [ -S "$0/journey" ]; do sleep 0.1; done' "$XDG_RUNTIME_DIR"
    display=(QT_QPA_PLATFORM=wayland WAYLAND_DISPLAY=journey)
fi
"$(dirname "$0")/journey.py" "$folder/store" env "${display[@]}" "$program"
