#!/usr/bin/env bash
# Stands in for a test program on this machine: result.sh FOLDER PROGRAM [ARGUMENT...] answers for one case what the
# program answered in the guest, where guest.sh left it under FOLDER. Anything but one case is the program's business.
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
