#!/usr/bin/env bash
# CTest runs this in place of a test program: result.sh FOLDER PROGRAM [ARGUMENT...]. For one case it repeats the output
# and the exit status that guest.sh left under FOLDER; everything else, such as the list of cases, the program does.
set -euo pipefail
folder=$1
shift

for argument in "$@"; do
    case $argument in --gtest_filter=*) name=${argument#--gtest_filter=} ;; esac
done
[ -n "${name:-}" ] || exec "$@"

result=$folder/${name//\//.}
if [ ! -e "$result/status" ]; then
    echo "$name did not run to its end on the kernel"
    cat "$result/output" 2>/dev/null || true
    exit 1
fi
cat "$result/output"
exit "$(cat "$result/status")"
