#!/usr/bin/env bash
# Runs the fuzzers in FOLDER one after the other, each from its stored inputs, for SECONDS; 0: the stored inputs alone.
# An input that breaks a promise or the program is kept in FOLDER, and ends it all with status 1.
#   run.sh FOLDER SECONDS
set -euo pipefail
folder=$(realpath "$1")
seconds=$2
corpora=$(realpath "$(dirname "$0")/corpus")
status=0
for corpus in "$corpora"/*; do
    name=$(basename "$corpus")
    mkdir -p "$folder/found/$name"
    limit=(-runs=0)
    [ "$seconds" -eq 0 ] || limit=("-max_total_time=$seconds" -max_len=4096)
    log=$folder/$name.log
    if "$folder/fuzz_$name" "${limit[@]}" -timeout=20 -artifact_prefix="$folder/$name-" "$folder/found/$name" "$corpus" \
        >"$log" 2>&1; then
        echo "fuzz: $name: $(grep -aoE '#[0-9]+[[:space:]]+DONE' "$log" | grep -oE '[0-9]+') inputs, nothing found"
    else
        echo "fuzz: $name: FAILED" >&2
        tail -40 "$log" >&2
        status=1
    fi
done
exit $status
