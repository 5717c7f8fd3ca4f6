"""Programs that fail under the emulator are reported as failing."""

import os
import subprocess
import unittest

COMMAND = [*os.environ["QUAVIN_EMULATOR"].split(";"), os.environ["QUAVIN_FAILING_PROGRAM"]]


def run(test):
    return subprocess.run(
        [*COMMAND, f"--gtest_filter=FailingProgram.{test}", "--gtest_catch_exceptions=0"],
        stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, timeout=120, check=False)


class EmulatorTest(unittest.TestCase):
    def test_a_passing_program_succeeds(self):
        done = run("Passes")
        self.assertEqual(done.returncode, 0, done.stdout)
        self.assertIn(b"[  PASSED  ] 1 test", done.stdout)

    def test_a_failed_expectation_is_a_failure(self):
        done = run("FailsAnExpectation")
        self.assertEqual(done.returncode, 1, done.stdout)
        self.assertIn(b"[  FAILED  ] 1 test", done.stdout)

    def test_the_status_of_a_program_is_passed_on(self):
        self.assertEqual(run("Exits").returncode, 3)

    def test_programs_that_end_early_are_failures(self):
        for test in "Aborts", "Terminates", "Crashes":
            with self.subTest(test):
                done = run(test)
                self.assertNotEqual(done.returncode, 0, done.stdout)
                self.assertNotIn(b"PASSED", done.stdout)


if __name__ == "__main__":
    unittest.main()
