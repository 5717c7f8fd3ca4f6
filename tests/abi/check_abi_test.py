"""The check of the binary interface tells changes apart, and what to do about them, on libraries of a few lines."""

import os
import subprocess
import tempfile
import unittest
from pathlib import Path

CHECK = os.environ["QUAVIN_CHECK_ABI"]
COMPILER = os.environ["QUAVIN_COMPILER"]
SOURCE = """
#include <string>
namespace VelmoraQuavin {
enum class Kind { First, Second };
struct Options {
    std::string name;
    Kind kind;
};
class Model {
public:
    virtual ~Model();
    virtual int load(const Options& options);
    virtual int unload();
};
Model::~Model() {}
int Model::load(const Options& options) { return static_cast<int>(options.kind); }
int Model::unload() { return 0; }
std::string version() { return "1"; }
}
"""
BREAKS = "the binary interface changed in a way that may break hosts: docs/abi.md says when it may"
GROWS = "the binary interface grew: docs/abi.md says when it may"


class CheckAbiTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.environment = {**os.environ, "QUAVIN_ABI_DESCRIPTION": str(self.folder / "described.abi")}

    def checked(self, source, *options, debug="-g"):
        """Returns the status and the output of the check for a library of this source."""
        library = self.folder / "library.so"
        subprocess.run([COMPILER, "-shared", "-fPIC", debug, "-x", "c++", "-", "-o", library],
                       input=source, text=True, check=True)
        done = subprocess.run([CHECK, *options, library], env=self.environment,
                              stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
        return done.returncode, done.stdout

    def assert_change(self, what, *replacement):
        self.assertEqual(self.checked(SOURCE, "--update")[0], 0)
        changed = SOURCE.replace(*replacement)
        self.assertNotEqual(changed, SOURCE)
        status, output = self.checked(changed)
        self.assertEqual(status, 1, output)
        self.assertIn(what, output)
        self.assertIn("run scripts/check-abi.sh --update and commit the result", output)

    def test_the_described_library_passes(self):
        self.assertEqual(self.checked(SOURCE, "--update")[0], 0)
        self.assertEqual(self.checked(SOURCE), (0, ""))

    def test_a_description_names_no_folder(self):
        self.checked(SOURCE, "--update")
        text = (self.folder / "described.abi").read_text(encoding="utf-8")
        self.assertNotIn(str(self.folder), text)
        self.assertNotIn("/usr/", text)

    def test_a_new_function_is_growth(self):
        self.assert_change(GROWS, "std::string version()", "int added() { return 1; }\nstd::string version()")

    def test_a_removed_function_may_break_hosts(self):
        self.assert_change(BREAKS, "std::string version() {", "static std::string unused() {")

    def test_another_result_may_break_hosts(self):
        self.assert_change(BREAKS, 'std::string version() { return "1"; }', "int version() { return 1; }")

    def test_a_new_data_member_may_break_hosts(self):
        self.assert_change(BREAKS, "    Kind kind;", "    Kind kind;\n    long more;")

    def test_another_value_of_an_enumerator_may_break_hosts(self):
        self.assert_change(BREAKS, "First, Second", "First, Between, Second")

    def test_a_new_virtual_function_may_break_hosts(self):
        self.assert_change(BREAKS, "    virtual int load", "    virtual int check() { return 0; }\n    virtual int load")

    def test_a_library_without_debug_information_is_refused(self):
        status, output = self.checked(SOURCE, debug="-g0")
        self.assertEqual(status, 1)
        self.assertIn("has no debug information", output)


if __name__ == "__main__":
    unittest.main()
