#!/usr/bin/env bash
# Checks format and lint of the whole tree. "scripts/check.sh --fix" formats instead.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

# shellcheck disable=SC2086  # lists of words
install_packages $packages_build $packages_test $packages_check
cd "$root"
mapfile -t sources < <(git ls-files '*.h' '*.hpp' '*.cpp')

if [ "${1:-}" = --fix ]; then
    clang-format-14 -i "${sources[@]}"
    exit
fi
say "clang-format"
clang-format-14 --dry-run -Werror "${sources[@]}"

say "clang-tidy"
# The build is needed for what it generates, and for the compile commands.
configure_and_build release
# -clang-diagnostic: GCC's flags include some that clang does not know.
printf '%s\n' "${sources[@]}" | grep '\.cpp$' |
    xargs -P "$(nproc)" -n 4 clang-tidy-14 --quiet -p build/release
say "Format and lint are clean"
