"""Files that can be opened, and that the system then cannot read."""

import os
import unittest

import packages
import process
from calls import WithAPackage
from support import KEY_HEX

KEY = ["--key-file", "key"]


@process.posix_only("what fails reads there is tested in the program itself")
class FailingReads(WithAPackage):
    def unreadable(self, name):
        """The environment in which every read of a file fails."""
        library = "LD_PRELOAD=" + os.environ["QUAVIN_FAILING_READS"]
        # The emulator itself is a program of this machine.
        place = {"QEMU_SET_ENV": library} if process.EMULATOR else dict([library.split("=", 1)])
        sanitizers = {"ASAN_OPTIONS": "verify_asan_link_order=0"}
        return {**place, **sanitizers, "QUAVIN_UNREADABLE": str(self.dir / name)}

    def assert_refused(self, name, *arguments):
        with self.nothing_changes():
            reason = self.refused(3, *arguments, **self.unreadable(name))
        self.assertIn(f"{name} cannot be read: ", reason)
        self.assertIn("Input/output error", reason)

    def test_end_encrypting_and_decrypting(self):
        self.assert_refused("plain", "encrypt", "plain", "new", *KEY)
        self.assert_refused("secured", "decrypt", "secured", "new", *KEY)
        self.assert_refused("key", "encrypt", "plain", "new", *KEY)

    def test_end_unpacking_and_packing(self):
        self.assert_refused("a.tar", "unpack", "a.tar", "new")
        self.assert_refused("a.tar", "inspect", "a.tar")
        self.assert_refused("net.xml", "pack", "net.xml", "-o", "new")
        self.assert_refused("net.bin", "pack", "net.xml", "-o", "new")

    def test_end_running(self):
        self.write("x.raw", bytes(16))
        self.assert_refused("x.npy", "run", "package", "-i", "x=x.npy", "-o", "out")
        self.assert_refused("x.raw", "run", "package", "-i", "x=x.raw", "-o", "out", "--raw")

    def test_of_components_end_loading(self):
        for name in "net.xml", "net.bin":
            with self.subTest(name), self.nothing_changes():
                environment = self.unreadable(f"package/{name}")
                run = ["run", "package", "-i", "x=x.npy", "-o", "out"]
                self.assertIn("File error!", self.quavin(*run, **environment).err)
                verified = self.quavin("verify", "package", **environment)
                self.assertEqual(verified.status, 1)
                self.assertIn("File error!", verified.out)

    def test_of_secured_components_are_not_blamed_on_the_key(self):
        packages.write_package(self.dir / "secret", key_hex=KEY_HEX)
        for name in "net.xml", "net.bin":
            with self.subTest(name):
                environment = self.unreadable(f"secret/{name}")
                for command in "bench", "verify":
                    result = self.quavin(command, "secret", *KEY, **environment)
                    self.assertEqual(result.status, 1)
                    self.assertIn("File error!", result.out + result.err)
                    self.assertNotIn("key is wrong", result.out + result.err)

    def test_of_the_manifest_end_everything(self):
        for command in "inspect", "bench":
            with self.subTest(command):
                environment = self.unreadable("package/manifest.json")
                result = self.quavin(command, "package", **environment)
                self.assertEqual((result.status, result.out), (1, ""))
                self.assertIn("status 12: Failed to open metadata file at ", result.err)


if __name__ == "__main__":
    unittest.main()
