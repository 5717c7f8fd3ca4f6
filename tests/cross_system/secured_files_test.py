"""Each system can use secured files and keys made on the other."""

import os
import unittest

import exchange
import packages
from exchange import SYSTEMS, WAYS
from support import KEY_HEX, OTHER_KEY_HEX

VECTOR = bytes(range(16))
# Nothing, whole blocks, and everything that a text stream would change.
CONTENTS = [b"", b"x" * 48, b"lines\r\nand\nends\x1a\x00behind" + bytes(range(256)) * 300]


class SecuredFiles(exchange.ExchangeTest):
    def setUp(self):
        super().setUp()
        self.key_file()

    def test_files_are_decrypted_by_the_other_system(self):
        for number, content in enumerate(CONTENTS):
            plain = f"plain{number}"
            self.write(plain, content)
            for maker, reader in WAYS:
                with self.way(maker, reader):
                    secured, back = f"{plain}-by-{maker}", f"{plain}-on-{reader}"
                    self.on(maker).succeed("encrypt", plain, secured, "--key-file", "key")
                    encrypted = (self.dir / secured).read_bytes()
                    self.assertEqual(packages.openssl_decrypt(encrypted, KEY_HEX), content)
                    self.on(reader).succeed("decrypt", secured, back, "--key-env", "THE_KEY",
                                            THE_KEY=KEY_HEX)
                    self.assertEqual((self.dir / back).read_bytes(), content)

    def test_files_are_decrypted_with_keys_from_the_other_system(self):
        self.write("plain", CONTENTS[-1])
        for maker, reader in WAYS:
            with self.way(maker, reader):
                for options in [], ["--raw"]:
                    key, secured, back = (f"{name}-{maker}{len(options)}" for name in "ksb")
                    self.on(maker).succeed("keygen", key, *options)
                    # Its permissions are up to the system it is moved to.
                    os.chmod(self.dir / key, 0o600)
                    self.on(reader).succeed("encrypt", "plain", secured, "--key-file", key)
                    self.on(maker).succeed("decrypt", secured, back, "--key-file", key,
                                           "--allow-open-key-file")
                    self.assertEqual((self.dir / back).read_bytes(), CONTENTS[-1])

    def test_bad_files_are_refused_for_the_same_reasons(self):
        secured = packages.openssl_encrypt(b"some text", KEY_HEX, VECTOR)
        for name, content in {"good": secured, "short": secured[:15], "odd": secured[:-1],
                              "vector": VECTOR, "empty": b""}.items():
            self.write(name, content)
        self.key_file(OTHER_KEY_HEX, "other")
        self.key_file("no key", "bad")
        calls = [("good", "new", "--key-file", "other"), ("good", "new", "--key-file", "bad"),
                 ("good", "new", "--key-env", "NOTHING"), ("nowhere", "new", "--key-file", "key"),
                 ("good", "odd", "--key-file", "key")]
        calls += [(name, "new", "--key-file", "key") for name in ("short", "odd", "vector", "empty")]
        for call in calls:
            with self.subTest(call), self.nothing_changes():
                self.assertEqual(self.assert_same_on_both("decrypt", *call).status, 1)

    def test_refusals_give_the_systems_own_reason_after_ours(self):
        secured = packages.openssl_encrypt(b"some text", KEY_HEX, VECTOR)
        self.write("good", secured)
        calls = {("good", "new", "--key-file", "nowhere"): "The key file nowhere cannot be opened",
                 ("good", "none/new", "--key-file", "key"): "none/new cannot be created"}
        for call, ours in calls.items():
            for system in SYSTEMS:
                with self.subTest(call, system=system.name), self.nothing_changes():
                    reason = self.on(system).refused(3, "decrypt", *call)
                    self.assertTrue(reason.startswith(ours + ": "), reason)

    def test_names_may_be_non_ascii(self):
        self.write("größe 日本 😀", b"some text")
        for system in SYSTEMS:
            with self.subTest(system.name):
                names = [f"größe 日本 😀{end}" for end in ("", f" {system}", f" from {system}")]
                self.on(system).succeed("encrypt", *names[:2], "--key-file", "key")
                self.on(system).succeed("decrypt", *names[1:], "--key-file", "key")
                self.assertEqual((self.dir / names[2]).read_bytes(), b"some text")


if __name__ == "__main__":
    unittest.main()
