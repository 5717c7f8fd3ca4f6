#!/usr/bin/env bash
# Installs missing packages, cross-builds for Windows x64, and runs the tests and the digits example as Windows
# programs under wine. Arguments are preset names: windows-release (the default), windows-debug.
#
# Left out: the tests of the documentation, which is the same on every system, and of the consumer that builds
# the library again; and, since every start of a program takes seconds under wine, the tests of the command line that
# no system can make a difference to. They run natively, in scripts/test.sh; with QUAVIN_TEST_EVERYTHING=1 those of the
# command line run here too. docs/porting.md lists the tests that need POSIX.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

# shellcheck disable=SC2086  # lists of words
install_packages $packages_build $packages_windows

# The native side of the tests that exchange files between systems.
configure_and_build demo quavin
export QUAVIN_NATIVE_TOOL=$root/build/demo/tools/quavin/quavin

say "Starting wine"
# Its first start takes longer than a test may.
"$root/scripts/run-in-wine.sh" cmd /c exit

leave_out any_system "the same on any system"
for preset in "${@:-windows-release}"; do
    time_leg "build $preset" configure_and_build "$preset"
    build=$root/build/$preset
    # Under wine, one in some thousands of program starts fails before the program begins: with status 1 and no
    # output. The summary names every test that only passed on its second try.
    time_leg "test $preset" run_and_count_tests "$preset" --repeat until-pass:2 "${only[@]}"
    say "Recognising handwritten digits"
    "$root/scripts/run-in-wine.sh" "$build/bin/digits.exe" "$root/examples/digits"
done
