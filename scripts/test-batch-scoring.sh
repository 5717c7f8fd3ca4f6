#!/usr/bin/env bash
# Tests examples/batch_scoring on a cluster of Ray nodes on this machine, and checks its types. Takes a build, by default
# build/release: scripts/test-batch-scoring.sh build/debug
# "scripts/test-batch-scoring.sh --measure" measures rows per second instead, and needs an idle machine.
# Ray and what it needs, 600 MB, come from the package index, pinned by hash, into an environment in the cache.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

install_packages python3 python3-pip python3-venv strace
measure=
[ "${1:-}" != --measure ] || { measure=1 && shift; }
build=${1:-$root/build/release}
library=$(realpath "$build/src/libquavin_on_device_sdk.so" 2>/dev/null) && [ -f "$library" ] ||
    fail "there is no library in $build; build it first: cmake --preset release && cmake --build build/release"
python=$(python3 "$root/scripts/python_environment.py" batch-scoring "$root/examples/batch_scoring/requirements.txt")
cd "$root"
export QUAVIN_LIBRARY=$library PYTHONPATH=$root/python:$root/examples/batch_scoring PYTHONDONTWRITEBYTECODE=1
# Ray would leave its logs in /tmp/ray, and the token of its clusters in the home directory.
work=$(mktemp -d /tmp/quavin-batch-XXXXXX)
trap 'rm -rf "$work"' EXIT
RAY_AUTH_TOKEN=$(head -c 32 /dev/urandom | od -An -v -tx1 | tr -d ' \n')
export TMPDIR=$work RAY_TMPDIR=$work RAY_AUTH_TOKEN RAY_USAGE_STATS_ENABLED=0

if [ -n "$measure" ]; then
    say "Measuring batch scoring"
    "$python" benchmarks/batch_scoring.py
    exit
fi
say "Testing batch scoring"
time_leg "test batch scoring" "$python" tests/batch_scoring/batch_scoring_test.py
say "Checking its types"
checker=$(python3 "$root/scripts/python_environment.py" python-tests "$root"/python/tests/{,conversion-}requirements.txt)
"$checker" -m mypy --cache-dir=/dev/null --python-executable "$python" examples/batch_scoring tests/batch_scoring \
    benchmarks/batch_scoring.py
