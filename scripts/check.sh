#!/usr/bin/env bash
# Checks the format of all sources, and lints all but the tests and fuzz targets ("--all" lints those too).
# "scripts/check.sh --fix" formats instead.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

# shellcheck disable=SC2086  # lists of words
install_packages $packages_build $packages_test $packages_check
cd "$root"
mapfile -t sources < <(git ls-files --cached --others --exclude-standard '*.h' '*.hpp' '*.c' '*.cpp')
[ ${#sources[@]} -gt 0 ] || fail "git lists no sources here"

if [ "${1:-}" = --fix ]; then
    clang-format-14 -i "${sources[@]}"
    exit
fi
say "Commit subjects"
# Since this commit they have up to 72 characters, so that logs can be read in a terminal.
since=d82c37ae3b2ab587af47e886352d59d50eec1643
git rev-parse --quiet --verify "$since^{commit}" >/dev/null && range=$since.. || range=-1
long=$(git log --first-parent --format=%s "$range" | awk 'length > 72')
[ -z "$long" ] || fail "these commit subjects have more than 72 characters:"$'\n'"$long"

say "clang-format"
clang-format-14 --dry-run -Werror "${sources[@]}"

say "clang-tidy"
# Configure for the compile commands, whose precompiled headers are GCC's.
configure_only release
mkdir -p build/lint
sed 's/ -Winvalid-pch//; s/ -include [^ ]*cmake_pch\.hxx//' build/release/compile_commands.json \
    >build/lint/compile_commands.json
lint() {
    xargs -r -P "$(nproc)" -n 4 clang-tidy-14 --quiet -p build/lint "$@"
}
# Skip sources that only other systems compile: for the library's, the test compilers.lint of the Windows build does
# this. A consumer's program is not part of this build.
linted=$(printf '%s\n' "${sources[@]}" | grep '\.cpp$' |
    grep -v '/windows/\|_windows\(_test\)\?\.cpp$\|_cng\.cpp$\|/emulated_\|/emulator/\|^tests/consumer/')
grep '^\(src\|compat/[^/]*/src\)/' <<<"$linted" | lint
rest=$(grep -v '^\(src\|compat/[^/]*/src\)/' <<<"$linted")
# The static analyser takes two thirds of the time, so it is kept for what ships in the library. Tests are only linted
# with --all: with their framework's headers they take half an hour.
if [ "${1:-}" != --all ]; then
    rest=$(grep -v '\(^\|/\)\(fuzz\|tests\)/' <<<"$rest")
fi
lint --checks=-clang-analyzer-\* <<<"$rest"
say "Format and lint are clean"
