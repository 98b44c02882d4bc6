# shellcheck shell=bash
# Sourced after packages.sh, with the top of the tree as current folder: makes minimal Debian systems and runs commands
# in them.
#
# Packages come from the archive that apt reads Debian from here. They and ccache's files are kept for the next time in
# zelvoria-camara in the user's cache folder. It works as root where mounting is allowed, or as a user who may have
# user namespaces; it takes 4 GB below TMPDIR, which are given back.
project=$PWD
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

# need_minimal_systems: called once, before the first.
need_minimal_systems() {
    need_packages mmdebstrap uidmap debian-archive-keyring git
    archive=$(mirror)
    if [ -z "$archive" ]; then
        # Fresh machines have no lists yet.
        as_root apt-get -qq update
        archive=$(mirror)
    fi
    [ -n "$archive" ] || { echo "apt reads Debian from nowhere on this machine" >&2; return 1; }

    # Mounts of its own, so that none stays behind when it is interrupted. A user who is not root gets them anyway.
    isolated=()
    [ "$(id -u)" -ne 0 ] || isolated=(unshare --mount)
}

# in_minimal_system SYSTEM TREE INSIDE OUTSIDE COMMAND [OPTION...]: a new SYSTEM ("trixie") with TREE, an archive of
# files, where the project lies here. Runs COMMAND there as root; the folder INSIDE of that system comes to OUTSIDE
# then, whatever came of it. OPTIONs are mmdebstrap's.
in_minimal_system() {
    local system=$1 tree=$2 inside=$3 outside=$4 command=$5
    local downloads=$cache/archives/$system begin=$SECONDS
    shift 5
    rm -rf "${outside:?}"
    mkdir -p "$outside" "$downloads" "$cache/ccache"

    # The caches are replaced, or they would grow for ever. A hook that fails ends it all, so the verdict waits until
    # they are saved.
    echo "== $system: making a minimal system"
    network_settings >build/apt.conf
    # shellcheck disable=SC2016 # $1 is the hooks' own: the new system's folder
    "${isolated[@]}" mmdebstrap --quiet --variant=minbase --include=ccache --skip=essential/unlink \
        --dpkgopt=force-unsafe-io --aptopt=build/apt.conf \
        --setup-hook='mkdir -p "$1/var/cache/apt/archives"' \
        --setup-hook="sync-in '$downloads' /var/cache/apt/archives" \
        --customize-hook="mkdir -p \"\$1/var/cache/ccache\" \"\$1$project\" \"\$1$inside\"" \
        --customize-hook="sync-in '$cache/ccache' /var/cache/ccache" \
        --customize-hook="tar-in $tree '$project'" "$@" \
        --customize-hook="chroot \"\$1\" $command || echo \$? >\"\$1/failed\"" \
        --customize-hook="find '$downloads' '$cache/ccache' -mindepth 1 -delete" \
        --customize-hook="sync-out /var/cache/apt/archives '$downloads'" \
        --customize-hook="sync-out /var/cache/ccache '$cache/ccache'" \
        --customize-hook="sync-out '$inside' '$outside'" \
        --customize-hook='[ ! -e "$1/failed" ] || exit "$(cat "$1/failed")"' \
        "$system" /dev/null "$archive" </dev/null || { echo "$system: it failed" >&2; return 1; }
    echo "== $system: all of it took $((SECONDS - begin)) s"
}
