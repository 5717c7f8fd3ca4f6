"""quavin run: results compared with NumPy, and where they are written."""

import unittest

import numpy as np

import networks
import packages
import process
from support import KEY_HEX, OTHER_KEY_HEX, CommandLineTest

X = np.float32([[1.5, -2, 3, 0.25]])


class RunCase(CommandLineTest):
    def package(self, network=None, **options):
        packages.write_package(self.dir / "package", network, **options)

    def save(self, name, array):
        np.save(self.dir / name, array)
        return name

    def results(self, *names_and_arrays, options=()):
        """The outputs, by file name, for inputs given as NAME, ARRAY, ..."""
        inputs = []
        for name, array in zip(names_and_arrays[::2], names_and_arrays[1::2]):
            inputs += ["-i", f"{name}={self.save(f'in{len(inputs)}.npy', array)}"]
        self.succeed("run", "package", *inputs, "-o", "out", *options)
        return {path.name: np.load(path) for path in (self.dir / "out").iterdir()}

    def assert_array(self, actual, expected):
        self.assertEqual((actual.dtype, actual.shape), (expected.dtype, expected.shape))
        np.testing.assert_allclose(actual, expected, rtol=1e-6)


class Results(RunCase):
    def test_results_match_numpy(self):
        self.package()
        results = self.results("x", X)
        self.assertEqual(list(results), ["y.npy"])
        self.assert_array(results["y.npy"], networks.affine_result(X))

    def test_results_match_numpy_for_each_type(self):
        for element_type, dtype in ("i16", np.int16), ("i32", np.int32):
            with self.subTest(element_type):
                self.assert_computed(element_type, dtype)

    @process.adapter_only("it converts no int8")
    def test_results_match_numpy_for_int8(self):
        self.assert_computed("i8", np.int8)

    def assert_computed(self, element_type, dtype):
        x = np.array([[-100, 0, 7, 127]], dtype)
        self.package(networks.affine(dtype=element_type))
        self.assert_array(self.results("x", x)["y.npy"], networks.affine_result(x))

    def test_integer_networks_produce_integers(self):
        x = np.int32([-7, 0, 5, 400_000_000])
        self.package(networks.tripling_integers())
        self.assert_array(self.results("x", x)["y.npy"], 3 * x)

    def test_two_inputs_are_matched_by_name(self):
        left = np.arange(6, dtype=np.float32).reshape(2, 3)
        right = np.float32([[0.5, -1, 2], [10, 0, -0.25]])
        self.package(networks.arithmetic())
        for call in ("left", left, "right", right), ("right", right, "left", left):
            results = self.results(*call)
            self.assertEqual(sorted(results), ["product.npy", "sum.npy"])
            self.assert_array(results["sum.npy"], left + right)
            self.assert_array(results["product.npy"], left * right)

    def test_inputs_may_have_different_types(self):
        whole = np.int32([1, 2, 3])
        half = np.float32([0.5, 0.25, 0.125])
        real = np.float32([10, 20, 30])
        self.package(networks.typed_sum())
        results = self.results("whole", whole, "half", half, "real", real)
        self.assert_array(results["total.npy"], np.float32([11.5, 22.25, 33.125]))

    def test_scalars_are_supported(self):
        self.package(networks.scalar())
        result = self.results("x", np.array(4.5, np.float32))["y.npy"]
        self.assert_array(result, np.array(45, np.float32))

    def test_secured_packages_are_supported(self):
        self.package(key_hex=KEY_HEX)
        self.key_file()
        results = self.results("x", X, options=["--key-file", "key"])
        self.assert_array(results["y.npy"], networks.affine_result(X))

    def test_an_input_declared_twice_is_given_once(self):
        self.package()
        with packages.changed_manifest(self.dir / "package") as target:
            target["inputs"] *= 2
        self.assert_array(self.results("x", X)["y.npy"], networks.affine_result(X))

    def test_results_replace_older_ones(self):
        self.package()
        self.results("x", 0 * X)
        self.assert_array(self.results("x", X)["y.npy"], networks.affine_result(X))

    def test_elements_start_at_a_multiple_of_64(self):
        for name in "affine", "doubling", "scalar", "tripling_integers":
            with self.subTest(name):
                network = getattr(networks, name)()
                self.package(network)
                [port] = network.inputs
                self.results("x", np.ones(port.shape, "i4" if port.element_type == "i32" else "f4"))
                content = (self.dir / "out/y.npy").read_bytes()
                begin = content.index(b"\n") + 1
                self.assertEqual(begin % 64, 0)
                self.assertEqual(int.from_bytes(content[8:10], "little"), begin - 10)
                self.assertEqual(len(content) - begin, 4 * int(np.prod(port.shape)))


class Raw(RunCase):
    def test_raw_bytes_are_read_and_written(self):
        self.package()
        self.write("x.raw", X.astype("<f4").tobytes())
        self.succeed("run", "package", "--raw", "-i", "x=x.raw", "-o", "out")
        result = (self.dir / "out/y.raw").read_bytes()
        self.assertEqual(result, networks.affine_result(X).astype("<f4").tobytes())

    def test_raw_files_of_the_wrong_size_are_refused(self):
        self.package()
        for length in 0, 15, 17, 32:
            with self.subTest(length):
                self.write("x.raw", bytes(length))
                reason = self.refused(7, "run", "package", "--raw", "-i", "x=x.raw", "-o", "out")
                self.assertIn(f"x.raw has {length} bytes", reason)
                self.assertIn("float of shape [1, 4]: 16 bytes", reason)

    def test_raw_files_for_a_variable_shape_are_refused(self):
        self.package(networks.arithmetic())
        with packages.changed_manifest(self.dir / "package") as target:
            target["inputs"][1]["tensor"]["shape"] = [-1, 3]
        self.write("x.raw", bytes(24))
        inputs = ["-i", "left=x.raw", "-i", "right=x.raw"]
        reason = self.refused(7, "run", "package", "--raw", *inputs, "-o", "out")
        self.assertIn("variable", reason)


class Refusals(RunCase):
    def setUp(self):
        super().setUp()
        np.save(self.dir / "x.npy", X)

    def test_a_secured_package_without_its_key_is_refused(self):
        self.package(key_hex=KEY_HEX)
        with self.nothing_changes():
            reason = self.refused(7, "run", "package", "-i", "x=x.npy", "-o", "out")
        self.assertIn("secured. Pass the key with --key-file or --key-env.", reason)

    def test_a_secured_package_with_a_wrong_key_is_refused(self):
        self.package(key_hex=KEY_HEX)
        self.key_file(OTHER_KEY_HEX)
        with self.nothing_changes():
            call = ["package", "--key-file", "key"]
            reason = self.refused(3, "run", *call, "-i", "x=x.npy", "-o", "out")
            self.assertIn("The key is wrong, or a file is damaged", reason)
            reason = self.refused(3, "bench", *call)
            self.assertIn("The key is wrong, or a file is damaged", reason)

    def test_a_secured_package_without_a_file_is_not_blamed_on_the_key(self):
        self.package(key_hex=KEY_HEX)
        self.key_file()
        (self.dir / "package/net.bin").unlink()
        call = ["run", "package", "-i", "x=x.npy", "-o", "out", "--key-file", "key"]
        self.assertNotIn("key is wrong", self.refused(3, *call))

    def test_an_output_directory_that_is_a_file_is_refused(self):
        self.package()
        self.write("file", "precious")
        for output in "file", "file/below":
            with self.subTest(output), self.nothing_changes():
                reason = self.refused(3, "run", "package", "-i", "x=x.npy", "-o", output)
                self.assertIn("file", reason)

    def test_a_path_that_is_not_a_package_is_refused(self):
        self.write("archive.tar", bytes(1024))
        (self.dir / "empty").mkdir()
        for code, name in (7, "nowhere"), (21, "archive.tar"), (12, "empty"):
            with self.subTest(name), self.nothing_changes():
                self.assertIn(name, self.refused(code, "run", name, "-i", "x=x.npy", "-o", "out"))


if __name__ == "__main__":
    unittest.main()
