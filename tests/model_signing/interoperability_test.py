"""Packages that quavin and PyPI's model-signing sign for each other.

Runs in the environment of requirements.txt; scripts/test-model-signing.sh does that.
"""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

QUAVIN = os.environ["QUAVIN_TOOL"]
ROOT = pathlib.Path(__file__).resolve().parents[2]
DIGITS = ROOT / "examples" / "digits" / "package"
KEY_HEX = "6b1fe0a94c7d3825f3b29d5e81c46a37"
CURVES = ("prime256v1", "secp384r1")


def run(*command):
    result = subprocess.run(list(map(str, command)), stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                            check=False)
    # A program that crashes, or cannot be called like this, refuses nothing.
    if result.returncode not in (0, 1) or "Usage:" in result.stdout or "Traceback" in result.stdout:
        raise AssertionError(result.stdout)
    return result


def accepts(*command):
    return run(*command).returncode == 0


def succeed(*command):
    result = run(*command)
    if result.returncode != 0:
        raise AssertionError(result.stdout)


def write_secret(path, content):
    path.write_bytes(content)
    path.chmod(0o600)
    return path


class WithKeys(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="quavin-signing-")
        self.addCleanup(folder.cleanup)
        self.dir = pathlib.Path(folder.name)

    def make(self, curve):
        """A package with a file in a folder, and a pair of keys."""
        self.package = self.dir / curve
        shutil.copytree(DIGITS, self.package)
        (self.package / "notes").mkdir()
        (self.package / "notes" / "größe.txt").write_text("Names need not be ASCII.\n", encoding="utf-8")
        self.signature = self.package / "model.sig"
        self.private, self.public = self.make_keys(curve, curve)

    def make_keys(self, curve, name):
        private, public = self.dir / f"{name}.key", self.dir / f"{name}.pem"
        subprocess.run(["openssl", "ecparam", "-name", curve, "-genkey", "-noout", "-out", private], check=True)
        subprocess.run(["openssl", "pkey", "-in", private, "-pubout", "-out", public], check=True)
        return private, public

    def sign_here(self):
        succeed(QUAVIN, "sign", self.package, "--private-key", self.private)

    def sign_there(self):
        succeed(sys.executable, "-m", "model_signing", "sign", "key", "--private_key", self.private,
                "--signature", self.signature, self.package)

    def accepted_here(self):
        return accepts(QUAVIN, "verify", self.package, "--public-key", self.public)

    def accepted_there(self):
        return accepts(sys.executable, "-m", "model_signing", "verify", "key", "--public_key", self.public,
                        "--signature", self.signature, self.package)

    def assert_both(self, verdict):
        self.assertEqual((self.accepted_here(), self.accepted_there()), (verdict, verdict))

    def signed(self):
        """Each combination of curve and signer."""
        for curve in CURVES:
            for sign in (self.sign_here, self.sign_there):
                with self.subTest(curve=curve, signer=sign.__name__):
                    self.make(curve)
                    sign()
                    yield
                shutil.rmtree(self.package)


class Interoperability(WithKeys):
    def test_each_accepts_what_the_other_signed(self):
        for _ in self.signed():
            self.assert_both(True)

    def test_both_refuse_changed_weights(self):
        for _ in self.signed():
            weights = next(self.package.glob("*.bin"))
            content = bytearray(weights.read_bytes())
            content[len(content) // 2] ^= 1
            weights.write_bytes(content)
            self.assert_both(False)

    def test_both_refuse_a_changed_manifest(self):
        for _ in self.signed():
            with open(self.package / "manifest.json", "a", encoding="utf-8") as manifest:
                manifest.write("\n")
            self.assert_both(False)

    def test_both_refuse_a_missing_file(self):
        for _ in self.signed():
            (self.package / "notes" / "größe.txt").unlink()
            self.assert_both(False)

    def test_both_refuse_a_file_that_was_added(self):
        for _ in self.signed():
            (self.package / "added").write_text("")
            self.assert_both(False)

    def test_both_refuse_another_key(self):
        for _ in self.signed():
            _, self.public = self.make_keys("prime256v1", "other")
            self.assert_both(False)

    def test_both_refuse_the_signature_of_another_package(self):
        for _ in self.signed():
            kept = self.signature.read_bytes()
            self.signature.unlink()
            with open(self.package / "manifest.json", "a", encoding="utf-8") as manifest:
                manifest.write("\n")
            self.sign_here()
            self.assert_both(True)
            self.signature.write_bytes(kept)
            self.assert_both(False)

    def test_both_accept_what_an_encrypted_key_signed(self):
        self.make("prime256v1")
        encrypted = self.dir / "encrypted.key"
        subprocess.run(["openssl", "pkcs8", "-topk8", "-v2", "aes256", "-passout", "pass:open sesame", "-in",
                        self.private, "-out", encrypted], check=True)
        encrypted.chmod(0o600)
        passphrase = write_secret(self.dir / "passphrase", b"open sesame\n")
        succeed(QUAVIN, "sign", self.package, "--private-key", encrypted, "--passphrase-file", passphrase)
        self.assert_both(True)


class Packed(WithKeys):
    def test_a_secured_archive_that_pack_signed_is_accepted_there_once_unpacked(self):
        self.make("prime256v1")
        network = next(self.package.glob("*.xml"))
        key = write_secret(self.dir / "key", bytes.fromhex(KEY_HEX))
        archive, unpacked = self.dir / "packed.tar", self.dir / "unpacked"
        succeed(QUAVIN, "pack", network, "-o", archive, "--encrypt", "components", "--key-file", key, "--sign",
                self.private)
        succeed(QUAVIN, "unpack", archive, unpacked)
        self.package = unpacked / "packed"
        self.signature = self.package / "model.sig"
        self.assertTrue(self.accepted_there())


if __name__ == "__main__":
    unittest.main()
