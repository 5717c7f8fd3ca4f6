#!/usr/bin/env bash
# Installs missing packages, builds, makes the networks, and compares the library with the same work written
# by hand against the runtime's C interface, and with ONNX Runtime. Takes about ten minutes and needs an
# otherwise idle machine.
# docs/performance.md says how to read the figures.
#
# "scripts/bench.sh windows-release" and "scripts/bench.sh linux-arm64" measure predictions by a program for that
# system, under an emulator; run scripts/test-windows.sh or scripts/test-arm64.sh first. Only the ratios count then,
# not the times.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

# shellcheck disable=SC2086  # lists of words
install_packages $packages_build $packages_test $packages_bench
preset=${1:-release}
case $preset in
    release)
        predict=("$root/build/release/benchmarks/quavin_predict_benchmark")
        configure_and_build release quavin_predict_benchmark quavin_load_benchmark quavin_aes_benchmark \
            quavin_options_benchmark quavin_signature_benchmark quavin_tar_benchmark quavin_peer_host
        ;;
    windows-release)
        predict=("$root/scripts/run-in-wine.sh" "$root/build/$preset/bin/quavin_predict_benchmark.exe")
        configure_and_build "$preset" quavin_predict_benchmark
        ;;
    linux-arm64)
        predict=("$root/scripts/run-in-qemu.sh" "$root/build/$preset/benchmarks/quavin_predict_benchmark")
        configure_and_build "$preset" quavin_predict_benchmark
        ;;
    *) fail "there is nothing to measure in the preset \"$preset\"" ;;
esac

models=$root/build/benchmark-models
programs=$root/build/release/benchmarks
key=00112233445566778899aabbccddeeff # for networks with random weights: not a secret

# make_model KIND [OPTION...]: makes the network unless it exists, and prints its folder.
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

say "Predicting"
# Calls per round, and rounds; fewer if the processor is emulated too.
small="2000 41" large="20 31" outputs="10 31"
[ "$preset" != linux-arm64 ] || small="200 11" large="1 7" outputs="2 7"
# shellcheck disable=SC2086  # two words each
{
    "${predict[@]}" "$three_layers" 1000 $small
    "${predict[@]}" "$three_layers" 0 $small
    "${predict[@]}" "$mobilenet" 0 $large
    "${predict[@]}" "$large_output" 0 $outputs
}
[ "$preset" = release ] || exit 0

say "Predicting in two processes at once"
for threads in 1 0; do
    for side in pinned unpinned library; do
        "${predict[@]}" --for 4 $side "$mobilenet" $threads &
        "${predict[@]}" --for 4 $side "$mobilenet" $threads
        wait
    done
done

say "Making networks for loading"
plain=$(make_model weights-100mib)
secured=$(make_model weights-100mib --encrypt "$key")

say "Loading"
"$programs/quavin_load_benchmark" "$plain" "$secured" "$key" 31
"$programs/quavin_load_benchmark" --peak raw "$plain"
"$programs/quavin_load_benchmark" --peak plain "$plain"
"$programs/quavin_load_benchmark" --peak mapped "$plain"
"$programs/quavin_load_benchmark" --peak secured "$secured" "$key"

say "Loading from memory"
archive=$models/weights-100mib.tar
[ -f "$archive" ] || tar -cf "$archive" -C "$plain" .
[ -f "$archive.secured" ] || {
    vector=0f0e0d0c0b0a09080706050403020100
    printf '%b' "$(sed 's/../\\x&/g' <<<"$vector")"
    openssl enc -aes-128-cbc -K "$key" -iv "$vector" -in "$archive"
} >"$archive.secured"
"$programs/quavin_load_benchmark" --memory "$plain" "$archive" "$archive.secured" "$key" 31
"$programs/quavin_load_benchmark" --peak archive "$archive"
"$programs/quavin_load_benchmark" --peak archive "$archive.secured" "$key"
"$programs/quavin_load_benchmark" --peak buffers "$plain"

say "Options and clones"
mobilenet_secured=$(make_model mobilenet --encrypt "$key")
small=$(make_model small)
small_secured=$(make_model small --encrypt "$key")
"$programs/quavin_options_benchmark" "$mobilenet" "$mobilenet_secured" "$key" 20 31
"$programs/quavin_options_benchmark" "$small" "$small_secured" "$key" 2000 31
"$programs/quavin_options_benchmark" --memory raw "$mobilenet" 64
"$programs/quavin_options_benchmark" --memory clone "$mobilenet" 64

say "Verifying signatures"
[ -f "$models/signer.pem" ] && [ -f "$plain/model.sig" ] ||
    python3 "$root/benchmarks/models/sign_package.py" "$plain" "$models/signer.pem"
"$programs/quavin_signature_benchmark" "$plain" "$models/signer.pem" 31

say "Decrypting"
"$programs/quavin_aes_benchmark" 41

say "Extracting"
"$programs/quavin_tar_benchmark" 41

say "Comparing with ONNX Runtime"
# Skipped, with a line that says why, if it cannot be installed.
export ORT_DISABLE_TELEMETRY=1 # on by default since release 1.29
if python=$(python3 "$root/scripts/python_environment.py" peers "$root/benchmarks/peers/requirements.txt"); then
    "$python" "$root/benchmarks/peers/make_networks.py" "$models/peers" mobilenet small
    "$python" "$root/benchmarks/peers/compare.py" "$programs/quavin_peer_host" "$models/peers" 21
fi

say "Drawing docs/images/performance.svg from the tables of docs/performance.md; run this again after changing them"
python3 "$root/scripts/performance_chart.py"
