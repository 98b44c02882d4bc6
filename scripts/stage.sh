# shellcheck shell=bash
# Sourced by tour.sh, pictures.sh, the journey for assistive technology and the packages' tests: the simulated edition on a
# virtual screen, and pictures of it.

# What openbox draws left of a window and above it.
FRAME_LEFT=1
FRAME_TOP=20

# on_stage SIZE: gives the calling script a screen of that size and a window manager. They are the first of its players,
# who end with it.
on_stage() {
    local screen number
    players=()
    trap 'kill "${players[@]}" 2>/dev/null || true' EXIT
    # It says its number when it is ready. 24 bits.
    exec {screen}< <(exec Xvfb -displayfd 1 -screen 0 "${1}x24" 2>/dev/null)
    players+=($!)
    read -r -t 60 -u "$screen" number || { echo "no screen: Xvfb does not start" >&2; exit 1; }
    export DISPLAY=:$number QT_QPA_PLATFORM=xcb
    manage_windows
}

# manage_windows: openbox joins the players, and is ready. A window that appears while it starts is lost: openbox takes
# its request, shows nothing, and says no word. Its startup command still comes a moment too soon; what it does when it is
# asked for something, as going from four desktops to one, it does when it is ready.
manage_windows() {
    local ready end
    exec {ready}< <(exec openbox --startup "echo ready" 2>/dev/null)
    players+=($!)
    read -r -t 60 -u "$ready" || { echo "no window manager: openbox does not start" >&2; exit 1; }
    end=$((SECONDS + 60))
    until { xdotool set_num_desktops 1 && [ "$(xdotool get_num_desktops)" = 1 ]; } 2>/dev/null; do
        [ $SECONDS -lt $end ] || { echo "no window manager: openbox does not answer" >&2; exit 1; }
        sleep 0.05
    done
}

# window_called TITLE: waits for the window whose title begins so; its id.
window_called() { timeout 20 xdotool search --sync --onlyvisible --name "^$1" | head -1; }

# start_edition PROGRAM FOLDER: with its store in FOLDER/store. Its two windows are then $window, which has the keyboard,
# and $preview.
start_edition() {
    "$1" "$2/store" >"$2/output.txt" 2>&1 &
    players+=($!)
    window=$(window_called 'Zelvoria. Control de cámara$')
    xdotool windowactivate --sync "$window"
    xdotool windowmove --sync "$window" 80 46
    preview=$(window_called 'Vista previa')
    xdotool windowmove --sync "$preview" 44 320
    xdotool windowactivate --sync "$window"
}

# box_of WINDOW [MARGIN]: its place on the screen, without its frame, as ImageMagick writes it. xdotool counts the left
# and upper edge of the frame twice.
box_of() {
    local X Y WIDTH HEIGHT margin=${2:-0}
    eval "$(xdotool getwindowgeometry --shell "$1")"
    echo "$((WIDTH + 2 * margin))x$((HEIGHT + 2 * margin))+$((X - FRAME_LEFT - margin))+$((Y - FRAME_TOP - margin))"
}

# The picture of window $2 within the picture of the screen $1 shows something: one that is blank has one colour, one
# without its text and icons a few. With them it has at least 400.
has_content() {
    identify -format '%k %[fx:standard_deviation]\n' "$1[$(box_of "$2")]" | awk '{ exit !($1 >= 100 && $2 >= 0.05) }'
}

# show FILE WINDOW...: takes a picture of the screen when it has changed since the last one and has come to rest, since
# the motors need a moment. No WINDOW may be blank.
shown=
show() {
    local file=$1 seen before now='' deadline=$((SECONDS + 30))
    shift
    while :; do
        before=$now
        sleep 0.7
        import -window root "$file"
        now=$(identify -format '%#' "$file")
        [ "$now" = "$before" ] && [ "$now" != "$shown" ] && break
        [ $SECONDS -lt $deadline ] || { echo "$file: the screen did not change, or did not come to rest" >&2; exit 1; }
    done
    shown=$now
    for seen; do
        has_content "$file" "$seen" || { echo "$file: a window is blank" >&2; exit 1; }
    done
}

# Always to the main window: an open list or menu takes what it gets.
keys() { xdotool key --window "$window" --delay 120 "$@"; }
