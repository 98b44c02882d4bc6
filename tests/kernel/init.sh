#!/bin/busybox sh
# shellcheck shell=dash
# The guest's first process. Mounts two 9p shares: the host's root file system, which is never written to, and a folder
# for results. Runs /out/command in there, writes its exit status to /out/status and switches off.
export PATH=/bin
/bin/busybox --install -s /bin

finish() {
    echo "$1" >/out/status
    sync
    poweroff -f
}

mount -t proc proc /proc
mount -t sysfs sys /sys
mount -t devtmpfs dev /dev
for module in virtio_pci 9pnet_virtio 9p overlay; do
    modprobe "$module" || echo "guest: no module $module"
done

share=trans=virtio,version=9p2000.L,msize=262144
mkdir -p /out /lower /memory /root
mount -t 9p -o "$share" out /out || poweroff -f
mount -t 9p -o "$share,ro,cache=loose" host /lower || finish "no root file system"
mount -t tmpfs -o mode=755 memory /memory
mkdir /memory/upper /memory/work
mount -t overlay -o lowerdir=/lower,upperdir=/memory/upper,workdir=/memory/work overlay /root ||
    finish "no overlay"

mount -t proc proc /root/proc
mount -t sysfs sys /root/sys
mount -o bind /dev /root/dev
mkdir -p /root/dev/pts /root/dev/shm /root/lib/modules
mount -t devpts devpts /root/dev/pts
mount -t tmpfs shm /root/dev/shm
mount -t tmpfs -o mode=755 run /root/run
mkdir -p /root/run/out /root/run/lock
mount -o bind /out /root/run/out
# The modules lie in the project's build folder; the host's own, if any, are of another kernel.
modules=$(sed -n 's/.*zel\.modules=\([^ ]*\).*/\1/p' /proc/cmdline)
mount -o bind "/root$modules" /root/lib/modules || finish "no modules"
ip link set lo up
hostname guest

echo "guest: $(uname -r) is up after $(cut -d' ' -f1 /proc/uptime) s"
cd /root && chroot /root /bin/bash /run/out/command </dev/null >/dev/console 2>&1
finish $?
