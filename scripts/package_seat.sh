#!/usr/bin/env bash
# Inside the emulated machine, as root: a camera is plugged in, the packages are installed, and somebody logs in nowhere.
# The person at the seat then moves the camera, by each backend, and another user is told why not.
#
#   scripts/kernel_guest.sh scripts/package_seat.sh FOLDER    FOLDER has the packages of this system
#
# No login manager runs here: the seat's file says who is active, as logind would write it for udev to read.
set -euo pipefail
packages=$1
seated=4101 other=4102
log=/run/camera.log
modprobe -a vhci-hcd uvcvideo xhci-pci
# Drivers come and go here as it is wanted. Without Debian's rule for all video nodes, ours alone gives them.
rm -f /lib/udev/rules.d/80-drivers.rules /lib/udev/rules.d/70-uaccess.rules
# Indexing all manual pages of this machine took more than ten minutes here, and is no part of this.
rm -f /var/lib/man-db/auto-update
mkdir -p /run/systemd/seats
printf 'ACTIVE=1\nACTIVE_UID=%s\n' $seated >/run/systemd/seats/seat0
/lib/systemd/systemd-udevd --daemon
for id in $seated $other; do
    groupadd --gid "$id" "user$id"
    useradd --uid "$id" --gid "$id" --create-home "user$id"
done

fail() {
    echo "FAILED: $*"
    ls -l /dev/bus/usb/*/* /dev/video* || true
    tail "$log" /home/*/err || true
    exit 1
}
wait_until() {
    local what=$1 end=$((SECONDS + 120))
    shift
    until "$@" 2>/dev/null; do
        [ $SECONDS -lt $end ] || fail "no $what"
        sleep 0.3
    done
    udevadm settle --timeout=60
}
# as USER COMMAND...: takes the place of the shell that it is called in.
as() {
    exec setpriv --reuid "$1" --regid "$1" --clear-groups \
        env -u XDG_RUNTIME_DIR HOME="/home/user$1" QT_QPA_PLATFORM=offscreen "${@:2}"
}
# may USER FILE...: the user may read and write each of them.
may() {
    local file
    for file in "${@:2}"; do (as "$1" test -r "$file" -a -w "$file") || return 1; done
}
usb_files() { find /dev/bus/usb -type c; }

# The camera of the package, before the package: its files alone, unpacked elsewhere.
dpkg -x "$packages"/zelvoria-camara-virtual_*.deb /run/elsewhere
/run/elsewhere/usr/bin/zelvoria-camara-virtual --log $log &
wait_until "camera's server" grep -qs listening $log
others=$(usb_files)
usbip attach -r 127.0.0.1 -b 1-1
wait_until "video node" [ -e /dev/video0 ]
usb=$(usb_files | grep -vxF "$others")
[ -c "$usb" ] || fail "the camera's USB file: $usb"
ls -l "$usb" /dev/video*
for file in "$usb" /dev/video0; do
    ! may $seated "$file" || fail "$file is open before the installation"
done

dpkg -i "$packages"/zelvoria-camara{,-demo,-virtual}_*.deb | cat  # without its progress
udevadm settle --timeout=60
ls -l "$usb" /dev/video*
may $seated "$usb" /dev/video0 || fail "the person at the seat may not use the camera"
for file in "$usb" /dev/video0; do
    ! may $other "$file" || fail "$file is open to everybody"
done
for file in $others; do
    ! may $seated "$file" || fail "$file is no camera's"
done
echo "ok: after the installation, $usb and /dev/video0 are the seated user's, and $(wc -w <<<"$others") other USB files are not"

# Both have the sample scenes.
as $seated zelvoria-camara-simulada /home/user$seated/demo >/dev/null 2>&1 &
wait_until "sample scenes" [ -e "/home/user$seated/demo/Documentos/Presets/Rectorado/Salón de Grados.presets" ]
kill $!
for id in $seated $other; do
    mkdir "/home/user$id/Documents"
    cp -r /home/user$seated/demo/Documentos/Presets "/home/user$id/Documents/"
    chown -R "$id:$id" "/home/user$id"
done

# start USER: the installed program, which sends the first scene.
start() {
    orders_before=$(orders)
    as "$1" zelvoria-camara >"/home/user$1/out" 2>"/home/user$1/err" &
    program=$!
}
orders() { grep -cE 'SET_CUR .*(selector=0x0d|selector=0x0b).* ok$' $log || true; }
orders_came() { [ "$(orders)" -ge $((orders_before + 2)) ]; }
told() { grep -q "no permission to open $1" "/home/user$other/err"; }

# both_users BACKEND FILE LINE
both_users() {
    start $seated
    wait_until "orders by $1" orders_came
    kill $program
    wait $program || true
    echo "ok: the person at the seat moves the camera by $1"
    start $other
    wait_until "line about $2" told "$2"
    kill $program
    wait $program || true
    [ "$(orders)" -eq "$orders_before" ] || fail "somebody else has moved the camera"
    echo "ok: somebody else does not: $(grep -m1 'no permission' "/home/user$other/err")"
}
both_users uvcvideo /dev/video0
modprobe -r uvcvideo
udevadm settle --timeout=60
both_users libusb "$usb"
