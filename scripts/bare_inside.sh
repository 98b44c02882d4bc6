#!/usr/bin/env bash
# Inside the minimal system that bare.sh made, as root. An ordinary user without sudo gives the commands; root installs
# only by the command that they tell that user to have run.
set -euo pipefail
project=$(realpath "$(dirname "$0")/..")
mountpoint -q /proc || { echo "bare: mounting is not allowed on this machine" >&2; exit 1; }
# Mounted by mmdebstrap, it gives each pseudo-terminal to another user than the one that opens it.
mount -o remount,gid=5,mode=620,ptmxmode=666 none /dev/pts

useradd --create-home aula
chown -R aula "$project" /var/cache/ccache
# Wherever the tree is, its user can reach it: it has the same place as outside, which ccache's hits depend on.
folder=$project
while [ "$folder" != / ]; do
    chmod a+x "$folder"
    folder=$(dirname "$folder")
done

as_user() {
    env -u DISPLAY -u WAYLAND_DISPLAY -u XDG_RUNTIME_DIR -u XDG_CACHE_HOME CCACHE_DIR=/var/cache/ccache CCACHE_MAXSIZE=2G \
        su aula --shell /bin/bash --command "umask 022 && cd $(printf %q "$project") && $1"
}

# try COMMAND: it must first say what is missing, and then work.
try() {
    local begin=$SECONDS command
    echo "== $1"
    if as_user "$1" >/tmp/refusal 2>&1; then
        echo "bare: $1 works without any of its packages?" >&2
        return 1
    fi
    command=$(sed -n 's/^ *\(apt-get update && .*\)/\1/p' /tmp/refusal)
    if [ "$(wc -l <<<"$command")" -ne 1 ] || [ -z "$command" ]; then
        echo "bare: $1 should name one command, and says:" >&2
        cat /tmp/refusal >&2
        return 1
    fi
    # apt-get asks whether to go on.
    DEBIAN_FRONTEND=noninteractive bash -c "$command" < <(yes) >/tmp/installed 2>&1 || { cat /tmp/installed >&2; return 1; }
    echo "== packages installed after $((SECONDS - begin)) s"
    as_user "$1"
    echo "== $1 took $((SECONDS - begin)) s"
}

# What is kept for the next time: only packages that can still be had.
trap 'apt-get -qq autoclean >/dev/null' EXIT
try ./run
try ./test
