"""quavin encrypt and decrypt, against openssl."""

import os
import unittest

import packages
from support import KEY_HEX, OTHER_KEY_HEX, CommandLineTest

VECTOR = bytes(range(0xA0, 0xB0))
SIZES = [0, 1, 15, 16, 17, 31, 32, 1000, 5_000_001]
KEY_OPTION = ["--key-file", "key"]


def content_of(size):
    return (bytes(range(1, 252)) * (size // 251 + 1))[:size]


class CryptCase(CommandLineTest):
    def setUp(self):
        super().setUp()
        self.key_file()

    def output_of(self, command, content, *options):
        self.write("in", content)
        self.succeed(command, "in", "out", *KEY_OPTION, *options)
        result = (self.dir / "out").read_bytes()
        (self.dir / "out").unlink()
        return result

    def refused_without_traces(self, code, *arguments):
        with self.nothing_changes():
            return self.refused(code, *arguments, *KEY_OPTION)


class Encrypt(CryptCase):
    def test_encrypted_files_can_be_decrypted_by_openssl(self):
        for size in SIZES:
            with self.subTest(size):
                secured = self.output_of("encrypt", content_of(size))
                self.assertEqual(len(secured), 16 + size // 16 * 16 + 16)
                self.assertEqual(packages.openssl_decrypt(secured, KEY_HEX), content_of(size))

    def test_encrypting_matches_openssl_with_the_same_vector(self):
        secured = self.output_of("encrypt", b"some text")
        self.assertEqual(packages.openssl_encrypt(b"some text", KEY_HEX, secured[:16]), secured)

    def test_encrypting_uses_a_new_vector_each_time(self):
        vectors = {self.output_of("encrypt", b"some text")[:16] for _ in range(4)}
        self.assertEqual(len(vectors), 4)

    def test_existing_files_are_not_replaced(self):
        self.write("in", "some text")
        self.write("out", "precious")
        for command in "encrypt", "decrypt":
            reason = self.refused_without_traces(7, command, "in", "out")
            self.assertIn("already exists", reason)
            self.assertIn("already exists", self.refused_without_traces(7, command, "in", "in"))

    def test_encrypting_names_the_path_that_cannot_be_read_or_written(self):
        self.write("in", "some text")
        (self.dir / "directory").mkdir()
        os.mkfifo(self.dir / "pipe")
        for name in "nowhere", "directory", "pipe":
            with self.subTest(name):
                self.assertIn(name, self.refused_without_traces(3, "encrypt", name, "out"))
        self.assertIn("none/out", self.refused_without_traces(3, "encrypt", "in", "none/out"))

    def test_encrypting_reports_files_and_sizes(self):
        self.write("in", "some text")
        out = self.succeed("encrypt", "in", "out", *KEY_OPTION)
        self.assertEqual(out, "Encrypted in (9 bytes) as out (32 bytes)\n")


class Decrypt(CryptCase):
    def test_decrypts_files_encrypted_by_openssl(self):
        for size in SIZES:
            with self.subTest(size):
                secured = packages.openssl_encrypt(content_of(size), KEY_HEX, VECTOR)
                self.assertEqual(self.output_of("decrypt", secured), content_of(size))

    def test_keep_padding_keeps_the_padding(self):
        for size, padding in (9, b"\x07" * 7), (16, b"\x10" * 16), (0, b"\x10" * 16):
            with self.subTest(size):
                secured = packages.openssl_encrypt(content_of(size), KEY_HEX, VECTOR)
                padded = self.output_of("decrypt", secured, "--keep-padding")
                self.assertEqual(padded, content_of(size) + padding)

    def test_keep_padding_accepts_files_without_padding(self):
        plain = b"32 bytes that end in no padding."
        secured = packages.openssl_encrypt(plain, KEY_HEX, VECTOR, padding=False)
        self.assertEqual(self.output_of("decrypt", secured, "--keep-padding"), plain)
        reason = self.refused_without_traces(3, "decrypt", "in", "out")
        self.assertIn("--keep-padding", reason)

    def test_refuses_invalid_padding(self):
        block = b"sixteen bytes..."
        for end in b"\x00", b"\x11", b"\xff", b"\x01\x02", b"\x02\x03\x03", b"\x0f" + b"\x10" * 15:
            with self.subTest(end):
                plain = block + block[: 16 - len(end)] + end
                self.write("in", packages.openssl_encrypt(plain, KEY_HEX, VECTOR, padding=False))
                reason = self.refused_without_traces(3, "decrypt", "in", "out")
                self.assertIn("PKCS#7", reason)

    def test_refuses_a_wrong_key(self):
        self.write("in", packages.openssl_encrypt(content_of(1000), OTHER_KEY_HEX, VECTOR))
        self.assertIn("key is wrong", self.refused_without_traces(3, "decrypt", "in", "out"))

    def test_refuses_lengths_that_no_padded_file_can_have(self):
        for length in 0, 1, 15, 17, 31, 33, 47:
            with self.subTest(length):
                self.write("in", bytes(length))
                reason = self.refused_without_traces(7, "decrypt", "in", "out")
                self.assertIn(f"in has {length} bytes", reason)

    def test_keep_padding_accepts_an_empty_file_without_padding(self):
        self.assertEqual(self.output_of("decrypt", VECTOR, "--keep-padding"), b"")
        with self.nothing_changes():
            self.assertEqual(self.quavin("decrypt", "in", "out", *KEY_OPTION).status, 1)

    def test_decrypted_files_are_readable_only_by_their_owner(self):
        self.addCleanup(os.umask, os.umask(0))
        self.write("in", packages.openssl_encrypt(b"some text", KEY_HEX, VECTOR))
        for name, options in ("out", []), ("padded", ["--keep-padding"]):
            self.succeed("decrypt", "in", name, *KEY_OPTION, *options)
            self.assert_private(name)

    def test_decrypting_names_the_path_that_cannot_be_read_or_written(self):
        self.write("in", packages.openssl_encrypt(b"some text", KEY_HEX, VECTOR))
        self.assertIn("nowhere", self.refused_without_traces(3, "decrypt", "nowhere", "out"))
        self.assertIn("none/out", self.refused_without_traces(3, "decrypt", "in", "none/out"))


if __name__ == "__main__":
    unittest.main()
