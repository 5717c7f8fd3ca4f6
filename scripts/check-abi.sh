#!/usr/bin/env bash
# Compares the binary interface of the library with its description in tests/abi; docs/abi.md says what may change.
# Builds the library with debug information for that, unless it is given one that has it.
#
#     scripts/check-abi.sh [LIBRARY]
#     scripts/check-abi.sh --update [LIBRARY]    # describes the library as it is now
#
# QUAVIN_ABI_DESCRIPTION names another description.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

update=
if [ "${1:-}" = --update ]; then
    update=1
    shift
fi
library=${1:-}
if [ -z "$library" ]; then
    # shellcheck disable=SC2086  # lists of words
    install_packages $packages_build $packages_test
    configure_and_build debug quavin_on_device_sdk
    library=$root/build/debug/src/libquavin_on_device_sdk.so
fi
description=${QUAVIN_ABI_DESCRIPTION:-$root/tests/abi/linux-x86_64.abi}
# The same for both programs, or each would see types that the other left out.
ignored=(--suppressions "$root/tests/abi/standard_library.suppr")
readelf --sections --wide "$library" | grep '\.debug_info' >/dev/null ||
    fail "$library has no debug information; the preset \"debug\" makes one that has"

if [ -n "$update" ]; then
    # Nothing that depends on where or on what else it was built, and names instead of numbers for types, so that
    # the next change is small.
    abidw "${ignored[@]}" --no-corpus-path --no-comp-dir-path --no-show-locs --no-elf-needed \
        --exported-interfaces-only --drop-undefined-syms --no-parameter-names --no-write-default-sizes --type-id-style hash \
        --out-file "$description" "$library"
    say "Described the binary interface in $description"
    exit
fi

compare() { abidiff "${ignored[@]}" "$@" "$description" "$library"; }
compare && exit
if compare --no-added-syms >/dev/null; then
    change="grew: docs/abi.md says when it may"
else
    change="changed in a way that may break hosts: docs/abi.md says when it may"
fi
fail "the binary interface $change. If that is intended, run scripts/check-abi.sh --update and commit the result"
