"""quavin keygen, and the forms in which commands take a key."""

import os
import unittest

import packages
import process
from support import KEY, KEY_HEX, OTHER_KEY_HEX, CommandLineTest


class Keygen(CommandLineTest):
    def made(self, name="key", *options):
        out = self.succeed("keygen", name, *options)
        content = (self.dir / name).read_bytes()
        self.assertNotIn(content.strip(), out.encode())
        return content

    def test_writes_32_digits_and_a_line_break(self):
        self.assertRegex(self.made(), rb"\A[0-9a-f]{32}\n\Z")

    def test_writes_16_raw_bytes_with_raw(self):
        self.assertEqual(len(self.made("key", "--raw")), 16)

    def test_generates_a_new_key_each_time(self):
        keys = [self.made(f"key{i}") for i in range(4)]
        keys += [self.made(f"raw{i}", "--raw").hex().encode() + b"\n" for i in range(4)]
        self.assertEqual(len(set(keys)), 8)

    def test_key_files_are_readable_only_by_their_owner(self):
        self.addCleanup(os.umask, os.umask(0))
        for options in [], ["--raw"]:
            name = "key" + "".join(options)
            self.made(name, *options)
            self.assert_private(name)

    def test_refuses_to_replace_existing_files(self):
        self.key_file()
        (self.dir / "directory").mkdir()
        for name in "key", "directory":
            with self.subTest(name), self.nothing_changes():
                self.assertIn("already exists", self.refused(7, "keygen", name))

    @process.posix_only(process.NO_LINKS)
    def test_refuses_to_replace_links(self):
        (self.dir / "link").symlink_to("nowhere")
        with self.nothing_changes():
            self.assertIn("already exists", self.refused(7, "keygen", "link"))

    def test_names_the_path_that_cannot_be_written(self):
        self.assertIn("none/key", self.refused(3, "keygen", "none/key"))

    def test_generates_keys_that_work_with_openssl(self):
        self.write("plain", "some text")
        for options in [], ["--raw"]:
            with self.subTest(options):
                name = "key" + "".join(options)
                content = self.made(name, *options)
                self.succeed("encrypt", "plain", "for" + name, "--key-file", name)
                key = content.hex() if options else content.decode().strip()
                secured = (self.dir / ("for" + name)).read_bytes()
                self.assertEqual(packages.openssl_decrypt(secured, key), b"some text")


class KeyForms(CommandLineTest):
    def setUp(self):
        super().setUp()
        self.write("secured", packages.openssl_encrypt(b"some text", KEY_HEX, bytes(range(16))))

    def assert_taken(self, *options, **environment):
        self.succeed("decrypt", "secured", "plain", *options, **environment)
        self.assertEqual((self.dir / "plain").read_bytes(), b"some text")
        (self.dir / "plain").unlink()

    def reason_against(self, code, *options, **environment):
        with self.nothing_changes():
            return self.refused(code, "decrypt", "secured", "plain", *options, **environment)

    def test_key_files_of_each_form_are_accepted(self):
        digits = KEY_HEX.encode()
        upper = digits.upper()
        for content in KEY, digits, digits + b"\n", digits + b"\r\n", upper, upper + b"\r\n":
            with self.subTest(content):
                self.key_file(content)
                self.assert_taken("--key-file", "key")

    def test_variables_of_each_form_are_accepted(self):
        for value in KEY_HEX, KEY_HEX.upper(), KEY_HEX + "\n":
            with self.subTest(value):
                self.assert_taken("--key-env", "THE_KEY", THE_KEY=value)

    def test_variables_of_raw_bytes_are_accepted(self):
        # On Windows, variables hold text, so that the bytes must be UTF-8.
        key = "größe + länge".encode() if process.WINDOWS else KEY
        self.assertEqual(len(key), 16)
        self.write("secured", packages.openssl_encrypt(b"some text", key.hex(), bytes(range(16))))
        self.assert_taken("--key-env", "THE_KEY", THE_KEY=os.fsdecode(key))

    def test_files_without_a_key_are_refused(self):
        digits = KEY_HEX.encode()
        contents = [b"", KEY[:-1], KEY + b"\n", digits[:-1], digits + b"0", digits + b"\n\n"]
        contents += [b" " + digits, digits + b" \n", digits[:-1] + b"g", b"0x" + digits[2:]]
        contents += [digits + b"\r", bytes(40), bytes(1 << 20), (digits + b"\n") * 2]
        for content in contents:
            with self.subTest(content[:50]):
                self.key_file(content)
                reason = self.reason_against(7, "--key-file", "key")
                self.assertIn("key", reason)
                self.assertIn("32 hexadecimal digits", reason)

    def test_variables_without_a_key_are_refused(self):
        for value in "", "short", KEY_HEX[:-1] + "x", KEY_HEX + "00", KEY_HEX * 2:
            with self.subTest(value):
                reason = self.reason_against(7, "--key-env", "THE_KEY", THE_KEY=value)
                self.assertIn("THE_KEY", reason)
                self.assertIn("32 hexadecimal digits", reason)

    def test_a_missing_variable_is_refused(self):
        self.assertIn("THE_KEY", self.reason_against(7, "--key-env", "THE_KEY", THE_KEY=None))

    def test_a_wrong_key_is_refused(self):
        self.key_file(OTHER_KEY_HEX)
        self.assertIn("key is wrong", self.reason_against(3, "--key-file", "key"))

    def test_a_file_together_with_a_variable_is_a_misuse(self):
        self.key_file()
        with self.nothing_changes():
            both = ["--key-file", "key", "--key-env", "THE_KEY"]
            self.misused("decrypt", "secured", "plain", *both, THE_KEY=KEY_HEX)

    def test_a_missing_key_option_is_a_misuse(self):
        with self.nothing_changes():
            self.assertIn("--key-file", self.misused("decrypt", "secured", "plain"))
            self.assertIn("--key-file", self.misused("encrypt", "secured", "again"))

    def test_a_key_file_that_others_may_read_is_refused(self):
        # The emulator does not turn the rights of a group into access lists.
        modes = [0o604, 0o644] + ([] if process.WINDOWS else [0o640])
        for mode in modes:
            with self.subTest(oct(mode)):
                self.key_file(mode=mode)
                reason = self.reason_against(3, "--key-file", "key")
                self.assertIn("key can be read by others", reason)
                self.assertIn("--allow-open-key-file", reason)
                self.assert_taken("--key-file", "key", "--allow-open-key-file")

    def test_a_read_only_key_file_is_accepted(self):
        self.key_file(mode=0o400)
        self.assert_taken("--key-file", "key")

    def test_a_link_to_a_key_file_is_followed(self):
        self.key_file()
        (self.dir / "link").symlink_to("key")
        self.assert_taken("--key-file", "link")
        self.key_file(mode=0o644)
        self.assertIn("others", self.reason_against(3, "--key-file", "link"))

    def test_a_key_file_that_is_not_a_regular_file_is_refused(self):
        (self.dir / "directory").mkdir()
        os.mkfifo(self.dir / "pipe", 0o600)  # without a writer
        for name in "directory", "pipe", "/dev/null", "/dev/zero":
            with self.subTest(name):
                options = ["--key-file", name, "--allow-open-key-file"]
                reason = self.reason_against(3, *options)
                self.assertIn(name, reason)
                self.assertIn("not a regular file", reason)

    def test_a_missing_key_file_is_refused(self):
        self.assertIn("nowhere", self.reason_against(3, "--key-file", "nowhere"))


if __name__ == "__main__":
    unittest.main()
