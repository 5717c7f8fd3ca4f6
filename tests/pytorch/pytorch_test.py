"""The PyTorch programs of examples/python: their packages predict what PyTorch does, from Python and in a C++ host.

scripts/test-pytorch.sh runs it, with PyTorch 1.13.
"""

import os
import pathlib
import subprocess
import sys
import tempfile
import types
import unittest

import numpy as np
import pytorch_image
import pytorch_text
import torch

import quavin

TOLERANCE = 2e-6  # of probabilities, so of 1; the measured differences are in docs/from-your-model.md


def add_names_that_openvino_needs():
    """OpenVINO converts modules of PyTorch 2.1 or later. All that it misses in 1.13 are these names, in a table and in
    functions for something else, and a newer PyTorch would be a download of half a gigabyte.
    """
    torch.float8_e4m3fn = "float8_e4m3fn"
    torch.float8_e5m2 = "float8_e5m2"
    torch.export = types.SimpleNamespace(ExportedProgram=type("ExportedProgram", (), {}))


class ExampleTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.dir = pathlib.Path(cls.enterClassContext(tempfile.TemporaryDirectory(prefix="quavin-pytorch-")))
        cls.network = cls.example.main(cls.dir)  # exits if Python or the command line differs too much

    def largest_difference(self, found, expected):
        self.assertEqual(found.shape, expected.shape)
        difference = abs(found - expected).max()
        print(f"{difference:.1e}", end=" ", flush=True)
        return difference

    def assert_close(self, found, expected):
        self.assertLessEqual(self.largest_difference(found, expected), TOLERANCE)

    def assert_noticed(self, found, expected):
        self.assertGreater(self.largest_difference(found, expected), TOLERANCE)

    def assert_not_made(self, package):
        self.assertEqual(list(self.dir.glob(f"*{package}*")), [])


class ImageTest(ExampleTest):
    example = pytorch_image

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.package = cls.dir / "shapes"
        cls.pictures, cls.labels = pytorch_image.draw(3, 200)

    def test_the_package_takes_pictures_as_bytes_and_normalises_them_itself(self):
        with quavin.load(self.package) as model:
            (image,) = model.inputs
        self.assertEqual((image.name, image.dtype, image.shape), ("image", np.int8, (1, 32, 32, 3)))

    def test_python_predicts_what_pytorch_predicts(self):
        self.assert_close(pytorch_image.predict(self.package, self.pictures),
                          pytorch_image.predict_in_pytorch(self.network, self.pictures))

    def test_bytes_above_127_count_as_in_pytorch(self):
        every_byte = np.resize(np.arange(256, dtype=np.uint8), (32, 32, 3))
        pictures = np.stack([every_byte, np.full_like(every_byte, 128), np.full_like(every_byte, 255)])
        self.assert_close(pytorch_image.predict(self.package, pictures),
                          pytorch_image.predict_in_pytorch(self.network, pictures))

    def test_a_cpp_host_predicts_what_pytorch_predicts(self):
        found = [pytorch_image.predict_on_the_command_line(self.package, picture, self.dir)
                 for picture in self.pictures[:8]]
        self.assert_close(np.concatenate(found), pytorch_image.predict_in_pytorch(self.network, self.pictures[:8]))

    def test_the_comparison_notices_weights_in_half_precision(self):
        package = self.dir / "half"
        quavin.pack(self.network, package, example_inputs=torch.from_numpy(self.pictures[:1]),
                    rename={"output": "probabilities"}, fp16=True)
        self.assert_noticed(pytorch_image.predict(package, self.pictures),
                            pytorch_image.predict_in_pytorch(self.network, self.pictures))

    def test_nearly_all_shapes_are_recognised(self):
        found = pytorch_image.predict(self.package, self.pictures).argmax(1)
        self.assertGreaterEqual((found == self.labels).mean(), 0.95)

    def test_a_picture_that_is_not_viewed_as_int8_is_refused(self):
        with quavin.load(self.package) as model, self.assertRaisesRegex(TypeError, "uint8.*int8"):
            model.predict({"image": self.pictures[:1]})

    def test_a_network_in_training_mode_is_refused(self):
        self.network.train()
        self.addCleanup(self.network.eval)
        with self.assertRaisesRegex(ValueError, r"training mode.*eval\(\)"):
            quavin.pack(self.network, self.dir / "none", example_inputs=torch.from_numpy(self.pictures[:1]))
        self.assert_not_made("none")

    def test_a_network_without_example_inputs_is_refused(self):
        with self.assertRaisesRegex(ValueError, "example_inputs"):
            quavin.pack(self.network, self.dir / "none")
        self.assert_not_made("none")

    def test_example_inputs_that_the_network_does_not_work_with_are_refused(self):
        with self.assertRaisesRegex(quavin.ConversionError, "ShapeNetwork cannot be converted"):
            quavin.pack(self.network, self.dir / "other", example_inputs=torch.zeros(1, 3))
        self.assert_not_made("other")

    def test_an_output_that_is_the_input_keeps_a_name_of_its_own(self):
        package = self.dir / "same"
        quavin.pack(torch.nn.Identity().eval(), package, example_inputs=torch.ones(2))
        with quavin.load(package) as model:
            self.assertEqual(model.predict({"input": np.float32([1, 2])})["output"].tolist(), [1, 2])

    def test_an_older_pytorch_is_told_to_export_to_onnx(self):
        program = """import torch, quavin
quavin.pack(torch.nn.Identity().eval(), "none", example_inputs=torch.ones(1))"""
        command = [sys.executable, "-W", "ignore", "-c", program]  # where nobody has added names
        done = subprocess.run(command, cwd=self.dir, stderr=subprocess.PIPE, text=True, check=False)
        self.assertEqual(done.returncode, 1)
        self.assertRegex(done.stderr, r"ConversionError: .*PyTorch 2\.1.*torch\.onnx\.export")
        self.assert_not_made("none")


class TextTest(ExampleTest):
    example = pytorch_text

    @classmethod
    def setUpClass(cls):
        super().setUpClass()
        cls.package = cls.dir / "reviews"
        cls.texts, cls.labels = pytorch_text.write_reviews(3, 200)

    def test_the_package_has_the_length_that_shapes_fixed_and_32_bit_numbers(self):
        with quavin.load(self.package) as model:
            ports = [(port.name, port.dtype, port.shape) for port in model.inputs]
        self.assertEqual(ports, [("input_ids", np.int32, (1, 24)), ("attention_mask", np.int32, (1, 24))])

    def test_padded_texts_get_what_pytorch_predicts_for_them_unpadded(self):
        self.assertGreater(len({len(text.split()) for text in self.texts}), 5)
        self.assert_close(pytorch_text.predict(self.package, self.texts),
                          pytorch_text.predict_in_pytorch(self.network, self.texts))

    def test_what_the_mask_covers_does_not_count(self):
        inputs = pytorch_text.encode(self.texts[:1], 24)
        inputs["input_ids"][inputs["attention_mask"] == 0] = pytorch_text.WORDS["awful"]
        with quavin.load(self.package) as model:
            found = model.predict(inputs, cast=True)["probabilities"]
        self.assert_close(found, pytorch_text.predict_in_pytorch(self.network, self.texts[:1]))

    def test_a_cpp_host_predicts_what_pytorch_predicts(self):
        found = [pytorch_text.predict_on_the_command_line(self.package, text, self.dir) for text in self.texts[:8]]
        self.assert_close(np.concatenate(found), pytorch_text.predict_in_pytorch(self.network, self.texts[:8]))

    def test_nearly_all_reviews_are_understood(self):
        found = pytorch_text.predict(self.package, self.texts).argmax(1)
        self.assertGreaterEqual((found == self.labels).mean(), 0.95)

    def test_the_comparison_notices_weights_in_half_precision(self):
        inputs = pytorch_text.encode(self.texts[:1], 24)
        shapes = {name: array.shape for name, array in inputs.items()}
        quavin.pack(self.dir / "reviews.onnx", self.dir / "half", shapes=shapes, inputs=inputs, fp16=True)
        self.assert_noticed(pytorch_text.predict(self.dir / "half", self.texts),
                            pytorch_text.predict_in_pytorch(self.network, self.texts))

    def test_64_bit_numbers_are_refused_unless_they_are_cast(self):
        with quavin.load(self.package) as model, self.assertRaisesRegex(TypeError, "int64.*int32.*cast=True"):
            model.predict(pytorch_text.encode(self.texts[:1], 24))

    def test_a_network_of_any_length_is_refused_unless_shapes_fix_it(self):
        with self.assertRaisesRegex(quavin.ConversionError, "(?s)input_ids.*shapes|shapes.*input_ids"):
            quavin.pack(self.dir / "reviews.onnx", self.dir / "none")
        self.assert_not_made("none")

    def test_the_network_in_memory_becomes_a_package_of_its_examples_length(self):
        inputs = pytorch_text.encode(self.texts[:1], 24)
        example = dict(zip(inputs, pytorch_text.tensors(inputs)))
        quavin.pack(self.network, self.dir / "direct", example_inputs=example, rename={"output": "probabilities"})
        self.assert_close(pytorch_text.predict(self.dir / "direct", self.texts),
                          pytorch_text.predict_in_pytorch(self.network, self.texts))


if __name__ == "__main__":
    add_names_that_openvino_needs()
    unittest.main(verbosity=2)
