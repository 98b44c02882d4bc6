# Sourced by run and test. Installs Debian packages that are missing, and says so; quiet when nothing is.

BUILD_PACKAGES=(
    g++ cmake ninja-build pkg-config qt6-base-dev qt6-base-dev-tools qt6-svg-dev libgl-dev qt6-translations-l10n
    libusb-1.0-0-dev libssl-dev nlohmann-json3-dev
)
# What the program calls or loads while it runs, and a font to write with.
RUN_PACKAGES=(bash zip unzip libqt6svg6 qt6-translations-l10n qt6-wayland xdg-utils fonts-dejavu-core)
TEST_PACKAGES=(libgtest-dev libgmock-dev libumockdev-dev umockdev locales python3 openssl zip unzip)
# To boot Debian's kernel in an emulated machine, and what the tests call in there.
KERNEL_PACKAGES=(qemu-system-x86 busybox-static cpio kmod udev usbip v4l-utils iproute2 util-linux)
TOUR_PACKAGES=(xvfb openbox xdotool imagemagick x11-utils)

need_packages() {
    local missing=() package
    for package in "$@"; do
        case "$(dpkg-query -W -f='${Status}' "$package" 2>/dev/null)" in
            *"ok installed") ;;
            *) missing+=("$package") ;;
        esac
    done
    [ ${#missing[@]} -eq 0 ] && return 0

    echo "Installing Debian packages: ${missing[*]}"
    as_root apt-get update -qq
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# as_root COMMAND...: runs it as root, by sudo where need be.
as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null; then
        sudo "$@"
    else
        echo "This needs root: $*" >&2
        return 1
    fi
}

# build PRESET [cmake options...]: configures, in silence unless it fails, and builds.
build() {
    local preset=$1 log=build/$1-configure.log
    shift
    mkdir -p build
    cmake --preset "$preset" "$@" >"$log" 2>&1 || { cat "$log" >&2; return 1; }
    cmake --build --preset "$preset"
}
