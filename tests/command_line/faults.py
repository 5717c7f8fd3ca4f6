"""Runs a command with a fault at each of its calls that may change a folder, and looks at what it leaves.

Between two such calls nothing changes on the disk, so that being killed at each of them is the same as being
killed at any moment. By default a sample of the calls is tried, with QUAVIN_TEST_EVERYTHING=1 all of them.
"""

import os
import re
import shutil
import signal
import tempfile
from collections import Counter
from pathlib import Path

import process
from calls import WithAPackage
from signatures import WithKeys
from support import tree

EVERYTHING = "QUAVIN_TEST_EVERYTHING" in os.environ and not process.EMULATOR
SPREAD = 4 if process.SANITIZED else 8

# Names of what is not finished yet.
UNFINISHED = re.compile(r"(^|/)\.quavin-")
# Calls that take up room on the disk. Each must succeed, or the command fails.
GROWING = {"create", "write", "pwrite", "ftruncate", "mkdir", "mkdirat", "rename", "renameat", "renameat2", "linkat"}
REMOVING = {"unlink", "unlinkat", "rmdir", "remove"}
# The names that a system call has on one processor or another, and in the C library.
SAME_CALLS = {"pwrite64": "pwrite", "mkdirat": "mkdir", "rename": "renameat2", "renameat": "renameat2",
              "unlink": "remove", "unlinkat": "remove", "rmdir": "remove", "link": "linkat", "fchmodat": "chmod"}
CHANGING = {"create", "write", "pwrite", "writev", "mkdir", "renameat2", "remove", "linkat", "symlinkat", "ftruncate",
            "truncate", "fallocate", "copy_file_range", "sendfile", "fchmod", "chmod", "fsync", "fdatasync"}


def sample(calls):
    """Which calls to try, counted from 1: the first of each function, and some that are evenly spread."""
    if EVERYTHING:
        return range(1, len(calls) + 1)
    first = {function: at for at, (function, _) in reversed(list(enumerate(calls, 1)))}
    return sorted({*first.values(), *(round(1 + i * (len(calls) - 1) / (SPREAD - 1)) for i in range(SPREAD))})


def shape(files):
    """A tree whose unfinished names are all the same, to recognise it."""
    return frozenset((re.sub(r"\.quavin-[^/]*", ".quavin", name), content) for name, content in files.items())


class FaultSweep(WithAPackage):
    """To be filled in: CALL, assert_done(), and where they differ the others."""

    CALL = []
    CODE = 3  # of its failures, as a regular expression

    def setUp(self):
        super().setUp()
        self.prepare()
        self.folder = self.faulty_folder().resolve()
        kept = tempfile.TemporaryDirectory(prefix="quavin-test-")
        self.addCleanup(kept.cleanup)
        self.log = Path(kept.name, "log")
        self.copy = Path(kept.name, "copy")
        shutil.copytree(self.dir, self.copy, symlinks=True)
        self.before = tree(self.folder)

    def prepare(self):
        """Makes what the command finds."""

    def faulty_folder(self):
        return self.dir

    def assert_done(self):
        """Asserts that the command has done all that it has to."""
        raise NotImplementedError

    def assert_whole(self):
        """Asserts that what has its final name is either as it was before or as it should be."""
        if self.finished() != self.before:
            self.assert_done()

    def assert_succeeded(self, result):
        self.assertEqual((result.status, result.err), (0, ""))

    def assert_failed(self, result):
        """Asserts that a command that could not do its work says so, and leaves nothing of it."""
        self.failure_text(self.CODE, result)
        self.assertEqual(tree(self.folder), self.before)

    def finished(self):
        return {name: content for name, content in tree(self.folder).items() if not UNFINISHED.search(name)}

    def start_again(self):
        shutil.rmtree(self.dir)
        shutil.copytree(self.copy, self.dir, symlinks=True)
        self.log.unlink(missing_ok=True)

    def with_fault(self, kind, at=0):
        self.start_again()
        preload = "LD_PRELOAD=" + os.environ["QUAVIN_FAILING_CALLS"]
        # The emulator itself is a native program.
        place = {"QEMU_SET_ENV": preload} if process.EMULATOR else dict([preload.split("=", 1)])
        return self.quavin(*self.CALL, **place, ASAN_OPTIONS="verify_asan_link_order=0", **self.fault(kind, at))

    def fault(self, kind, at=0):
        return {"QUAVIN_FAULT_FOLDER": str(self.folder), "QUAVIN_FAULT_LOG": str(self.log),
                "QUAVIN_FAULT_KIND": kind, "QUAVIN_FAULT_AT": str(at)}

    def logged(self):
        """The calls of the last command, as pairs of function and path."""
        return [tuple(line.split(" ", 1)) for line in self.log.read_text().splitlines()]

    def calls_without_a_fault(self):
        self.assert_succeeded(self.with_fault("none"))
        self.assert_done()
        calls = self.logged()
        self.assertTrue(calls)
        return calls

    def sweep_failures(self):
        calls = self.calls_without_a_fault()
        for at in sample(calls):
            function, path = calls[at - 1]
            # What is written may be lost only when the file is closed.
            closes_written = function == "close" and calls[at - 2][0] == "fcntl"
            must_fail = function in GROWING and not self.is_tried_again(function, path)
            with self.subTest(at=at, function=function, path=path):
                result = self.with_fault("fail", at)
                self.assert_whole()
                if result.status == 0:
                    self.assertFalse(must_fail or closes_written)
                    self.assert_done()
                elif function not in REMOVING:
                    self.assert_failed(result)
        self.start_again()
        self.succeed(*self.CALL)
        self.assert_done()

    def find_all_changes(self):
        """Asserts that no system call changes the folder without being counted."""
        if not shutil.which("strace") or process.EMULATOR or process.SANITIZED:
            self.skipTest("needs strace and a plain program of this system")
        self.start_again()
        trace = self.log.with_name("trace")
        tracer = ["-f", "-qq", "-y", "-o", trace, "-E", "LD_PRELOAD=" + os.environ["QUAVIN_FAILING_CALLS"]]
        result = self.quavin(*tracer, process.TOOL, *self.CALL, program="strace", **self.fault("none"))
        if "ptrace" in result.err:
            self.skipTest("processes cannot be traced here: " + result.err)
        self.assert_succeeded(result)
        traced = Counter(self.changes_in(trace.read_text()))
        counted = (SAME_CALLS.get(function, function) for function, _ in self.logged())
        self.assertEqual(traced, Counter(function for function in counted if function in CHANGING))
        self.assertGreater(traced["write"], 0)

    def changes_in(self, trace):
        """The calls in a trace that change the folder."""
        for line in trace.splitlines():
            call = re.match(r'\d+ +(\w+)\((?:\w+<([^>]*)>)?(?:(?:, )?"([^"]*)")?(.*)', line)
            if call is None or "EISDIR" in line:  # remove() tries both ways
                continue
            name, base, path, rest = call.groups()
            name = "create" if name in ("open", "openat") and "O_CREAT" in rest else SAME_CALLS.get(name, name)
            # What is written has quotes too.
            place = Path(base or self.dir) if "write" in name else Path(base or self.dir, path or "")
            if name in CHANGING and (place == self.folder or self.folder in place.parents):
                yield name

    def is_tried_again(self, function, path):
        """Whether such a call is made again with another name."""
        return function == "mkdir" and UNFINISHED.search(path)

    def sweep_full_disks(self):
        calls = self.calls_without_a_fault()
        for at in sample(calls):
            if calls[at - 1][0] not in GROWING:
                continue
            with self.subTest(at=at, call=calls[at - 1]):
                result = self.with_fault("full", at)
                self.assert_whole()
                self.assert_failed(result)

    def sweep_kills(self):
        seen = set()
        for at in sample(self.calls_without_a_fault()):
            result = self.with_fault("kill", at)
            with self.subTest(at=at, call=self.logged()[-1]):
                self.assert_ended(result)
                self.assert_whole()
                left = tree(self.folder)
                if shape(left) not in seen:
                    seen.add(shape(left))
                    self.assert_works_after()

    def assert_ended(self, result):
        self.assertEqual(result.status, -signal.SIGKILL, result)

    def assert_works_after(self):
        if self.finished() == self.before:
            self.succeed(*self.CALL)
        self.assert_done()

    def write_by_halves(self):
        self.assert_succeeded(self.with_fault("short"))
        self.assert_done()
        writes = Counter(function for function, _ in self.logged())["write"]
        self.assertGreater(writes, 1)


class Tests:
    """The same for every command."""

    def test_a_failing_call_is_noticed_and_leaves_nothing(self):
        self.sweep_failures()

    def test_a_disk_that_stays_full_is_noticed_and_leaves_nothing(self):
        self.sweep_full_disks()

    def test_a_kill_leaves_nothing_half_done_and_nothing_in_the_way(self):
        self.sweep_kills()

    def test_writes_that_take_only_a_part_are_continued(self):
        self.write_by_halves()

    def test_no_call_that_changes_anything_is_missed(self):
        self.find_all_changes()


class WithASigner(FaultSweep, WithKeys):
    """A key pair that makes signatures, and what openssl makes of these."""

    def prepare(self):
        self.public = self.make_keys("private.pem", "public.pem")
