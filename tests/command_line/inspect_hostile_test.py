"""quavin inspect: damaged and malicious packages and archives."""

import json
import unittest

import packages
from inspect_test import InspectCase
from support import KEY_HEX

# Text that clears the screen, sets the title, moves back, ...
HOSTILE = ["\x1b[2J", "\x1b]0;title\x07", "\x7f", "\r\n", "\x08"]
# As above, as single characters, which terminals obey too: U+009B stands for ESC and "[".
HOSTILE_SINGLE_CHARACTERS = ["\x9b31m", "\x9d0;title\x9c", "\x85", "\x80"]


class Hostile(InspectCase):
    def hostile_manifest(self, text):
        manifest = packages.read_manifest(self.package)
        for name in "id", "name", "author", "description", "sdkVersion":
            manifest[name] = f"before{text}after"
        target = manifest["targets"]["Openvino"]
        for part in target["components"] + target["inputs"] + target["outputs"]:
            part["name"] = f"before{text}after"
            part["description"] = f"before{text}after"
        target["components"][0]["path"] = f"before{text}after"
        packages.write_manifest(self.package, manifest)

    def assert_harmless(self, text):
        self.assertIn("before", text)
        self.assertNotRegex(text, "[\x00-\x09\x0b-\x1f\x7f-\x9f]")

    def assert_never_shown(self, text):
        self.hostile_manifest(text)
        for command in "inspect", "verify":
            for options in [], ["--json"]:
                with self.subTest(text.encode("unicode_escape"), command=command, options=options):
                    call = [command, "package", *options]
                    self.assert_harmless(self.quavin_in_terminal(*call, NO_COLOR="1").out)

    def test_control_characters_do_not_reach_the_terminal(self):
        for text in HOSTILE:
            self.assert_never_shown(text)

    def test_control_characters_beyond_ascii_do_not_reach_the_terminal_either(self):
        for text in HOSTILE_SINGLE_CHARACTERS:
            self.assert_never_shown(text)

    def test_json_contains_the_unchanged_texts(self):
        for text in HOSTILE + HOSTILE_SINGLE_CHARACTERS:
            with self.subTest(text.encode("unicode_escape")):
                self.hostile_manifest(text)
                report = self.succeed_json("inspect", "package")
                self.assertEqual(report["description"], f"before{text}after")

    def test_invalid_utf8_does_not_hide_the_rest_of_a_text(self):
        self.hostile_manifest("XYZ")
        manifest = self.package / "manifest.json"
        manifest.write_bytes(manifest.read_bytes().replace(b"XYZ", b"\xff\xc3\x28\xed\xa0\x80"))
        self.assert_harmless(self.succeed("inspect", "package"))
        report = self.succeed_json("inspect", "package")
        self.assertTrue(report["name"].startswith("before"))
        self.assertTrue(report["name"].endswith("after"))
        self.assertNotEqual(self.quavin("verify", "package", "--json").out, "")


class Refusals(InspectCase):
    def test_an_encrypted_archive_is_refused_with_a_hint(self):
        plain = (self.dir / self.archive("package")).read_bytes()
        self.write("secured.tar", packages.openssl_encrypt(plain, KEY_HEX, bytes(range(16))))
        reason = self.refused(21, "inspect", "secured.tar")
        self.assertIn("secured.tar", reason)
        self.assertIn("encrypted", reason)
        self.assertIn("key", reason)

    def test_files_that_are_not_archives_are_refused(self):
        for content in b"", b"short", b"x" * 2048, bytes(1024):
            with self.subTest(content[:8]):
                self.write("file.tar", content)
                self.assertIn("file.tar", self.refused(21, "inspect", "file.tar"))

    def test_an_archive_without_a_manifest_is_refused(self):
        (self.package / "manifest.json").unlink()
        self.assertIn("manifest.json", self.refused(12, "inspect", self.archive("package")))

    def test_a_truncated_archive_is_refused(self):
        content = (self.dir / self.archive("package")).read_bytes()
        self.write("cut.tar", content[:1536])
        with self.nothing_changes():
            reason = self.refused(7, "inspect", "cut.tar")
        self.assertIn("manifest.json", reason)
        self.assertIn("left in the archive", reason)

    def test_an_archive_with_an_invalid_manifest_is_refused(self):
        self.write("package/manifest.json", "[]")
        self.archive("package")
        with self.nothing_changes():
            self.assertIn("package.tar", self.refused(12, "inspect", "package.tar"))

    def test_a_directory_without_a_manifest_is_refused(self):
        (self.package / "manifest.json").unlink()
        self.assertIn("package", self.refused(12, "inspect", "package"))

    def test_an_invalid_manifest_is_refused(self):
        for text in "", "no JSON", "[]", "{}", json.dumps({"name": "without targets"}):
            with self.subTest(text):
                self.write("package/manifest.json", text)
                self.assertIn("manifest", self.refused(12, "inspect", "package"))

    def test_a_missing_package_is_refused(self):
        self.assertIn("nowhere", self.refused(3, "inspect", "nowhere"))


if __name__ == "__main__":
    unittest.main()
