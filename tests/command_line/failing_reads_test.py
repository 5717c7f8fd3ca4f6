"""Files that can be opened but then cannot be read."""

import unittest

import packages
import process
from calls import WithAPackage
from support import KEY_HEX

KEY = ["--key-file", "key"]


@process.posix_only("there, failing reads are tested within the program")
class FailingReads(WithAPackage):
    def unreadable(self, name):
        """An environment in which every read of a file fails."""
        return process.preloaded("QUAVIN_FAILING_READS", QUAVIN_UNREADABLE=str(self.dir / name))

    def assert_refused(self, name, *arguments):
        with self.nothing_changes():
            reason = self.refused(3, *arguments, **self.unreadable(name))
        self.assertIn(f"{name} cannot be read: ", reason)
        self.assertIn("Input/output error", reason)

    def test_encrypt_and_decrypt_fail_if_a_file_cannot_be_read(self):
        self.assert_refused("plain", "encrypt", "plain", "new", *KEY)
        self.assert_refused("secured", "decrypt", "secured", "new", *KEY)
        self.assert_refused("key", "encrypt", "plain", "new", *KEY)

    def test_unpack_inspect_and_pack_fail_if_a_file_cannot_be_read(self):
        self.assert_refused("a.tar", "unpack", "a.tar", "new")
        self.assert_refused("a.tar", "inspect", "a.tar")
        self.assert_refused("net.xml", "pack", "net.xml", "-o", "new")
        self.assert_refused("net.bin", "pack", "net.xml", "-o", "new")

    def test_run_fails_if_an_input_cannot_be_read(self):
        self.write("x.raw", bytes(16))
        self.assert_refused("x.npy", "run", "package", "-i", "x=x.npy", "-o", "out")
        self.assert_refused("x.raw", "run", "package", "-i", "x=x.raw", "-o", "out", "--raw")

    def test_loading_fails_if_a_component_cannot_be_read(self):
        for name in "net.xml", "net.bin":
            with self.subTest(name), self.nothing_changes():
                environment = self.unreadable(f"package/{name}")
                run = ["run", "package", "-i", "x=x.npy", "-o", "out"]
                self.assertIn("File error!", self.quavin(*run, **environment).err)
                verified = self.quavin("verify", "package", **environment)
                self.assertEqual(verified.status, 1)
                self.assertIn("File error!", verified.out)

    def test_failing_reads_of_secured_components_are_not_blamed_on_the_key(self):
        packages.write_package(self.dir / "secret", key_hex=KEY_HEX)
        for name in "net.xml", "net.bin":
            with self.subTest(name):
                environment = self.unreadable(f"secret/{name}")
                for command in "bench", "verify":
                    result = self.quavin(command, "secret", *KEY, **environment)
                    self.assertEqual(result.status, 1)
                    self.assertIn("File error!", result.out + result.err)
                    self.assertNotIn("key is wrong", result.out + result.err)

    def test_commands_fail_if_the_manifest_cannot_be_read(self):
        for command in "inspect", "bench":
            with self.subTest(command):
                environment = self.unreadable("package/manifest.json")
                result = self.quavin(command, "package", **environment)
                self.assertEqual((result.status, result.out), (1, ""))
                self.assertIn("status 12: Failed to open metadata file at ", result.err)


if __name__ == "__main__":
    unittest.main()
