#!/usr/bin/env bash
# Runs a command as root on Debian's own kernel, in an emulated machine that sees this one's root file system. What it
# changes there is forgotten. No virtualisation, no rights and no network are needed; a start takes some 20 seconds.
#
#   scripts/kernel_guest.sh [-t SECONDS] [-o FOLDER] COMMAND [ARGUMENT...]
#
# COMMAND starts in the current folder, with loopback up and usbip, modprobe and the like at hand; its output appears
# here as it comes, and its exit status is this script's. FOLDER (build/kernel/out) is /run/out in the guest: what is
# written there stays, "console" and "status" among it; it is emptied first. SECONDS (600) is how long all may take;
# 124 is the exit status when that is over. Example:
#
#   scripts/kernel_guest.sh bash -c 'modprobe -a vhci-hcd uvcvideo && lsmod'
set -euo pipefail
project=$(realpath "$(dirname "$0")/..")
. "$project/scripts/packages.sh"
work=$project/build/kernel
out=$work/out
limit=600

while getopts t:o: option; do
    case $option in
        t) limit=$OPTARG ;;
        o) out=$OPTARG ;;
        *) sed -n '2,13s/^# \?//p' "$0" >&2; exit 64 ;;
    esac
done
shift $((OPTIND - 1))
[ $# -gt 0 ] || { sed -n '2,13s/^# \?//p' "$0" >&2; exit 64; }

# The package that linux-image-amd64 stands for at present.
kernel_package() {
    LC_ALL=C apt-cache depends linux-image-amd64 2>/dev/null |
        sed -n 's/^ *Depends: \(linux-image-[^ ]*\)$/\1/p' | head -1
}

# The package is unpacked here and not installed: that would touch this machine's /boot.
unpack_kernel() {
    local package
    package=$(kernel_package)
    if [ -z "$package" ]; then
        # Fresh machines have no lists yet.
        as_root apt-get -qq update
        package=$(kernel_package)
    fi
    [ -n "$package" ] || { echo "kernel_guest: apt knows no package linux-image-amd64" >&2; return 1; }
    # Only what the guest can use: the rest is some 300 MB.
    local parts=(net/9p fs/{9p,netfs,overlayfs,ext4,jbd2,'*cache*'} lib crypto drivers/{virtio,usb,media,md,block/brd.ko*})
    kernel=$work/$package
    [ "$(cat "$kernel/complete" 2>/dev/null)" = "${parts[*]}" ] && return 0

    echo "Unpacking $package"
    rm -rf "${work:?}/$package"
    mkdir -p "$work/$package"
    (
        cd "$work/$package"
        # Lists grow old: what they name may have made room for a newer one.
        apt-get -qq download "$package" 2>/dev/null || { as_root apt-get -qq update && apt-get -qq download "$package"; }
        # Debian 13 has the modules below /usr.
        dpkg-deb --fsys-tarfile ./*.deb | tar -x --wildcards './boot/vmlinuz-*' './*lib/modules/*/modules.*' \
            "${parts[@]/#/./*lib/modules/*/kernel/}"
        [ -e lib ] || ln -s usr/lib lib
        rm ./*.deb
        /sbin/depmod --basedir . "$(basename lib/modules/*)"
        echo "${parts[*]}" >complete
    )
}

# Writes to $1 an initial file system of busybox, the modules that the shares need, and init.sh.
make_initramfs() {
    local root version
    root=$(mktemp -d)
    version=$(basename "$kernel"/lib/modules/*)
    mkdir -p "$root"/{bin,proc,sys,dev,lib/modules/"$version"}
    cp /bin/busybox "$root/bin/"
    cp "$project/tests/kernel/init.sh" "$root/init"
    chmod +x "$root/init"
    (
        cd "$kernel/lib/modules/$version"
        find kernel/{net,fs,drivers/virtio} -name '*.ko*' |
            cpio --quiet -pdm "$root/lib/modules/$version"
        cp modules.builtin modules.order "$root/lib/modules/$version/"
    )
    /sbin/depmod --basedir "$root" "$version" 2>/dev/null
    (cd "$root" && find . | cpio --quiet -o -H newc -R 0:0 | gzip -1) >"$1"
    rm -rf "$root"
}

need_packages "${KERNEL_PACKAGES[@]}"
unpack_kernel
mkdir -p "$out"
out=$(realpath "$out")
[ "$out" != / ] && find "$out" -mindepth 1 -delete
make_initramfs "$out/initramfs"
# Other people's devices: they are on the bus from `modprobe xhci-pci` on.
foreign=()
for controller in 1 2; do
    foreign+=(-device "qemu-xhci,id=usb$controller,p2=12,p3=1")
    for port in {1..12}; do foreign+=(-device "usb-mouse,bus=usb$controller.0,port=$port"); done
done
printf 'export PATH=/usr/local/sbin:/usr/local/bin:/usr/sbin:/usr/bin:/sbin:/bin LC_ALL=C.UTF-8 HOME=/root SYSTEMD_IGNORE_CHROOT=1\ncd %q\n%s\n' \
    "$PWD" "$(printf '%q ' "$@")" >"$out/command"

status=0
timeout --kill-after=10 "$limit" qemu-system-x86_64 -nodefaults -no-user-config -no-reboot -display none \
    -machine q35 -accel tcg,thread=multi -cpu max -smp 2 -m 1024 \
    -chardev stdio,id=console,signal=off -serial chardev:console \
    -fsdev local,id=host,path=/,security_model=none,readonly=on,multidevs=remap \
    -device virtio-9p-pci,fsdev=host,mount_tag=host \
    -fsdev local,id=out,path="$out",security_model=none,multidevs=remap -device virtio-9p-pci,fsdev=out,mount_tag=out \
    "${foreign[@]}" \
    -kernel "$(echo "$kernel"/boot/vmlinuz-*)" -initrd "$out/initramfs" \
    -append "console=ttyS0 quiet loglevel=2 panic=-1 mitigations=off zel.modules=$kernel/lib/modules" \
    </dev/null | sed -u 's/\r//g' | tee "$out/console" || status=${PIPESTATUS[0]}
rm -f "$out/initramfs"

if [ "$status" -ne 0 ]; then
    echo "kernel_guest: the emulated machine ended with $status after at most $limit s" >&2
    exit "$status"
fi
answer=$(cat "$out/status" 2>/dev/null || echo "nothing")
case $answer in
    *[!0-9]*) echo "kernel_guest: the guest came to nothing: $answer" >&2; exit 125 ;;
    *) exit "$answer" ;;
esac
