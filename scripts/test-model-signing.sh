#!/usr/bin/env bash
# Tests signatures against PyPI's model-signing: each program checks what the other signed, and the table in
# tests/data/signature holds its verdicts. Takes a build with the command line, by default build/release:
# scripts/test-model-signing.sh build/debug
# model-signing comes from the package index, pinned by hash, into an environment in the cache.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

install_packages openssl python3 python3-pip python3-venv
build=${1:-$root/build/release}
tool=$(realpath "$build/tools/quavin/quavin" 2>/dev/null) && [ -x "$tool" ] ||
    fail "there is no command line in $build; build it first: cmake --preset release && cmake --build build/release"
python=$(python3 "$root/scripts/python_environment.py" model-signing "$root/tests/model_signing/requirements.txt")
export QUAVIN_TOOL=$tool PYTHONDONTWRITEBYTECODE=1

say "Comparing the verdicts of model-signing with the table"
"$python" "$root/tests/data/signature/model_signing_verdicts.py" --check
say "Signing and checking with both programs"
"$python" "$root/tests/model_signing/interoperability_test.py"
