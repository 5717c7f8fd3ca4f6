#!/usr/bin/env bash
# Installs what is missing, builds the library and the digits example, and runs it.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

# shellcheck disable=SC2086  # lists of words
install_packages $packages_build
configure_and_build demo quavin_digits
say "Recognising handwritten digits"
"$root/build/demo/examples/digits/digits" "$root/examples/digits"
say "Done. The program: examples/digits/main.cpp"
