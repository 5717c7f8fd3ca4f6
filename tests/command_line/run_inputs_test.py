"""quavin run: which inputs it accepts, and why it refuses others."""

import os
import unittest

import numpy as np

import networks
import packages
from support import CommandLineTest

X = np.float32([[1.5, -2, 3, 0.25]])


class InputsCase(CommandLineTest):
    def setUp(self):
        super().setUp()
        packages.write_package(self.dir / "package")

    def call(self, *inputs):
        return ["run", "package", "-o", "out", *(a for i in inputs for a in ("-i", i))]

    def reason_against(self, array_or_bytes, code=7):
        """Why an input is refused. Asserts that nothing is written."""
        if isinstance(array_or_bytes, bytes):
            self.write("x.npy", array_or_bytes)
        else:
            np.save(self.dir / "x.npy", array_or_bytes)
        with self.nothing_changes():
            reason = self.refused(code, *self.call("x=x.npy"))
        self.assertIn("x.npy", reason)
        return reason


class Names(InputsCase):
    def setUp(self):
        super().setUp()
        np.save(self.dir / "x.npy", X)

    def test_unknown_inputs_are_refused(self):
        with self.nothing_changes():
            self.assertIn('"z"', self.refused(7, *self.call("x=x.npy", "z=x.npy")))
            self.assertIn('"x"', self.refused(7, *self.call("z=x.npy")))

    def test_missing_inputs_are_refused(self):
        packages.write_package(self.dir / "package", networks.arithmetic())
        np.save(self.dir / "l.npy", np.zeros((2, 3), np.float32))
        with self.nothing_changes():
            reason = self.refused(7, *self.call("left=l.npy"))
        self.assertIn('"right"', reason)
        self.assertIn("--input right=FILE", reason)

    def test_inputs_given_twice_are_a_misuse(self):
        with self.nothing_changes():
            self.assertIn("x", self.misused(*self.call("x=x.npy", "x=x.npy")))

    def test_inputs_without_a_file_or_a_name_are_a_misuse(self):
        for argument in "x", "x=", "=x.npy", "=", "":
            with self.subTest(argument), self.nothing_changes():
                self.misused(*self.call(argument))

    def test_names_end_at_the_first_equals_sign(self):
        (self.dir / "x.npy").rename(self.dir / "a=b.npy")
        self.succeed(*self.call("x=a=b.npy"))

    def test_files_that_are_missing_or_not_regular_are_refused(self):
        (self.dir / "directory").mkdir()
        os.mkfifo(self.dir / "pipe")
        for name in "none.npy", "directory", "pipe":
            with self.subTest(name):
                self.assertIn(name, self.refused(3, *self.call(f"x={name}")))


class Arrays(InputsCase):
    def test_arrays_of_types_that_no_input_has_are_refused(self):
        for dtype in "f8", "f2", "u1", "u2", "u4", "i8", "u8", "?", "c8", "S4", "U4", "M8[s]":
            with self.subTest(dtype):
                array = np.zeros((1, 4), dtype)
                reason = self.reason_against(array)
                self.assertIn(array.dtype.str, reason)
                self.assertIn("float32, int8, int16 and int32", reason)

    def test_arrays_of_a_type_other_than_the_inputs_are_refused(self):
        for dtype in "int8", "int16", "int32":
            with self.subTest(dtype):
                reason = self.reason_against(X.astype(dtype))
                self.assertIn(f"is {dtype} of shape [1, 4]", reason)
                self.assertIn("takes float of shape [1, 4]", reason)

    def test_big_endian_arrays_are_refused(self):
        for dtype in ">f4", ">i4", ">f8":
            with self.subTest(dtype):
                self.assertIn("big-endian", self.reason_against(X.astype(dtype)))

    def test_arrays_in_fortran_order_are_refused(self):
        self.assertIn("Fortran", self.reason_against(np.zeros((4, 4), "f4", order="F")))

    def test_arrays_with_several_fields_are_refused(self):
        array = np.zeros((1, 4), [("a", "f4"), ("b", "i4")])
        self.assertIn("several fields", self.reason_against(array))

    def test_arrays_of_objects_are_refused(self):
        self.assertIn("'|O'", self.reason_against(np.array([[1, "a", None, {}]], object)))

    def test_arrays_of_another_shape_are_refused(self):
        for shape in (4,), (4, 1), (1, 4, 1), (1, 5), (2, 4), (0, 4), ():
            with self.subTest(shape):
                reason = self.reason_against(np.zeros(shape, "f4"))
                self.assertIn(f"of shape {list(shape)}", reason)
                self.assertIn("float of shape [1, 4]", reason)

    def test_one_dimensional_arrays_are_refused_for_scalars(self):
        packages.write_package(self.dir / "package", networks.scalar())
        self.assertIn("of shape [1]", self.reason_against(np.zeros(1, "f4")))

    def test_impossible_shapes_are_refused_for_variable_ones(self):
        packages.write_package(self.dir / "package", networks.arithmetic())
        with packages.changed_manifest(self.dir / "package") as target:
            target["inputs"][1]["tensor"]["shape"] = [-1, 3]
        np.save(self.dir / "left.npy", np.zeros((2, 3), np.float32))
        for shape in (0, 3), (1, 3):
            with self.subTest(shape):
                np.save(self.dir / "right.npy", np.zeros(shape, np.float32))
                with self.nothing_changes():
                    self.refused(7, *self.call("left=left.npy", "right=right.npy"))


if __name__ == "__main__":
    unittest.main()
