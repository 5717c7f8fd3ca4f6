"""The same network gives the same results on both systems."""

import os
import shutil
import unittest
from pathlib import Path

import exchange
import networks
import numpy as np
import packages
from exchange import SYSTEMS

DIGITS = Path(os.environ["QUAVIN_DIGITS_EXAMPLE"])
NUMBERS = Path(__file__).resolve().parents[1] / "data/numbers"


class Predictions(exchange.ExchangeTest):
    def predictions(self, package, inputs):
        """Returns each system's outputs by name, as NumPy arrays."""
        options = []
        for name, values in inputs.items():
            np.save(self.dir / f"{name}.npy", values)
            options += ["-i", f"{name}={name}.npy"]
        given = []
        for system in SYSTEMS:
            self.on(system).succeed("run", package, *options, "-o", f"results-{system}")
            files = sorted((self.dir / f"results-{system}").iterdir())
            given.append({file.stem: np.load(file) for file in files})
        linux, windows = given
        self.assertEqual(list(linux), list(windows))
        for name, values in linux.items():
            self.assertEqual((values.dtype, values.shape),
                             (windows[name].dtype, windows[name].shape))
        return given

    def test_float_predictions_agree(self):
        packages.write_package(self.dir / "package", networks.arithmetic())
        random = np.random.default_rng(7)
        left, right = (random.normal(size=(2, 3)).astype(np.float32) for _ in range(2))
        for given in self.predictions("package", {"left": left, "right": right}):
            np.testing.assert_allclose(given["sum"], left + right, rtol=1e-5)
            np.testing.assert_allclose(given["product"], left * right, rtol=1e-5)

    def test_predictions_beyond_half_precision_agree(self):
        for package in "just_above_one", "cancelling_sums", "convolution", "classifier":
            with self.subTest(package):
                shutil.copytree(NUMBERS / package, self.dir / package)
                [declared] = packages.read_manifest(NUMBERS / package)["targets"]["Openvino"]["inputs"]
                x = np.fromfile(NUMBERS / package / "x.f32", "<f4").reshape(declared["tensor"]["shape"])
                expected = np.fromfile(NUMBERS / package / "y.f64", "<f8")
                for given in self.predictions(package, {"x": x}):
                    np.testing.assert_allclose(given["y"].ravel(), expected, rtol=1e-5)
                for system in SYSTEMS:
                    shutil.rmtree(self.dir / f"results-{system}")

    def test_integer_predictions_are_equal(self):
        packages.write_package(self.dir / "package", networks.tripling_integers())
        x = np.int32([-5, 0, 7, 2**29])
        for given in self.predictions("package", {"x": x}):
            np.testing.assert_array_equal(given["y"], 3 * x)

    def test_predictions_with_mixed_types_agree(self):
        packages.write_package(self.dir / "package", networks.typed_sum())
        inputs = {"whole": np.int32([1, -2, 3]), "half": np.float32([0.5, 0.25, -1]),
                  "real": np.float32([0.125, 10, -0.5])}
        for given in self.predictions("package", inputs):
            np.testing.assert_allclose(given["total"], [1.625, 8.25, 1.5], rtol=1e-5)

    def test_predictions_of_handwritten_digits_agree(self):
        shutil.copytree(DIGITS / "package", self.dir / "digits")
        records = np.fromfile(DIGITS / "held_out.bin", np.uint8).reshape(-1, 65)
        for record in records[:2]:
            picture = record[:64].reshape(1, 1, 8, 8).astype(np.float32)
            linux, windows = self.predictions("digits", {"image": picture})
            np.testing.assert_allclose(linux["probabilities"], windows["probabilities"],
                                       rtol=1e-5, atol=1e-7)
            self.assertEqual(windows["probabilities"].argmax(), record[64])
            shutil.rmtree(self.dir / "results-linux")
            shutil.rmtree(self.dir / "results-windows")


if __name__ == "__main__":
    unittest.main()
