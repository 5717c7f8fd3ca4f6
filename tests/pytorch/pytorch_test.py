"""The PyTorch programs of examples/from_your_model: packages predict what PyTorch does, from Python and in a C++ host.

scripts/test-pytorch.sh runs it, with PyTorch 1.13.
"""

import contextlib
import io
import os
import pathlib
import subprocess
import sys
import tempfile
import types
import unittest

import numpy
import pytorch_image
import pytorch_text
import torch

import quavin

QUAVIN = os.environ["QUAVIN_TOOL"]
KEY_OF_OTHERS = bytes(range(16))

# Probabilities in single precision; the largest differences that were seen are in docs/from-your-model.md.
TOLERANCE = 1e-5


def let_openvino_import(old_torch):
    """OpenVINO's front end supports PyTorch from 2.1 on. All it misses in 1.13 are these names, in tables and annotations,
    which lets modules be converted here without a download of half a gigabyte."""
    for name in ("float8_e4m3fn", "float8_e5m2"):
        if not hasattr(old_torch, name):
            setattr(old_torch, name, name)
    if not hasattr(old_torch, "export"):
        old_torch.export = types.SimpleNamespace(ExportedProgram=type("ExportedProgram", (), {}))


def run(*command):
    return subprocess.run(list(map(str, command)), stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True, check=False)


def succeed(*command):
    done = run(*command)
    if done.returncode != 0:
        raise AssertionError(done.stderr)


class Network(unittest.TestCase):
    """An example's network, trained and packed once by the example itself."""

    @classmethod
    def setUpClass(cls):
        cls.dir = pathlib.Path(cls.enterClassContext(tempfile.TemporaryDirectory(prefix="quavin-pytorch-")))
        cls.printed = io.StringIO()
        with contextlib.redirect_stdout(cls.printed):
            cls.network = cls.make()
        print(cls.printed.getvalue().rstrip())

    def assert_close(self, found, expected):
        self.assertEqual(found.shape, expected.shape)
        self.assertEqual(found.dtype, numpy.float32)
        difference = abs(found - expected).max()
        print(f"{self._testMethodName}: {difference:.1e}")
        self.assertLessEqual(difference, TOLERANCE)

    def predict_on_the_command_line(self, package, inputs, *options):
        """The C++ host: files in, files out."""
        for name, array in inputs.items():
            numpy.save(self.dir / f"{name}.npy", array)
        succeed(QUAVIN, "run", package, *options, "--output", self.dir / "results",
                *(word for name in inputs for word in ("--input", f"{name}={self.dir / name}.npy")))
        return numpy.load(self.dir / "results" / "probabilities.npy")


class Image(Network):
    @classmethod
    def make(cls):
        let_openvino_import(torch)
        network = pytorch_image.main(cls.dir)
        cls.package = cls.dir / "shapes"
        cls.pictures, cls.labels = pytorch_image.draw(numpy.random.default_rng(3), 200)
        with torch.no_grad():
            cls.expected = network(torch.from_numpy(cls.pictures)).numpy()
        return network

    def load(self):
        return self.enterContext(quavin.load(self.package))

    def test_the_package_takes_pictures_as_bytes_and_normalises_them_itself(self):
        (image,) = self.load().inputs
        self.assertEqual((image.name, image.dtype, image.shape), ("image", numpy.int8, (1, 32, 32, 3)))

    def test_python_predicts_what_pytorch_predicts(self):
        self.assert_close(numpy.array(list(pytorch_image.predict(self.load(), self.pictures))), self.expected)

    def test_the_darkest_and_the_brightest_bytes_count_as_in_pytorch(self):
        every_byte = numpy.resize(numpy.arange(256, dtype=numpy.uint8), (1, 32, 32, 3))
        pictures = numpy.concatenate([every_byte, numpy.zeros_like(every_byte), numpy.full_like(every_byte, 255)])
        with torch.no_grad():
            expected = self.network(torch.from_numpy(pictures)).numpy()
        self.assert_close(numpy.array(list(pytorch_image.predict(self.load(), pictures))), expected)

    def test_a_cpp_host_predicts_what_pytorch_predicts(self):
        found = [
            self.predict_on_the_command_line(self.package, {"image": picture[None]})
            for picture in self.pictures[:10].view(numpy.int8)
        ]
        self.assert_close(numpy.concatenate(found), self.expected[:10])

    def test_the_comparison_notices_weights_in_half_precision(self):
        quavin.pack(self.network, self.dir / "half", example_inputs=torch.from_numpy(self.pictures[:1]),
                    rename={"output": "probabilities"}, fp16=True)
        model = self.enterContext(quavin.load(self.dir / "half"))
        difference = abs(numpy.array(list(pytorch_image.predict(model, self.pictures))) - self.expected).max()
        print(f"{self._testMethodName}: {difference:.1e}")
        self.assertGreater(difference, TOLERANCE)
        self.assertLess(difference, 0.01)

    def test_the_package_recognises_nearly_all_shapes(self):
        found = numpy.array(list(pytorch_image.predict(self.load(), self.pictures))).argmax(1)
        self.assertGreaterEqual((found == self.labels).mean(), 0.95)

    def test_a_picture_that_is_not_viewed_as_int8_is_refused(self):
        with self.assertRaisesRegex(TypeError, "uint8.*int8"):
            self.load().predict({"image": self.pictures[:1]})

    def test_a_network_in_training_mode_is_refused(self):
        self.network.train()
        self.addCleanup(self.network.eval)
        with self.assertRaisesRegex(ValueError, "training mode"):
            quavin.pack(self.network, self.dir / "none", example_inputs=torch.from_numpy(self.pictures[:1]))
        self.assertFalse((self.dir / "none").exists())


class Text(Network):
    @classmethod
    def make(cls):
        succeed(QUAVIN, "keygen", cls.dir / "model.key")
        cls.private, cls.public = cls.make_key_pair("private", "public")
        network = pytorch_text.main(cls.dir, cls.dir)
        cls.package = cls.dir / "reviews.tar"
        cls.texts, cls.labels = pytorch_text.write_reviews(numpy.random.default_rng(3), 200)
        cls.expected = numpy.array([pytorch_text.predict_in_pytorch(network, text) for text in cls.texts])
        return network

    @classmethod
    def make_key_pair(cls, private, public):
        private, public = cls.dir / f"{private}.pem", cls.dir / f"{public}.pem"
        succeed("openssl", "ecparam", "-name", "prime256v1", "-genkey", "-noout", "-out", private)
        succeed("openssl", "ec", "-in", private, "-pubout", "-out", public)
        return private, public

    def load(self):
        return self.enterContext(pytorch_text.load(self.package, self.dir))

    def test_the_package_has_the_length_that_shapes_fixed_and_32_bit_numbers(self):
        ports = [(port.name, port.dtype, port.shape) for port in self.load().inputs]
        self.assertEqual(ports, [("input_ids", numpy.int32, (1, 24)), ("attention_mask", numpy.int32, (1, 24))])

    def test_padded_texts_get_what_pytorch_predicts_for_them_unpadded(self):
        self.assertGreater(len({len(text.split()) for text in self.texts}), 5)
        model = self.load()
        self.assert_close(numpy.array([pytorch_text.predict(model, text) for text in self.texts]), self.expected)

    def test_what_the_mask_covers_does_not_count(self):
        model = self.load()
        ids, mask = (array.astype(numpy.int32) for array in pytorch_text.encode(self.texts[:1], pytorch_text.LENGTH))
        ids[mask == 0] = pytorch_text.WORDS["awful"]
        found = model.predict({"input_ids": ids, "attention_mask": mask})["probabilities"]
        self.assert_close(found, self.expected[:1])

    def test_a_cpp_host_predicts_what_pytorch_predicts_from_the_secured_archive(self):
        found = []
        for text in self.texts[:10]:
            inputs = dict(zip(("input_ids", "attention_mask"), pytorch_text.encode([text], pytorch_text.LENGTH)))
            found.append(self.predict_on_the_command_line(
                self.package, inputs, "--cast", "--key-file", self.dir / "model.key"))
        self.assert_close(numpy.concatenate(found), self.expected[:10])

    def test_the_package_understands_nearly_all_reviews(self):
        model = self.load()
        found = numpy.array([pytorch_text.predict(model, text).argmax() for text in self.texts])
        self.assertGreaterEqual((found == self.labels).mean(), 0.95)

    def test_nothing_of_the_network_can_be_read_in_the_archive(self):
        content = self.package.read_bytes()
        self.assertIn(b"secured_file", content)
        self.assertNotIn(b"MatMul", content)
        self.assertIn(b"MatMul", (self.dir / "reviews.onnx").read_bytes())

    def test_the_archive_loads_only_with_its_key_and_the_signers_public_key(self):
        _, other = self.make_key_pair("other", "other_public")
        key, trusted = bytes.fromhex((self.dir / "model.key").read_text()), [self.public.read_text()]
        for options, status in [
            ({"key": KEY_OF_OTHERS, "trusted_keys": trusted}, quavin.Status.FILE_ERROR),
            ({"key": key, "trusted_keys": [other.read_text()]}, quavin.Status.SIGNATURE_ERROR),
        ]:
            with self.assertRaises(quavin.QuavinError) as failure:
                quavin.load(self.package, **options)
            self.assertEqual(failure.exception.status, status)
        verify = QUAVIN, "verify", self.package, "--key-file", self.dir / "model.key", "--public-key"
        succeed(*verify, self.public)
        self.assertEqual(run(*verify, other).returncode, 1)

    def test_a_network_of_any_length_is_refused_unless_shapes_fix_it(self):
        with self.assertRaisesRegex((quavin.ConversionError, ValueError), "(?s)shapes.*input_ids|input_ids.*shapes"):
            quavin.pack(self.dir / "reviews.onnx", self.dir / "none")
        self.assertFalse((self.dir / "none").exists())

    def test_the_same_network_is_packed_from_memory_for_another_length(self):
        let_openvino_import(torch)
        ids, mask = map(torch.from_numpy, pytorch_text.encode(["the film was good"], 8))
        quavin.pack(self.network, self.dir / "short", example_inputs={"input_ids": ids, "attention_mask": mask})
        model = self.enterContext(quavin.load(self.dir / "short"))
        ids, mask = pytorch_text.encode(["the song was not boring"], 8)
        found = model.predict({"input_ids": ids, "attention_mask": mask}, cast=True)["output"]
        self.assert_close(found[0], pytorch_text.predict_in_pytorch(self.network, "the song was not boring"))


if __name__ == "__main__":
    unittest.main(verbosity=2)
