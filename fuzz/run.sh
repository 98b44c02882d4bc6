#!/usr/bin/env bash
# Runs the fuzzers in FOLDER one after the other, each from its stored inputs, for SECONDS; 0: the stored inputs alone.
# An input that breaks a promise or the program is kept in FOLDER; the others are still run, and the status is 1.
#   run.sh FOLDER SECONDS
set -euo pipefail
folder=$(realpath "$1")
seconds=$2
corpora=$(realpath "$(dirname "$0")/corpus")
status=0
for fuzzer in "$folder"/fuzz_*; do
    name=${fuzzer##*/fuzz_}
    limit=(-runs=0)
    inputs=("$corpora/$name")
    if [ "$seconds" -ne 0 ]; then
        mkdir -p "$folder/found/$name"
        limit=("-max_total_time=$seconds" -max_len=4096)
        inputs=("$folder/found/$name" "${inputs[@]}")
    fi
    log=$folder/$name.log
    if "$fuzzer" "${limit[@]}" -timeout=20 -artifact_prefix="$folder/$name-" "${inputs[@]}" >"$log" 2>&1; then
        echo "fuzz: $name: $(grep -aoE '#[0-9]+[[:space:]]+DONE' "$log" | grep -oE '[0-9]+') inputs, nothing found"
    else
        echo "fuzz: $name: FAILED" >&2
        tail -40 "$log" >&2
        status=1
    fi
done
exit $status
