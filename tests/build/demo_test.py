"""The install command in the README works on what scripts/demo.sh builds from nothing."""

import os
import re
import subprocess
import tempfile
import unittest
from pathlib import Path

SOURCE = Path(os.environ["QUAVIN_SOURCE_DIR"])
CMAKE = os.environ["QUAVIN_CMAKE"]


class DemoTest(unittest.TestCase):
    def test_demo_build_can_be_installed(self):
        script = (SOURCE / "scripts/demo.sh").read_text(encoding="utf-8")
        targets = re.search(r"(?m)^configure_and_build demo\b(.*)$", script)[1].split()
        self.assertIn("cmake --install build/demo --prefix PREFIX", (SOURCE / "README.md").read_text(encoding="utf-8"))
        with tempfile.TemporaryDirectory() as folder:
            # Building takes minutes, so what the script has built is brought up to date, if there is something.
            build, prefix = SOURCE / "build/demo", Path(folder, "prefix")
            if not (build / "build.ninja").is_file():
                build = Path(folder, "build")
                self.run_in_source("--preset", "demo", "-B", build, *os.environ["QUAVIN_OPTIONS"].split("|"))
            self.run_in_source("--build", build, "--parallel", "2", *(["--target", *targets] if targets else []))
            self.run_in_source("--install", build, "--prefix", prefix)
            self.assertTrue(list(prefix.glob("share/man/man1/quavin.1")))
            self.assertTrue(list(prefix.glob("**/libquavin_on_device_sdk.so")))
            subprocess.run([prefix / "bin/quavin", "--version"], stdout=subprocess.PIPE, check=True)

    def run_in_source(self, *arguments):
        done = subprocess.run([CMAKE, *arguments], cwd=SOURCE, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
                              text=True, check=False)
        self.assertEqual(done.returncode, 0, done.stdout)


if __name__ == "__main__":
    unittest.main()
