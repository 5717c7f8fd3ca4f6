#!/usr/bin/env python3
"""Fills the verdicts of PyPI's model-signing (1.1.1, with pyOpenSSL) into bundles.tsv: "accepts" or
"refuses", for the signature and what it says about files. The files themselves play no part.

With --check, changes nothing and ends with 1 if a verdict is another one.
"""

import contextlib
import io
import pathlib
import sys

from model_signing._signing import sign_ec_key, sign_sigstore_pb

HERE = pathlib.Path(__file__).resolve().parent
TABLE = HERE / "bundles.tsv"


def verdict(name, key):
    try:
        with contextlib.redirect_stdout(io.StringIO()):  # warnings
            signature = sign_sigstore_pb.Signature.read(HERE / "bundles" / f"{name}.sig")
            sign_ec_key.Verifier(HERE / "keys" / f"{key}.pem").verify(signature)
    except Exception:  # of many kinds, some of them from other libraries
        return "refuses"
    return "accepts"


def main():
    table = TABLE.read_text()
    filled = ""
    for line in table.splitlines():
        name, key, openssl, _, problem = line.split("\t")
        filled += "\t".join((name, key, openssl, verdict(name, key), problem)) + "\n"
    if "--check" in sys.argv:
        sys.exit(filled != table)
    TABLE.write_text(filled)


if __name__ == "__main__":
    main()
