#!/usr/bin/env bash
# Exports models of several frameworks, packs and runs them, and compares the numbers.
#
#   try_all.sh BUILD
#
# BUILD is a build folder with the library and the program quavin. The Python packages are installed into the cache,
# once.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
build=$(realpath "${1:?pass a build folder, such as build/demo}")
venv=${QUAVIN_CACHE_DIR:-$HOME/.cache/quavin}/from-your-model
if ! cmp -s "$here/requirements.txt" "$venv/installed.txt"; then
    python3 -m venv --clear "$venv"
    "$venv/bin/pip" install --quiet --requirement "$here/requirements.txt"
    cp "$here/requirements.txt" "$venv/installed.txt"
fi
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
export PYTHONDONTWRITEBYTECODE=1
export PYTHONWARNINGS=ignore
export PYTHONPATH=$here/../../python
export ORT_DISABLE_TELEMETRY=1 # on by default since release 1.29 of ONNX Runtime
export QUAVIN_LIBRARY=$build/src/libquavin_on_device_sdk.so
export QUAVIN_TOOL=$build/tools/quavin/quavin

# pack MODEL OPTION...
pack() {
    rm -rf package results
    "$venv/bin/python" -m quavin.convert "$@" -o package
    "$QUAVIN_TOOL" verify package
}

# run_and_compare OUTPUT=EXPECTED ... -- INPUT=FILE ...
run_and_compare() {
    local expected=() inputs=()
    while [ "$1" != -- ]; do
        expected+=("$1")
        shift
    done
    for input in "${@:2}"; do
        inputs+=(--input "$input")
    done
    "$QUAVIN_TOOL" run package "${inputs[@]}" --output results
    for pair in "${expected[@]}"; do
        "$venv/bin/python" "$here/compare.py" "${pair#*=}" "results/${pair%%=*}.npy"
    done
}

echo "== scikit-learn"
"$venv/bin/python" "$here/scikit_learn.py" .
pack iris.onnx --shape X=1,4 --only-output probabilities
run_and_compare probabilities=expected.npy -- X=flower.npy

echo "== ONNX with unsupported types"
"$venv/bin/python" "$here/make_onnx.py" .
pack search.onnx --shape ids=1,6 --shape image=1,8,8,3 --shape mask=1,6,1 \
    --input ids=ids.npy --input image=image.npy --input mask=mask.npy
"$venv/bin/python" - <<END
import numpy
numpy.save("ids.npy", numpy.load("ids.npy").astype(numpy.int32))
numpy.save("image.npy", numpy.load("image.npy").view(numpy.int8))
numpy.save("mask.npy", numpy.load("mask.npy").view(numpy.int8))
END
run_and_compare score=score.npy best=best.npy dark=dark.npy -- ids=ids.npy image=image.npy mask=mask.npy
echo "== All agree"
