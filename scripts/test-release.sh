#!/usr/bin/env bash
# Tests what scripts/release.sh left in dist/: the files that people download, not what they were built from. To test only
# some kinds: scripts/test-release.sh archives
set -euo pipefail
. "$(dirname "$0")/lib.sh"

cd "$root"
[ -f dist/SHA256SUMS ] || fail "there is no release in dist/: make it with scripts/release.sh"
say "Comparing checksums"
(cd dist && sha256sum --quiet --check SHA256SUMS)
unlisted=$(cd dist && find . -type f ! -name SHA256SUMS -printf '%P\n' | grep -vxFf <(sed 's/^[0-9a-f]*  //' SHA256SUMS) || true)
[ -z "$unlisted" ] || fail "SHA256SUMS does not list $unlisted"
if [ $# -eq 0 ]; then
    mapfile -t kinds < <(cd scripts && ls test-release-*.sh)
    kinds=("${kinds[@]#test-release-}")
    set -- "${kinds[@]%.sh}"
fi
for kind in "$@"; do
    time_leg "test release $kind" "scripts/test-release-$kind.sh"
done
