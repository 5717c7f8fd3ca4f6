#!/usr/bin/env bash
# Trains, packs and runs PyTorch's networks of examples/from_your_model, and compares every result with PyTorch's own.
# Takes a build with the command line, by default build/release: scripts/test-pytorch.sh build/debug
# PyTorch is Debian's python3-torch: 1.13.1, without CUDA. With all that it depends on, it is 210 packages and 146 MB to
# download, of which about 100 MB are there on a machine that can build the library. The converter comes from the package
# index, 59 MB, pinned by hash, into an environment in the cache.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

install_packages openssl python3 python3-cffi python3-pip python3-torch python3-venv
build=${1:-$root/build/release}
tool=$(realpath "$build/tools/quavin/quavin" 2>/dev/null) && [ -x "$tool" ] ||
    fail "there is no command line in $build; build it first: cmake --preset release && cmake --build build/release"
python=$(python3 "$root/scripts/python_environment.py" --system-site-packages pytorch \
    "$root/tests/pytorch/requirements.txt")
export QUAVIN_TOOL=$tool QUAVIN_LIBRARY=$build/src/libquavin_on_device_sdk.so PYTHONDONTWRITEBYTECODE=1
export PYTHONPATH=$root/python:$root/examples/from_your_model

say "Comparing packages with PyTorch"
"$python" -W ignore "$root/tests/pytorch/pytorch_test.py"
