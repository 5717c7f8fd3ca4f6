#!/usr/bin/env bash
# Installs missing packages, cross-builds for Linux arm64, and runs the tests and the digits example as arm64
# programs under qemu. Arguments are preset names: linux-arm64 (the default), linux-arm64-ubsan.
#
# Left out: the tests of the documentation, which is the same on every system, and of the consumer that builds
# the library again. Both run natively, in scripts/test.sh.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

# shellcheck disable=SC2086  # lists of words
install_packages $packages_build $packages_arm64
for preset in "${@:-linux-arm64}"; do
    time_leg "build $preset" configure_and_build "$preset"
    build=$root/build/$preset
    time_leg "test $preset" run_and_count_tests "$preset"
    say "Recognising handwritten digits"
    "$root/scripts/run-in-qemu.sh" "$build/examples/digits/digits" "$root/examples/digits"
done
