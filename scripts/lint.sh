#!/usr/bin/env bash
# What is wrong in the text of the tree, found without running it: clang-tidy over every file that the build compiles,
# clang-format, shellcheck and codespell. The versions of Debian 12 decide; others may see other things.
#   lint.sh [tidy] [format] [shell] [spelling]     all of them, or these
# A file that clang-tidy had nothing to say about is not read again until it, what it includes or the checks change;
# that is remembered in zelvoria-camara in the user's cache folder.
set -uo pipefail
cd "$(dirname "$0")/.." || exit 1
. scripts/packages.sh
stamps=${XDG_CACHE_HOME:-$HOME/.cache}/zelvoria-camara/clang-tidy

# In a folder of its own, where nothing is compiled: empty files stand for what moc would write, so that what it would
# define is missing. Every file is checked as it is written, hence without precompiled headers.
tidy() {
    mkdir -p build/lint/moc "$stamps"
    git grep -hoE '^#include "[a-z_]+\.moc"' -- '*.cpp' | cut -d'"' -f2 | (cd build/lint/moc && xargs -r touch)
    cmake --preset clang -B build/lint -DZEL_TESTS=ON -DZEL_KERNEL_TESTS=ON -DZEL_BENCH=ON \
        -DCMAKE_DISABLE_PRECOMPILE_HEADERS=ON -DCMAKE_CXX_FLAGS="-I$PWD/build/lint/moc -Wno-undefined-internal" >build/lint-configure.log 2>&1 ||
        { cat build/lint-configure.log >&2; return 1; }
    find "$stamps" -type f -mtime +30 -delete
    scripts/clang_tidy.py build/lint "$stamps"
}

format() {
    git ls-files -z '*.cpp' '*.h' | xargs -0 -n 20 -P "$(nproc)" clang-format --dry-run -Werror
}

# Scripts are told by their first line, or by their name where they have none.
shell() {
    local script scripts=()
    while IFS= read -r -d '' script; do
        case $(head -c 40 "$script" | tr -d '\0' | head -1) in
            '#!'*sh) scripts+=("$script") ;;
            *) [[ $script != *.sh ]] || scripts+=("$script") ;;
        esac
    done < <(git ls-files -z)
    shellcheck --external-sources "${scripts[@]}"
}

# Its own settings are in .codespellrc.
spelling() {
    git ls-files -z | xargs -0 codespell
}

failed=()
[ $# -gt 0 ] || set -- shell spelling format tidy
for check in "$@"; do
    case $check in
        shell | spelling | format | tidy) ;;
        *) sed -n '2,6s/^# //p' "$0" >&2; exit 64 ;;
    esac
    begin=$SECONDS
    if "$check"; then
        echo "lint: $check: nothing to say ($((SECONDS - begin)) s)"
    else
        failed+=("$check")
    fi
done
[ ${#failed[@]} -eq 0 ] || { echo "lint: failed: ${failed[*]}" >&2; exit 1; }
