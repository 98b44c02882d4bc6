#!/usr/bin/env bash
# Inside the minimal system that bare.sh made, as root. An ordinary user without sudo gives the commands; root installs
# only by the command that they tell that user to have run.
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/inside.sh

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

try ./run
try ./test
