"""MSVC gets its own options and none of GCC's, as far as that can be checked without MSVC."""

import os
import subprocess
import tempfile
import unittest
from pathlib import Path

SOURCE = os.environ["QUAVIN_SOURCE_DIR"]


def configure(folder, *options):
    return subprocess.run(
        [os.environ["QUAVIN_CMAKE"], "-S", Path(__file__).with_name("msvc"), "-B", folder,
         f"-DQUAVIN_SOURCE_DIR={SOURCE}", "-G", os.environ["QUAVIN_GENERATOR"], *options],
        stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)


class MsvcTest(unittest.TestCase):
    def test_no_option_for_another_compiler_is_passed(self):
        with tempfile.TemporaryDirectory() as folder:
            done = configure(folder)
            self.assertEqual(done.returncode, 0, done.stdout)
            options = Path(folder, "options.txt").read_text(encoding="utf-8").split(";")
        self.assertIn("/W4", options)
        self.assertIn("/guard:cf", options)
        self.assertEqual([option for option in options if not option.startswith("/")], [])

    def test_sanitizers_are_refused(self):
        with tempfile.TemporaryDirectory() as folder:
            done = configure(folder, "-DQUAVIN_SANITIZE=ON")
        self.assertNotEqual(done.returncode, 0)
        self.assertIn("QUAVIN_SANITIZE supports only GCC and clang", " ".join(done.stdout.split()))


if __name__ == "__main__":
    unittest.main()
