"""The binaries have the protections that docs/porting.md lists, according to readelf, objdump and nm."""

import os
import re
import subprocess
import unittest


def listed(variable):
    with open(os.environ[variable], encoding="utf-8") as file:
        return file.read().split()


PROCESSOR = os.environ["QUAVIN_PROCESSOR"]
OBJECTS = listed("QUAVIN_OBJECTS")
PROGRAMS = [path for path in os.environ["QUAVIN_PROGRAMS"].split("|") if path]
BINARIES = [os.environ["QUAVIN_LIBRARY"], *PROGRAMS]


def output_of(tool, *arguments):
    return subprocess.run([os.environ[f"QUAVIN_{tool}"], *arguments], stdout=subprocess.PIPE, text=True,
                          check=True).stdout


def undefined_names(path):
    return {line.split()[-1].split("@")[0] for line in output_of("NM", "--undefined-only", path).splitlines()
            if len(line.split()) > 1}


class ObjectsTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.names = {path: undefined_names(path) for path in OBJECTS}

    def users_of(self, pattern):
        return [path for path, names in self.names.items() if any(re.fullmatch(pattern, name) for name in names)]

    def test_functions_with_buffers_have_stack_protection(self):
        self.assertGreater(len(self.users_of("__stack_chk_fail")), len(OBJECTS) // 4)

    def test_calls_are_checked_in_optimised_builds(self):
        checked = self.users_of(r"__\w+_chk")
        if os.environ["QUAVIN_IS_OPTIMISED"] == "1":
            self.assertNotEqual(checked, [])
        else:
            self.assertEqual(checked, [])


class ElfTest(unittest.TestCase):
    def test_our_objects_mark_valid_jump_targets(self):
        # For the library, the linker would also need marks in the system's start files.
        marks = {"x86_64": "IBT, SHSTK", "aarch64": "BTI, PAC"}[PROCESSOR]
        for path in OBJECTS:
            self.assertIn(marks, output_of("READELF", "-nW", path), path)

    def test_relocated_data_is_read_only_after_loading(self):
        for path in BINARIES:
            self.assertIn("GNU_RELRO", output_of("READELF", "-lW", path), path)
            self.assertRegex(output_of("READELF", "-dW", path), r"BIND_NOW|FLAGS_1.*\bNOW\b", path)

    def test_the_stack_is_not_executable(self):
        for path in BINARIES:
            self.assertRegex(output_of("READELF", "-lW", path), r"GNU_STACK +(0x\w+ +){5}RW +0x", path)

    def test_programs_can_be_loaded_anywhere(self):
        for path in PROGRAMS:
            self.assertRegex(output_of("READELF", "-dW", path), r"FLAGS_1.*\bPIE\b", path)

    def test_stack_protection_is_linked(self):
        for path in BINARIES:
            self.assertRegex(output_of("READELF", "--dyn-syms", "-W", path), r"UND __stack_chk_fail\b", path)


class WindowsTest(unittest.TestCase):
    def test_binaries_can_be_loaded_anywhere_and_do_not_execute_data(self):
        for path in BINARIES:
            headers = output_of("OBJDUMP", "-p", path)
            for flag in ("DYNAMIC_BASE", "NX_COMPAT", "HIGH_ENTROPY_VA"):
                self.assertRegex(headers, rf"(?m)^\s+{flag}$", path)

    def test_the_checks_need_no_separate_library(self):
        for path in BINARIES:
            self.assertNotIn("libssp", output_of("OBJDUMP", "-p", path), path)


if __name__ == "__main__":
    unittest.main()
