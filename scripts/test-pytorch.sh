#!/usr/bin/env bash
# Trains, packs and runs the PyTorch networks of examples/python, and compares every result with PyTorch's own.
# Takes a build with the command line, by default build/release: scripts/test-pytorch.sh build/debug
# Not part of .ci/run, because of what it downloads, once:
# - Debian's PyTorch 1.13.1, which has no CUDA: 48 MB, and up to 146 MB with all that it depends on;
# - OpenVINO's converter from the package index: 59 MB, pinned by hash, into an environment in the cache.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

install_packages python3 python3-cffi python3-pip python3-torch python3-venv
build=$(realpath -m "${1:-$root/build/release}")
library=$build/src/libquavin_on_device_sdk.so
[ -f "$library" ] && [ -x "$build/tools/quavin/quavin" ] ||
    fail "there is no library or no program quavin in $build; build them first: \
cmake --preset release && cmake --build build/release"
python=$(python3 "$root/scripts/python_environment.py" --system-site-packages pytorch \
    "$root/cmake/openvino.lock" "$root/tests/pytorch/requirements.txt")
export QUAVIN_LIBRARY=$library QUAVIN_TOOL=$build/tools/quavin/quavin PYTHONDONTWRITEBYTECODE=1
export PYTHONPATH=$root/python:$root/examples/python

say "Comparing packages with PyTorch"
"$python" -W ignore "$root/tests/pytorch/pytorch_test.py"
