#!/usr/bin/env bash
# Plays the simulated edition on a virtual screen: picks scenes as a person would, by keyboard and mouse, and leaves
# numbered pictures of the screen.
#   tour.sh PROGRAM FOLDER
set -euo pipefail
program=$(realpath "$1")
mkdir -p "$2"
folder=$(realpath "$2")
rm -rf "${folder:?}"/*.png "$folder/store"

if [ -z "${TOUR_INSIDE:-}" ]; then
    # 24 bits and a size that holds both windows.
    TOUR_INSIDE=1 exec xvfb-run --auto-servernum --server-args="-screen 0 760x820x24" "$0" "$program" "$folder"
fi

export QT_QPA_PLATFORM=xcb
openbox >/dev/null 2>&1 &
manager=$!
"$program" "$folder/store" >"$folder/output.txt" 2>&1 &
application=$!
trap 'kill $application $manager 2>/dev/null || true' EXIT

window=$(timeout 20 xdotool search --sync --onlyvisible --name '^Zelvoria. Control de cámara$' | head -1)
xdotool windowactivate --sync "$window"
xdotool windowmove --sync "$window" 80 20
preview=$(timeout 20 xdotool search --sync --onlyvisible --name '^Vista previa' | head -1)
xdotool windowmove --sync "$preview" 60 310
xdotool windowactivate --sync "$window"

picture=0
show() {
    sleep 2.2 # the motors need a moment
    picture=$((picture + 1))
    local file
    file=$folder/$(printf '%02d' "$picture")-$1.png
    import -window root "$file"
    echo "$file"
}
keys() { xdotool key --window "$window" --delay 120 "$@"; }

show inicio
keys Down
show otro-centro
keys Tab Tab Tab Down
show otra-aula
keys Tab Tab Tab Down
show otra-escena
keys Down
show siguiente-escena
keys ctrl+plus ctrl+plus ctrl+plus ctrl+Right ctrl+Right
show ajuste-fino
keys space
sleep 0.5
show escenas-desplegadas
keys Escape
