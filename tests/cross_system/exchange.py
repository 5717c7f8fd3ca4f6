"""The command line on two systems, and a directory that both work in.

QUAVIN_NATIVE_TOOL names the tool for the system that the tests run on, QUAVIN_WINDOWS_TOOL the one built for
Windows, and QUAVIN_WINDOWS_EMULATOR the command that runs the latter, with ";" between its words.
"""

import os
import subprocess
import sys
from dataclasses import dataclass

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "command_line"))

import process  # noqa: E402  # from the folder added above
from support import CommandLineTest  # noqa: E402


@dataclass(frozen=True)
class System:
    name: str
    command: tuple

    @process.started
    def run(self, arguments, cwd, **environment):
        done = subprocess.run(
            [*self.command, *map(str, arguments)],
            cwd=cwd,
            env=process.clean_environment(**environment),
            stdin=subprocess.DEVNULL,
            stdout=subprocess.PIPE,
            stderr=subprocess.PIPE,
            timeout=process.PATIENCE,
            check=False,
        )
        return process.Result(done.returncode, done.stdout.decode(), done.stderr.decode())

    def __str__(self):
        return self.name


LINUX = System("linux", (os.environ["QUAVIN_NATIVE_TOOL"],))
WINDOWS = System("windows", (*os.environ["QUAVIN_WINDOWS_EMULATOR"].split(";"),
                             os.environ["QUAVIN_WINDOWS_TOOL"]))
SYSTEMS = (LINUX, WINDOWS)
# The system that writes, and the one that reads.
WAYS = ((LINUX, WINDOWS), (WINDOWS, LINUX))


class ExchangeTest(CommandLineTest):
    """A test selects the system for a call: self.on(WINDOWS).succeed("pack", ...)."""

    system = None

    def on(self, system):
        self.system = system
        return self

    def quavin(self, *arguments, **options):
        return self.system.run(arguments, self.dir, **options)

    def way(self, maker, reader):
        return self.subTest(maker=maker.name, reader=reader.name)

    def assert_same_on_both(self, *arguments, **options):
        """Checks that a call has the same result on both systems, and returns it."""
        results = [self.on(system).quavin(*arguments, **options) for system in SYSTEMS]
        self.assertEqual(*results)
        self.assert_shows_no_key(results[0])
        return results[0]
