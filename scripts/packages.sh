# shellcheck shell=bash disable=SC2034 # the lists are for those who source it
# Sourced by run, test and scripts. Installs Debian packages that are missing, and says so; quiet when nothing is.
# Each package is named once.

BUILD_PACKAGES=(
    g++ cmake ninja-build pkgconf qt6-base-dev qt6-base-dev-tools qt6-svg-dev libgl-dev qt6-translations-l10n
    libusb-1.0-0-dev libssl-dev nlohmann-json3-dev cmark-gfm
)
# What the program calls or loads while it runs, and a font to write with.
RUN_PACKAGES=(zip unzip qt6-wayland xdg-utils fonts-dejavu-core)
# The icons of the desktop's theme need Qt's SVG plugin: Debian 12 has it in the library's package, later ones in a
# package of its own.
case $(. /etc/os-release && echo "${VERSION_ID:-}") in
    12) RUN_PACKAGES+=(libqt6svg6) ;;
    *) RUN_PACKAGES+=(qt6-svg-plugins) ;;
esac
TEST_PACKAGES=(libgtest-dev libgmock-dev locales python3)
# To boot Debian's kernel in an emulated machine, and what the tests call in there.
KERNEL_PACKAGES=(qemu-system-x86 busybox-static cpio kmod udev usbip v4l-utils iproute2 util-linux dmsetup e2fsprogs)
# A compiler for a big-endian processor, what runs its programs here, and the tests' framework to build for it.
BIG_ENDIAN_PACKAGES=(g++-s390x-linux-gnu qemu-user googletest)
# A screen in memory. xvfb-run calls xauth, which xvfb only recommends.
SCREEN_PACKAGES=(xvfb xauth)
TOUR_PACKAGES=("${SCREEN_PACKAGES[@]}" openbox xdotool imagemagick)
# What a screen reader speaks to, and a Wayland desktop for it, beside the tour's screen.
ACCESSIBILITY_PACKAGES=(at-spi2-core python3-pyatspi dbus-daemon weston)
# The start of the program is measured on an X server, which tells when a window appears.
BENCH_PACKAGES=("${SCREEN_PACKAGES[@]}" libbenchmark-dev libxcb1-dev)
# Debian's own tools to make packages.
PACKAGE_PACKAGES=(git build-essential dpkg-dev debhelper)
# What reads the tree's text.
LINT_PACKAGES=(clang clang-tidy clang-format shellcheck codespell)

# need_packages PACKAGE...: installs what is missing. A script calls it once, with all that it needs: if this user may
# not install, it ends with one command for somebody who may.
need_packages() {
    local missing=() package
    for package in "$@"; do
        case "$(dpkg-query -W -f='${Status}' "$package" 2>/dev/null)" in
            *"ok installed") ;;
            *) missing+=("$package") ;;
        esac
    done
    [ ${#missing[@]} -eq 0 ] && return 0

    if can_be_root; then
        echo "Installing Debian packages: ${missing[*]}"
        as_root apt-get update -qq &&
            as_root env DEBIAN_FRONTEND=noninteractive \
                apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null && return 0
    fi
    cat >&2 <<END
Debian packages are missing and could not be installed from here. Have this command run as root, then start again:

    apt-get update && apt-get install --no-install-recommends ${missing[*]}

END
    return 1
}

can_be_root() { [ "$(id -u)" -eq 0 ] || command -v sudo >/dev/null; }

# as_root COMMAND...: runs it as root, by sudo where need be.
as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif can_be_root; then
        sudo "$@"
    else
        echo "This needs root: $*" >&2
        return 1
    fi
}

# build PRESET [cmake options...]: configures, in silence unless it fails, and builds all or, where they are named,
# TARGETS.
build() {
    local preset=$1 log=build/$1-configure.log
    shift
    mkdir -p build
    # What ccache must overlook to store what is compiled with precompiled headers.
    export CCACHE_SLOPPINESS=${CCACHE_SLOPPINESS:-pch_defines,time_macros}
    cmake --preset "$preset" -DCMAKE_CXX_COMPILER_LAUNCHER="$(compiler_cache)" "$@" >"$log" 2>&1 || { cat "$log" >&2; return 1; }
    # shellcheck disable=SC2086 # a list of words
    cmake --build --preset "$preset" ${TARGETS:+--target $TARGETS}
}

# clone_into FOLDER: what is committed here, with its history. The tree may be another user's, as it is for root who was
# called by sudo; git asks for leave in a file of settings, since options do not reach the process that it reads from.
clone_into() {
    local settings status=0
    settings=$(mktemp)
    printf '[safe]\n\tdirectory = *\n' >"$settings"
    GIT_CONFIG_GLOBAL=$settings git clone --quiet --no-local . "$1" || status=$?
    rm "$settings"
    return $status
}

# ccache where it is installed, unless g++ already stands for it; else nothing.
compiler_cache() {
    command -v ccache >/dev/null || return 0
    [ "$(basename "$(realpath "$(command -v g++)")")" = ccache ] || echo ccache
}
