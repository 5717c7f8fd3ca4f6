"""A signed package, its keys, and what openssl and Python make of its signature."""

import base64
import hashlib
import json
import subprocess
import sys
from pathlib import Path

import packages
from support import CommandLineTest

sys.path.insert(0, str(Path(__file__).resolve().parent.parent / "data" / "signature"))
import signing  # noqa: E402  from the folder above

# As model-signing 1.1.1 lists them.
IGNORED = ["model.sig", ".git", ".gitattributes", ".github", ".gitignore"]
PREDICATE = "https://model_signing/signature/v1.0"


def openssl(folder, *arguments):
    return subprocess.run(["openssl", *arguments], cwd=folder, check=True, stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL).stdout


def hint_of(pem):
    """What signatures call a key."""
    return hashlib.sha256(pem).hexdigest()


class WithKeys(CommandLineTest):
    """A package, and a pair of keys."""

    def setUp(self):
        super().setUp()
        self.package = packages.write_package(self.dir / "package")
        self.public = self.make_keys("private.pem", "public.pem")

    def make_keys(self, private, public, curve="prime256v1"):
        packages.write_private_key(self.dir / private, curve)
        openssl(self.dir, "pkey", "-in", private, "-pubout", "-out", public)
        return (self.dir / public).read_bytes()

    def sign(self, *options, package="package", key="private.pem", **how):
        return self.succeed("sign", package, "--private-key", key, *options, **how)

    def assert_right(self, signature, expected, pem=None, hash_name="sha256"):
        """Asserts that a signature covers exactly these files, by name, and that openssl finds it right."""
        pem = pem or self.public
        bundle = json.loads(signature)
        self.assertEqual(bundle["mediaType"], signing.MEDIA_TYPE)
        self.assertEqual(bundle["verificationMaterial"],
                         {"publicKey": {"hint": hint_of(pem)}, "tlogEntries": []})
        envelope = bundle["dsseEnvelope"]
        self.assertEqual(envelope["payloadType"], signing.PAYLOAD_TYPE)
        [one] = envelope["signatures"]
        payload = base64.b64decode(envelope["payload"], validate=True)
        made = base64.b64decode(one["sig"], validate=True)
        self.assertTrue(signing.verifies(pem, hash_name, signing.pae(payload), made))
        statement = json.loads(payload)
        resources = [signing.resource(name, signing.sha256(content))
                     for name, content in sorted(expected.items())]
        self.assertEqual(statement, signing.statement(resources, IGNORED))
        self.assertEqual(statement["predicateType"], PREDICATE)

    def files(self, folder="package"):
        root = self.dir / folder
        return {path.relative_to(root).as_posix(): path.read_bytes()
                for path in root.rglob("*") if path.is_file() and path.name != "model.sig"}
