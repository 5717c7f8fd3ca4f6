#!/usr/bin/env bash
# Makes a release of the commit that is checked out: everything that people can take home, with bills of materials and
# checksums, in dist/. To make only some kinds: scripts/release.sh archives
# Each kind has a script of its own here, release-KIND.sh, and one that tests what it made, test-release-KIND.sh.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

cd "$root"
# Otherwise nobody could make the same files again.
[ -z "$(git status --porcelain)" ] || fail "there are changes that are not committed: commit or stash them first"
if [ $# -eq 0 ]; then
    mapfile -t kinds < <(cd scripts && ls release-*.sh)
    kinds=("${kinds[@]#release-}")
    set -- "${kinds[@]%.sh}"
    rm -rf dist
fi
mkdir -p dist
use_commit_time
for kind in "$@"; do
    [ -x "scripts/release-$kind.sh" ] || fail "there is no scripts/release-$kind.sh"
    time_leg "release $kind" "scripts/release-$kind.sh"
done
(cd dist && find . -type f ! -name SHA256SUMS -printf '%P\n' | LC_ALL=C sort | xargs -d '\n' sha256sum >SHA256SUMS)
say "In dist/"
(cd dist && du -h --apparent-size -- *)
