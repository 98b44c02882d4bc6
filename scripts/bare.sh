#!/usr/bin/env bash
# ./run and ./test on systems that have nothing yet: makes a minimal Debian for each SYSTEM, copies there
# what git tracks, and has an ordinary user start ./run (its pictures come to build/bare/SYSTEM) and ./test.
#
#   scripts/bare.sh [SYSTEM...]     by its name: bookworm, trixie (both)
set -euo pipefail
cd "$(realpath "$(dirname "$0")/..")"
. scripts/packages.sh
. scripts/minimal_system.sh

need_minimal_systems
tree=build/bare/tree.tar
mkdir -p build/bare
[ $# -gt 0 ] || set -- bookworm trixie
for system in "$@"; do
    git -c safe.directory="$PWD" ls-files -z | tar --null --files-from=- -cf "$tree"
    in_minimal_system "$system" "$tree" "$PWD/build/tour" "build/bare/$system" "'$PWD/scripts/bare_inside.sh'"
done
