#!/usr/bin/env bash
# Installs what is missing, builds, makes the networks and measures the library beside the same work
# written by hand on the runtime's C interface. Takes some minutes; wants a machine that does nothing
# else. docs/performance.md says how to read the figures.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

# shellcheck disable=SC2086  # lists of words
install_packages $packages_build $packages_test $packages_bench
configure_and_build release quavin_predict_benchmark quavin_load_benchmark quavin_aes_benchmark \
    quavin_tar_benchmark

models=$root/build/benchmark-models
programs=$root/build/release/benchmarks
key=00112233445566778899aabbccddeeff # of networks with random weights: no secret

# make_model KIND [OPTION...]: prints the folder of the network, made once.
make_model() {
    local folder=$models/$1${2:+-secured}
    [ -f "$folder/manifest.json" ] ||
        python3 "$root/benchmarks/models/make_mobilenet.py" --out "$folder" --kind "$@" >&2 ||
        return 1
    printf '%s\n' "$folder"
}

say "Making networks"
three_layers=$(make_model three-layers)
mobilenet=$(make_model mobilenet)
large_output=$(make_model large-output)
plain=$(make_model weights-100mib)
secured=$(make_model weights-100mib --encrypt "$key")

say "Predicting"
"$programs/quavin_predict_benchmark" "$three_layers" 1000 2000 41
"$programs/quavin_predict_benchmark" "$three_layers" 0 2000 41
"$programs/quavin_predict_benchmark" "$mobilenet" 0 20 31
"$programs/quavin_predict_benchmark" "$large_output" 0 10 31

say "Loading"
"$programs/quavin_load_benchmark" "$plain" "$secured" "$key" 31
"$programs/quavin_load_benchmark" --peak raw "$plain"
"$programs/quavin_load_benchmark" --peak plain "$plain"
"$programs/quavin_load_benchmark" --peak secured "$secured" "$key"

say "Decrypting"
"$programs/quavin_aes_benchmark" 41

say "Extracting"
"$programs/quavin_tar_benchmark" 41
