"""The check of the binary interface tells changes apart, and what to do about them."""

import os
import re
import subprocess
import tempfile
import unittest
from pathlib import Path

CHECK = Path(os.environ["QUAVIN_CHECK_ABI"])
DESCRIPTION = CHECK.parents[1] / "tests/abi/linux-x86_64.abi"


def outcome(description, library=os.environ["QUAVIN_LIBRARY"]):
    """Returns the status and the output for the library and a description of this text."""
    with tempfile.TemporaryDirectory() as folder:
        path = Path(folder, "described.abi")
        path.write_text(description, encoding="utf-8")
        done = subprocess.run([CHECK, library], env={**os.environ, "QUAVIN_ABI_DESCRIPTION": str(path)},
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
        return done.returncode, done.stdout


class CheckAbiTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.description = DESCRIPTION.read_text(encoding="utf-8")

    def changed(self, pattern, replacement):
        text, count = re.subn(pattern, replacement, self.description)
        self.assertGreater(count, 0)
        return text

    def test_a_class_of_another_size_may_break_hosts(self):
        smaller = self.changed(r"(<class-decl name='EngineOptions' size-in-bits=)'\d+'", r"\1'8'")
        status, output = outcome(smaller)
        self.assertEqual(status, 1)
        self.assertIn("changed in a way that may break hosts: docs/abi.md", output)
        self.assertIn("EngineOptions", output)
        self.assertIn("run scripts/check-abi.sh --update", output)

    def test_a_function_that_is_gone_may_break_hosts(self):
        more = self.changed("_ZN13VelmoraQuavin10getVersionEv", "_ZN13VelmoraQuavin8getOtherEv")
        status, output = outcome(more)
        self.assertEqual(status, 1)
        self.assertIn("changed in a way that may break hosts: docs/abi.md", output)
        self.assertIn("_ZN13VelmoraQuavin8getOtherEv", output)

    def test_a_new_function_is_growth(self):
        symbol = "_ZN13VelmoraQuavin10getVersionEv"
        fewer = self.changed(rf" *<elf-symbol name='{symbol}'.*\n", "")
        self.assertIn(symbol, fewer)
        fewer = re.sub(rf" *<function-decl [^>]*'{symbol}'[^>]*>(?s:.*?)</function-decl>\n", "", fewer)
        self.assertNotIn(symbol, fewer)
        status, output = outcome(fewer)
        self.assertEqual(status, 1)
        self.assertIn("the binary interface grew: docs/abi.md", output)
        self.assertIn("run scripts/check-abi.sh --update", output)

    def test_a_library_without_debug_information_is_refused(self):
        status, output = outcome(self.description, library="/bin/true")
        self.assertEqual(status, 1)
        self.assertIn("has no debug information", output)


if __name__ == "__main__":
    unittest.main()
