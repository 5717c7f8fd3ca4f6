#!/usr/bin/env bash
# Checks the format of all sources, and lints all but the tests and fuzz targets. "scripts/check.sh --all" lints those too,
# and lets the static analyser examine the library, which takes several times as long.
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
tidy=$("$root/scripts/clang-tidy.sh")
# Configure for the compile commands, whose precompiled headers are GCC's.
cmake --preset release --log-level=WARNING -B build/lint -DQUAVIN_UNITY_BUILD=OFF >/dev/null
sed -i 's/ -Winvalid-pch//; s/ -include [^ ]*cmake_pch\.hxx//' build/lint/compile_commands.json
lint() {
    xargs -r -P "$(nproc)" -n 4 "$tidy" --quiet -p build/lint "$@"
}
# Skip sources that only other systems compile: for the library's, the test compilers.lint of the Windows build does
# this. A consumer's program is not part of this build.
linted=$(printf '%s\n' "${sources[@]}" | grep '\.cpp$' |
    grep -v '/windows/\|_windows\(_test\)\?\.cpp$\|_cng\.cpp$\|/emulated_\|/emulator/\|^tests/consumer/')
# With --all tests are linted too, and the static analyser examines what ships in the library.
if [ "${1:-}" = --all ]; then
    library='^\(src\|compat/[^/]*/src\)/'
    grep "$library" <<<"$linted" | lint
    grep -v "$library" <<<"$linted" | lint --checks=-clang-analyzer-\*
else
    grep -v '\(^\|/\)\(fuzz\|tests\)/' <<<"$linted" | lint --checks=-clang-analyzer-\*
fi
say "Format and lint are clean"
