#!/usr/bin/env bash
# Plays the simulated edition on a virtual screen: picks scenes as a person would, by keyboard and mouse, and leaves
# numbered pictures of the screen.
#   tour.sh PROGRAM FOLDER
set -euo pipefail
# shellcheck source=scripts/stage.sh
. "$(dirname "$0")/stage.sh"
program=$(realpath "$1")
mkdir -p "$2"
folder=$(realpath "$2")
rm -rf "${folder:?}"/*.png "$folder/store"
# It holds both windows.
on_stage 760x820
start_edition "$program" "$folder"

picture=0
step() {
    picture=$((picture + 1))
    local file
    file=$folder/$(printf '%02d' "$picture")-$1.png
    show "$file" "$window" "$preview"
    echo "$file"
}

step inicio
keys Down
step otro-centro
keys Tab Tab Tab Down
step otra-aula
keys Tab Tab Tab Down
step otra-escena
keys Up
step escena-anterior
keys ctrl+plus ctrl+plus ctrl+plus ctrl+Right ctrl+Right
step ajuste-fino
keys space
step escenas-desplegadas
keys Escape
