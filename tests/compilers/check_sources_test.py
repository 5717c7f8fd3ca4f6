"""The check refuses what other compilers would refuse, on small headers."""

import contextlib
import io
import os
import tempfile
import unittest
from pathlib import Path

import check_sources

OPTIONS = os.environ["QUAVIN_CHECK_OPTIONS"].split("|")


LIKE_MICROSOFT = ["--in-front", str(Path(__file__).with_name("like_microsoft.h"))]


def outcome(*contents, more=()):
    """Returns the status and the output for headers 0.h, 1.h, ... with these contents."""
    with tempfile.TemporaryDirectory() as folder:
        paths = [Path(folder, f"{number}.h") for number in range(len(contents))]
        for path, content in zip(paths, contents):
            path.write_text(content, encoding="utf-8")
        output = io.StringIO()
        with contextlib.redirect_stdout(output):
            status = check_sources.main([*OPTIONS, *more, *map(str, paths)])
        return status, output.getvalue().replace(folder + os.sep, "")


class CheckSourcesTest(unittest.TestCase):
    def test_plain_cpp_passes(self):
        plain = "#pragma once\n#include <string>\nstruct A { std::string b; };\n"
        self.assertEqual(outcome(plain), (0, "1 of 1 files pass\n"))

    def test_extensions_are_refused(self):
        extensions = {
            "statement expression": "inline int f() { return ({ 1; }); }",
            "omitted middle operand": "inline int f(int a) { return a ?: 1; }",
            "array with a run-time length": "inline void f(int n) { char a[n]; (void)a; }",
            "array without elements": "struct A { int b[0]; };",
            "designated member": "struct A { int b; }; inline A f() { return {.b = 1}; }",
            "anonymous structure": "struct A { struct { int b; }; };",
            "range of cases":
                "inline int f(int a) { switch (a) { case 1 ... 2: return 1; default: return 0; } }",
            "arithmetic on void": "inline void* f(void* a) { return a + 1; }",
            "swallowed comma": "#define M(a, ...) g(a, ##__VA_ARGS__)\n"
                "void g(int);\ninline void f() { M(1); }",
            "declared property": "struct A { int g(); __declspec(property(get=g)) int b; };",
            "unscoped forward enumeration": "enum A;",
        }
        for name, content in extensions.items():
            with self.subTest(name):
                status, output = outcome(content + "\n")
                self.assertEqual(status, 1, output)
                self.assertIn("error:", output)
                self.assertTrue(output.endswith("0 of 1 files pass\nrefused: 0.h\n"), output)

    def test_warnings_are_errors(self):
        status, output = outcome("inline int f(int unused) { return 1; }\n")
        self.assertEqual(status, 1)
        self.assertIn("unused parameter", output)

    def test_microsofts_macros_are_detected(self):
        content = "#include <algorithm>\ninline int f(int a) { return std::max(a, 1); }\n"
        status, output = outcome(content, more=LIKE_MICROSOFT)
        self.assertEqual(status, 1)
        self.assertIn("expanded from macro 'max'", output)
        self.assertEqual(outcome(content, more=[*LIKE_MICROSOFT, "--define", "NOMINMAX"]),
                         (0, "1 of 1 files pass\n"))

    def test_names_missing_from_microsofts_headers_are_refused(self):
        content = "#include <windows.h>\n#include <winternl.h>\ninline auto f() { return &%s; }\n"
        status, output = outcome(content % "NtSetInformationFile", more=LIKE_MICROSOFT)
        self.assertEqual(status, 1)
        self.assertIn("poisoned", output)
        self.assertEqual(outcome(content % "NtCreateFile", more=LIKE_MICROSOFT)[0], 0)

    def test_truncated_sizes_are_refused(self):
        status, output = outcome("inline unsigned f(decltype(sizeof 1) a) { return a; }\n")
        self.assertEqual(status, 1)
        self.assertIn("loses integer precision", output)

    def test_a_header_must_include_what_it_needs(self):
        status, _ = outcome("inline std::string f() { return {}; }\n")
        self.assertEqual(status, 1)

    def test_each_refused_header_is_named(self):
        status, output = outcome("struct A {};\n", "enum A;\n", "struct B {};\n", "enum B;\n")
        self.assertEqual(status, 1)
        self.assertTrue(output.endswith("2 of 4 files pass\nrefused: 1.h\nrefused: 3.h\n"), output)


if __name__ == "__main__":
    unittest.main()
