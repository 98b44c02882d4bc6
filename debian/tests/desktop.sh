# shellcheck shell=bash
# Sourced by the tests: gives them a screen of their own, a window manager and a fresh home, as an ordinary user has.
set -euo pipefail
[ "$(id -u)" -ne 0 ] || { echo "an ordinary user is meant, not root"; exit 1; }
. scripts/stage.sh
on_stage 1024x860
exec 2>&1  # what programs say about the screen is no failure

HOME=$(mktemp -d)
XDG_RUNTIME_DIR=$HOME/run
mkdir -m 700 "$XDG_RUNTIME_DIR"
export HOME XDG_RUNTIME_DIR LC_ALL=C.UTF-8
unset XDG_DATA_HOME XDG_CONFIG_HOME XDG_CACHE_HOME
pictures=${AUTOPKGTEST_ARTIFACTS:-$HOME}
program=

# leave: at the end, whatever came of it. What went wrong is told by what is there.
leave() {
    local status=$? id file
    trap - EXIT
    set +e
    if [ $status -ne 0 ]; then
        import -window root "$pictures/failed.png"
        echo "== windows, hidden ones too"
        for id in $(xdotool search --name .); do
            echo "$id «$(xdotool getwindowname "$id")»"
        done
        echo "== windows on the screen"
        xdotool search --onlyvisible --name .
        for file in "$HOME"/*.txt; do
            echo "== ${file##*/}"
            cat "$file"
        done
        if [ -n "$program" ] && kill -0 "$program" 2>/dev/null; then
            echo "== the program has not ended"
        elif [ -n "$program" ]; then
            wait "$program"
            echo "== the program ended with $?"
        fi
    fi
    kill "${players[@]}" 2>/dev/null
    rm -rf "$HOME"
    exit $status
}
trap leave EXIT

fail() {
    echo "FAILED: $*"
    exit 1
}

# start ENTRY [ARGUMENT]: by the menu entry's own command line. Its process is $program, its output $HOME/ENTRY.txt.
start() {
    local command
    command=$(sed -n 's/^Exec=//p' "/usr/share/applications/$1.desktop")
    [ -n "$command" ] || fail "$1 has no command line"
    bash -c "exec $command \"\$@\"" "$1" "${@:2}" >"$HOME/$1.txt" 2>&1 &
    program=$!
    players+=("$program")
}

# wait_until WHAT COMMAND...: at most half a minute: busy machines are slow, not wrong.
wait_until() {
    local what=$1 end=$((SECONDS + 30))
    shift
    until "$@" >/dev/null 2>&1; do
        [ $SECONDS -lt $end ] || fail "no $what"
        sleep 0.2
    done
    echo "ok: $what"
}

on_screen() { xdotool search --onlyvisible --name "^$1\$"; }
gone() { ! on_screen "$1"; }

# window TITLE: waits for it, gives it the keyboard; it is $window then.
window() {
    wait_until "window «$1»" on_screen "$1"
    window=$(on_screen "$1" | tail -1)
    xdotool windowactivate --sync "$window" || fail "no way to bring «$1» to the front"
}

# shown NAME: the window $window has something in it, and a picture of the screen stays.
shown() {
    # shellcheck disable=SC2317 # wait_until calls it
    take() { import -window root "$pictures/$1.png" && has_content "$pictures/$1.png" "$window"; }
    wait_until "something in it: $1.png" take "$1"
}

# To whatever has the keyboard: panels and questions too.
keys() { xdotool key --delay 120 "$@"; }

# ended: the program ends by itself, with 0.
ended() {
    # shellcheck disable=SC2317 # wait_until calls it
    is_over() { ! kill -0 "$program"; }
    wait_until "end of the program" is_over
    wait "$program" || fail "it ended with $?"
}
