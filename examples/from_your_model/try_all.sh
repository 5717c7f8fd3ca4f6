#!/usr/bin/env bash
# Converts models of several frameworks, packs and runs them, and compares the numbers.
#
#   try_all.sh QUAVIN
#
# QUAVIN is the path of the program quavin. The Python packages are installed into the cache, once.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
quavin=$(realpath "${1:?pass the path of the program quavin}")
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
export ORT_DISABLE_TELEMETRY=1 # on by default since release 1.29 of ONNX Runtime

# pack_and_run NETWORK.xml expect:OUTPUT=FILE ... INPUT=FILE ...
pack_and_run() {
    local network=$1 inputs=() pair
    shift
    local expected=()
    while [[ ${1:-} == expect:* ]]; do
        expected+=("${1#expect:}")
        shift
    done
    for pair in "$@"; do
        inputs+=(--input "$pair")
    done
    rm -rf package results
    "$quavin" pack "$network" -o package
    "$quavin" verify package
    "$quavin" run package "${inputs[@]}" --output results
    for pair in "${expected[@]}"; do
        "$venv/bin/python" "$here/compare.py" "${pair#*=}" "results/${pair%%=*}.npy"
    done
}

echo "== scikit-learn"
"$venv/bin/python" "$here/scikit_learn.py" .
pack_and_run iris.xml expect:probabilities=expected.npy X=flower.npy

echo "== ONNX with unsupported types"
"$venv/bin/python" "$here/make_onnx.py" .
"$venv/bin/python" "$here/fit_types.py" search.onnx search.xml ids=1,6 image=1,8,8,3 mask=1,6,1
"$venv/bin/python" - <<END
import numpy
for name in ("ids", "image", "mask"):
    numpy.save(f"{name}.npy", numpy.load(f"{name}.npy").astype(numpy.int32))
END
pack_and_run search.xml expect:score=score.npy expect:best=best.npy expect:dark=dark.npy \
    ids=ids.npy image=image.npy mask=mask.npy
echo "== All agree"
