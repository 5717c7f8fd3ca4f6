"""quavin sign: the forms of private keys, their passphrases, and keys that are refused."""

import os
import pty
import termios
import time
import unittest

import packages
import process
from signatures import WithKeys, openssl

PASSPHRASE = "größer als nichts"
OTHER_CURVE = "it is not an uncompressed key on the curve P-256 or P-384"


class PrivateKeys(WithKeys):
    def assert_signs(self, key, *options, **how):
        self.sign(*options, key=key, **how)
        self.assert_right((self.package / "model.sig").read_bytes(), self.files())
        (self.package / "model.sig").unlink()

    def convert(self, name, *arguments):
        openssl(self.dir, *arguments, "-in", "private.pem", "-out", name)
        (self.dir / name).chmod(0o600)
        return name

    def encrypted(self, passphrase=PASSPHRASE):
        return self.convert("encrypted.pem", "pkcs8", "-topk8", "-passout", "pass:" + passphrase)

    def refusal(self, key, *options, **how):
        with self.nothing_changes():
            text = self.refused(7, "sign", "package", "--private-key", key, *options, **how)
        self.assertNotIn(PASSPHRASE, text)
        return text


class Forms(PrivateKeys):
    def test_pkcs8_and_sec1_are_accepted(self):
        self.assert_signs("private.pem")
        self.assertIn(b"BEGIN EC PRIVATE KEY", (self.dir / "private.pem").read_bytes())
        self.assert_signs(self.convert("pkcs8.pem", "pkcs8", "-topk8", "-nocrypt"))

    def test_text_around_the_key_is_skipped(self):
        text = (self.dir / "private.pem").read_text()
        parameters = openssl(self.dir, "ecparam", "-name", "prime256v1").decode()
        self.write("around.pem", "a key\n" + parameters + text + "\n", 0o600)
        self.assert_signs("around.pem")

    def test_other_keys_are_refused(self):
        for name, arguments in {
            "rsa.pem": ["genrsa", "-out", "rsa.pem", "2048"],
            "k256.pem": ["ecparam", "-name", "secp256k1", "-genkey", "-noout", "-out", "k256.pem"],
            "p521.pem": ["ecparam", "-name", "secp521r1", "-genkey", "-noout", "-out", "p521.pem"],
        }.items():
            with self.subTest(name):
                openssl(self.dir, *arguments)
                (self.dir / name).chmod(0o600)
                self.assertIn("curve P-256 or P-384", self.refusal(name))

    def test_what_is_no_private_key_is_refused(self):
        contents = {"empty": b"", "text": b"no key", "public": self.public, "zeros": bytes(64),
                    "cut": (self.dir / "private.pem").read_bytes()[:100]}
        for name, content in contents.items():
            with self.subTest(name):
                self.write(name, content, 0o600)
                self.assertEqual(self.refusal(name), f"The private key {name} cannot be used: "
                                                     "it holds no private key in PEM")

    def test_a_file_too_large_for_a_key_is_refused(self):
        self.write("large", bytes(100000), 0o600)
        self.assertIn("has more than 65536 bytes", self.refusal("large"))

    def test_a_missing_key_file_is_named(self):
        self.assertIn("none.pem", self.refused(3, "sign", "package", "--private-key", "none.pem"))

    @process.posix_only("access lists are tested elsewhere")
    def test_a_key_file_that_others_may_read_is_refused(self):
        (self.dir / "private.pem").chmod(0o644)
        call = ["sign", "package", "--private-key", "private.pem"]
        with self.nothing_changes():
            self.assertIn("--allow-open-key-file", self.refused(3, *call))
        self.assert_signs("private.pem", "--allow-open-key-file")


@process.posix_only("encrypted keys are refused")
class EncryptedKeys(PrivateKeys):
    def test_the_passphrase_comes_from_a_variable_or_a_file(self):
        key = self.encrypted()
        self.assert_signs(key, "--passphrase-env", "PASSPHRASE", PASSPHRASE=PASSPHRASE)
        for end in "", "\n", "\r\n", "\nmore", "\n" + "a note\n" * 1000:
            self.write("passphrase", PASSPHRASE + end, 0o600)
            self.assert_signs(key, "--passphrase-file", "passphrase")

    def test_the_older_form_of_encryption_is_accepted(self):
        key = self.convert("older.pem", "ec", "-aes256", "-passout", "pass:" + PASSPHRASE)
        self.assertIn(b"Proc-Type: 4,ENCRYPTED", (self.dir / key).read_bytes())
        self.assert_signs(key, "--passphrase-env", "PASSPHRASE", PASSPHRASE=PASSPHRASE)

    def test_a_passphrase_that_is_not_needed_does_no_harm(self):
        self.assert_signs("private.pem", "--passphrase-env", "PASSPHRASE", PASSPHRASE=PASSPHRASE)

    def test_another_passphrase_is_refused(self):
        for other in "another", "":
            text = self.refusal(self.encrypted(), "--passphrase-env", "PASSPHRASE", PASSPHRASE=other)
            self.assertIn("its passphrase is another one, or it is damaged", text)
            (self.dir / "encrypted.pem").unlink()

    def test_a_passphrase_that_is_not_there_is_named(self):
        key = self.encrypted()
        self.assertIn("no environment variable NOTHING", self.refusal(key, "--passphrase-env", "NOTHING"))
        text = self.refused(3, "sign", "package", "--private-key", key, "--passphrase-file", "nothing")
        self.assertIn("The passphrase file nothing", text)

    def test_a_passphrase_file_that_others_may_read_is_refused(self):
        self.write("passphrase", PASSPHRASE, 0o644)
        text = self.refused(3, "sign", "package", "--private-key", self.encrypted(), "--passphrase-file", "passphrase")
        self.assertIn("--allow-open-key-file", text)

    def test_two_sources_of_a_passphrase_are_a_misuse(self):
        self.misused("sign", "package", "--private-key", "private.pem", "--passphrase-env", "A", "--passphrase-file",
                     "b")

    def test_without_a_terminal_nobody_is_asked(self):
        key = self.encrypted()
        with self.nothing_changes():
            done = packages.subprocess.run(
                ["setsid", "--wait", process.TOOL, "sign", "package", "--private-key", key],
                cwd=self.dir, env=process.clean_environment(**self.places), input=PASSPHRASE.encode() + b"\n",
                stdout=packages.subprocess.PIPE, stderr=packages.subprocess.PIPE, timeout=process.PATIENCE, check=False)
        self.assertEqual((done.returncode, done.stdout), (1, b""))
        self.assertIn(b"pass its passphrase with --passphrase-env or --passphrase-file", done.stderr)

    def test_a_user_at_a_terminal_is_asked_and_the_answer_is_not_shown(self):
        for answer, status in ("not the answer", 1), (PASSPHRASE, 0):
            with self.subTest(answer):
                shown, ended = self.answered(self.encrypted(), answer)
                self.assertEqual(ended, status, shown)
                self.assertIn("Passphrase of encrypted.pem: ", shown)
                self.assertNotIn(answer, shown)
                (self.dir / "encrypted.pem").unlink()
        self.assert_right((self.package / "model.sig").read_bytes(), self.files())

    def test_an_answer_may_have_as_many_bytes_as_openssl_allows_and_no_more(self):
        longest = "a" * 1024
        key = self.encrypted(longest)
        shown, ended = self.answered(key, longest)
        self.assertEqual(ended, 0, shown)
        (self.package / "model.sig").unlink()
        for answer in longest + "a", "a" * 4000:
            with self.subTest(length=len(answer)), self.nothing_changes():
                shown, ended = self.answered(key, answer)
                self.assertEqual(ended, 1, shown)
                self.assertIn("status 7: The passphrase of encrypted.pem has more than 1024 bytes", shown)

    def test_a_passphrase_that_is_too_long_is_refused(self):
        key = self.encrypted()
        self.write("passphrase", "a" * 1025 + "\n", 0o600)
        for options in ["--passphrase-env", "LONG"], ["--passphrase-file", "passphrase"]:
            with self.subTest(options):
                text = self.refusal(key, *options, LONG="a" * 1025)
                self.assertEqual(text, "The passphrase of encrypted.pem has more than 1024 bytes")

    def answered(self, key, answer):
        """What a terminal shows of a call that asks once, and its status."""
        child, terminal = pty.fork()
        if child == 0:
            os.chdir(self.dir)
            os.execve(process.TOOL, ["quavin", "sign", "package", "--private-key", key],
                      process.clean_environment(**self.places))
        shown = b""
        asked = False
        while True:
            try:
                some = os.read(terminal, 65536)
            except OSError:  # how a terminal signals that its last user has left
                some = b""
            if not some:
                break
            shown += some
            if not asked and b"Passphrase of " in shown:
                deadline = time.monotonic() + process.PATIENCE
                while termios.tcgetattr(terminal)[3] & termios.ECHO:  # for a moment after the question
                    self.assertLess(time.monotonic(), deadline, "what is typed would be shown")
                    time.sleep(0.01)
                os.write(terminal, answer.encode() + b"\n")
                asked = True
        os.close(terminal)
        return shown.decode(), os.waitstatus_to_exitcode(os.waitpid(child, 0)[1])


@unittest.skipUnless(process.WINDOWS, "Only on Windows")
class EncryptedKeysOnWindows(PrivateKeys):
    def test_they_are_refused_with_advice(self):
        text = self.refusal(self.encrypted(), "--passphrase-env", "PASSPHRASE", PASSPHRASE=PASSPHRASE)
        self.assertIn("it is encrypted, which is not supported on Windows", text)


if __name__ == "__main__":
    unittest.main()
