"""From a network to predictions in the shell: the digits example, packed in every way.

The expected probabilities are computed here, from the weights in the network's file. The engine's
results are only approximately equal: it computes in single precision, and an installed engine of
2019 or 2020 may use fewer digits. Packages of one network do not differ from each other in that
way.
"""

import os
import shutil
import subprocess
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path

import numpy as np

import process
from support import DIGITS, CommandLineTest

IDENTITY = ["--id", "digits-8x8", "--name", "Digits", "--model-version", "2"]
COUNT = 20
COMPARED = 3
TOLERANCE = 0.01


def held_out_digits():
    """Pictures of [N, 1, 1, 8, 8] and their labels."""
    records = np.fromfile(DIGITS / "held_out.bin", np.uint8).reshape(-1, 65)
    return records[:, :64].astype(np.float32).reshape(-1, 1, 1, 8, 8), records[:, 64]


def constants():
    """The network's constants by name."""
    weights = (DIGITS / "package/digits.bin").read_bytes()
    arrays = {}
    for layer in ElementTree.parse(DIGITS / "package/digits.xml").iter("layer"):
        if layer.get("type") == "Const" and layer.find("data").get("element_type") == "f32":
            data = layer.find("data")
            shape = [int(extent) for extent in data.get("shape").split(",")]
            offset, count = int(data.get("offset")), int(np.prod(shape))
            arrays[layer.get("name")] = np.frombuffer(weights, "<f4", count, offset).reshape(shape)
    return arrays


def convolution(x, kernel, bias):
    """3x3, with a border of zeros, and ReLU."""
    padded = np.pad(x, ((0, 0), (0, 0), (1, 1), (1, 1)))
    y = sum(
        np.einsum("nchw,oc->nohw", padded[:, :, i : i + 8, j : j + 8], kernel[:, :, i, j])
        for i in range(3)
        for j in range(3)
    )
    return np.maximum(y + bias, 0)


def expected_probabilities(image):
    """What the network computes according to the README, with more digits than the engine."""
    w = {name: array.astype(np.float64) for name, array in constants().items()}
    y = convolution(image * w["sixteenth"], w["conv1/kernel"], w["conv1/bias"])
    y = convolution(y, w["conv2/kernel"], w["conv2/bias"])
    pooled = y.reshape(1, 32, 4, 2, 4, 2).max(axis=(3, 5))
    logits = pooled.reshape(1, 512) @ w["linear/matrix"].T + w["linear/bias"]
    exponents = np.exp(logits - logits.max())
    return exponents / exponents.sum()


def predict(directory, package, image, *options, **environment):
    """The probabilities for a picture, predicted by the command line with files in a directory."""
    np.save(directory / "image.npy", image)
    call = ["run", package, "-i", "image=image.npy", "-o", "out", "--quiet", *options]
    result = process.in_pipe(call, directory, **environment)
    if result.status != 0:
        raise AssertionError(result.err)
    return np.load(directory / "out/probabilities.npy")


class Digits(CommandLineTest):
    @classmethod
    def setUpClass(cls):
        cls.images, cls.labels = held_out_digits()
        cls.expected = [expected_probabilities(image) for image in cls.images[:COUNT]]
        # The results of the example's own plain package.
        with tempfile.TemporaryDirectory() as folder:
            cls.reference = [
                predict(Path(folder), DIGITS / "package", image) for image in cls.images[:COMPARED]
            ]

    def setUp(self):
        super().setUp()
        self.key_file()

    def pack(self, output, *options):
        self.succeed("pack", DIGITS / "package/digits.xml", "-o", output, *IDENTITY, *options)

    def assert_right(self, package, *options, **environment):
        """Asserts that a package is good, and right about some digits."""
        self.succeed("verify", package, *options, **environment)
        for image, reference in zip(self.images, self.reference):
            result = predict(self.dir, package, image, *options, **environment)
            np.testing.assert_allclose(result, reference, rtol=0, atol=1e-6)

    def test_plain_package_predicts_as_expected(self):
        self.pack("digits")
        self.succeed("verify", "digits")
        results = [predict(self.dir, "digits", image) for image in self.images[:COUNT]]
        np.testing.assert_allclose(results, self.expected, rtol=0, atol=TOLERANCE)
        right = self.right(results)
        self.assertEqual(right, self.right(self.expected))
        self.assertGreaterEqual(right, COUNT - 1)

    def right(self, probabilities):
        """How many digits are recognised."""
        return int((np.argmax(probabilities, axis=-1).ravel() == self.labels[:COUNT]).sum())

    def test_package_with_encrypted_components_predicts_as_expected(self):
        self.pack("digits", "--encrypt", "components", "--key-file", "key")
        self.assert_right("digits", "--key-file", "key")

    def test_unpacked_archive_predicts_as_expected(self):
        self.pack("digits.tar")
        self.assertEqual(self.succeed_json("inspect", "digits.tar")["name"], "Digits")
        self.succeed("unpack", "digits.tar", "place")
        self.assert_right("place/digits")

    def test_unpacked_archive_of_encrypted_components_predicts_as_expected(self):
        self.pack("digits.tar", "--encrypt", "components", "--key-file", "key")
        self.succeed("unpack", "digits.tar", "place")
        self.assert_right("place/digits", "--key-file", "key")

    def test_unpacked_encrypted_archive_predicts_as_expected(self):
        self.pack("digits.tar", "--encrypt", "archive", "--key-file", "key")
        self.refused(21, "inspect", "digits.tar")
        root = self.succeed_json("unpack", "digits.tar", "place", "--key-file", "key")["root"]
        self.assert_right(root)

    def test_packages_of_the_example_predict_as_expected(self):
        self.assert_right(DIGITS / "package")
        key = (DIGITS / "demo.key").read_text()
        shutil.copy(DIGITS / "demo.key", self.dir / "demo.key")
        (self.dir / "demo.key").chmod(0o600)
        secured = DIGITS / "secured_package"
        self.assert_right(secured, "--key-file", "demo.key")
        self.assert_right(secured, "--key-env", "DEMO_KEY", DEMO_KEY=key)

    def test_package_encrypted_file_by_file_predicts_as_expected(self):
        secured = self.dir / "secured"
        secured.mkdir()
        shutil.copy(DIGITS / "secured_package/manifest.json", secured)
        for name in "digits.xml", "digits.bin":
            plain = DIGITS / "package" / name
            self.succeed("encrypt", plain, f"secured/{name}", "--key-file", "key")
        self.assert_right("secured", "--key-file", "key")

    def test_program_of_the_example_recognises_digits(self):
        self.succeed("keygen", "demo.key")
        self.pack("package")
        self.pack("secured_package", "--encrypt", "components", "--key-file", "demo.key")
        shutil.copy(DIGITS / "held_out.bin", self.dir)
        done = subprocess.run(
            process.command(os.environ["QUAVIN_DIGITS_PROGRAM"], "."),
            cwd=self.dir,
            env=process.clean_environment(),
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            check=False,
        )
        # It fails if the two packages differ, or are wrong too often.
        self.assertEqual(done.returncode, 0, done.stdout.decode())
        self.assertIn(b"Digits: ", done.stdout)


if __name__ == "__main__":
    unittest.main()
