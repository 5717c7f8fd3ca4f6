"""quavin pack: archives and encrypted packages, read with tar, bsdtar and openssl."""

import subprocess
import unittest

import networks
import packages
import process
from support import KEY_HEX, CommandLineTest, tree

LIST = ["model/", "model/manifest.json", "model/net.xml", "model/net.bin"]
TOOLS = {"tar": ["--quoting-style=literal"], "bsdtar": []}


class PackTest(CommandLineTest):
    def setUp(self):
        super().setUp()
        packages.write_network(self.dir, networks.affine())
        self.key_file()

    def pack(self, output, *options, network="net.xml"):
        self.succeed("pack", network, "-o", output, *options)
        return self.dir / output

    def encrypted(self, what, output):
        return self.pack(output, "--encrypt", what, "--key-file", "key")

    def unpacked_with(self, tool, archive, *options):
        """The exact output of an archive tool. Complaints are failures."""
        return subprocess.run(
            [tool, *options, "-f", archive],
            cwd=self.dir,
            env=process.clean_environment(),
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            check=True,
        ).stdout.decode()


class Archive(PackTest):
    def test_archive_lists_the_directory_before_its_files(self):
        self.pack("model.tar")
        for tool, options in TOOLS.items():
            with self.subTest(tool):
                listed = self.unpacked_with(tool, "model.tar", "-t", *options)
                self.assertEqual(listed.splitlines(), LIST)

    def test_archive_extracts_to_the_same_files_as_a_directory(self):
        self.pack("model.tar")
        expected = tree(self.pack("directory"))
        for tool in TOOLS:
            with self.subTest(tool):
                place = self.dir / ("with_" + tool)
                place.mkdir()
                self.unpacked_with(tool, "model.tar", "-x", "-C", place)
                self.assertEqual(sorted(p.name for p in place.iterdir()), ["model"])
                self.assertEqual(tree(place / "model"), expected)

    def test_archive_has_the_same_bytes_each_time(self):
        self.assertEqual(
            self.pack("a/model.tar").read_bytes(), self.pack("b/model.tar").read_bytes()
        )

    def test_archive_consists_of_whole_blocks_and_ends_in_two_empty_ones(self):
        archive = self.pack("model.tar").read_bytes()
        self.assertEqual(len(archive) % 512, 0)
        self.assertEqual(archive[-1024:], bytes(1024))

    def test_an_output_ending_in_upper_case_tar_becomes_an_archive(self):
        listed = self.unpacked_with("tar", self.pack("model.TAR"), "-t")
        self.assertEqual(listed.splitlines(), LIST)

    def test_an_output_ending_in_a_separator_becomes_a_directory(self):
        names = sorted(name.split("/")[1] for name in LIST if not name.endswith("/"))
        for name in "model.tar", "model.zip":
            self.assertEqual(sorted(tree(self.pack(name + "/"))), names)

    def test_archive_uses_the_given_root_directory(self):
        self.pack("my model.tar", "--root", "other")
        listed = self.unpacked_with("tar", "my model.tar", "-t").splitlines()
        self.assertEqual(listed, [name.replace("model/", "other/", 1) for name in LIST])

    def test_archive_supports_non_ascii_names(self):
        packages.write_network(self.dir, networks.affine(), "größe 日本")
        self.pack("modell-ü.tar", network="größe 日本.xml")
        names = ["", "manifest.json", "größe 日本.xml", "größe 日本.bin"]
        for tool, options in TOOLS.items():
            with self.subTest(tool):
                listed = self.unpacked_with(tool, "modell-ü.tar", "-t", *options)
                self.assertEqual(listed.splitlines(), ["modell-ü/" + name for name in names])

    def test_archive_supports_names_of_99_bytes(self):
        stem = "n" * 93
        packages.write_network(self.dir, networks.affine(), stem)
        self.pack("model.tar", "--root", "r", network=stem + ".xml")
        for tool in TOOLS:
            with self.subTest(tool):
                self.assertIn(f"r/{stem}.xml\n", self.unpacked_with(tool, "model.tar", "-t"))

    def test_archive_can_be_unpacked_and_used(self):
        self.pack("model.tar")
        self.succeed("unpack", "model.tar", "place")
        self.succeed("verify", "place/model")


class EncryptedComponents(PackTest):
    def test_encrypted_components_decrypt_to_their_sources(self):
        package = self.encrypted("components", "new")
        for name in "net.xml", "net.bin":
            with self.subTest(name):
                secured = (package / name).read_bytes()
                plain = (self.dir / name).read_bytes()
                self.assertEqual(packages.openssl_decrypt(secured, KEY_HEX), plain)

    def test_encrypted_components_are_padded_to_the_next_block(self):
        package = self.encrypted("components", "new")
        # The 80 bytes of weights fill their blocks, so a whole block is added; the network does not.
        for name, whole in ("net.bin", True), ("net.xml", False):
            with self.subTest(name):
                plain = (self.dir / name).read_bytes()
                count = 16 - len(plain) % 16
                self.assertEqual(count == 16, whole)
                secured = (package / name).read_bytes()
                padded = packages.openssl_decrypt(secured, KEY_HEX, padding=False)
                self.assertEqual(padded, plain + bytes([count]) * count)

    def test_encrypted_components_are_declared_as_secured(self):
        manifest = packages.read_manifest(self.encrypted("components", "new"))
        expected = [
            {"name": "secured_file", "path": name, "encryption": "aes"}
            for name in ("net.xml", "net.bin")
        ]
        self.assertEqual(manifest["targets"]["Openvino"]["components"], expected)

    def test_encrypted_components_get_a_new_vector_each_time(self):
        vectors = [
            (self.encrypted("components", output) / name).read_bytes()[:16]
            for output, name in (("one", "net.xml"), ("two", "net.xml"), ("three", "net.bin"))
        ]
        vectors.append((self.dir / "three/net.xml").read_bytes()[:16])
        self.assertEqual(len(set(vectors)), 4)

    def test_encrypted_components_can_be_packed_into_a_plain_archive(self):
        self.encrypted("components", "model.tar")
        self.unpacked_with("tar", "model.tar", "-x")
        secured = (self.dir / "model/net.xml").read_bytes()
        plain = (self.dir / "net.xml").read_bytes()
        self.assertEqual(packages.openssl_decrypt(secured, KEY_HEX), plain)

    def test_components_can_be_encrypted_with_a_key_from_the_environment(self):
        self.pack_with_variable("new", "components")
        secured = (self.dir / "new/net.bin").read_bytes()
        plain = (self.dir / "net.bin").read_bytes()
        self.assertEqual(packages.openssl_decrypt(secured, KEY_HEX), plain)

    def pack_with_variable(self, output, what):
        options = ["--encrypt", what, "--key-env", "THE_KEY"]
        self.succeed("pack", "net.xml", "-o", output, *options, THE_KEY=KEY_HEX)


class EncryptedArchive(PackTest):
    def test_encrypted_archive_decrypts_to_the_plain_one(self):
        plain = self.pack("plain/model.tar").read_bytes()
        secured = self.encrypted("archive", "model.tar").read_bytes()
        self.assertEqual(packages.openssl_decrypt(secured, KEY_HEX), plain)

    def test_encrypted_archive_is_padded_by_a_whole_block(self):
        plain = self.pack("plain/model.tar").read_bytes()
        secured = self.encrypted("archive", "model.tar").read_bytes()
        padded = packages.openssl_decrypt(secured, KEY_HEX, padding=False)
        self.assertEqual(padded, plain + b"\x10" * 16)

    def test_encrypted_archive_gets_a_new_vector_each_time(self):
        one = self.encrypted("archive", "a/model.tar").read_bytes()
        two = self.encrypted("archive", "b/model.tar").read_bytes()
        self.assertNotEqual(one[:16], two[:16])
        self.assertNotEqual(one[16:32], two[16:32])

    def test_encrypted_archive_reveals_nothing_of_its_content(self):
        secured = self.encrypted("archive", "model.tar").read_bytes()
        for text in b"manifest.json", b"ustar", b"<net":
            self.assertNotIn(text, secured)


if __name__ == "__main__":
    unittest.main()
