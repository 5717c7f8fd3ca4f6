#!/usr/bin/env bash
# Installs missing packages, builds, and runs all tests: optimised, then under AddressSanitizer and
# UndefinedBehaviorSanitizer, those with several threads under ThreadSanitizer, then all as programs for other
# systems. To run only some presets, pass their names: scripts/test.sh release
# If programs for another system cannot be built or run, they are skipped with a message; with
# QUAVIN_TEST_EVERY_SYSTEM=1 that is a failure.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

# shellcheck disable=SC2086  # lists of words
install_packages $packages_build $packages_test
for preset in "${@:-release asan-ubsan tsan}"; do
    for name in $preset; do
        tests=()
        case $name in
            # What these examine is the same in every build.
            asan-ubsan) tests=(-E '^(abi|build|compilers|consumer|docs)\.') ;;
            tsan) tests=(-R '^threads\.') ;;
        esac
        time_leg "build $name" configure_and_build "$name"
        time_leg "test $name" run_and_count_tests "$name" "${tests[@]}"
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
        fail "scripts/test-$system.sh needs x86-64 and packages that are not all available here: ${!packages}"
    else
        say "SKIPPED: scripts/test-$system.sh needs x86-64 and packages that are not all available here: ${!packages}"
    fi
done
