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

# The picture of window $2 within the picture of the screen $1 shows something: one that is blank has one colour, one
# without its text and icons a few. With them it has at least 400.
has_content() {
    local X Y WIDTH HEIGHT
    eval "$(xdotool getwindowgeometry --shell "$2")"
    identify -format '%k %[fx:standard_deviation]\n' "$1[${WIDTH}x$HEIGHT+$X+$Y]" |
        awk '{ exit !($1 >= 100 && $2 >= 0.05) }'
}

# show NAME: takes the picture when the screen has changed and has come to rest, since the motors need a moment.
picture=0
shown=
show() {
    picture=$((picture + 1))
    local file before now='' deadline=$((SECONDS + 30))
    file=$folder/$(printf '%02d' "$picture")-$1.png
    while :; do
        before=$now
        sleep 0.7
        import -window root "$file"
        now=$(identify -format '%#' "$file")
        [ "$now" = "$before" ] && [ "$now" != "$shown" ] && break
        [ $SECONDS -lt $deadline ] || { echo "tour: $file: the screen did not change, or did not come to rest" >&2; exit 1; }
    done
    shown=$now
    has_content "$file" "$window" || { echo "tour: $file: the window is blank" >&2; exit 1; }
    has_content "$file" "$preview" || { echo "tour: $file: the preview is blank" >&2; exit 1; }
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
keys Up
show escena-anterior
keys ctrl+plus ctrl+plus ctrl+plus ctrl+Right ctrl+Right
show ajuste-fino
keys space
show escenas-desplegadas
keys Escape
