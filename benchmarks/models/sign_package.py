#!/usr/bin/env python3
"""Signs a package with a new key: writes model.sig into its folder, and the public key into a file.

    sign_package.py DIR PEM

Needs Python 3.10 and the openssl command.
"""

import argparse
import pathlib
import sys
import tempfile

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "tests/data/signature"))
from signing import Key, resources_in, write_signature  # noqa: E402


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("folder", type=pathlib.Path)
    parser.add_argument("pem", type=pathlib.Path)
    arguments = parser.parse_args()
    signature = arguments.folder / "model.sig"
    signature.unlink(missing_ok=True)
    with tempfile.TemporaryDirectory() as temporary:
        key = Key("p256", pathlib.Path(temporary))
        write_signature(signature, resources_in(arguments.folder), key)
        arguments.pem.write_bytes(key.pem)


if __name__ == "__main__":
    main()
