"""Keys that somebody gives in place of a file's or a variable's name."""

import unittest

import process
from calls import WithAPackage
from support import KEY_HEX

TYPED = [KEY_HEX, KEY_HEX.upper()]
SHOWN = "(32 hexadecimal digits)"


class KeysInPlaceOfNames(WithAPackage):
    """refused() and misused() themselves look for the key in what is printed."""

    def test_of_the_key_file_are_not_shown(self):
        for key in TYPED:
            with self.subTest(key):
                reason = self.refused(3, "encrypt", "plain", "new", "--key-file", key)
                self.assertIn("The --key-file that was given cannot be opened: ", reason)

    def test_of_the_key_file_are_not_shown_where_such_a_file_holds_no_key(self):
        self.write(KEY_HEX, "no key", mode=0o600)
        reason = self.refused(7, "encrypt", "plain", "new", "--key-file", KEY_HEX)
        self.assertIn("The --key-file that was given holds no key", reason)

    def test_of_sixteen_characters_are_not_shown_where_they_name_no_file(self):
        for raw in "sixteen letters!", "p4ssw0rd/of/k3y!":
            with self.subTest(raw):
                reason = self.refused(3, "encrypt", "plain", "new", "--key-file", raw)
                self.assertIn("The --key-file that was given cannot be opened: ", reason)
                self.assertNotIn(raw, reason)

    def test_of_sixteen_characters_are_not_shown_where_they_name_no_variable(self):
        raw = "sixteen letters!"
        reason = self.refused(7, "encrypt", "plain", "new", "--key-env", raw)
        self.assertIn("the name that was given with --key-env", reason)
        self.assertNotIn(raw, reason)

    def test_of_the_variable_are_not_shown(self):
        for key in TYPED:
            with self.subTest(key):
                reason = self.refused(7, "encrypt", "plain", "new", "--key-env", key)
                self.assertIn("--key-env", reason)
        # A shell on the way to the tool passes on no name that begins with a digit.
        name = "abcdef0123456789" * 2
        reason = self.refused(7, "encrypt", "plain", "new", "--key-env", name, **{name: "x"})
        self.assertIn("The --key-env that was given holds no key", reason)

    def test_of_other_files_are_not_shown(self):
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

    def test_are_not_shown_by_verify(self):
        for form in [], ["--json"]:
            for key in TYPED:
                with self.subTest(form=form, key=key):
                    result = self.quavin("verify", key, *form)
                    self.assertEqual(result.status, 1)
                    self.assert_shows_no_key(result)
                    shown = "There is no directory or archive (32 hexadecimal digits)"
                    self.assertIn(shown, result.out)

    def test_in_paths_are_not_shown(self):
        for path in KEY_HEX + "/y.npy", "folder/" + KEY_HEX, "a/" + KEY_HEX.upper() + "/b.tar":
            with self.subTest(path):
                reason = self.refused(3, "unpack", path, "new")
                self.assertIn(path.replace(KEY_HEX, SHOWN).replace(KEY_HEX.upper(), SHOWN), reason)

    def test_of_options_and_commands_are_not_shown(self):
        self.misused(KEY_HEX)
        self.misused("run", "package", "-i", KEY_HEX, "-o", "out")
        self.misused("encrypt", "plain", "new", "--key-file", "key", KEY_HEX)

    def test_are_not_digests_in_longer_names(self):
        for name in "0" * 32 + ".xml", "folder/a" + "0" * 32, "0" * 31, "0" * 33:
            with self.subTest(name):
                reason = self.refused(3, "unpack", name, "new")
                self.assertIn(name, reason)


class KeyFilesOfOthers(WithAPackage):
    def reason_against(self, mode):
        self.key_file(mode=mode)
        with self.nothing_changes():
            return self.refused(3, "encrypt", "plain", "new", "--key-file", "key")

    def assert_taken_all_the_same(self):
        self.succeed("encrypt", "plain", "new", "--key-file", "key", "--allow-open-key-file")
        (self.dir / "new").unlink()

    def test_that_others_may_change_are_refused(self):
        # The emulator makes no access list of what a group may do.
        for mode in [0o602] + ([] if process.WINDOWS else [0o620]):
            with self.subTest(oct(mode)):
                reason = self.reason_against(mode)
                self.assertIn("key can be changed by others", reason)
                self.assertIn("icacls" if process.WINDOWS else "chmod go-w", reason)
                self.assertIn("--allow-open-key-file", reason)
                self.assert_taken_all_the_same()

    def test_that_others_may_read_and_change_are_refused(self):
        reason = self.reason_against(0o606)
        self.assertIn("key can be read and changed by others", reason)
        self.assertIn("icacls" if process.WINDOWS else "chmod go-rw", reason)
        self.assert_taken_all_the_same()


del WithAPackage

if __name__ == "__main__":
    unittest.main()
