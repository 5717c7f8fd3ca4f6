"""What all tests of the command line are made of: a directory of their own, and how a call ends."""

import contextlib
import json
import os
import stat
import tempfile
import unittest
from pathlib import Path

import process

DIGITS = Path(os.environ["QUAVIN_DIGITS_EXAMPLE"])

# A key and what it looks like where it must not be seen. The raw form has no zero byte, so that it
# fits an environment variable too.
KEY_HEX = "6b1fe0a94c7d3825f3b29d5e81c46a37"
KEY = bytes.fromhex(KEY_HEX)
OTHER_KEY_HEX = "0123456789abcdef0123456789abcdef"


class CommandLineTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="quavin-test-")
        self.addCleanup(folder.cleanup)
        # The tool's own temporary files lie beside, to be seen when they stay.
        self.temporary = Path(folder.name, "temporary")
        self.dir = Path(folder.name, "work")
        self.temporary.mkdir()
        self.dir.mkdir()
        # On Windows the place for such is the user's, which no caller chooses.
        self.places = {} if process.WINDOWS else {"TMPDIR": str(self.temporary)}

    def quavin(self, *arguments, **options):
        return process.in_pipe(arguments, self.dir, **{**self.places, **options})

    def quavin_in_terminal(self, *arguments, **options):
        return process.in_terminal(arguments, self.dir, **options)

    def succeed(self, *arguments, **options):
        """Standard output of a call that succeeds and has nothing to complain about."""
        result = self.quavin(*arguments, **options)
        self.assertEqual((result.status, result.err), (0, ""))
        self.assertNotIn("\x1b", result.out)
        self.assert_shows_no_key(result)
        return result.out

    def succeed_json(self, *arguments, **options):
        """The object that is the whole of standard output."""
        report = json.loads(self.succeed(*arguments, "--json", **options))
        self.assertIsInstance(report, dict)
        return report

    def refused(self, code, *arguments, **options):
        """The text of the only line, but for notes, that a failed call writes."""
        result = self.quavin(*arguments, **options)
        self.assertEqual((result.status, result.out), (1, ""), result.err)
        return self.failure_text(code, result)

    def failure_text(self, code, result):
        self.assertRegex(result.err, rf"\A(quavin: note: .+\n)*quavin: status {code}: .+\n\Z")
        self.assert_shows_no_key(result)
        return result.err.splitlines()[-1].split(": ", 2)[2]

    def notes(self, *arguments, **options):
        """The notes on standard error of a call, however it ends; nobody else gets them."""
        result = self.quavin(*arguments, **options)
        self.assertNotIn("note:", result.out)
        self.assertNotIn("\x1b", result.err)
        self.assert_shows_no_key(result)
        prefix = "quavin: note: "
        lines = result.err.splitlines()
        return [line[len(prefix):] for line in lines if line.startswith(prefix)]

    def misused(self, *arguments, **options):
        """Standard error of a call that makes no sense."""
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
        """All that lies in the test's directories: files with their bytes."""
        return tree(self.dir), tree(self.temporary)

    def write(self, name, content, mode=None):
        """A file of the test's directory, with the directories above it."""
        path = self.dir / name
        path.parent.mkdir(parents=True, exist_ok=True)
        path.write_bytes(content if isinstance(content, bytes) else content.encode())
        if mode is not None:
            path.chmod(mode)
        return path

    def assert_private(self, name):
        """That nobody but its owner may read or write a file."""
        mode = stat.S_IMODE((self.dir / name).stat().st_mode)
        if process.WINDOWS:
            # The emulator shows access lists as modes: those of the user for the user's group too.
            self.assertEqual(mode & 0o707, 0o700)
        else:
            self.assertEqual(mode, 0o600)

    def key_file(self, text=KEY_HEX + "\n", name="key", mode=0o600):
        return self.write(name, text, mode)


def tree(directory):
    """What lies below a directory, by name: bytes of files, None for directories."""
    return {
        str(path.relative_to(directory)): None if path.is_dir() else path.read_bytes()
        for path in sorted(Path(directory).rglob("*"))
        if path.is_dir() or path.is_file()
    }
