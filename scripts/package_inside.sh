#!/usr/bin/env bash
# Inside a minimal system that package.sh made, as root. What is to be kept comes to /packages.
#
#   package_inside.sh made [twice]   packages from a clone, by an ordinary user, and what their readers say of them; twice:
#                                    from another clone as well, byte for byte the same, and piuparts
#   package_inside.sh used           autopkgtest on the packages in /packages
#   package_inside.sh arm64          packages for arm64, and the tests of what they consist of, in an emulator
set -euo pipefail
cd "$(dirname "$0")/.."
. scripts/inside.sh
export DEBIAN_FRONTEND=noninteractive
system=$(. /etc/os-release && echo "$VERSION_CODENAME")

install() { apt-get -qq -y --no-install-recommends install "$@" </dev/null >/tmp/installed 2>&1 || { cat /tmp/installed; return 1; }; }

say() { echo "== $system: $* ($SECONDS s)"; }

# build FOLDER WORDS: from a clone of its own in FOLDER; WORDS go in front of dpkg-buildpackage's line.
build() {
    as_user "mkdir $1 && git clone --quiet . $1/zelvoria-camara && cd $1/zelvoria-camara &&
        $2 dpkg-buildpackage --no-sign ${3:-} >$1/build.log 2>&1" || { tail -40 "$1/build.log"; return 1; }
}

# keep FOLDER: what was made there, without the tree that it was made of.
keep() {
    rm -rf /packages "$1/zelvoria-camara"
    mv "$1" /packages
}

tools() {
    apt-get -qq update
    install git appstream blhc desktop-file-utils devscripts lintian
    apt-get -qq -y --no-install-recommends build-dep "$project" </dev/null >/tmp/installed 2>&1 ||
        { cat /tmp/installed; return 1; }
    say "tools installed"
}

# hardened PROGRAM FEATURE...: what that program lacks differs between Debian's releases, so what must be there is named.
hardened() {
    local report feature
    report=$(hardening-check "$1" || true)
    for feature in "${@:2}"; do
        grep -q "^ $feature: yes" <<<"$report" || { echo "$feature is missing: $report"; return 1; }
    done
    echo "$1: ${*:2}"
}

made() {
    tools
    build /home/aula/one "PATH=/usr/lib/ccache:$PATH"
    keep /home/aula/one
    say "packages made"

    as_user "lintian --display-info --fail-on error,warning /packages/*.changes"
    say "lintian has no error and no warning"
    blhc --bindnow /packages/build.log
    say "blhc: every line is hardened"
    local package file root=/tmp/unpacked
    for package in /packages/*.deb; do
        dpkg -x "$package" "$root"
    done
    local features=("Position Independent Executable" "Stack protected" "Read-only relocations" "Immediate binding")
    for file in "$root"/usr/bin/*; do
        hardened "$file" "${features[@]}"
        # The few functions that this one calls have sizes that the compiler knows.
        [ "${file##*/}" = zelvoria-camara-virtual ] || hardened "$file" "Fortify Source functions"
    done
    appstreamcli validate --no-net "$root"/usr/share/metainfo/*.xml
    desktop-file-validate "$root"/usr/share/applications/*.desktop
    say "the entries of catalogue and menu are valid"
    if [ "${1:-}" = twice ]; then
        again
        lifetime
    fi
}

# Nothing from ccache: objects of the first packages would be those of the second. Elsewhere, in other words and hours.
again() {
    local file
    build /home/aula/once-more 'TZ=Pacific/Auckland LC_ALL=C LANGUAGE=es DEB_BUILD_OPTIONS=parallel=3 CCACHE_DISABLE=1'
    for file in /packages/*.{deb,dsc,tar.xz}; do
        cmp "$file" "/home/aula/once-more/$(basename "$file")"
    done
    say "two clones, the same packages"
    (cd /packages && sha256sum -- *.deb)
    (cd /home/aula/once-more && sha256sum -- *.deb)
}

# Installed, upgraded, removed and purged, where somebody has scenes: what is then there that was not, or the other way
# round, ends it. There is no earlier release: the same files under a lower version stand for one.
lifetime() {
    install mmdebstrap piuparts
    local package earlier=/srv/earlier
    mkdir "$earlier"
    for package in /packages/zelvoria-camara{,-demo,-virtual}_*.deb; do
        rm -rf /tmp/package
        dpkg-deb -R "$package" /tmp/package
        sed -i -E 's/^(Version: |Depends: zelvoria-camara \(= )[0-9.]+/\10.9/' /tmp/package/DEBIAN/control
        dpkg-deb -b /tmp/package "$earlier" >/dev/null
    done
    (cd "$earlier" && dpkg-scanpackages . >Packages 2>/dev/null)

    # shellcheck disable=SC2016 # $1 is the hook's own
    mmdebstrap --quiet --variant=minbase --customize-hook='chroot "$1" useradd --create-home profesora' \
        --customize-hook='install -D /etc/os-release "$1/home/profesora/Documents/Presets/Centro/Aula.presets"' \
        --customize-hook="echo 'deb [trusted=yes] file:$earlier ./' >>\"\$1/etc/apt/sources.list\"" \
        "$system" /tmp/base.tar.gz /etc/apt/sources.list
    piuparts --basetgz /tmp/base.tar.gz --distribution "$system" --keep-sources-list --bindmount "$earlier" \
        /packages/zelvoria-camara{,-demo,-virtual}_*.deb \
        >/packages/piuparts.log 2>&1 || { tail -60 /packages/piuparts.log; return 1; }
    # Where apt knows no earlier version, piuparts is content without an upgrade.
    grep -E 'PASS: .*upgrade' /packages/piuparts.log
    say "piuparts has nothing to say"
}

used() {
    apt-get -qq update
    install autopkgtest
    mkdir /tests
    local status=0
    autopkgtest --user aula --output-dir /tests/out /packages/zelvoria-camara{,-demo,-virtual}_*.deb /packages/*.dsc \
        -- null >/tests/log 2>&1 || status=$?
    # 2 and 8: something was skipped, which nobody asked for either.
    [ $status -eq 0 ] || grep -vE '^(Get|Selecting|\(Reading|Preparing|Unpacking|Setting|Processing|update-alt)' /tests/log
    mv /tests /packages/
    cat /packages/tests/out/summary
    say "autopkgtest ended with $status"
    return $status
}

# The system has arm64 as a second architecture, so that Qt for it stands beside this machine's tools. Drawn windows are
# not among the tests: the folders that stand below them are.
arm64() {
    apt-get -qq update
    install crossbuild-essential-arm64 git python3 qemu-user libg{test,mock}-dev:arm64
    apt-get -qq -y --no-install-recommends -a arm64 -P cross,nocheck build-dep "$project" </dev/null \
        >/tmp/installed 2>&1 || { cat /tmp/installed; return 1; }
    say "tools installed"
    build /home/aula/arm64 "PATH=/usr/lib/ccache:$PATH" "-a arm64 --build-profiles=cross,nocheck -b"
    keep /home/aula/arm64
    ls /packages/*.deb
    say "packages made"

    local folders=(uvc usb ptz scenes) folder
    as_user "export PATH=/usr/lib/ccache:\$PATH CCACHE_SLOPPINESS=pch_defines,time_macros
        cmake -S . -B build/arm64 -G Ninja --toolchain cmake/arm64.cmake -DCMAKE_BUILD_TYPE=RelWithDebInfo >/tmp/configured &&
        cmake --build build/arm64 --target usb_backend_tests ${folders[*]/%/_tests}"
    for folder in "${folders[@]}"; do
        as_user "ctest --test-dir build/arm64/tests/$folder --output-on-failure --no-tests=error"
    done
    say "the tests pass"
}

"$@"
