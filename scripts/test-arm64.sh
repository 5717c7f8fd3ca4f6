#!/usr/bin/env bash
# Installs what is missing, cross-builds for Linux arm64, and runs the tests and the digits example as
# arm64 programs under qemu. Preset names as arguments run those: linux-arm64 (the default), linux-arm64-ubsan.
#
# Left out: the tests of the documentation, which look at the same pages, and those of consumers, which
# build with the same CMake code. Both run natively, in scripts/test.sh.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

# shellcheck disable=SC2086  # lists of words
install_packages $packages_build $packages_arm64
for preset in "${@:-linux-arm64}"; do
    configure_and_build "$preset"
    build=$root/build/$preset
    say "Testing $preset"
    rm -rf "$build/test-reports"
    mkdir "$build/test-reports"
    # What fails here is told, and counted, by the summary.
    (cd "$root" && ctest --preset "$preset" -j "$(nproc)" --no-tests=error --test-output-size-passed 1000000 \
        --output-junit "$build/test-reports/ctest.xml") || true
    say "Recognising handwritten digits"
    "$root/scripts/run-in-qemu.sh" "$build/examples/digits/digits" "$root/examples/digits"
    say "Summary of $preset"
    python3 "$root/scripts/test_summary.py" "$build"
done
