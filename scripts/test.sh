#!/usr/bin/env bash
# Installs what is missing, builds, and runs all tests: optimised, then under the sanitizers.
# Preset names as arguments run those alone: scripts/test.sh release
set -euo pipefail
. "$(dirname "$0")/lib.sh"

# shellcheck disable=SC2086  # lists of words
install_packages $packages_build $packages_test
for preset in "${@:-release asan-ubsan}"; do
    for name in $preset; do
        configure_and_build "$name"
        say "Testing $name"
        (cd "$root" && ctest --preset "$name" -j "$(nproc)" --no-tests=error)
    done
done
