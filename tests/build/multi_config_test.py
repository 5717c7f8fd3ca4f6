"""With a multi-configuration generator, each configuration finds the DLLs that its programs need."""

import os
import subprocess
import tempfile
import unittest
from pathlib import Path


class MultiConfigTest(unittest.TestCase):
    def test_the_dlls_are_next_to_each_configurations_programs(self):
        with tempfile.TemporaryDirectory() as folder:
            subprocess.run(
                [os.environ["QUAVIN_CMAKE"], "-S", os.environ["QUAVIN_SOURCE_DIR"], "-B", folder,
                 "-G", "Ninja Multi-Config", f"-DCMAKE_TOOLCHAIN_FILE={os.environ['QUAVIN_TOOLCHAIN_FILE']}",
                 "-DCMAKE_CONFIGURATION_TYPES=Release;Debug", "-DQUAVIN_ENGINE=adapter", "-DQUAVIN_BUILD_TESTS=OFF",
                 "-DQUAVIN_BUILD_BENCHMARKS=OFF"],
                stdout=subprocess.PIPE, check=True)
            for configuration in ("Release", "Debug"):
                rules = Path(folder, f"CMakeFiles/impl-{configuration}.ninja").read_text(encoding="utf-8")
                self.assertRegex(rules, rf"(?m)^build bin/{configuration}/quavin\.exe\b")
                for name in ("libstdc++-6.dll", "openvino_c.dll"):
                    self.assertTrue(Path(folder, "bin", configuration, name).is_file(), name)


if __name__ == "__main__":
    unittest.main()
