"""quavin sign and quavin pack --sign: what they sign, and what they refuse to sign."""

import os
import tarfile
import unittest

import packages
import process
from signatures import WithKeys, hint_of
from support import KEY_HEX


class Sign(WithKeys):
    def test_signs_all_files_so_that_openssl_agrees(self):
        self.write("package/notes/größe.txt", "some text")
        self.write("package/empty", "")
        expected = self.files()
        self.assertEqual(len(expected), 5)
        out = self.sign()
        self.assertEqual(out, f"Signed the 5 files of package with the key {hint_of(self.public)}\n")
        self.assert_right((self.package / "model.sig").read_bytes(), expected)
        self.assertEqual(self.files(), expected)

    @unittest.skipIf(process.WINDOWS and process.EMULATOR, "wine cannot import private keys on P-384")
    def test_signs_with_a_key_on_the_other_curve(self):
        pem = self.make_keys("other.pem", "other.pub", "secp384r1")
        self.sign(key="other.pem")
        self.assert_right((self.package / "model.sig").read_bytes(), self.files(), pem, "sha384")

    def test_the_form_of_the_path_makes_no_difference(self):
        for path in "package/", "./package", self.package:
            with self.subTest(path):
                self.sign(package=path)
                signature = self.package / "model.sig"
                self.assert_right(signature.read_bytes(), self.files())
                signature.unlink()

    def test_signs_large_files(self):
        self.write("package/large", bytes(range(251)) * 20000)
        self.sign()
        self.assert_right((self.package / "model.sig").read_bytes(), self.files())

    def test_signs_secured_files_as_they_are_stored(self):
        packages.write_package(self.dir / "secured", key_hex=KEY_HEX)
        self.sign(package="secured")
        self.assert_right((self.dir / "secured/model.sig").read_bytes(), self.files("secured"))

    def test_leaves_out_what_belongs_to_git_at_the_top_of_the_package(self):
        self.write("package/.gitignored", "a")
        self.write("package/sub/.gitignore", "b")
        self.write("package/sub/.git/c", "c")
        expected = self.files()
        for name in ".git/config", ".git/a/b", ".github/workflow", ".gitattributes", ".gitignore":
            self.write("package/" + name, name)
        self.assertEqual(self.sign()[:len("Signed the 6 files")], "Signed the 6 files")
        self.assert_right((self.package / "model.sig").read_bytes(), expected)

    def test_does_not_sign_a_package_with_components_that_it_leaves_out(self):
        (self.package / "net.bin").rename(self.package / ".gitignore")
        with packages.changed_manifest(self.package) as target:
            target["components"][1]["path"] = ".gitignore"
        with self.nothing_changes():
            text = self.refused(7, "sign", "package", "--private-key", "private.pem")
        self.assertEqual(text, 'The manifest names ".gitignore", which is Git\'s, and never signed')

    def test_does_not_replace_a_signature(self):
        self.sign()
        with self.nothing_changes():
            text = self.refused(7, "sign", "package", "--private-key", "private.pem")
        self.assertIn("signed already: remove ", text)

    def test_does_not_sign_what_is_no_package(self):
        (self.dir / "empty").mkdir()
        for code, path, why in (12, "empty", "manifest.json"), (7, "nothing", "nothing"), (
                7, "private.pem", "sign a package before it is archived"):
            with self.subTest(path), self.nothing_changes():
                self.assertIn(why, self.refused(code, "sign", path, "--private-key", "private.pem"))

    def test_does_not_sign_a_package_whose_files_are_not_all_there(self):
        (self.package / "net.bin").unlink()
        with self.nothing_changes():
            text = self.refused(7, "sign", "package", "--private-key", "private.pem")
        self.assertEqual(text, 'The manifest names "net.bin", which is not in the package')

    @process.posix_only(process.NO_LINKS)
    def test_does_not_sign_links(self):
        (self.package / "link").symlink_to("net.bin")
        with self.nothing_changes():
            text = self.refused(7, "sign", "package", "--private-key", "private.pem")
        self.assertIn("neither a regular file nor a directory", text)

    @process.posix_only("it has no such names")
    def test_does_not_sign_names_that_systems_read_differently(self):
        for name in b"a\\b", b"\xff":
            with self.subTest(name):
                path = bytes(self.package) + b"/" + name
                with open(path, "wb"):
                    pass
                text = self.refused(7, "sign", "package", "--private-key", "private.pem")
                self.assertIn("cannot be signed", text)
                os.unlink(path)

    @process.posix_only("it has no such names")
    def test_does_not_sign_names_that_differ_only_in_case(self):
        self.write("package/Notes", "a")
        self.write("package/notes", "b")
        text = self.refused(7, "sign", "package", "--private-key", "private.pem")
        self.assertIn('"Notes" and "notes" cannot be signed together', text)


class PackAndSign(WithKeys):
    def setUp(self):
        super().setUp()
        packages.write_network(self.dir)

    def pack(self, output, *options):
        return self.succeed_json("pack", "net.xml", "-o", output, "--sign", "private.pem", *options)

    def test_a_directory_gets_its_signature(self):
        names = [file["name"] for file in self.pack("new")["files"]]
        self.assertEqual(names, ["manifest.json", "net.xml", "net.bin", "model.sig"])
        self.assert_right((self.dir / "new/model.sig").read_bytes(), self.files("new"))

    def test_an_archive_carries_its_signature(self):
        self.key_file()
        for options in [], ["--encrypt", "components", "--key-file", "key"]:
            with self.subTest(options):
                self.pack("new.tar", *options)
                with tarfile.open(self.dir / "new.tar") as archive:
                    files = {member.name: archive.extractfile(member).read()
                             for member in archive if member.isfile()}
                signature = files.pop("new/model.sig")
                self.assert_right(signature, {name[4:]: text for name, text in files.items()})
                (self.dir / "new.tar").unlink()

    def test_an_archive_that_is_encrypted_as_a_whole_carries_its_signature_inside(self):
        self.key_file()
        key = ["--key-file", "key"]
        self.pack("new.tar", "--encrypt", "archive", *key)
        self.succeed("unpack", "new.tar", "unpacked", *key)
        self.assert_right((self.dir / "unpacked/new/model.sig").read_bytes(), self.files("unpacked/new"))
        self.assertIs(self.succeed_json("verify", "new.tar", "--public-key", "public.pem", *key)["authenticated"], True)

    def test_a_key_that_cannot_sign_leaves_nothing_behind(self):
        self.write("no.pem", "no key", 0o600)
        with self.nothing_changes():
            self.refused(7, "pack", "net.xml", "-o", "new", "--sign", "no.pem")

    def test_files_of_names_that_are_never_signed_are_refused(self):
        for name in "model.sig", ".gitignore":
            with self.subTest(name):
                (self.dir / "net.bin").rename(self.dir / name)
                with self.nothing_changes():
                    text = self.refused(7, "pack", "net.xml", name, "-o", "new", "--sign", "private.pem")
                self.assertEqual(text, f"A signed package cannot have a file {name} of its own: rename it")
                (self.dir / name).rename(self.dir / "net.bin")

    def test_a_passphrase_without_a_key_is_a_misuse(self):
        self.misused("pack", "net.xml", "-o", "new", "--passphrase-env", "PASSPHRASE")


if __name__ == "__main__":
    unittest.main()
