#!/usr/bin/env bash
# Packages that are made, read and used on minimal systems, by Debian's own tools.
#   package.sh try SYSTEM          made, read by lintian and its like, used by autopkgtest
#   package.sh check [SYSTEM...]   and made twice, installed and removed by piuparts, made for arm64: bookworm, trixie (both);
#                                  this machine's own system: and seen on an emulated machine, with a camera
# All that comes of it is in build/package/SYSTEM.
set -euo pipefail
cd "$(realpath "$(dirname "$0")/..")"
. scripts/packages.sh
. scripts/minimal_system.sh

# in_clone SYSTEM OUTSIDE STEP [OPTION...]: package_inside.sh's step in a new minimal system, which has what is committed
# here, with its history.
in_clone() {
    local system=$1 outside=$2 step=$3
    shift 3
    in_minimal_system "$system" build/package/clone.tar /packages "$outside" \
        "'$PWD/scripts/package_inside.sh' $step" "$@"
}

step=$1
shift
[ $# -gt 0 ] || set -- bookworm trixie
need_minimal_systems
rm -rf build/package/clone
mkdir -p build/package
clone_into build/package/clone
tar -C build/package/clone -cf build/package/clone.tar .
rm -rf build/package/clone

for system in "$@"; do
    folder=build/package/$system
    case $step in
        try) in_clone "$system" "$folder" made ;;
        check) in_clone "$system" "$folder" "made twice" ;;
        *) exit 64 ;;
    esac
    in_clone "$system" "$folder.used" used --customize-hook="sync-in '$folder' /packages"
    [ "$step" = try ] || in_clone "$system" "$folder.arm64" arm64 --architectures=amd64,arm64
done

own=$(. /etc/os-release && echo "${VERSION_CODENAME:-}")
if [ "$step" = check ] && [[ " $* " = *" $own "* ]]; then
    need_packages "${BUILD_PACKAGES[@]}" "${RUN_PACKAGES[@]}" "${KERNEL_PACKAGES[@]}"
    scripts/kernel_guest.sh -t 900 -o build/package/seat scripts/package_seat.sh "$PWD/build/package/$own"
fi
