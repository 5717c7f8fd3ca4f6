#!/usr/bin/env bash
# Installs missing packages, cross-builds for Linux arm64, and runs the tests and the digits example as arm64
# programs under qemu. Arguments are preset names: linux-arm64 (the default), linux-arm64-ubsan.
#
# Left out: the tests of the documentation, which is the same on every system, and of the consumer that builds
# the library again; and, since every prediction takes seconds under qemu, the tests of the command line that
# no processor can make a difference to. They run natively, in scripts/test.sh; with QUAVIN_TEST_EVERYTHING=1
# those of the command line run here too.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

# shellcheck disable=SC2086  # lists of words
install_packages $packages_build $packages_arm64
leave_out any_processor "the same on any processor"
for preset in "${@:-linux-arm64}"; do
    time_leg "build $preset" configure_and_build "$preset"
    build=$root/build/$preset
    time_leg "test $preset" run_and_count_tests "$preset" "${only[@]}"
    say "Recognising handwritten digits"
    "$root/scripts/run-in-qemu.sh" "$build/examples/digits/digits" "$root/examples/digits"
done
