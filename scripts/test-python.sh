#!/usr/bin/env bash
# Tests the Python package against a build, by default build/release, and checks its types. To name another:
# scripts/test-python.sh build/debug
# Its tools come from the package index, pinned by hash, into an environment in the cache.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

install_packages openssl python3 python3-pip python3-venv strace
build=$(realpath -m "${1:-$root/build/release}")
library=$build/src/libquavin_on_device_sdk.so
[ -f "$library" ] ||
    fail "there is no library in $build; build it first: cmake --preset release && cmake --build build/release"
[ -x "$build/tools/quavin/quavin" ] || fail "there is no program quavin in $build; build it first: its target is quavin"
python=$(python3 "$root/scripts/python_environment.py" python-tests "$root"/python/tests/{,conversion-}requirements.txt)
cd "$root"
export QUAVIN_LIBRARY=$library QUAVIN_TOOL=$build/tools/quavin/quavin PYTHONDONTWRITEBYTECODE=1

say "Testing the Python package"
"$python" -m pytest --quiet -o faulthandler_timeout=60
say "Checking its types"
"$python" -m mypy --cache-dir=/dev/null
