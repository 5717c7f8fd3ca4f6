"""Packages in archives, plain and encrypted, for the commands that load them."""

import io
import json
import os
import re
import shutil
import subprocess
import tarfile
import unittest

import numpy as np

import networks
import packages
import process
from support import KEY_HEX, OTHER_KEY_HEX, CommandLineTest

X = np.float32([[1.5, -2, 3, 0.25]])
COMMANDS = {
    "run": ["-i", "x=x.npy", "-o", "out"],
    "bench": ["--seconds", "0.01"],
    "verify": [],
}
KEY_OPTIONS = ["--key-file", "key"]


class ArchiveCase(CommandLineTest):
    def setUp(self):
        super().setUp()
        np.save(self.dir / "x.npy", X)
        self.key_file()

    def archive(self, network=None, directory="model", **options):
        """Writes a package, and archives it with GNU tar."""
        packages.write_package(self.dir / "source" / directory, network, **options)
        self.tar("p.tar", directory)

    def tar(self, name, *what):
        subprocess.run(
            ["tar", "-cf", self.dir / name, *what], cwd=self.dir / "source", check=True
        )

    def encrypt(self, name="p.tar", result="p.secret"):
        plain = (self.dir / name).read_bytes()
        self.write(result, packages.openssl_encrypt(plain, KEY_HEX, bytes(range(16))))

    def used(self, archive, *options):
        """Uses an archive with each command, and compares the results."""
        for command, arguments in COMMANDS.items():
            with self.subTest(command):
                self.succeed(command, archive, *arguments, *options)
        np.testing.assert_array_equal(np.load(self.dir / "out/y.npy"), networks.affine_result(X))
        self.assertEqual(list(self.temporary.iterdir()), [])

    def refused_by_each(self, code, archive, *options):
        """The errors with which each command refuses an archive. Asserts that nothing is left behind."""
        reasons = []
        for command, arguments in COMMANDS.items():
            with self.subTest(command), self.nothing_changes():
                if command == "verify":
                    result = self.quavin(command, archive, "--json", *options)
                    self.failure_text(12, process.Result(1, "", result.err))
                    [finding] = json.loads(result.out)["findings"]
                    reasons.append(finding["what"])
                else:
                    reasons.append(self.refused(code, command, archive, *arguments, *options))
        return reasons


class Plain(ArchiveCase):
    def test_plain_archive_works_like_its_directory(self):
        self.archive()
        self.used("p.tar")

    def test_plain_archive_may_have_the_package_at_its_root(self):
        self.archive()
        for name, what in ("files.tar", ["manifest.json", "net.xml", "net.bin"]), ("dot.tar", ["."]):
            subprocess.run(
                ["tar", "-cf", self.dir / name, *what], cwd=self.dir / "source/model", check=True
            )
            self.used(name)

    def test_plain_archive_works_without_directory_entries(self):
        self.archive()
        files = [f"model/{name}" for name in ("net.bin", "manifest.json", "net.xml")]
        self.tar("flat.tar", *files)
        self.used("flat.tar")

    def test_plain_archive_may_have_any_name_and_location(self):
        self.archive()
        (self.dir / "deep").mkdir()
        (self.dir / "p.tar").rename(self.dir / "deep" / "größe")
        self.used("deep/größe")

    def test_plain_archive_may_contain_secured_files(self):
        self.archive(key_hex=KEY_HEX)
        self.used("p.tar", *KEY_OPTIONS)

    def test_secured_files_in_a_plain_archive_need_their_key(self):
        self.archive(key_hex=KEY_HEX)
        for reason in self.refused_by_each(7, "p.tar"):
            self.assertIn("secured", reason)

    def test_archive_without_a_package_is_refused(self):
        self.write("source/file", "text")
        self.tar("p.tar", "file")
        for reason in self.refused_by_each(12, "p.tar"):
            self.assertIn("p.tar contains no manifest.json", reason)

    def test_files_that_are_not_archives_are_refused(self):
        for content in b"", b"some text", bytes(4096), os.urandom(4096):
            self.write("p.tar", content)
            for reason in self.refused_by_each(21, "p.tar"):
                self.assertIn("p.tar is neither a directory nor a tar archive", reason)
                self.assertIn("--key-file", reason)

    def test_archive_with_an_entry_outside_is_refused(self):
        self.archive()
        with tarfile.open(self.dir / "p.tar", "a") as archive:
            entry = tarfile.TarInfo("../evil")
            entry.size = 4
            archive.addfile(entry, io.BytesIO(b"evil"))
        for reason in self.refused_by_each(7, "p.tar"):
            self.assertIn("../evil", reason)

    def test_truncated_archive_is_refused(self):
        self.archive()
        os.truncate(self.dir / "p.tar", 2048)
        self.refused_by_each(7, "p.tar")

    def test_plain_archive_created_by_pack_works(self):
        packages.write_network(self.dir, networks.affine())
        self.succeed("pack", "net.xml", "-o", "p.tar")
        self.used("p.tar")


class Encrypted(ArchiveCase):
    def test_encrypted_archive_works_with_its_key(self):
        self.archive()
        self.encrypt()
        self.used("p.secret", *KEY_OPTIONS)

    def test_encrypted_archive_created_by_pack_works(self):
        packages.write_network(self.dir, networks.affine())
        options = ["--encrypt", "archive", *KEY_OPTIONS]
        self.succeed("pack", "net.xml", "-o", "p.tar", *options)
        self.used("p.tar", *KEY_OPTIONS)

    def test_encrypted_archive_may_contain_files_secured_with_the_same_key(self):
        self.archive(key_hex=KEY_HEX)
        self.encrypt()
        self.used("p.secret", *KEY_OPTIONS)

    def test_encrypted_archive_may_contain_subdirectories(self):
        self.archive()
        source = self.dir / "source/model"
        (source / "a/b").mkdir(parents=True)
        (source / "net.xml").rename(source / "a/b/net.xml")
        with packages.changed_manifest(source) as target:
            target["components"][0]["path"] = "a\\./b/net.xml"
        self.tar("p.tar", "model")
        self.encrypt()
        self.used("p.secret", *KEY_OPTIONS)

    def test_encrypted_archive_may_contain_a_network_without_constants(self):
        self.archive(networks.doubling())
        self.encrypt()
        np.save(self.dir / "x.npy", np.float32([1, 2]))
        self.succeed("run", "p.secret", "-i", "x=x.npy", "-o", "out", *KEY_OPTIONS)
        self.assertEqual(np.load(self.dir / "out/y.npy").tolist(), [2, 4])

    def test_encrypted_archive_has_the_same_findings_as_its_directory(self):
        self.archive()
        source = self.dir / "source/model"
        manifest = packages.read_manifest(source)
        manifest["more"] = {"numbers": [1, 2.5, -3, 123456789012345678901234567890], "text": "ü\n"}
        manifest["targets"]["Openvino"]["outputs"][0]["tensor"]["shape"] = [4]
        packages.write_manifest(source, manifest)
        self.tar("p.tar", "model")
        self.encrypt()
        (self.dir / "source/model").rename(self.dir / "model")
        expected = self.succeed_json("verify", "model")
        self.assertEqual(len(expected["findings"]), 2)
        self.assertEqual(self.succeed_json("verify", "p.tar"), expected)
        self.assertEqual(self.succeed_json("verify", "p.secret", *KEY_OPTIONS), expected)

    def test_encrypted_archive_needs_its_key(self):
        self.archive()
        self.encrypt()
        for reason in self.refused_by_each(21, "p.secret"):
            self.assertIn("an encrypted archive needs --key-file or --key-env", reason)
        self.key_file(OTHER_KEY_HEX)
        for reason in self.refused_by_each(21, "p.secret", *KEY_OPTIONS):
            self.assertIn("the key is wrong", reason)

    def test_encrypted_archive_of_an_impossible_length_is_refused(self):
        self.write("p.secret", os.urandom(4097))
        for reason in self.refused_by_each(7, "p.secret", *KEY_OPTIONS):
            self.assertIn("4097 bytes", reason)

    @process.posix_only("strace is a Linux program")
    @unittest.skipUnless(shutil.which("strace"), "strace is not installed")
    @unittest.skipIf(process.EMULATOR or process.SANITIZED, "needs a plain program of this system")
    def test_nothing_of_an_archive_reaches_the_disk(self):
        self.archive()
        self.encrypt()
        for archive, options in ("p.tar", []), ("p.secret", KEY_OPTIONS):
            for command in "verify", "bench", "run":
                with self.subTest(command, archive=archive):
                    arguments = ["-i", "x=x.npy"] if command == "run" else COMMANDS[command]
                    self.assertEqual(self.written(command, archive, *arguments, *options), [])

    def written(self, *arguments):
        """The files that a command opens for writing or creates."""
        calls = "openat,open,creat,mkdirat,mkdir,memfd_create,linkat,rename,renameat,renameat2"
        done = subprocess.run(
            ["strace", "-f", "-qq", "-o", "trace", "-e", f"trace={calls}", process.TOOL, *arguments],
            cwd=self.dir, capture_output=True, check=False)
        if b"ptrace" in done.stderr:
            self.skipTest("processes cannot be traced here")
        self.assertEqual(done.returncode, 0, done.stderr)
        trace = (self.dir / "trace").read_text()
        self.assertIn(f'"{arguments[1]}", O_RDONLY', trace)
        writing = re.compile("O_WRONLY|O_RDWR|O_CREAT|O_TMPFILE|mkdir|memfd_create|link|rename|creat\\(")
        return [line for line in trace.splitlines()
                if writing.search(line) and '"/dev/' not in line]


if __name__ == "__main__":
    unittest.main()
