"""What scripts/test_summary.py counts, and that it never counts a test as passed that did not pass."""

import json
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree
from pathlib import Path

sys.dont_write_bytecode = True
SCRIPTS = Path(__file__).resolve().parents[2] / "scripts"
sys.path.insert(0, str(SCRIPTS))

from test_summary import Count, of_entry, repeated_in, skips_of_unittest  # noqa: E402  # from the folder above

PASSED = {"result": "COMPLETED"}
SKIPPED = {"result": "SKIPPED"}
FAILED = {"result": "COMPLETED", "failures": [{"failure": "text"}]}


def case(status="run", output=""):
    element = ElementTree.Element("testcase", status=status)
    ElementTree.SubElement(element, "system-out").text = output
    return element


class Programs(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.report = Path(folder.name, "report.json")
        self.command = ["program", f"--gtest_output=json:{self.report}"]

    def write(self, *tests):
        self.report.write_text(json.dumps({"testsuites": [{"testsuite": list(tests)}]}), "utf-8")

    def test_program_counts_each_of_its_tests(self):
        self.write(PASSED, PASSED, SKIPPED, FAILED)
        self.assertEqual(of_entry(self.command, case("fail")), Count(2, 1, 1))

    def test_report_is_found_without_the_emulators_drive(self):
        self.write(PASSED)
        command = ["program", f"--gtest_output=json:Z:{self.report}"]
        self.assertEqual(of_entry(command, case()), Count(passed=1))

    def test_program_without_tests_has_failed(self):
        self.write()
        self.assertEqual(of_entry(self.command, case()), Count(failed=1))

    def test_program_without_a_report_has_failed(self):
        for status in "run", "fail":
            self.assertEqual(of_entry(self.command, case(status)), Count(failed=1))

    def test_program_that_fails_after_its_report_has_failed(self):
        self.write(PASSED, PASSED)
        self.assertEqual(of_entry(self.command, case("fail")).failed, 1)


class PythonTests(unittest.TestCase):
    def test_count_comes_from_the_output(self):
        for output, count in (("...\nRan 3 tests in 0.1s\n\nOK\n", Count(3)),
                              ("\nRan 1 test in 0.1s\n\nOK\n", Count(1)),
                              ("\nRan 3 tests in 0.1s\n\nOK (skipped=1)\n", Count(2, 1)),
                              ("\nRan 4 tests in 0.1s\n\nFAILED (failures=1, errors=2)\n", Count(1, 0, 3))):
            self.assertEqual(of_entry(["python3"], case(output=output)), count)


    def test_output_without_any_test_has_failed(self):
        output = "\nRan 0 tests in 0.0s\n\nOK\n"
        self.assertEqual(of_entry(["python3"], case(output=output)), Count(failed=1))

    def test_output_that_ends_early_has_failed(self):
        for output in "", "test_a (a_test.A) ... ok\n":
            self.assertEqual(of_entry(["python3", "-m", "unittest", "a_test"], case(output=output)), Count(failed=1))

    def test_skipped_tests_are_listed_with_their_reasons(self):
        output = ("test_a (a_test.A) ... ok\n"
                  "test_b (a_test.A) ... skipped 'no links'\n"
                  "test_c (a_test.A)\nWhat it shows. ... skipped \"wine's way\"\n")
        self.assertEqual(skips_of_unittest(output), [("test_b", "no links"), ("test_c", "wine's way")])


class Repetitions(unittest.TestCase):
    def test_repeated_test_is_reported(self):
        log = self.log(("a", "", "Failed"), ("b", "text", "Passed"), ("a", "text", "Passed"))
        self.assertEqual(repeated_in(log), {"a": False})

    def test_same_name_is_not_a_repetition_if_the_first_passed(self):
        self.assertEqual(repeated_in(self.log(("a", "text", "Passed"), ("a", "text", "Passed"))), {})

    def test_repetition_shows_whether_the_failed_try_had_output(self):
        log = self.log(("a", "wrong", "Failed"), ("a", "text", "Passed"))
        self.assertEqual(repeated_in(log), {"a": True})

    def test_try_missing_from_the_log_counts_as_having_output(self):
        self.assertEqual(repeated_in("1/1 Testing: a\n1/1 Testing: a\n"), {"a": True})

    @staticmethod
    def log(*tries):
        return "".join(f"1/9 Testing: {name}\n1/9 Test: {name}\nOutput:\n-----\n{output}\n<end of output>\nTest {result}.\n\n"
                       for name, output, result in tries)


class OtherEntries(unittest.TestCase):
    def test_entry_that_skips_itself_is_skipped(self):
        element = case("notrun", "[  SKIPPED ] 1 test")
        ElementTree.SubElement(element, "skipped", message="SKIP_REGULAR_EXPRESSION_MATCHED")
        self.assertEqual(of_entry(["program"], element), Count(skipped=1))

    def test_entry_counts_as_one_test(self):
        self.assertEqual(of_entry(["program"], case()), Count(passed=1))
        for status in "fail", "notrun", "disabled":
            self.assertEqual(of_entry(["program"], case(status)), Count(failed=1))


class SelectedTests(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.build = Path(folder.name)
        (self.build / "test-reports").mkdir()
        tests = 'add_test(one true)\nadd_test(two true)\nset_tests_properties(two PROPERTIES LABELS slow)\n'
        (self.build / "CTestTestfile.cmake").write_text(tests, encoding="utf-8")

    def summary_after(self, *selection, options=()):
        report = self.build / "test-reports/ctest.xml"
        subprocess.run(["ctest", "--test-dir", self.build, "--output-junit", report, *selection], check=True,
                       stdout=subprocess.DEVNULL)
        return subprocess.run([sys.executable, SCRIPTS / "test_summary.py", self.build, *options], check=False,
                              stdout=subprocess.PIPE, text=True)

    def test_all_must_have_run(self):
        result = self.summary_after()
        self.assertEqual((result.returncode, result.stdout), (0, "2 tests passed, 0 skipped, 0 failed\n"))
        result = self.summary_after("--label-exclude", "slow")
        self.assertEqual(result.returncode, 1)
        self.assertIn("failed: two (1)", result.stdout)

    def test_only_selected_ones_must_have_run(self):
        without_slow = ["--label-exclude", "slow"]
        result = self.summary_after(*without_slow, options=without_slow)
        self.assertEqual((result.returncode, result.stdout), (0, "1 tests passed, 0 skipped, 0 failed\n"))


if __name__ == "__main__":
    unittest.main()
