#!/usr/bin/env bash
# Tests the archives in dist/ where neither the sources nor the build can be seen, then makes them again in another folder
# without the compiler's cache, and compares the bytes.
# "scripts/test-release-archives.sh --no-rebuild" leaves out the second part.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

# shellcheck disable=SC2086  # lists of words
install_packages $packages_test_release
mapfile -t systems < <(cd "$root/dist" && ls -- *-linux-*.tar.gz *-windows-*.zip 2>/dev/null | grep -v -- -debug |
    sed 's/^[^-]*-[^-]*-//; s/\.tar\.gz$//; s/\.zip$//')
[ ${#systems[@]} -gt 0 ] || fail "there are no archives in dist/: make them with scripts/release.sh archives"
for system in "${systems[@]}"; do
    packages=packages_test_release_${system//[-]/_}
    # shellcheck disable=SC2086
    install_packages ${!packages:-}
done
python=$(python3 "$root/scripts/python_environment.py" spdx "$root/tests/release/requirements.txt")
work=$(mktemp -d "${TMPDIR:-/tmp}/quavin-release-XXXXXX")
trap 'rm -rf "$work"' EXIT

say "Testing the archives for ${systems[*]}"
cp -r "$root/dist" "$work/dist"
cp -r "$root/tests/release" "$root/tests/consumer" "$root/tests/compilers/msvc_host" "$root/packaging" "$root/scripts" "$work"
export QUAVIN_RELEASE_WORK=$work QUAVIN_SOURCE_DIR=$root PYTHONDONTWRITEBYTECODE=1
# hidden COMMAND...: runs it where the sources, the build and the downloaded runtime are empty folders.
hidden() {
    local map_user=()
    [ "$(id -u)" -eq 0 ] || map_user=(--map-root-user)
    # shellcheck disable=SC2016  # the inner shell expands them
    unshare "${map_user[@]}" --mount sh -euc '
        cache=${QUAVIN_CACHE_DIR:-${XDG_CACHE_HOME:-$HOME/.cache}/quavin}
        for folder in "$QUAVIN_SOURCE_DIR" "$cache"/openvino-* "$cache"/libcrypto-*; do
            [ ! -d "$folder" ] || mount -t tmpfs none "$folder"
        done
        cd "$QUAVIN_RELEASE_WORK/release"
        exec "$@"' - "$@"
}
hidden true || fail "cannot hide the sources: that needs root, or namespaces for users (unshare --map-root-user)"
hidden "$python" -m unittest discover --pattern '*_test.py' ||
    fail "the archives are not fit for release"

[ "${1:-}" != --no-rebuild ] || exit 0
say "Making them again elsewhere"
clone=$work/"another and longer folder"
git clone --quiet --no-local "$root" "$clone"
(cd "$clone" && CCACHE_DISABLE=1 QUAVIN_DIST="$work/again" time_leg "make them again" scripts/release-archives.sh "${systems[@]}")
for file in "$work"/again/*; do
    cmp "$file" "$root/dist/$(basename "$file")" || fail "$(basename "$file") differs when it is made again"
done
say "Made again, $(ls "$work/again" | wc -l) files are the same, byte for byte"
