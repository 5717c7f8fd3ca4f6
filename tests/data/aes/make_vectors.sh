#!/usr/bin/env bash
# Creates the test vectors in this folder with the openssl command. They never change: key, vectors
# and plaintexts are fixed.
#
#   key.bin              the key, 16 bytes
#   wrong_key.bin        another key
#   <name>.plain         what was encrypted
#   <name>.secured       the initialisation vector, then the ciphertext
#   padded.decrypted     padded.secured without its vector, decrypted, padding kept
#   padded.wrong_key     as above, with the other key
set -euo pipefail
cd "$(dirname "$0")"

key=00112233445566778899aabbccddeeff
wrong_key=ffeeddccbbaa99887766554433221100
padded_iv=0f1e2d3c4b5a69788796a5b4c3d2e1f0
unpadded_iv=a0a1a2a3a4a5a6a7a8a9aaabacadaeaf

# bytes <hexadecimal digits>: the bytes themselves.
bytes() {
    # shellcheck disable=SC2001  # the replacement needs the matched text
    printf "%b" "$(sed 's/../\\x&/g' <<<"$1")"
}

# encrypt <name> <vector> [option...]: <name>.plain to <name>.secured.
encrypt() {
    name=$1
    iv=$2
    shift 2
    { bytes "$iv" && openssl enc -aes-128-cbc -K "$key" -iv "$iv" "$@" -in "$name.plain"; } \
        >"$name.secured"
}

# decrypt <key>: padded.secured without its vector, from standard input to standard output.
decrypt() {
    tail -c +17 padded.secured |
        openssl enc -d -aes-128-cbc -K "$1" -iv "$padded_iv" -nopad
}

bytes "$key" >key.bin
bytes "$wrong_key" >wrong_key.bin

counted=$(seq 1 200)

# 267 bytes: openssl fills the last block with five bytes of value 5.
printf %s "${counted:0:267}" >padded.plain
encrypt padded "$padded_iv"
decrypt "$key" >padded.decrypted
decrypt "$wrong_key" >padded.wrong_key

# 256 bytes: whole blocks, which need no padding.
printf %s "${counted:100:256}" >unpadded.plain
encrypt unpadded "$unpadded_iv" -nopad
