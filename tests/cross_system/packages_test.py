"""Each system can use packages made on the other."""

import unittest

import exchange  # first: it makes the others importable
import networks
import numpy as np
import packages
from exchange import LINUX, SYSTEMS, WAYS, WINDOWS
from support import KEY_HEX, tree

LETTERS = "größe 日本 😀"
INPUT = np.float32([[1, -2, 0.25, 1e6]])


class Packages(exchange.ExchangeTest):
    def setUp(self):
        super().setUp()
        packages.write_network(self.dir, networks.affine())
        self.key_file()
        np.save(self.dir / "x.npy", INPUT)

    def assert_predicts(self, system, package, *options):
        results = f"{package}-on-{system}"
        self.on(system).succeed("run", package, "-i", "x=x.npy", "-o", results, *options)
        given = np.load(self.dir / results / "y.npy")
        np.testing.assert_allclose(given, networks.affine_result(INPUT), rtol=1e-5)

    def test_packages_are_identical_wherever_they_are_created(self):
        about = ["--name", "A name", "--author", "An author", "--model-version", "3"]
        for system in SYSTEMS:
            self.on(system).succeed("pack", "net.xml", "-o", f"{system}/model", *about)
        made = tree(self.dir / "linux")
        self.assertEqual(len(made), 4)
        self.assertEqual(tree(self.dir / "windows"), made)

    def test_packages_predict_on_the_other_system(self):
        for maker, reader in WAYS:
            with self.way(maker, reader):
                package = f"by-{maker}"
                self.on(maker).succeed("pack", "net.xml", "-o", package)
                self.on(reader).succeed("verify", package)
                self.assert_predicts(reader, package)

    def test_encrypted_components_predict_on_the_other_system(self):
        key = ["--key-file", "key"]
        for maker, reader in WAYS:
            with self.way(maker, reader):
                package = f"by-{maker}"
                self.on(maker).succeed(
                    "pack", "net.xml", "-o", package, "--encrypt", "components", *key)
                for file in "net.xml", "net.bin":
                    secured = (self.dir / package / file).read_bytes()
                    plain = packages.openssl_decrypt(secured, KEY_HEX)
                    self.assertEqual(plain, (self.dir / file).read_bytes())
                self.on(reader).succeed("verify", package, *key)
                self.assert_predicts(reader, package, *key)

    def test_inspect_prints_the_same_on_both_systems(self):
        packages.write_package(self.dir / "plain")
        packages.write_package(self.dir / "secured", key_hex=KEY_HEX)
        with packages.changed_manifest(self.dir / "plain") as target:
            target["inputs"][0]["name"] = LETTERS
        for package in "plain", "secured":
            for form in [], ["--json"]:
                result = self.assert_same_on_both("inspect", package, *form)
                self.assertEqual((result.status, result.err), (0, ""))
                self.assertEqual(LETTERS in result.out, package == "plain")

    def test_verify_finds_the_same_faults_on_both_systems(self):
        packages.write_package(self.dir / "package")
        with packages.changed_manifest(self.dir / "package") as target:
            target["outputs"][0]["name"] = LETTERS
            target["inputs"][0]["tensor"]["shape"] = [4, 1]
        result = self.assert_same_on_both("verify", "package")
        self.assertEqual(result.status, 1)
        self.assertIn(LETTERS, result.out + result.err)

    def test_names_may_be_non_ascii(self):
        network = packages.write_network(self.dir, networks.affine(), LETTERS).name
        for maker, reader in WAYS:
            with self.way(maker, reader):
                package = f"{LETTERS} by {maker}"
                self.on(maker).succeed("pack", network, "-o", package, "--name", LETTERS)
                self.assertEqual(packages.read_manifest(self.dir / package)["name"], LETTERS)
                self.assert_predicts(reader, package)
        linux, windows = (tree(self.dir / f"{LETTERS} by {s}") for s in (LINUX, WINDOWS))
        self.assertEqual(set(linux), {"manifest.json", f"{LETTERS}.xml", f"{LETTERS}.bin"})
        self.assertEqual(linux, windows)


if __name__ == "__main__":
    unittest.main()
