"""Keys given by mistake in place of the name of a file or variable."""

import unittest

import process
from calls import WithAPackage
from support import KEY_HEX

TYPED = [KEY_HEX, KEY_HEX.upper()]
SHOWN = "(32 hexadecimal digits)"


class KeysInPlaceOfNames(WithAPackage):
    """refused() and misused() themselves check that the key is not printed."""

    def test_a_key_as_the_key_file_is_not_shown(self):
        for key in TYPED:
            with self.subTest(key):
                reason = self.refused(3, "encrypt", "plain", "new", "--key-file", key)
                self.assertIn("The file given with --key-file cannot be opened: ", reason)

    def test_a_key_as_the_name_of_an_invalid_key_file_is_not_shown(self):
        self.write(KEY_HEX, "no key", mode=0o600)
        reason = self.refused(7, "encrypt", "plain", "new", "--key-file", KEY_HEX)
        self.assertIn("The file given with --key-file contains no key", reason)

    def test_a_raw_key_as_the_key_file_is_not_shown(self):
        for raw in "sixteen letters!", "p4ssw0rd/of/k3y!":
            with self.subTest(raw):
                reason = self.refused(3, "encrypt", "plain", "new", "--key-file", raw)
                self.assertIn("The file given with --key-file cannot be opened: ", reason)
                self.assertNotIn(raw, reason)

    def test_a_raw_key_as_the_variable_is_not_shown(self):
        raw = "sixteen letters!"
        reason = self.refused(7, "encrypt", "plain", "new", "--key-env", raw)
        self.assertIn("the name given with --key-env", reason)
        self.assertNotIn(raw, reason)

    def test_a_key_as_the_variable_is_not_shown(self):
        for key in TYPED:
            with self.subTest(key):
                reason = self.refused(7, "encrypt", "plain", "new", "--key-env", key)
                self.assertIn("--key-env", reason)
        # A shell on the way to the tool drops names that begin with a digit.
        name = "abcdef0123456789" * 2
        reason = self.refused(7, "encrypt", "plain", "new", "--key-env", name, **{name: "x"})
        self.assertIn("The variable given with --key-env contains no key", reason)

    def test_a_key_as_another_file_is_not_shown(self):
        for call in (
            ["encrypt", KEY_HEX, "new", "--key-file", "key"],
            ["decrypt", KEY_HEX, "new", "--key-file", "key"],
            ["unpack", KEY_HEX, "new"],
            ["inspect", KEY_HEX],
            ["pack", KEY_HEX, "-o", "new"],
        ):
            with self.subTest(call[0]):
                self.assertIn("(32 hexadecimal digits)", self.refused(3, *call))
        for call in ["run", KEY_HEX, "-i", "x=x.npy", "-o", "out"], ["bench", KEY_HEX]:
            with self.subTest(call[0]):
                self.assertIn("(32 hexadecimal digits)", self.refused(7, *call))

    def test_verify_shows_no_key_given_as_the_package(self):
        for form in [], ["--json"]:
            for key in TYPED:
                with self.subTest(form=form, key=key):
                    result = self.quavin("verify", key, *form)
                    self.assertEqual(result.status, 1)
                    self.assert_shows_no_key(result)
                    shown = "There is no directory or archive (32 hexadecimal digits)"
                    self.assertIn(shown, result.out)

    def test_a_key_within_a_path_is_not_shown(self):
        for path in KEY_HEX + "/y.npy", "folder/" + KEY_HEX, "a/" + KEY_HEX.upper() + "/b.tar":
            with self.subTest(path):
                reason = self.refused(3, "unpack", path, "new")
                self.assertIn(path.replace(KEY_HEX, SHOWN).replace(KEY_HEX.upper(), SHOWN), reason)

    def test_a_key_as_a_command_or_argument_is_not_shown(self):
        self.misused(KEY_HEX)
        self.misused("run", "package", "-i", KEY_HEX, "-o", "out")
        self.misused("encrypt", "plain", "new", "--key-file", "key", KEY_HEX)

    def test_digests_within_longer_names_are_shown(self):
        for name in "0" * 32 + ".xml", "folder/a" + "0" * 32, "0" * 31, "0" * 33:
            with self.subTest(name):
                reason = self.refused(3, "unpack", name, "new")
                self.assertIn(name, reason)


class KeyFilesOfOthers(WithAPackage):
    def reason_against(self, mode):
        self.key_file(mode=mode)
        with self.nothing_changes():
            return self.refused(3, "encrypt", "plain", "new", "--key-file", "key")

    def assert_accepted_if_allowed(self):
        self.succeed("encrypt", "plain", "new", "--key-file", "key", "--allow-open-key-file")
        (self.dir / "new").unlink()

    def test_key_files_that_others_may_change_are_refused(self):
        # The emulator does not turn the rights of a group into access lists.
        for mode in [0o602] + ([] if process.WINDOWS else [0o620]):
            with self.subTest(oct(mode)):
                reason = self.reason_against(mode)
                self.assertIn("key can be changed by others", reason)
                self.assertIn("icacls" if process.WINDOWS else "chmod go-w", reason)
                self.assertIn("--allow-open-key-file", reason)
                self.assert_accepted_if_allowed()

    def test_key_files_that_others_may_read_and_change_are_refused(self):
        reason = self.reason_against(0o606)
        self.assertIn("key can be read and changed by others", reason)
        self.assertIn("icacls" if process.WINDOWS else "chmod go-rw", reason)
        self.assert_accepted_if_allowed()


del WithAPackage

if __name__ == "__main__":
    unittest.main()
