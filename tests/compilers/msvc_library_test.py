"""The import library for Microsoft's linker has the C functions that the DLL exports, and nothing else."""

import os
import re
import subprocess
import tempfile
import unittest
from pathlib import Path

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

    def refusal(self, dll, tool):
        """Returns what making an import library for a DLL says when it fails."""
        with tempfile.TemporaryDirectory() as folder:
            script = Path(__file__).resolve().parents[2] / "cmake/MakeMsvcImportLibrary.cmake"
            done = subprocess.run([os.environ["QUAVIN_CMAKE"], f"-DDLL={dll}", f"-DLIBRARY={folder}/made.lib",
                                   f"-DOBJDUMP={os.environ['QUAVIN_OBJDUMP']}", f"-DDLLTOOL={tool}", "-P", script],
                                  stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
            self.assertNotEqual(done.returncode, 0)
            return " ".join(done.stdout.split())

    def test_a_dll_without_c_functions_is_refused(self):
        other = Path(DLL).with_name("libwinpthread-1.dll")
        self.assertIn(f"lists no C function that {other} exports", self.refusal(other, "/bin/true"))

    def test_a_missing_dll_is_refused(self):
        self.assertIn("lists no C function that /missing.dll exports", self.refusal("/missing.dll", "/bin/true"))

    def test_a_failing_tool_fails(self):
        self.assertIn("/bin/false could not write", self.refusal(DLL, "/bin/false"))


if __name__ == "__main__":
    unittest.main()
