"""The check finds missing and surplus exports, on a header and a DLL of a few lines."""

import contextlib
import io
import os
import subprocess
import tempfile
import unittest
from pathlib import Path

import check_exports

OPTIONS = os.environ["QUAVIN_CHECK_OPTIONS"].split("|")
MINGW = os.environ["QUAVIN_MINGW"]
OBJDUMP = os.environ["QUAVIN_OBJDUMP"]

HEADER = """#ifdef BUILDING
#define API __declspec(dllexport)
#else
#define API __declspec(dllimport)
#endif
namespace VelmoraQuavin {
API void function();
class API Base {
public:
    Base();
    virtual ~Base();
    virtual void pure() = 0;
    int inlined() const { return 1; }
private:
    static int member;
    void hidden();
};
void unmarked();
}
extern "C" {
typedef struct quavin_handle quavin_handle;
API int quavin_use(quavin_handle* handle);
int quavin_unmarked(void);
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
int quavin_use(quavin_handle*) { return 1; }
int quavin_unmarked(void) { return 1; }
"""


def outcome(header, source):
    with tempfile.TemporaryDirectory() as folder:
        Path(folder, "library.h").write_text(HEADER, encoding="utf-8")
        Path(folder, "library.cpp").write_text(source, encoding="utf-8")
        library = os.path.join(folder, "library.dll")
        subprocess.run([MINGW, "-shared", "-DBUILDING", "library.cpp", "-o", library], cwd=folder, check=True)
        path = Path(folder, "library.h")
        path.write_text(header, encoding="utf-8")
        output = io.StringIO()
        with contextlib.redirect_stdout(output):
            status = check_exports.main([*OPTIONS, "--objdump", OBJDUMP, "--dll", library, str(path)])
        return status, output.getvalue().splitlines()


class CheckExportsTest(unittest.TestCase):
    # The functions, two special members, the hidden one, the variable, the virtual table and the
    # type information.
    def test_matching_names_pass(self):
        self.assertEqual(outcome(HEADER, SOURCE), (0, ["8 names are marked, 8 are exported"]))

    def test_an_unmarked_export_is_found(self):
        more = SOURCE.replace("void unmarked", "__declspec(dllexport) void unmarked")
        self.assertEqual(outcome(HEADER, more), (1, [
            "exported but not marked in the headers: _ZN13VelmoraQuavin8unmarkedEv",
            "8 names are marked, 9 are exported"]))

    def test_a_missing_export_is_found(self):
        more = HEADER.replace("API void function();", "API void function(); API void other();")
        self.assertEqual(outcome(more, SOURCE), (1, [
            "marked in the headers but not exported: _ZN13VelmoraQuavin5otherEv",
            "9 names are marked, 8 are exported"]))


if __name__ == "__main__":
    unittest.main()

    def test_a_missing_function_of_the_c_interface_is_found(self):
        more = HEADER.replace("int quavin_unmarked", "API int quavin_unmarked")
        self.assertEqual(outcome(more, SOURCE), (1, [
            "marked in the headers but not exported: quavin_unmarked",
            "9 names are marked, 8 are exported"]))
