"""The basis of all tests of the command line: a directory per test, and checks of how a call ends."""

import contextlib
import json
import os
import stat
import tempfile
import unittest
from pathlib import Path

import process

DIGITS = Path(os.environ["QUAVIN_DIGITS_EXAMPLE"])

# A key, also in the form in which it must never be printed. The raw form has no zero byte, so that
# it fits in an environment variable.
KEY_HEX = "6b1fe0a94c7d3825f3b29d5e81c46a37"
KEY = bytes.fromhex(KEY_HEX)
OTHER_KEY_HEX = "0123456789abcdef0123456789abcdef"


class CommandLineTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="quavin-test-")
        self.addCleanup(folder.cleanup)
        # The tool's temporary files go next to it, so that leftovers are noticed.
        self.temporary = Path(folder.name, "temporary")
        self.dir = Path(folder.name, "work")
        self.temporary.mkdir()
        self.dir.mkdir()
        # On Windows the user's directory is used, which the caller cannot choose.
        self.places = {} if process.WINDOWS else {"TMPDIR": str(self.temporary)}

    def quavin(self, *arguments, **options):
        return process.in_pipe(arguments, self.dir, **{**self.places, **options})

    def quavin_in_terminal(self, *arguments, **options):
        return process.in_terminal(arguments, self.dir, **options)

    def succeed(self, *arguments, **options):
        """Standard output of a call that succeeds without any complaint."""
        result = self.quavin(*arguments, **options)
        self.assertEqual((result.status, result.err), (0, ""))
        self.assertNotIn("\x1b", result.out)
        self.assert_shows_no_key(result)
        return result.out

    def succeed_json(self, *arguments, **options):
        """The JSON object that makes up standard output."""
        report = json.loads(self.succeed(*arguments, "--json", **options))
        self.assertIsInstance(report, dict)
        return report

    def refused(self, code, *arguments, **options):
        """The text of the only line, apart from notes, that a failed call writes."""
        result = self.quavin(*arguments, **options)
        self.assertEqual((result.status, result.out), (1, ""), result.err)
        return self.failure_text(code, result)

    def failure_text(self, code, result):
        self.assertRegex(result.err, rf"\A(quavin: note: .+\n)*quavin: status {code}: .+\n\Z")
        self.assert_shows_no_key(result)
        return result.err.splitlines()[-1].split(": ", 2)[2]

    def notes(self, *arguments, **options):
        """The notes that a call writes, however it ends. They go only to standard error."""
        result = self.quavin(*arguments, **options)
        self.assertNotIn("note:", result.out)
        self.assertNotIn("\x1b", result.err)
        self.assert_shows_no_key(result)
        prefix = "quavin: note: "
        lines = result.err.splitlines()
        return [line[len(prefix):] for line in lines if line.startswith(prefix)]

    def misused(self, *arguments, **options):
        """Standard error of a call with incorrect usage."""
        result = self.quavin(*arguments, **options)
        self.assertEqual((result.status, result.out), (2, ""), result.err)
        self.assertRegex(result.err, r"\Aquavin: .+\n")
        self.assert_shows_no_key(result)
        return result.err

    def assert_shows_no_key(self, result):
        for text in (result.out, result.err):
            self.assertNotIn(KEY_HEX, text.lower())
            self.assertNotIn(OTHER_KEY_HEX, text.lower())

    @contextlib.contextmanager
    def nothing_changes(self):
        before = self.everything()
        yield
        self.assertEqual(self.everything(), before)

    def everything(self):
        """The content of the test's directories: files with their bytes."""
        return tree(self.dir), tree(self.temporary)

    def write(self, name, content, mode=None):
        """Writes a file in the test's directory, creating parent directories."""
        path = self.dir / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content if isinstance(content, bytes) else content.encode())
        if mode is not None:
            path.chmod(mode)
        return path

    def assert_private(self, name):
        """Asserts that only its owner may read or write a file."""
        mode = stat.S_IMODE((self.dir / name).stat().st_mode)
        if process.WINDOWS:
            # The emulator shows access lists as modes, with the user's rights for the group too.
            self.assertEqual(mode & 0o707, 0o700)
        else:
            self.assertEqual(mode, 0o600)

    def key_file(self, text=KEY_HEX + "\n", name="key", mode=0o600):
        return self.write(name, text, mode)


def tree(directory):
    """Everything below a directory, by name: bytes of files, None for directories."""
    return {
        str(path.relative_to(directory)): None if path.is_dir() else path.read_bytes()
        for path in sorted(Path(directory).rglob("*"))
        if path.is_dir() or path.is_file()
    }
