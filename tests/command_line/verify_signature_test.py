"""quavin verify --public-key, and what quavin inspect shows of a signature."""

import pathlib
import shutil
import subprocess
import tempfile
import unittest

import packages
import process
from signatures import WithKeys, hint_of, signing
from support import KEY_HEX, OTHER_KEY_HEX

UNSIGNED = "It was not signed"
CHANGED = "It is not what was signed"
MISSING = "It was signed, but is missing"
NOT_TRUSTED = "model.sig is not signed by a trusted key"


class WithASignature(WithKeys):
    """A package that is signed by openssl, with the files in the order of their names."""

    def setUp(self):
        super().setUp()
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.key = signing.Key("p256", pathlib.Path(folder.name))
        self.public = self.key.pem
        self.write("public.pem", self.key.pem)
        self.sign_with_openssl()

    def sign_with_openssl(self, folder="package", left_out=(), **how):
        root = self.dir / folder
        resources = [one for one in signing.resources_in(root) if one["name"] not in ("model.sig", *left_out)]
        signing.write_signature(root / "model.sig", resources, self.key, **how)

    def change_weights(self):
        weights = self.package / "net.bin"
        weights.write_bytes(bytes(weights.stat().st_size))

    def findings(self, *options, package="package", **how):
        """Where something is wrong, and what, of a package that is refused."""
        result = self.quavin("verify", package, "--public-key", "public.pem", "--json", *options, **how)
        self.assertEqual(result.status, 1, result.err)
        report = packages.json.loads(result.out)
        self.assertIs(report["ok"], False)
        self.assertIs(report["authenticated"], False)
        return [(one["where"], one["what"]) for one in report["findings"]]


class VerifySignature(WithASignature):
    def test_accepts_what_openssl_signed(self):
        self.assertEqual(self.succeed("verify", "package", "--public-key", "public.pem"),
                         "ok: package loads, matches its network and predicts, and is what the key in public.pem "
                         "signed\n")
        report = self.succeed_json("verify", "package", "--public-key", "public.pem")
        self.assertEqual(report, {"ok": True, "authenticated": True, "findings": []})

    def test_one_of_several_keys_is_enough_and_is_named(self):
        self.make_keys("other.pem", "other.pub", "secp384r1")
        keys = ["--public-key", "other.pub", "--public-key", "public.pem"]
        self.assertIn("the key in public.pem signed\n", self.succeed("verify", "package", *keys))

    def test_without_a_public_key_nothing_is_claimed_about_the_maker(self):
        self.change_weights()
        self.assertIn("Who made it was not checked", self.succeed("verify", "package"))
        self.assertIs(self.succeed_json("verify", "package")["authenticated"], False)

    def test_another_key_is_refused(self):
        self.public = self.make_keys("private.pem", "public.pem")
        self.assertEqual(self.findings(), [("model.sig", NOT_TRUSTED)])

    def test_a_package_without_signature_is_refused(self):
        (self.package / "model.sig").unlink()
        self.assertEqual(self.findings(), [("model.sig", "The package has no signature")])

    def test_a_damaged_signature_is_refused(self):
        self.write("package/model.sig", "no signature")
        [(where, what)] = self.findings()
        self.assertEqual(where, "model.sig")
        self.assertIn("model.sig is not the signature of a model: ", what)

    def test_every_difference_is_found(self):
        self.write("package/notes", "a")
        self.write("package/kept", "a")
        self.sign_with_openssl()
        (self.package / "notes").unlink()
        self.change_weights()
        self.write("package/more", "b")
        self.assertEqual(self.findings(), [('file "net.bin"', CHANGED), ('file "notes"', MISSING),
                                           ('file "more"', UNSIGNED)])

    def test_a_changed_manifest_is_refused(self):
        manifest = self.package / "manifest.json"
        manifest.write_text(manifest.read_text() + "\n")
        self.assertEqual(self.findings(), [('file "manifest.json"', CHANGED)])

    def test_a_component_outside_the_package_is_refused(self):
        (self.package / "net.bin").rename(self.dir / "net.bin")
        with packages.changed_manifest(self.package) as target:
            target["components"][1]["path"] = "..\\net.bin"
        self.sign_with_openssl()
        self.assertEqual(self.findings(), [('component "..\\net.bin"', UNSIGNED)])

    def test_what_the_signature_leaves_out_may_be_there_and_change(self):
        for ignored in [".git", "notes"], ["./.git/", "notes/"], [".git", "no\\..\\", "notes\\"]:
            with self.subTest(ignored):
                self.sign_with_openssl(ignored=ignored)
                for name in ".git/config", "notes/a", "notes/b/c":
                    self.write("package/" + name, "a")
                self.assertIs(self.succeed_json("verify", "package", "--public-key", "public.pem")["authenticated"], True)
                subprocess.run(["tar", "-cf", "a.tar", "package"], cwd=self.dir, check=True)
                self.assertIs(self.succeed_json("verify", "a.tar", "--public-key", "public.pem")["authenticated"], True)
                self.write("package/notes2", "b")
                self.assertEqual(self.findings(), [('file "notes2"', UNSIGNED)])
                (self.package / "notes2").unlink()
                for name in ".git", "notes":
                    shutil.rmtree(self.package / name)

    def test_paths_that_lead_elsewhere_leave_nothing_out(self):
        self.sign_with_openssl(ignored=["/notes", "a/../notes", "..", ".", "", "notes/a/b", "note", "Notes"])
        self.write("package/notes/a", "a")
        self.assertEqual(self.findings(), [('file "notes/a"', UNSIGNED)])

    def test_what_is_signed_is_compared_even_if_it_is_left_out(self):
        self.sign_with_openssl(ignored=["net.bin", "manifest.json"])
        self.assertIs(self.succeed_json("verify", "package", "--public-key", "public.pem")["authenticated"], True)
        self.change_weights()
        self.assertEqual(self.findings(), [('file "net.bin"', CHANGED)])

    def test_the_manifest_and_components_cannot_be_left_out(self):
        self.sign_with_openssl(left_out=["net.bin"], ignored=["net.bin"])
        self.assertEqual(self.findings(), [('component "net.bin"', UNSIGNED)])
        self.sign_with_openssl(left_out=["manifest.json"], ignored=["manifest.json"])
        self.assertEqual(self.findings(), [('file "manifest.json"', UNSIGNED)])

    def test_a_package_that_is_signed_in_a_repository_is_verified_there(self):
        (self.package / "model.sig").unlink()
        self.public = self.make_keys("private.pem", "public.pem")
        self.write("package/.gitignore", "a")
        self.sign()
        self.write("package/.gitignore", "b")
        self.write("package/.git/config", "c")
        self.assertIs(self.succeed_json("verify", "package", "--public-key", "public.pem")["authenticated"], True)

    @process.posix_only("there is no way to exchange a file in the middle")
    def test_what_is_exchanged_after_the_check_is_not_tried(self):
        weights = (self.package / "net.bin").read_bytes()
        manifest = (self.package / "manifest.json").read_bytes()
        for name, other in ("net.bin", bytes(len(weights))), ("manifest.json", manifest + b"\n"):
            for package in "package", "a.tar":
                with self.subTest(name, package=package):
                    subprocess.run(["tar", "-cf", "a.tar", "package"], cwd=self.dir, check=True)
                    kept = (self.package / name).read_bytes()
                    self.write("package/" + name, other)
                    subprocess.run(["tar", "-cf", "other.tar", "package"], cwd=self.dir, check=True)
                    self.write("package/" + name, kept)
                    self.write("other", other)
                    replaced = ("other.tar", "a.tar") if package == "a.tar" else ("other", "package/" + name)
                    [(where, what)] = self.findings(package=package, **self.exchanging(*replaced))
                    self.assertEqual(where, "model.sig")
                    self.assertIn(name, what)
                    self.assertFalse((self.dir / replaced[0]).exists())
                    self.write("package/" + name, kept)

    def exchanging(self, replacement, replaced):
        return process.preloaded("QUAVIN_EXCHANGED_FILES", QUAVIN_REPLACEMENT=str(self.dir / replacement),
                                 QUAVIN_REPLACED=str(self.dir / replaced))

    def test_weights_that_are_mapped_cannot_be_checked(self):
        self.misused("verify", "package", "--public-key", "public.pem", "--map-weights")

    @process.posix_only(process.NO_LINKS)
    def test_a_link_is_refused(self):
        (self.package / "link").symlink_to("net.bin")
        [(where, what)] = self.findings()
        self.assertIn("neither a regular file nor a directory", what)

    def test_archives_are_checked_without_unpacking(self):
        subprocess.run(["tar", "-cf", "a.tar", "package"], cwd=self.dir, check=True)
        with self.nothing_changes():
            self.assertIn("signed\n", self.succeed("verify", "a.tar", "--public-key", "public.pem"))
        self.change_weights()
        subprocess.run(["tar", "-cf", "a.tar", "package"], cwd=self.dir, check=True)
        self.assertEqual(self.findings(package="a.tar"), [('file "net.bin"', CHANGED)])

    def test_encrypted_archives_are_checked_with_their_key(self):
        subprocess.run(["tar", "-cf", "a.tar", "package"], cwd=self.dir, check=True)
        self.write("secret.tar", packages.openssl_encrypt((self.dir / "a.tar").read_bytes(), KEY_HEX, bytes(16)))
        self.key_file()
        self.key_file(OTHER_KEY_HEX, "other")
        call = ["verify", "secret.tar", "--public-key", "public.pem", "--key-file"]
        self.assertIn("signed\n", self.succeed(*call, "key"))
        [(where, what)] = self.findings("--key-file", "other", package="secret.tar")
        self.assertEqual(where, "package")

    def test_secured_files_are_checked_as_they_are_stored(self):
        packages.write_package(self.dir / "secured", key_hex=KEY_HEX)
        self.sign_with_openssl("secured")
        self.key_file()
        call = ["verify", "secured", "--public-key", "public.pem", "--key-file", "key"]
        self.assertIs(self.succeed_json(*call)["authenticated"], True)

    def test_public_keys_that_cannot_be_used_are_named(self):
        self.write("no.pem", "no key")
        text = self.refused(7, "verify", "package", "--public-key", "no.pem")
        self.assertEqual(text, "The public key no.pem cannot be used: it is not one block of PEM with a public key")
        self.assertIn("none.pem", self.refused(3, "verify", "package", "--public-key", "none.pem"))


class InspectSignature(WithASignature):
    def test_names_the_key_and_says_that_nothing_was_checked(self):
        self.change_weights()
        hint = hint_of(self.public)
        self.assertRegex(self.succeed("inspect", "package"), rf"\n  signature +by the key {hint}, not checked\n")
        subprocess.run(["tar", "-cf", "a.tar", "package"], cwd=self.dir, check=True)
        for package in "package", "a.tar":
            with self.subTest(package):
                report = self.succeed_json("inspect", package)
                self.assertEqual((report["signed"], report["keyHint"]), (True, hint))
                self.assertNotIn("signatureProblem", report)

    def test_says_that_there_is_none(self):
        (self.package / "model.sig").unlink()
        self.assertRegex(self.succeed("inspect", "package"), r"\n  signature +none\n")
        report = self.succeed_json("inspect", "package")
        self.assertIs(report["signed"], False)
        self.assertNotIn("keyHint", report)

    def test_says_what_is_wrong_with_it(self):
        for content in b"", b"\x1b[2J", b"{}":
            self.write("package/model.sig", content)
            subprocess.run(["tar", "-cf", "a.tar", "package"], cwd=self.dir, check=True)
            for package in "package", "a.tar":
                with self.subTest(content, package=package):
                    report = self.succeed_json("inspect", package)
                    self.assertIs(report["signed"], False)
                    self.assertIn("model.sig is not the signature of a model: ", report["signatureProblem"])
                    self.assertIn("model.sig is not the signature of a model: ", self.succeed("inspect", package))

    def test_control_characters_in_a_hint_do_not_reach_the_terminal(self):
        bundle = packages.json.loads((self.package / "model.sig").read_text())
        bundle["verificationMaterial"]["publicKey"]["hint"] = "\x1b[2J\x9b31m"
        self.write("package/model.sig", packages.json.dumps(bundle))
        self.assertNotRegex(self.succeed("inspect", "package"), "[\x00-\x09\x0b-\x1f\x7f-\x9f]")

    def test_a_hint_may_be_missing(self):
        bundle = packages.json.loads((self.package / "model.sig").read_text())
        bundle["verificationMaterial"]["publicKey"] = {}
        self.write("package/model.sig", packages.json.dumps(bundle))
        self.assertIn("by a key that it does not name, not checked\n", self.succeed("inspect", "package"))


if __name__ == "__main__":
    unittest.main()
