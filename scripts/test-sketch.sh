#!/usr/bin/env bash
# Builds examples/sketch against an installation of a build, by default build/release, and tests it on a screen without
# a monitor. To name another build: scripts/test-sketch.sh build/debug
# "scripts/test-sketch.sh --picture" also makes the picture in README.md anew.
# It says how long drawing takes, and ends it after 10 minutes.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

picture=
if [ "${1:-}" = --picture ]; then
    picture=yes
    shift
fi
# shellcheck disable=SC2086  # lists of words
install_packages $packages_build $packages_sketch
build=${1:-$root/build/release}
[ -f "$build/src/libquavin_on_device_sdk.so" ] ||
    fail "there is no library in $build; build it first: cmake --preset release && cmake --build build/release"
work=$root/build/sketch

say "Building examples/sketch against an installation"
rm -rf "$work/prefix"
cmake --install "$build" --prefix "$work/prefix" >/dev/null
cmake -S "$root/examples/sketch" -B "$work/build" -G Ninja -DCMAKE_BUILD_TYPE=Release --log-level=WARNING \
    -DCMAKE_PREFIX_PATH="$work/prefix" -DQUAVIN_BUILD_SKETCH=ON >/dev/null
cmake --build "$work/build" -- --quiet
export SKETCH_PROGRAM=$work/build/sketch PYTHONDONTWRITEBYTECODE=1

if [ -n "$picture" ]; then
    say "Making docs/images/sketch.gif"
    python3 "$root/tests/sketch/sketch_picture.py" "$SKETCH_PROGRAM"
fi
say "Drawing digits"
time_leg "sketch" timeout 600 python3 "$root/tests/sketch/sketch_test.py"
