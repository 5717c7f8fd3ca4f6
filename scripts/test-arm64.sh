#!/usr/bin/env bash
# Installs what is missing, cross-builds for Linux arm64, and runs the tests and the digits example as
# arm64 programs under qemu. Preset names as arguments run those: linux-arm64 (the default), linux-arm64-ubsan.
#
# Left out: the tests of the documentation, which look at the same pages, and of the consumer that builds the
# library once more. Both run natively, in scripts/test.sh.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

# shellcheck disable=SC2086  # lists of words
install_packages $packages_build $packages_arm64
for preset in "${@:-linux-arm64}"; do
    configure_and_build "$preset"
    build=$root/build/$preset
    run_and_count_tests "$preset"
    say "Recognising handwritten digits"
    "$root/scripts/run-in-qemu.sh" "$build/examples/digits/digits" "$root/examples/digits"
done
