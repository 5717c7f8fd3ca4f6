#!/usr/bin/env bash
# Installs missing packages, builds the library, its command line and the digits example, and runs them:
# predictions by a host program, and then a package from network to prediction in the shell.
set -euo pipefail
. "$(dirname "$0")/lib.sh"

# shellcheck disable=SC2086  # lists of words
install_packages $packages_build
configure_and_build demo quavin_digits quavin
say "Recognising handwritten digits"
"$root/build/demo/examples/digits/digits" "$root/examples/digits"

say "Packing, encrypting, archiving, unpacking and running it from the shell"
# show COMMAND...: prints the command as it would be typed, and runs it.
show() {
    printf '\n$ %s\n' "$*"
    "$@"
}
quavin() { "$root/build/demo/tools/quavin/quavin" "$@"; }
work=$root/build/demo/from-the-shell
rm -rf "$work"
mkdir -p "$work"
cd "$work"
cp "$root"/examples/digits/package/digits.{xml,bin} "$root/examples/digits/digit_to_npy.py" \
    "$root/examples/digits/held_out.bin" .
show quavin keygen demo.key
show quavin pack digits.xml -o digits.tar --encrypt components --key-file demo.key
show quavin inspect digits.tar
show quavin unpack digits.tar packages
show quavin verify packages/digits --key-file demo.key
show python3 digit_to_npy.py 0 digit.npy
show quavin run packages/digits --key-file demo.key --input image=digit.npy --output results
say "Done. The program: examples/digits/main.cpp; the command line: docs/command-line.md"
