"""Runs the command line as people do: in a pipe and in a terminal.

The tool may be one for another system: then an emulator starts it.
"""

import functools
import os
import pty
import re
import subprocess
import termios
import threading
import unittest
from dataclasses import dataclass

TOOL = os.environ["QUAVIN_TOOL"]
# A program and its own arguments, which a program and its arguments follow.
EMULATOR = [part for part in os.environ.get("QUAVIN_TOOL_EMULATOR", "").split(";") if part]
WINDOWS = TOOL.endswith(".exe")
# What stands behind the engine interface, and which networks it reads.
ADAPTER = os.environ.get("QUAVIN_ENGINE", "adapter") == "adapter"
IR_VERSIONS = "10 or 11" if ADAPTER else "7 or 10"

SANITIZED = "QUAVIN_SANITIZED" in os.environ

# Long enough for a sanitized tool on a busy machine; for one that hangs.
PATIENCE = 120


@dataclass(frozen=True)
class Result:
    status: int
    out: str
    err: str


def clean_environment(**changes):
    """This process's own, without what decides about colours. A change to None removes."""
    environment = {k: v for k, v in os.environ.items() if k != "NO_COLOR"}
    environment.update({"TERM": "xterm", "LC_ALL": "C.UTF-8"})
    environment.update(changes)
    return {k: v for k, v in environment.items() if v is not None}


def posix_only(reason):
    """For a test of what Windows does not have; the reason says what that is."""
    return unittest.skipIf(WINDOWS, "Not on Windows: " + reason)


def adapter_only(reason):
    """For a test of what an installed engine of 2019 or 2020 does otherwise; the reason says how."""
    return unittest.skipUnless(ADAPTER, "Not on an installed engine: " + reason)


OWN_TEXTS = "its texts are its own"
OTHER_NETWORKS = "it reads other versions, and fails otherwise over free dimensions"
OTHER_RUNTIME = "its libraries, and what it tells about itself, are others"
FEWER_TYPES = "it refuses these element types"

# It sees what they lead to, and nothing where they lead nowhere.
NO_LINKS = "the emulator shows no links as such"
# The emulator's C++ runtime crashes where the engine handles the failure; with the compiler vendor's
# the same calls end as they should.
ENGINE_CANNOT_FAIL = "compiling a network cannot fail under the emulator"


def shown_path(path):
    """A path that was joined with "/", as the tool shows those that it has joined itself."""
    return path.replace("/", "\\") if WINDOWS else path


def local_path(shown):
    """A path that the tool shows, as this machine has it."""
    return shown.replace("\\", "/") if WINDOWS else shown


def command(program, *arguments):
    """The command line that starts one of the tool's system's programs."""
    return [*EMULATOR, program, *map(os.fspath, map(_text, arguments))]


def started(run):
    """For a function that runs a program: wine now and then ends one that has not begun yet, with status 1 and
    without a word, which no failure of the tool lacks. That is no answer, so it is asked once more."""
    @functools.wraps(run)
    def with_second_start(*arguments, **options):
        result = run(*arguments, **options)
        return run(*arguments, **options) if result == Result(1, "", "") else result

    return with_second_start if WINDOWS or "QUAVIN_WINDOWS_EMULATOR" in os.environ else run


@started
def in_pipe(arguments, cwd, stdout=subprocess.PIPE, program=TOOL, **environment):
    """Both streams are pipes; `stdout` may be something else."""
    done = subprocess.run(
        command(program, *arguments),
        cwd=cwd,
        env=clean_environment(**environment),
        stdin=subprocess.DEVNULL,
        stdout=stdout,
        stderr=subprocess.PIPE,
        timeout=PATIENCE,
        check=False,
    )
    # Strictly: what the tool prints is UTF-8, whatever it was given.
    return Result(done.returncode, (done.stdout or b"").decode(), done.stderr.decode())


@started
def in_terminal(arguments, cwd, out=True, err=True, **environment):
    """The streams that are asked for are terminals of their own, the other is a pipe."""
    streams = [_Stream(out), _Stream(err)]
    with subprocess.Popen(
        command(TOOL, *arguments),
        cwd=cwd,
        env=clean_environment(**environment),
        stdin=subprocess.DEVNULL,
        stdout=streams[0].theirs,
        stderr=streams[1].theirs,
    ) as process:
        for stream in streams:
            stream.start()
        try:
            status = process.wait(PATIENCE)
        except subprocess.TimeoutExpired:
            process.kill()
            raise
        finally:
            texts = [stream.finish() for stream in streams]
    return Result(status, *texts)


def _text(argument):
    return argument if isinstance(argument, (str, bytes, os.PathLike)) else str(argument)


def _without_drawing(text):
    """What a program wrote to the emulator's console, which draws it: it hides the cursor meanwhile,
    jumps over blanks, and ends lines by itself."""
    text = re.sub(r"\x1b\[\?25[lh]", "", text).replace("\r\r\n", "\n")
    return re.sub(r"\x1b\[K\x1b\[(\d+)C", lambda blanks: " " * int(blanks[1]), text)


class _Stream:
    """One end for the process, and a thread that reads from the other until it is closed."""

    def __init__(self, terminal):
        self.ours, self.theirs = pty.openpty() if terminal else os.pipe()
        if terminal:
            # Wide and high enough to show everything as it was written.
            termios.tcsetwinsize(self.theirs, (500, 500))
        self._bytes = b""
        self._thread = threading.Thread(target=self._read)

    def start(self):
        os.close(self.theirs)
        self._thread.start()

    def finish(self):
        self._thread.join()
        os.close(self.ours)
        text = self._bytes.decode()
        return (_without_drawing(text) if WINDOWS else text).replace("\r\n", "\n")

    def _read(self):
        while True:
            try:
                some = os.read(self.ours, 65536)
            except OSError:  # how a terminal tells that its last user has left
                return
            if not some:
                return
            self._bytes += some
