#!/usr/bin/env bash
# Makes the release's archives in dist/, or in the folder that QUAVIN_DIST names. Arguments are systems: linux-x86_64,
# linux-arm64, windows-x64; by default all of them. docs/releasing.md describes the archives.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

[ "$(uname -m)" = x86_64 ] || fail "the archives are made on x86-64"
[ $# -gt 0 ] || set -- linux-x86_64 linux-arm64 windows-x64
dist=$(realpath -m "${QUAVIN_DIST:-$root/dist}")
mkdir -p "$dist"
use_commit_time
# These would let objects from other folders in, which name those folders.
unset CCACHE_BASEDIR CCACHE_NOHASHDIR
for system in "$@"; do
    packages=packages_release_${system//[-]/_}
    # shellcheck disable=SC2086  # lists of words
    install_packages $packages_build ${!packages}
    configure_and_build "package-$system"
    say "Packing $system"
    (cd "$root/build/package-$system" && cpack -B "$dist" >cpack.log) || {
        cat "$root/build/package-$system/cpack.log" >&2
        fail "cpack failed"
    }
    rm -rf "$dist/_CPack_Packages" "$dist"/*-"$system.json" # what cpack leaves beside them
done
