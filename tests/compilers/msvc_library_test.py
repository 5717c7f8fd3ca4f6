"""The import library for Microsoft's linker has the C functions that the DLL exports, and nothing else."""

import os
import re
import subprocess
import unittest

import check_exports

DLL = os.environ["QUAVIN_DLL"]
LIBRARY = os.environ["QUAVIN_MSVC_LIBRARY"]

class MsvcLibraryTest(unittest.TestCase):
    def test_it_has_the_c_functions(self):
        functions = {name for name in check_exports.exported_by_dll(DLL, os.environ["QUAVIN_OBJDUMP"])
                     if name.startswith("quavin_")}
        self.assertTrue(functions)
        symbols = subprocess.run([os.environ["QUAVIN_NM"], LIBRARY],
                                 stdout=subprocess.PIPE, text=True, check=True).stdout
        self.assertEqual(set(re.findall(r"(?m) T ([^.\s]\S*)$", symbols)), functions)
        self.assertEqual(set(re.findall(r"(?m) I __imp_(\S+)$", symbols)), functions)

    def test_it_names_the_dll(self):
        with open(LIBRARY, "rb") as file:
            self.assertIn(os.path.basename(DLL).encode() + b"\0", file.read())


if __name__ == "__main__":
    unittest.main()
