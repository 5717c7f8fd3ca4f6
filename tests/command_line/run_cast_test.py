"""quavin run --cast: .npy files of any number type, compared with NumPy's casts."""

import itertools
import unittest

import numpy as np

import networks
import packages
import process
from run_inputs_test import InputsCase, X

NUMBERS = "f2", "f4", "f8", "i1", "i2", "i4", "i8", "u1", "u2", "u4", "u8"
INPUTS = {"i16": "i2", "i32": "i4", "f32": "f4"}
if process.ADAPTER:  # an installed engine refuses it
    INPUTS["i8"] = "i1"


class CastCase(InputsCase):
    def assert_cast(self, *arrays_and_types):
        """Asserts that each array is cast to the element type beside it: with a network that has an input
        for each, since loading one takes much longer than a prediction."""
        names = [f"x{i}" for i in range(len(arrays_and_types))]
        types = {name: element for name, (_, element) in zip(names, arrays_and_types)}
        packages.write_package(self.dir / "package", networks.affines(types))
        call = ["run", "package", "-o", "out", "--quiet", "--cast"]
        for name, (array, _) in zip(names, arrays_and_types):
            np.save(self.dir / f"{name}.npy", array)
            call += ["-i", f"{name}={name}.npy"]
        self.succeed(*call)
        for name, (array, element) in zip(names, arrays_and_types):
            with self.subTest(source=array.dtype, element_type=element):
                expected = networks.affine_result(array.astype(INPUTS[element]))
                np.testing.assert_array_equal(np.load(self.dir / f"out/{name}_y.npy"), expected)

    def cast_refused(self, array, element_type="f32"):
        packages.write_package(self.dir / "package", networks.affine(dtype=element_type))
        np.save(self.dir / "x.npy", np.asarray(array).reshape(1, 4))
        with self.nothing_changes():
            return self.refused(7, *self.call("x=x.npy"), "--cast")


class Casts(CastCase):
    def test_each_type_can_be_cast_to_each_other(self):
        arrays = [np.array([[3, 0, 7, 100]], source) for source in NUMBERS]
        self.assert_cast(*itertools.product(arrays, INPUTS))

    def test_casts_keep_signs(self):
        sources = "f2", "f4", "f8", "i1", "i2", "i4", "i8"
        arrays = [np.array([[-3, 0, -128, 127]], source) for source in sources]
        self.assert_cast(*itertools.product(arrays, INPUTS))

    def test_booleans_are_cast_to_zero_and_one(self):
        self.assert_cast((np.array([[True, False, False, True]]), "f32"))

    def test_big_endian_numbers_are_cast(self):
        sources = ">f2", ">f4", ">f8", ">i2", ">i4", ">i8", ">u2", ">u4", ">u8"
        self.assert_cast(*((np.array([[1, 2, 300, 4]], source), "f32") for source in sources))

    def test_doubles_and_large_integers_are_rounded_to_the_nearest_float(self):
        self.assert_cast(
            (np.float64([[0.1, 1 / 3, -1e-40, 16777217.0]]), "f32"),
            (np.int64([[16777217, -16777219, 2**62 + 1, 33554435]]), "f32"),
            (np.uint64([[16777217, 2**64 - 1, 2**63 + 1, 0]]), "f32"),
        )

    def test_every_kind_of_half_is_cast(self):
        self.assert_cast(
            # Subnormal, smallest and largest numbers, and what is not a number.
            (np.float16([[5.96e-8, 6.104e-5, 65504, -1e-7]]), "f32"),
            (np.float16([[np.nan, np.inf, -np.inf, -0.0]]), "f32"),
        )

    def test_casts_to_float_keep_non_finite_values(self):
        self.assert_cast((np.float64([[np.nan, np.inf, -np.inf, 1]]), "f32"))

    def test_casts_keep_the_limits_of_a_type(self):
        cases = []
        for element_type in INPUTS.keys() - {"f32"}:
            ends = np.iinfo(np.dtype(INPUTS[element_type]))
            for source in np.int64, np.float64:
                cases.append((np.array([[ends.min, ends.max, 0, 1]], source), element_type))
        self.assert_cast(*cases)

    def test_bench_casts_too(self):
        packages.write_package(self.dir / "package")
        np.save(self.dir / "x.npy", np.zeros((1, 4)))
        call = ["bench", "package", "-i", "x=x.npy", "--iterations", "1"]
        self.assertIn("--cast", self.refused(7, *call))
        self.succeed(*call, "--cast")

    def test_casts_change_nothing_if_the_type_matches(self):
        self.assert_cast((X, "f32"))


class Refusals(CastCase):
    def test_values_out_of_range_are_refused(self):
        for element_type, value in (
            ("i32", np.int64(2**31)),
            ("i32", np.int64(-(2**31) - 1)),
            ("i32", np.uint32(2**31)),
            ("i32", np.uint64(2**63)),
            ("i16", np.uint16(2**15)),
            ("i16", np.int32(-32769)),
            ("i8", np.uint8(128)),
            ("i8", np.int16(-129)),
            ("i32", np.float64(2.0**31)),
            ("i32", np.float32(2.0**31)),
            ("i8", np.float16(128)),
            ("f32", np.float64(3.5e38)),
            ("f32", np.float64(-1e300)),
        ):
            if element_type not in INPUTS:
                continue
            with self.subTest(element_type=element_type, value=value):
                reason = self.cast_refused(np.array([0, 0, value, 0], value.dtype), element_type)
                self.assertIn("Element 2 of x.npy is out of range for", reason)

    def test_non_finite_values_are_refused_for_integers(self):
        for value in np.nan, np.inf, -np.inf:
            for source in np.float16, np.float32, np.float64:
                reason = self.cast_refused(np.array([0, value, 0, 0], source), "i32")
                self.assertIn("Element 1 of x.npy is not finite", reason)

    def test_fractions_are_refused_for_integers(self):
        reason = self.cast_refused(np.float64([0, 0, 0, 1.5]), "i16")
        self.assertIn("Element 3 of x.npy has a fraction and cannot be converted to int16", reason)

    def test_types_that_are_not_numbers_are_refused(self):
        for dtype in "c8", "S4", "U4", "M8[s]":
            with self.subTest(dtype):
                reason = self.cast_refused(np.zeros(4, dtype))
                self.assertIn("holds elements of type", reason)
                self.assertNotIn("--cast", reason)

    def test_other_shapes_are_refused(self):
        packages.write_package(self.dir / "package")
        np.save(self.dir / "x.npy", np.zeros((1, 5)))
        reason = self.refused(7, *self.call("x=x.npy"), "--cast")
        self.assertIn("is double of shape [1, 5], but the input takes float of shape [1, 4]", reason)

    def test_refusals_suggest_cast_if_it_would_help(self):
        packages.write_package(self.dir / "package")
        for dtype in "f8", "i8", "u1", "?", ">f4", "i4":
            with self.subTest(dtype):
                reason = self.reason_against(np.zeros((1, 4), dtype))
                self.assertIn("--cast", reason)
        for array in np.zeros((1, 4), "c8"), np.zeros((1, 5), "i4"), np.zeros((4, 1), "f4"):
            self.assertNotIn("--cast", self.reason_against(array))

    def test_casting_raw_files_is_a_misuse(self):
        self.write("x.raw", bytes(16))
        packages.write_package(self.dir / "package")
        self.misused(*self.call("x=x.raw"), "--raw", "--cast")


if __name__ == "__main__":
    unittest.main()
