"""The check refuses headers that C or another compiler would refuse."""

import contextlib
import io
import os
import tempfile
import unittest
from pathlib import Path

import check_c_header

OPTIONS = os.environ["QUAVIN_CHECK_OPTIONS"].split("|")
COMPILER = OPTIONS[OPTIONS.index("--compiler") + 1]
INCLUDE = Path(__file__).resolve().parents[2] / "include"


def outcome(change):
    """Returns the status and the last line for the header with `change` made to its text."""
    with tempfile.TemporaryDirectory() as folder:
        Path(folder, "quavin").mkdir()
        for name, written in (("c.h", change), ("export.h", str)):
            text = (INCLUDE / "quavin" / name).read_text(encoding="utf-8")
            Path(folder, "quavin", name).write_text(written(text), encoding="utf-8")
        output = io.StringIO()
        with contextlib.redirect_stdout(output):
            status = check_c_header.main(["--compiler", COMPILER, folder])
        return status, output.getvalue().splitlines()[-1]


class CheckCHeaderTest(unittest.TestCase):
    def test_the_header_passes(self):
        self.assertEqual(outcome(lambda text: text), (0, "20 of 20 compilations pass"))

    def test_words_of_cpp_are_refused(self):
        self.assertEqual(outcome(lambda text: text + "inline int f() { return static_cast<int>(1); }\n"),
                         (1, "10 of 20 compilations pass"))

    def test_attributes_of_cpp_are_refused(self):
        self.assertEqual(outcome(lambda text: text.replace("typedef struct quavin_port {",
                                                           "typedef struct quavin_port { int a{}; "))[0], 1)

    def test_an_initialiser_that_leaves_a_member_out_is_refused(self):
        self.assertEqual(outcome(lambda text: text.replace("sizeof(quavin_keys), NULL, ", "sizeof(quavin_keys), "))[0],
                         1)


if __name__ == "__main__":
    unittest.main()
