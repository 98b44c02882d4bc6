#!/usr/bin/env bash
# The two commands of the README on systems that have nothing yet: makes a minimal Debian for each SYSTEM, copies there
# what git tracks, and has an ordinary user start ./run (its pictures come to build/bare/SYSTEM) and ./test.
#
#   scripts/bare.sh [SYSTEM...]     by its name: bookworm, trixie (both)
#
# Packages come from the archive that apt reads Debian from here. They and ccache's files are kept for the next time in
# zelvoria-camara in the user's cache folder. It runs as root where mounting is allowed, or as a user who may have
# user namespaces; it takes 4 GB below TMPDIR, which are given back.
set -euo pipefail
project=$(realpath "$(dirname "$0")/..")
cd "$project"
. scripts/packages.sh
cache=${XDG_CACHE_HOME:-$HOME/.cache}/zelvoria-camara

# The archive of Debian itself, not of its security updates nor of anybody else.
mirror() {
    # shellcheck disable=SC2016 # apt-get's own variables
    apt-get indextargets --format '$(ORIGIN) $(LABEL) $(SITE)' 'Created-By: Packages' |
        sed -n 's/^Debian Debian //p' | head -1
}

# How this machine reaches it, as apt's options.
network_settings() {
    apt-config dump | grep -E '^Acquire::(Retries|https?::(Proxy|Verify))[^ ]* "' || true
}

try_on() {
    local system=$1 begin=$SECONDS
    local pictures=build/bare/$system downloads=$cache/archives/$system tree=build/bare/tree.tar
    rm -rf "${pictures:?}"
    mkdir -p "$pictures" "$downloads" "$cache/ccache"
    git -c safe.directory="$project" ls-files -z | tar --null --files-from=- -cf "$tree"

    # The caches are replaced, or they would grow for ever. A hook that fails ends it all, so the verdict waits until
    # they are saved.
    echo "== $system: making a minimal system"
    network_settings >build/bare/apt.conf
    # shellcheck disable=SC2016 # $1 is the hooks' own: the new system's folder
    "${isolated[@]}" mmdebstrap --quiet --variant=minbase --include=ccache --skip=essential/unlink \
        --dpkgopt=force-unsafe-io --aptopt=build/bare/apt.conf \
        --setup-hook='mkdir -p "$1/var/cache/apt/archives"' \
        --setup-hook="sync-in '$downloads' /var/cache/apt/archives" \
        --customize-hook="mkdir -p \"\$1/var/cache/ccache\" \"\$1$project/build/tour\"" \
        --customize-hook="sync-in '$cache/ccache' /var/cache/ccache" \
        --customize-hook="tar-in $tree '$project'" \
        --customize-hook="chroot \"\$1\" '$project/scripts/bare_inside.sh' || echo \$? >\"\$1/failed\"" \
        --customize-hook="find '$downloads' '$cache/ccache' -mindepth 1 -delete" \
        --customize-hook="sync-out /var/cache/apt/archives '$downloads'" \
        --customize-hook="sync-out /var/cache/ccache '$cache/ccache'" \
        --customize-hook="sync-out '$project/build/tour' '$pictures'" \
        --customize-hook='[ ! -e "$1/failed" ] || exit "$(cat "$1/failed")"' \
        "$system" /dev/null "$archive" </dev/null || { echo "bare: it failed on $system" >&2; exit 1; }
    echo "== $system: all of it took $((SECONDS - begin)) s"
}

need_packages mmdebstrap uidmap debian-archive-keyring git
archive=$(mirror)
if [ -z "$archive" ]; then
    # Fresh machines have no lists yet.
    as_root apt-get -qq update
    archive=$(mirror)
fi
[ -n "$archive" ] || { echo "bare: apt reads Debian from nowhere on this machine" >&2; exit 1; }

# Mounts of its own, so that none stays behind when it is interrupted. A user who is not root gets them anyway.
isolated=()
[ "$(id -u)" -ne 0 ] || isolated=(unshare --mount)

[ $# -gt 0 ] || set -- bookworm trixie
for system in "$@"; do
    try_on "$system"
done
