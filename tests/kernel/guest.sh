#!/usr/bin/env bash
# Inside the guest: runs every case of the given test programs in a process and a folder of its own, so that a crash
# ends one case only. Ends with 0 even when cases fail: the result of each is in its folder.
#   guest.sh [-f PATTERN] PROGRAM...    PATTERN: only the cases whose names match this shell pattern
set -uo pipefail
results=/run/out
wanted='*'
if [ "${1:-}" = -f ]; then
    wanted=$2
    shift 2
fi
modprobe -a vhci-hcd uvcvideo || exit 1
# As on a desktop, libusb learns of new devices from udev. The tests load the drivers themselves.
rm -f /lib/udev/rules.d/80-drivers.rules
/lib/systemd/systemd-udevd --daemon || exit 1

cases_of() {
    "$1" --gtest_list_tests | sed 's/ *#.*//' | while IFS= read -r line; do
        case $line in
            "  "*) echo "$suite${line#  }" ;;
            *.) suite=$line ;;
        esac
    done
}

run_case() {
    local folder=$results/${2//\//.} status=0
    mkdir -p "$folder"
    cd "$folder" || return
    dmesg --clear
    timeout --kill-after=5 240 "$1" --gtest_filter="$2" --gtest_color=no >output 2>&1 || status=$?
    # The application's failure dialog ends a process with status 0: only GoogleTest's verdict counts.
    grep -qE '^\[  (PASSED  \] 1 test\.|SKIPPED \] 1 test, .*)$' output || [ $status -ne 0 ] || status=1
    dmesg >kernel
    if grep -qE 'BUG:|Oops|general protection' kernel; then
        echo "the kernel complained:" >>output
        cat kernel >>output
        status=1
    fi
    echo $status >status
    local verdict=passed
    grep -q '^\[  SKIPPED \]' output && verdict=skipped
    [ $status -eq 0 ] || verdict=FAILED
    echo "$verdict $2 ($((SECONDS - start)) s)"
}

for program in "$@"; do
    for name in $(cases_of "$program"); do
        # shellcheck disable=SC2053 # a pattern on purpose
        [[ $name == $wanted ]] || continue
        start=$SECONDS
        run_case "$program" "$name"
    done
done
echo "all cases have run, after $SECONDS s"
