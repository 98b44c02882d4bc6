# shellcheck shell=bash
# Sourced by what runs as root inside a minimal system (minimal_system.sh), at the top of the tree there.
project=$PWD
mountpoint -q /proc || { echo "mounting is not allowed on this machine" >&2; exit 1; }
# Mounted by mmdebstrap, it gives each pseudo-terminal to another user than the one that opens it.
mount -o remount,gid=5,mode=620,ptmxmode=666 none /dev/pts
# What is kept for the next time: only packages that can still be had.
trap 'apt-get -qq autoclean >/dev/null' EXIT

# An ordinary user without sudo.
useradd --create-home aula
chown -R aula "$project" /var/cache/ccache
# Wherever the tree is, its user can reach it: it has the same place as outside, which ccache's hits depend on.
folder=$project
while [ "$folder" != / ]; do
    chmod a+x "$folder"
    folder=$(dirname "$folder")
done

# as_user COMMAND: a line for the shell, in the tree.
as_user() {
    env -u DISPLAY -u WAYLAND_DISPLAY -u XDG_RUNTIME_DIR -u XDG_CACHE_HOME CCACHE_DIR=/var/cache/ccache CCACHE_MAXSIZE=2G \
        su aula --shell /bin/bash --command "umask 022 && cd $(printf %q "$project") && $1"
}
