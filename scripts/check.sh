#!/usr/bin/env bash
# Checks the format of all sources and the lint of all but the tests' ("--all" for those too).
# "scripts/check.sh --fix" formats instead.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

# shellcheck disable=SC2086  # lists of words
install_packages $packages_build $packages_test $packages_check
cd "$root"
mapfile -t sources < <(git ls-files --cached --others --exclude-standard '*.h' '*.hpp' '*.cpp')
[ ${#sources[@]} -gt 0 ] || fail "git lists no sources here"

if [ "${1:-}" = --fix ]; then
    clang-format-14 -i "${sources[@]}"
    exit
fi
say "clang-format"
clang-format-14 --dry-run -Werror "${sources[@]}"

say "clang-tidy"
# For the compile commands. Tests are left out but with --all: with their framework's headers they
# take an hour.
configure_only release
printf '%s\n' "${sources[@]}" | grep '\.cpp$' |
    # Nor are sources that other systems alone compile: the test compilers.lint of the Windows build looks at
    # the library's own.
    grep -v '/windows/\|_windows\(_test\)\?\.cpp$\|_cng\.cpp$\|/emulated_\|/emulator/' |
    { if [ "${1:-}" = --all ]; then cat; else grep -v '\(^\|/\)tests/'; fi; } |
    xargs -P "$(nproc)" -n 4 clang-tidy-14 --quiet -p build/release
say "Format and lint are clean"
