#!/usr/bin/env python3
"""Creates private/NAME.pem with the openssl command: the secrets of RFC 6979, appendix A.2.5 and A.2.6, in every form
that tools write, and keys that cannot sign. They are published, so nobody may trust them. Encrypted ones have the
passphrase "passphrase"."""

import pathlib
import shutil

from signing import element, integer, openssl

FOLDER = pathlib.Path(__file__).resolve().parent / "private"
P256 = ("C9AFA9D845BA75166B5C215767B1D6934E50C3DB36E89B127B8A622B120F6721", "06082A8648CE3D030107")
P384 = ("6B9D3DAD2E1B8C1C05B19875B6659F4DE23C3B667BF297BA9AA47740787137D896D5724E4C70A825F872C9EA60D2EDF5",
        "06052B81040022")


def sec1(secret, curve):
    """The key without its public half, which openssl adds."""
    return element(0x30, integer(1) + element(4, bytes.fromhex(secret)) + element(0xA0, bytes.fromhex(curve)))


def convert(source, name, *arguments):
    (FOLDER / name).write_bytes(openssl(*arguments, "-in", FOLDER / source).stdout)


def main():
    shutil.rmtree(FOLDER, ignore_errors=True)
    FOLDER.mkdir()
    for name, parts in ("p256", P256), ("p384", P384):
        (FOLDER / f"{name}.pem").write_bytes(openssl("ec", "-inform", "DER", stdin=sec1(*parts)).stdout)
        convert(f"{name}.pem", f"{name}_pkcs8.pem", "pkcs8", "-topk8", "-nocrypt")
    parameters = openssl("ecparam", "-name", "prime256v1").stdout
    (FOLDER / "after_parameters.pem").write_bytes(parameters + (FOLDER / "p256.pem").read_bytes())
    convert("p256.pem", "encrypted.pem", "pkcs8", "-topk8", "-passout", "pass:passphrase")
    convert("p256.pem", "encrypted_older.pem", "ec", "-aes256", "-passout", "pass:passphrase")
    convert("p256.pem", "no_public_half.pem", "ec", "-no_public")
    (FOLDER / "k256.pem").write_bytes(openssl("ecparam", "-name", "secp256k1", "-genkey", "-noout").stdout)
    (FOLDER / "ed25519.pem").write_bytes(openssl("genpkey", "-algorithm", "ed25519").stdout)


if __name__ == "__main__":
    main()
