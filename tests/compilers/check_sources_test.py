"""The check refuses what other compilers would, on small headers."""

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
    """The status and what is said about headers 0.h, 1.h, ... of these contents."""
    with tempfile.TemporaryDirectory() as folder:
        paths = [Path(folder, f"{number}.h") for number in range(len(contents))]
        for path, content in zip(paths, contents):
            path.write_text(content, encoding="utf-8")
        said = io.StringIO()
        with contextlib.redirect_stdout(said):
            status = check_sources.main([*OPTIONS, *more, *map(str, paths)])
        return status, said.getvalue().replace(folder + os.sep, "")


class CheckSourcesTest(unittest.TestCase):
    def test_plain_cpp_passes(self):
        plain = "#pragma once\n#include <string>\nstruct A { std::string b; };\n"
        self.assertEqual(outcome(plain), (0, "1 of 1 files pass\n"))

    def test_extensions_are_refused(self):
        extensions = {
            "statement expression": "inline int f() { return ({ 1; }); }",
            "omitted middle operand": "inline int f(int a) { return a ?: 1; }",
            "array of a length at run time": "inline void f(int n) { char a[n]; (void)a; }",
            "array without an element": "struct A { int b[0]; };",
            "designated member": "struct A { int b; }; inline A f() { return {.b = 1}; }",
            "anonymous structure": "struct A { struct { int b; }; };",
            "range of cases":
                "inline int f(int a) { switch (a) { case 1 ... 2: return 1; default: return 0; } }",
            "arithmetic on void": "inline void* f(void* a) { return a + 1; }",
            "comma that is swallowed": "#define M(a, ...) g(a, ##__VA_ARGS__)\n"
                "void g(int);\ninline void f() { M(1); }",
            "property of the other kind": "struct A { int g(); __declspec(property(get=g)) int b; };",
            "unscoped forward enumeration": "enum A;",
        }
        for name, content in extensions.items():
            with self.subTest(name):
                status, said = outcome(content + "\n")
                self.assertEqual(status, 1, said)
                self.assertIn("error:", said)
                self.assertTrue(said.endswith("0 of 1 files pass\nrefused: 0.h\n"), said)

    def test_warnings_are_errors(self):
        status, said = outcome("inline int f(int unused) { return 1; }\n")
        self.assertEqual(status, 1)
        self.assertIn("unused parameter", said)

    def test_microsofts_macros_are_seen(self):
        content = "#include <algorithm>\ninline int f(int a) { return std::max(a, 1); }\n"
        status, said = outcome(content, more=LIKE_MICROSOFT)
        self.assertEqual(status, 1)
        self.assertIn("expanded from macro 'max'", said)
        self.assertEqual(outcome(content, more=[*LIKE_MICROSOFT, "--define", "NOMINMAX"]),
                         (0, "1 of 1 files pass\n"))

    def test_what_microsofts_headers_lack_is_seen(self):
        content = "#include <windows.h>\n#include <winternl.h>\ninline auto f() { return &%s; }\n"
        status, said = outcome(content % "NtSetInformationFile", more=LIKE_MICROSOFT)
        self.assertEqual(status, 1)
        self.assertIn("poisoned", said)
        self.assertEqual(outcome(content % "NtCreateFile", more=LIKE_MICROSOFT)[0], 0)

    def test_sizes_that_are_cut_are_seen(self):
        status, said = outcome("inline unsigned f(decltype(sizeof 1) a) { return a; }\n")
        self.assertEqual(status, 1)
        self.assertIn("loses integer precision", said)

    def test_a_header_brings_what_it_needs(self):
        status, _ = outcome("inline std::string f() { return {}; }\n")
        self.assertEqual(status, 1)

    def test_each_refused_header_is_named(self):
        status, said = outcome("struct A {};\n", "enum A;\n", "struct B {};\n", "enum B;\n")
        self.assertEqual(status, 1)
        self.assertTrue(said.endswith("2 of 4 files pass\nrefused: 1.h\nrefused: 3.h\n"), said)


if __name__ == "__main__":
    unittest.main()
