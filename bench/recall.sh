#!/usr/bin/env bash
# Inside the emulated machine: a recall by both backends beside the bare orders, with few devices on the bus and with
# many. Compare the rows under one heading.
#   scripts/kernel_guest.sh bench/recall.sh BUILD_FOLDER [BENCHMARK_OPTION...]
set -euo pipefail
build=$1
shift
log=/run/camera.log
modprobe -a vhci-hcd uvcvideo
# Drivers come and go here as the measurement wants it.
rm -f /lib/udev/rules.d/80-drivers.rules
/lib/systemd/systemd-udevd --daemon

devices() {
    cat /sys/bus/usb/devices/*/idVendor | wc -l
}
devices_are() { test "$(devices)" "$1" "$2"; }
wait_until() {
    until "$@"; do sleep 0.2; done
    udevadm settle --timeout=60
}

"$build/bin/zelvoria-camara-virtual" --log "$log" &
wait_until grep -qs listening "$log"
usbip attach -r 127.0.0.1 -b 1-1
wait_until [ -e /dev/video0 ]
few=$(devices)

measure() {
    local backend=$1
    shift
    echo "== $backend, $(devices) devices"
    "$build/bench/zel_recall_bench" --benchmark_filter="BM_(Recall|Bare$backend)/" "$@"
}

measure Driver "$@"
modprobe xhci-pci
wait_until devices_are -ge 40
measure Driver "$@"
modprobe -r uvcvideo
measure Libusb "$@"
modprobe -r xhci-pci
wait_until devices_are -eq "$few"
measure Libusb "$@"
kill %1
