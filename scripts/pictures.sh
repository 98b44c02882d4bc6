#!/usr/bin/env bash
# Takes the pictures in docs/pictures anew, from the programs as they run on a virtual screen.
#   pictures.sh [BUILD]     BUILD: the build folder with the programs; build/release, as ./run leaves it
# The self-check looks at the real machine: no camera may be connected.
set -euo pipefail
# shellcheck source=scripts/stage.sh
. "$(dirname "$0")/stage.sh"
# shellcheck source=scripts/packages.sh
. "$(dirname "$0")/packages.sh"
need_packages "${RUN_PACKAGES[@]}" "${TOUR_PACKAGES[@]}"
project=$(realpath "$(dirname "$0")/..")
build=$(realpath "${1:-$project/build/release}")
size=760x820
margin=32  # around a window, for its frame and some of what is behind
on_stage $size
folder=$(mktemp -d)
trap 'kill "${players[@]}" 2>/dev/null || true; rm -rf "$folder"' EXIT
display -window root -size $size 'gradient:#4aa7a1-#1f5f78' || true  # its status is 1 when all is well

# keep NAME BOX: that part of what was shown last.
keep() {
    local file=$project/docs/pictures/$1.png
    convert "$folder/screen.png" -crop "$2" +repage -strip -define png:exclude-chunks=date,time "$file"
    echo "$file"
}

# Nothing of this machine's is in a picture.
export XDG_CONFIG_HOME=$folder LC_ALL=C.UTF-8
unset QT_SCALE_FACTOR QT_STYLE_OVERRIDE QT_QPA_PLATFORMTHEME
# shellcheck disable=SC2016 # for the program
echo 'XDG_DOCUMENTS_DIR="/home/aula/Documentos"' >"$folder/user-dirs.dirs"

start_edition "$build/bin/zelvoria-camara-simulada" "$folder"
keys Down
show "$folder/screen.png" "$window" "$preview"
keep simulated $size
keep window "$(box_of "$window" $margin)"
keys Tab Tab Tab Tab Tab Tab space
show "$folder/screen.png" "$window"
keep picker "$(box_of "$window" $margin)"
keys Escape
keys alt+y
show "$folder/screen.png" "$window"
keep help-menu "$(box_of "$window" $margin)"
keys Escape
keys ctrl+q || true  # it is gone before the key is up

"$build/bin/zelvoria-diagnostico" &
players+=($!)
check=$(window_called '¿Por qué no se mueve la cámara')
xdotool windowsize --sync "$check" 680 380
xdotool windowmove --sync "$check" 40 60
show "$folder/screen.png" "$check"
keep self-check "$(box_of "$check" $margin)"
