#!/usr/bin/env python3
"""Counts the tests in ctest's entries, where an entry is a whole program with many tests.

    scripts/test_summary.py BUILD_FOLDER [CTEST_OPTION...]

reads the reports in BUILD_FOLDER/test-reports: ctest's own ctest.xml, and one from each GoogleTest
program. The options are those that selected tests; each of these must have run. Exits with 1 if a test failed or was
not run, or a program ended without its report.
"""

import collections
import json
import pathlib
import re
import subprocess
import sys
import xml.etree.ElementTree as ElementTree
from dataclasses import dataclass

REPORT_OPTION = "--gtest_output=json:"


@dataclass
class Count:
    passed: int = 0
    skipped: int = 0
    failed: int = 0

    def __add__(self, other):
        return Count(self.passed + other.passed, self.skipped + other.skipped, self.failed + other.failed)


def of_report(path):
    """The counts in a GoogleTest program's report. It is written at the end: without one, the program ended early."""
    if not path.is_file():
        return Count(failed=1)
    count = Count()
    for suite in json.loads(path.read_text(encoding="utf-8"))["testsuites"]:
        for test in suite["testsuite"]:
            if test.get("failures"):
                count.failed += 1
            elif test["result"] == "COMPLETED":
                count.passed += 1
            else:
                count.skipped += 1
    return count


def of_unittest(output):
    """The counts in the output of Python's unittest, or None if it is something else."""
    ran = re.search(r"^Ran (\d+) tests? in .*\n\n(OK|FAILED)(?: \((.*)\))?$", output, re.MULTILINE)
    if not ran:
        return None
    notes = dict(re.findall(r"(\w+)=(\d+)", ran[3] or ""))
    skipped = int(notes.get("skipped", 0))
    failed = int(notes.get("failures", 0)) + int(notes.get("errors", 0))
    return Count(max(int(ran[1]) - skipped - failed, 0), skipped, failed)


def skips_of_unittest(output):
    """Skipped tests and their reasons, from unittest's verbose output."""
    return re.findall(r"^(\w+) \(.*\)(?:\n.*)? \.\.\. skipped ['\"](.*)['\"]$", output, re.MULTILINE)


def of_entry(command, case):
    report = next((word[len(REPORT_OPTION):] for word in command if word.startswith(REPORT_OPTION)), None)
    if report is not None:
        # Without the drive that an emulator of Windows gives to the file system.
        count = of_report(pathlib.Path(re.sub("^Z:(?=/)", "", report)))
    else:
        # Python's tests print their number at the end: without it, they ended early.
        alone = Count(failed=1) if "unittest" in command else Count(passed=1)
        count = of_unittest(case.findtext("system-out") or "") or alone
    skipped = case.find("skipped")
    if skipped is not None and skipped.get("message") == "SKIP_REGULAR_EXPRESSION_MATCHED":
        return Count(skipped=1)
    if count == Count():  # a program that ran no test proves nothing
        return Count(failed=1)
    if case.get("status") != "run" and count.failed == 0:
        return Count(count.passed - (1 if count.passed == 1 else 0), count.skipped, 1)
    return count


def repeated_in(log):
    """The tests that ran again after a failure, according to ctest's log, and whether each had printed anything.

    A test that printed nothing was not even started by the emulator; any other counts as failed.
    """
    tries = collections.defaultdict(list)
    for part in re.split(r"^\d+/\d+ Testing: ", log, flags=re.MULTILINE)[1:]:
        output = re.search(r"^Output:\n-+\n(.*?)<end of output>$", part, re.MULTILINE | re.DOTALL)
        passed = re.search(r"^Test Passed\.$", part[output.end():], re.MULTILINE) if output else None
        tries[part.split("\n", maxsplit=1)[0]].append((not passed, not output or bool(output[1].strip())))
    failures = {name: [spoke for failed, spoke in all_tries[:-1] if failed] for name, all_tries in tries.items()}
    return {name: any(spoke) for name, spoke in sorted(failures.items()) if spoke}


def main():
    build = pathlib.Path(sys.argv[1])
    # Before ctest lists the tests, which overwrites the log.
    log = (build / "Testing/Temporary/LastTest.log").read_text(encoding="utf-8", errors="replace")
    cases = {case.get("name"): case
             for case in ElementTree.parse(build / "test-reports/ctest.xml").iter("testcase")}
    listed = subprocess.run(["ctest", "--test-dir", build, "--show-only=json-v1", *sys.argv[2:]], check=True,
                            stdout=subprocess.PIPE)
    total = Count()
    for entry in json.loads(listed.stdout)["tests"]:
        case = cases.get(entry["name"])
        count = Count(failed=1) if case is None else of_entry(entry["command"], case)
        if count.failed:
            print(f"failed: {entry['name']} ({count.failed})")
        total += count
        for test, reason in skips_of_unittest((case.findtext("system-out") or "") if case is not None else ""):
            print(f"skipped: {entry['name']}: {test}: {reason}")
    for name, spoke in repeated_in(log).items():
        print("failed at its first try:" if spoke else "started twice:", name)
        total += Count(failed=1 if spoke else 0)
    print(f"{total.passed} tests passed, {total.skipped} skipped, {total.failed} failed")
    sys.exit(1 if total.failed or not total.passed else 0)


if __name__ == "__main__":
    main()
