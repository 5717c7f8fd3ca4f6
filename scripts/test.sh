#!/usr/bin/env bash
# Installs what is missing, builds, and runs all tests: optimised, then under the sanitizers, then as programs
# of other systems. Preset names as arguments run those alone: scripts/test.sh release
# Where other systems' programs cannot be built or run they are left out with a word; with
# QUAVIN_TEST_EVERY_SYSTEM=1 that is a failure.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

# shellcheck disable=SC2086  # lists of words
install_packages $packages_build $packages_test
for preset in "${@:-release asan-ubsan}"; do
    for name in $preset; do
        configure_and_build "$name"
        run_and_count_tests "$name"
    done
done

[ $# -eq 0 ] || exit 0
for system in windows arm64; do
    packages=packages_$system
    # The emulators run on x86-64.
    # shellcheck disable=SC2086
    if [ "$(uname -m)" = x86_64 ] && can_install ${!packages}; then
        "$root/scripts/test-$system.sh"
    elif [ -n "${QUAVIN_TEST_EVERY_SYSTEM:-}" ]; then
        fail "scripts/test-$system.sh needs x86-64 and what cannot all be had here: ${!packages}"
    else
        say "SKIPPED: scripts/test-$system.sh, which needs x86-64 and what cannot all be had here: ${!packages}"
    fi
done
