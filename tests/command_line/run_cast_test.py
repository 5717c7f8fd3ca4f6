"""quavin run --cast: .npy files of any number type, compared with NumPy's casts."""

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
    def cast(self, array, element_type="f32"):
        """The output for an array that is cast."""
        packages.write_package(self.dir / "package", networks.affine(dtype=element_type))
        np.save(self.dir / "x.npy", array)
        self.succeed(*self.call("x=x.npy"), "--cast")
        return np.load(self.dir / "out/y.npy")

    def cast_refused(self, array, element_type="f32"):
        packages.write_package(self.dir / "package", networks.affine(dtype=element_type))
        np.save(self.dir / "x.npy", np.asarray(array).reshape(1, 4))
        with self.nothing_changes():
            return self.refused(7, *self.call("x=x.npy"), "--cast")


class Casts(CastCase):
    def test_each_type_can_be_cast_to_each_other(self):
        for source in NUMBERS:
            values = np.array([[3, 0, 7, 100]], source)
            for element_type in INPUTS:
                with self.subTest(source=source, element_type=element_type):
                    expected = networks.affine_result(values.astype(INPUTS[element_type]))
                    np.testing.assert_array_equal(self.cast(values, element_type), expected)

    def test_casts_keep_signs(self):
        for source in "f2", "f4", "f8", "i1", "i2", "i4", "i8":
            values = np.array([[-3, 0, -128, 127]], source)
            for element_type in INPUTS:
                with self.subTest(source=source, element_type=element_type):
                    expected = networks.affine_result(values.astype(np.float32))
                    np.testing.assert_array_equal(self.cast(values, element_type), expected)

    def test_booleans_are_cast_to_zero_and_one(self):
        expected = networks.affine_result([[1, 0, 0, 1]])
        np.testing.assert_array_equal(self.cast(np.array([[True, False, False, True]])), expected)

    def test_big_endian_numbers_are_cast(self):
        for source in ">f2", ">f4", ">f8", ">i2", ">i4", ">i8", ">u2", ">u4", ">u8":
            with self.subTest(source):
                values = np.array([[1, 2, 300, 4]], source)
                expected = networks.affine_result(values.astype(np.float32))
                np.testing.assert_array_equal(self.cast(values), expected)

    def test_doubles_and_large_integers_are_rounded_to_the_nearest_float(self):
        for values in (
            np.float64([[0.1, 1 / 3, -1e-40, 16777217.0]]),
            np.int64([[16777217, -16777219, 2**62 + 1, 33554435]]),
            np.uint64([[16777217, 2**64 - 1, 2**63 + 1, 0]]),
        ):
            with self.subTest(values.dtype):
                expected = networks.affine_result(values.astype(np.float32))
                np.testing.assert_array_equal(self.cast(values), expected)

    def test_every_kind_of_half_is_cast(self):
        # Subnormal, smallest and largest numbers, and what is not a number.
        values = np.float16([[5.96e-8, 6.104e-5, 65504, -1e-7], [np.nan, np.inf, -np.inf, -0.0]])
        for row in values:
            np.testing.assert_array_equal(
                self.cast(row.reshape(1, 4)), networks.affine_result(row.reshape(1, 4))
            )

    def test_casts_to_float_keep_non_finite_values(self):
        values = np.float64([[np.nan, np.inf, -np.inf, 1]])
        np.testing.assert_array_equal(self.cast(values), networks.affine_result(values))

    def test_casts_keep_the_limits_of_a_type(self):
        for element_type in INPUTS.keys() - {"f32"}:
            dtype = np.dtype(INPUTS[element_type])
            ends = np.iinfo(dtype)
            for source in np.int64, np.float64:
                with self.subTest(element_type=element_type, source=source):
                    values = np.array([[ends.min, ends.max, 0, 1]], source)
                    expected = networks.affine_result(values)
                    np.testing.assert_allclose(self.cast(values, element_type), expected, 1e-6)

    def test_bench_casts_too(self):
        packages.write_package(self.dir / "package")
        np.save(self.dir / "x.npy", np.zeros((1, 4)))
        call = ["bench", "package", "-i", "x=x.npy", "--iterations", "1"]
        self.assertIn("--cast", self.refused(7, *call))
        self.succeed(*call, "--cast")

    def test_casts_change_nothing_if_the_type_matches(self):
        np.testing.assert_array_equal(self.cast(X), networks.affine_result(X))


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
