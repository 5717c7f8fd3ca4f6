"""quavin run: .npy files of every version, and files that only look like one."""

import unittest

import numpy as np

import networks
from run_inputs_test import InputsCase, X

HEADER = "{'descr': '<f4', 'fortran_order': False, 'shape': (1, 4), }"


def npy(header=HEADER, elements=X.tobytes(), version=b"\x01\x00"):
    """A file that follows the description of the format, with any header."""
    text = header.encode()
    text += b" " * (-(len(text) + 11) % 64) + b"\n"
    length = len(text).to_bytes(2 if version[0] == 1 else 4, "little")
    return b"\x93NUMPY" + version + length + text + elements


class Files(InputsCase):
    def assert_taken(self, content):
        self.write("x.npy", content)
        self.succeed(*self.call("x=x.npy"))
        y = np.load(self.dir / "out/y.npy")
        np.testing.assert_array_equal(y, networks.affine_result(X))

    def test_files_of_each_format_version_are_accepted(self):
        for version in b"\x01\x00", b"\x02\x00", b"\x03\x00":
            with self.subTest(version):
                self.assert_taken(npy(version=version))
                with open(self.dir / "numpy.npy", "wb") as file:
                    np.lib.format.write_array(file, X, version=tuple(version))
                self.assert_taken((self.dir / "numpy.npy").read_bytes())

    def test_headers_with_other_spacing_and_order_are_accepted(self):
        for header in (
            "{'shape':(1,4),'fortran_order':False,'descr':'<f4'}",
            "{ 'descr' : '<f4' , 'fortran_order' : False , 'shape' : ( 1 , 4 , ) , }",
        ):
            with self.subTest(header):
                self.assert_taken(npy(header))

    def test_unknown_versions_are_refused(self):
        for version in b"\x00\x00", b"\x04\x00":
            with self.subTest(version):
                self.assertIn("version", self.reason_against(npy(version=version)))

    def test_truncated_files_are_refused(self):
        whole = npy()
        for length in 0, 5, 6, 7, 8, 9, 10, 11, 60, 127, 128, 143:
            with self.subTest(length):
                self.reason_against(whole[:length])

    def test_trailing_bytes_are_refused(self):
        self.assertIn("17 bytes", self.reason_against(npy(elements=X.tobytes() + b"x")))

    def test_files_with_other_content_are_refused(self):
        for content in b"PK\x03\x04 an archive of arrays", b"\x93NUMPX" + npy()[6:], X.tobytes():
            with self.subTest(content[:8]):
                self.assertIn("--raw", self.reason_against(content))

    def test_malformed_headers_are_refused(self):
        for header in (
            "",
            "{}",
            "nonsense",
            HEADER[:-1],
            HEADER + "}",
            "[" + HEADER[1:],
            HEADER.replace("'descr'", "'decsr'"),
            HEADER.replace("'descr'", "descr"),
            HEADER.replace("'descr': '<f4', ", ""),
            HEADER.replace("False", "Maybe"),
            HEADER.replace("(1, 4)", "1, 4"),
            HEADER.replace("(1, 4)", "(1, 4"),
            HEADER.replace("(1, 4)", "(1 4)"),
            HEADER.replace("(1, 4)", "(1, -4)"),
            HEADER.replace("(1, 4)", "(1, 4.0)"),
            HEADER.replace("(1, 4)", "(1, 99999999999999999999)"),
            HEADER.replace("'<f4'", "'<f4"),
            HEADER.replace("}", "'more': 1, }"),
            HEADER.replace("<f4", "\x00f4"),
            "\x00" * 64,
        ):
            with self.subTest(header):
                self.reason_against(npy(header))

    def test_shapes_that_overflow_are_refused(self):
        for shape in "(4611686018427387904, 4)", "(4294967296, 4294967296)", "(0, 4)", "(3, 0)":
            with self.subTest(shape):
                self.reason_against(npy(HEADER.replace("(1, 4)", shape)))

    def test_header_lengths_beyond_the_file_are_refused(self):
        for length in b"\xff\xff", b"\xff\x7f":
            with self.subTest(length):
                content = npy()
                self.reason_against(content[:8] + length + content[10:])
        content = npy(version=b"\x02\x00")
        self.reason_against(content[:8] + b"\xff\xff\xff\xff" + content[12:])


if __name__ == "__main__":
    unittest.main()
