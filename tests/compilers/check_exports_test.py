"""The check finds missing and surplus exports, on a header and a library of a few lines."""

import contextlib
import io
import os
import subprocess
import tempfile
import unittest
from pathlib import Path

import check_exports

OPTIONS = os.environ["QUAVIN_CHECK_OPTIONS"].split("|")
COMPILER = os.environ["QUAVIN_COMPILER"]
IS_DLL = any("mingw" in option for option in OPTIONS)
# The function, the C function, two special members, the hidden one, the variable, the virtual table and the type
# information, whose name is a symbol of its own outside Windows.
MARKED = 8 if IS_DLL else 9

HEADER = """#if !defined(_WIN32)
#define API __attribute__((visibility("default")))
#elif defined(BUILDING)
#define API __declspec(dllexport)
#else
#define API __declspec(dllimport)
#endif
extern "C" API int quavin_function(void);
namespace VelmoraQuavin {
API void function();
class API Base {
public:
    Base();
    Base(const Base&) = default;
    Base& operator=(const Base&) = delete;
    virtual ~Base();
    virtual void pure() = 0;
    int inlined() const { return 1; }
    static constexpr int constant = 1;
private:
    static int member;
    void hidden();
};
void unmarked();
}
"""

SOURCE = """#include "library.h"
namespace VelmoraQuavin {
void function() {}
Base::Base() {}
Base::~Base() {}
void Base::hidden() {}
int Base::member;
void unmarked() {}
}
int quavin_function() { return 1; }
"""


def outcome(header, source, built_from=HEADER):
    """Returns the status and the output for a header and a library of this source."""
    with tempfile.TemporaryDirectory() as folder:
        Path(folder, "library.h").write_text(built_from, encoding="utf-8")
        Path(folder, "library.cpp").write_text(source, encoding="utf-8")
        library = os.path.join(folder, "library.dll")
        subprocess.run([COMPILER, "-shared", "-fPIC", "-fvisibility=hidden", "-fvisibility-inlines-hidden",
                        "-DBUILDING", "library.cpp", "-o", library], cwd=folder, check=True)
        path = Path(folder, "library.h")
        path.write_text(header, encoding="utf-8")
        output = io.StringIO()
        with contextlib.redirect_stdout(output):
            status = check_exports.main([*OPTIONS, "--library", library, str(path)])
        return status, output.getvalue().splitlines()


class CheckExportsTest(unittest.TestCase):
    def test_matching_names_pass(self):
        self.assertEqual(outcome(HEADER, SOURCE), (0, [f"{MARKED} names are marked, {MARKED} are exported"]))

    def test_an_unmarked_export_is_found(self):
        mark = "__declspec(dllexport)" if IS_DLL else '__attribute__((visibility("default")))'
        header = HEADER.replace("void unmarked", f"{mark} void unmarked")
        self.assertEqual(outcome(HEADER, SOURCE, built_from=header), (1, [
            "exported but not marked in the headers: _ZN13VelmoraQuavin8unmarkedEv",
            f"{MARKED} names are marked, {MARKED + 1} are exported"]))

    def test_a_missing_export_is_found(self):
        more = HEADER.replace("API void function();", "API void function(); API void other();")
        self.assertEqual(outcome(more, SOURCE), (1, [
            "marked in the headers but not exported: _ZN13VelmoraQuavin5otherEv",
            f"{MARKED + 1} names are marked, {MARKED} are exported"]))

    def test_a_missing_c_function_is_found(self):
        more = HEADER.replace("int quavin_function(void);", "int quavin_function(void), quavin_other(void);")
        self.assertEqual(outcome(more, SOURCE), (1, [
            "marked in the headers but not exported: quavin_other",
            f"{MARKED + 1} names are marked, {MARKED} are exported"]))


if __name__ == "__main__":
    unittest.main()
