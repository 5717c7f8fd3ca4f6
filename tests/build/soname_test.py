"""What the library tells the loader.

A host is bound to compatible versions: of the same minor version before 1.0, then of the same major one.
"""

import os
import re
import subprocess
import unittest


def dynamic_section():
    return subprocess.run([os.environ["QUAVIN_READELF"], "-dW", os.environ["QUAVIN_LIBRARY"]],
                          stdout=subprocess.PIPE, text=True, check=True).stdout


class SonameTest(unittest.TestCase):
    def test_the_soname_names_the_compatible_versions(self):
        with open(os.environ["QUAVIN_VERSION_HEADER"], encoding="utf-8") as file:
            major, minor = re.findall(r"#define QUAVIN_VERSION_M\w+ (\d+)", file.read())
        compatible = f"0.{minor}" if major == "0" else major
        self.assertIn(f"[libquavin_on_device_sdk.so.{compatible}]", dynamic_section())

    def test_closing_the_library_does_not_unload_it(self):
        self.assertRegex(dynamic_section(), r"Flags:.*\bNODELETE\b")


if __name__ == "__main__":
    unittest.main()
