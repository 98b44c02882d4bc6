#!/usr/bin/env bash
# What ./test coverage does once it is built: runs the tests, and those of the kernel suite in the emulated machine,
# and says what part of src they ran, by folder, and which lines none of them did.
#   coverage.sh BUILD
set -euo pipefail
build=$(realpath "$1")
find "$build" -name '*.gcda' -delete
ctest --test-dir "$build" --label-exclude '^kernel$' --output-on-failure --parallel "$(nproc)" --progress

# The guest's counters start from the ones above, and are forgotten with everything else that it changes.
programs=("$build"/tests/kernel/kernel_tests "$build"/tests/kernel/kernel_application_tests)
# shellcheck disable=SC2016 # expanded in the guest
scripts/kernel_guest.sh -t 3600 -o "$build/kernel" bash -c \
    'touch /run/start && tests/kernel/guest.sh "${@:2}" &&
        cd "$1" && find . -name "*.gcda" -newer /run/start | tar -cf /run/out/counters.tar -T -' \
    bash "$build" "${programs[@]}"
for folder in "$build"/kernel/*/; do
    [ "$(cat "$folder/status")" = 0 ] || { echo "coverage: not passed: $folder" >&2; exit 1; }
done
tar -xf "$build/kernel/counters.tar" -C "$build"

gcovr --root . --object-directory "$build" --json "$build/coverage.json" >"$build/gcovr.log" 2>&1 ||
    { cat "$build/gcovr.log" >&2; exit 1; }
scripts/coverage_table.py "$build/coverage.json"
