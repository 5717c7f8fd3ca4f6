#!/usr/bin/env bash
# Installs what is missing, cross-builds for Windows x64, and runs the tests and the digits example as
# Windows programs under wine. Preset names as arguments run those: windows-release (the default), windows-debug.
#
# Left out: the tests of the documentation, which look at the same pages, and of the consumer that builds the
# library once more. Both run natively, in scripts/test.sh. docs/porting.md tells which other tests need POSIX.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

# shellcheck disable=SC2086  # lists of words
install_packages $packages_build $packages_windows

# The other side of what the systems exchange.
configure_and_build demo quavin
export QUAVIN_NATIVE_TOOL=$root/build/demo/tools/quavin/quavin

say "Starting wine"
# Its first start takes long: not within the time of a test.
"$root/scripts/run-in-wine.sh" cmd /c exit

for preset in "${@:-windows-release}"; do
    configure_and_build "$preset"
    build=$root/build/$preset
    # One start of a program in some thousands ends under wine before the program has begun: with status 1 and
    # without a word. The summary names every test that passed at its second try only.
    run_and_count_tests "$preset" --repeat until-pass:2
    say "Recognising handwritten digits"
    "$root/scripts/run-in-wine.sh" "$build/bin/digits.exe" "$root/examples/digits"
done
