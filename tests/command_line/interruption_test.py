"""What commands leave behind if they end while writing: killed, or because the disk refuses more."""

import signal
import stat
import subprocess
import unittest

import numpy as np

import packages
import process
from calls import WithAPackage
from signatures import WithKeys
from support import KEY_HEX, tree

KEY = ["--key-file", "key"]
# Larger than the limit and any buffer.
CONTENT = bytes(range(251)) * 8000
LIMIT_KIB = 256


@process.posix_only("the emulator has no limit on file sizes")
class Interruption(WithAPackage):
    def setUp(self):
        super().setUp()
        self.write("plain", CONTENT)
        self.write("secured", packages.openssl_encrypt(CONTENT, KEY_HEX, bytes(range(16))))
        self.write("source/model/large", CONTENT)
        command = ["tar", "-cf", "large.tar", "-C", "source", "model"]
        subprocess.run(command, cwd=self.dir, check=True)

    def limited(self, *arguments, kib=LIMIT_KIB, then=""):
        """A call that the system ends if a file would grow beyond a limit."""
        script = f'{then} ulimit -c 0; ulimit -f {kib * 2}; exec "$0" "$@"'
        return subprocess.run(
            ["sh", "-c", script, *process.command(process.TOOL, *arguments)],
            cwd=self.dir,
            env=process.clean_environment(**self.places),
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            timeout=process.PATIENCE,
            check=False,
        )

    def killed(self, *arguments, kib=LIMIT_KIB):
        result = self.limited(*arguments, kib=kib)
        self.assertEqual(result.returncode, -signal.SIGXFSZ, result.stderr)

    def failed(self, *arguments, kib=LIMIT_KIB):
        """The error of a call for which the disk refuses to write more."""
        result = self.limited(*arguments, kib=kib, then="trap '' XFSZ;")
        self.assertEqual(result.returncode, 1, result.stderr)
        self.assertIn(b"status 3: ", result.stderr)
        return result.stderr.decode()

    def assert_one_unfinished_file(self, before):
        """Asserts that only one unfinished file was added, and returns its name."""
        [name] = set(tree(self.dir)) - set(before)
        self.assertIn(".quavin-", name)
        return name

    def assert_gone_after(self, name, *arguments):
        self.succeed(*arguments, "--quiet")
        self.assertFalse((self.dir / name).exists())


class NewFiles(Interruption):
    CALLS = (
        ["encrypt", "plain", "new", *KEY],
        ["decrypt", "secured", "new", *KEY],
        ["keygen", "new"],
    )

    def limit_of(self, call):
        return 0 if call[0] == "keygen" else LIMIT_KIB

    def test_a_killed_command_leaves_no_result(self):
        before = tree(self.dir)
        for call in self.CALLS:
            with self.subTest(call[0]):
                self.killed(*call, kib=self.limit_of(call))
                left = self.assert_one_unfinished_file(before)
                self.assert_gone_after(left, *call)
                (self.dir / "new").unlink()
                self.assertEqual(tree(self.dir), before)

    def test_a_failed_command_leaves_no_result(self):
        for call in self.CALLS:
            with self.subTest(call[0]), self.nothing_changes():
                self.assertIn("new cannot be written: ", self.failed(*call, kib=self.limit_of(call)))

    def test_new_files_are_created_despite_leftovers_of_others(self):
        for i in range(150):
            self.write(f".quavin-{i}", "precious")
        before = tree(self.dir)
        for call in self.CALLS:
            with self.subTest(call[0]):
                self.succeed(*call, "--quiet")
                (self.dir / "new").unlink()
                self.assertEqual(tree(self.dir), before)

    def test_new_files_have_the_usual_permissions(self):
        for name, command, mode in ("new", "encrypt", 0o644), ("old", "decrypt", 0o600):
            source = {"encrypt": "plain", "decrypt": "secured"}[command]
            result = subprocess.run(
                ["sh", "-c", 'umask 022; exec "$0" "$@"']
                + process.command(process.TOOL, command, source, name, *KEY),
                cwd=self.dir,
                env=process.clean_environment(**self.places),
                stdout=subprocess.DEVNULL,
                timeout=process.PATIENCE,
                check=False,
            )
            self.assertEqual(result.returncode, 0)
            self.assertEqual(stat.S_IMODE((self.dir / name).stat().st_mode), mode)


class Signatures(WithKeys, Interruption):
    def test_a_killed_command_leaves_nothing_to_sign(self):
        before = self.files()
        key = ["--private-key", "private.pem"]
        self.killed("sign", "package", *key, kib=0)
        self.assertEqual(len(self.files()), len(before) + 1)
        self.sign()
        self.assertEqual(self.files(), before)
        self.assert_right((self.package / "model.sig").read_bytes(), before)


class UnpackedFiles(Interruption):
    def test_a_killed_command_leaves_replaced_files_old_or_new(self):
        self.write("there/model/large", "old")
        self.killed("unpack", "large.tar", "there")
        self.assertEqual((self.dir / "there/model/large").read_bytes(), b"old")
        self.assertEqual(len(list((self.dir / "there/model").iterdir())), 2)
        self.succeed("unpack", "large.tar", "there")
        self.assertEqual(tree(self.dir / "there/model"), {"large": CONTENT})

    def test_a_killed_command_leaves_no_partial_files(self):
        self.killed("unpack", "large.tar", "new")
        self.assertFalse((self.dir / "new/model/large").exists())
        self.succeed("unpack", "large.tar", "new")
        self.assertEqual(tree(self.dir / "new/model"), {"large": CONTENT})

    def test_files_are_unpacked_despite_leftovers_of_others(self):
        for i in range(150):
            self.write(f"there/model/.quavin-{i}", "precious")
        self.write("there/model/large", "old")
        before = tree(self.dir / "there/model")
        self.succeed("unpack", "large.tar", "there")
        self.assertEqual(tree(self.dir / "there/model"), {**before, "large": CONTENT})

    def test_unpacked_files_may_be_named_like_unfinished_ones(self):
        for i in range(3):
            self.write(f"source/model/.quavin-{i}", f"file {i}")
        command = ["tar", "-cf", "named.tar", "-C", "source", "model"]
        subprocess.run(command, cwd=self.dir, check=True)
        for _ in range(2):
            self.succeed("unpack", "named.tar", "new")
            self.assertEqual(tree(self.dir / "new"), tree(self.dir / "source"))


class Predictions(Interruption):
    CALL = ["run", "package", "-i", "x=x.npy", "-o", "results"]

    def setUp(self):
        super().setUp()
        self.succeed(*self.CALL)
        self.result = self.dir / "results/y.npy"
        self.old = self.result.read_bytes()
        np.save(self.dir / "x.npy", np.float32([[9, 8, 7, 6]]))

    def test_a_killed_command_leaves_the_old_outputs(self):
        self.killed(*self.CALL, kib=0)
        self.assertEqual(self.result.read_bytes(), self.old)
        self.succeed(*self.CALL)
        self.assertNotEqual(self.result.read_bytes(), self.old)
        self.assertEqual(list((self.dir / "results").iterdir()), [self.result])

    def test_a_failed_command_leaves_the_old_outputs(self):
        with self.nothing_changes():
            self.assertIn("results/y.npy cannot be written: ", self.failed(*self.CALL, kib=0))

    def test_replaced_outputs_keep_their_permissions(self):
        self.result.chmod(0o600)
        self.succeed(*self.CALL)
        self.assertNotEqual(self.result.read_bytes(), self.old)
        self.assertEqual(stat.S_IMODE(self.result.stat().st_mode), 0o600)

    def test_outputs_are_written_through_a_link(self):
        self.result.rename(self.dir / "elsewhere.npy")
        self.result.symlink_to("../elsewhere.npy")
        self.succeed(*self.CALL)
        self.assertTrue(self.result.is_symlink())
        self.assertNotEqual((self.dir / "elsewhere.npy").read_bytes(), self.old)

    def test_outputs_are_written_through_dangling_links(self):
        self.result.unlink()
        self.result.symlink_to("../link")
        (self.dir / "link").symlink_to("elsewhere.npy")
        self.succeed(*self.CALL)
        self.assertTrue(self.result.is_symlink())
        self.assertTrue((self.dir / "link").is_symlink())
        self.assertTrue((self.dir / "elsewhere.npy").is_file())
        self.assertFalse((self.dir / "elsewhere.npy").is_symlink())

    def test_links_in_a_circle_are_not_replaced(self):
        self.result.unlink()
        self.result.symlink_to("y.npy")
        self.assertIn("y.npy cannot be written", self.refused(3, *self.CALL))
        self.assertTrue(self.result.is_symlink())

    def test_outputs_can_be_written_to_devices(self):
        self.result.unlink()
        self.result.symlink_to("/dev/full")
        self.assertIn("y.npy cannot be written", self.refused(3, *self.CALL))
        self.result.unlink()
        self.result.symlink_to("/dev/null")
        self.succeed(*self.CALL)
        self.assertTrue(self.result.is_char_device())


# Base classes, which contain no tests.
del Interruption, WithAPackage

if __name__ == "__main__":
    unittest.main()
