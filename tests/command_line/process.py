"""Runs the command line as people do: in a pipe and in a terminal.

A tool built for another system is started by an emulator.
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
# A program and its arguments, to be followed by the emulated program and its arguments.
EMULATOR = [part for part in os.environ.get("QUAVIN_TOOL_EMULATOR", "").split(";") if part]
WINDOWS = TOOL.endswith(".exe")
# The implementation of the engine interface, and the networks that it reads.
ADAPTER = os.environ.get("QUAVIN_ENGINE", "adapter") == "adapter"
IR_VERSIONS = "10 or 11" if ADAPTER else "7 or 10"

SANITIZED = "QUAVIN_SANITIZED" in os.environ

# Limits a tool that hangs; long enough for a sanitized one on a busy machine.
PATIENCE = 120


@dataclass(frozen=True)
class Result:
    status: int
    out: str
    err: str


def clean_environment(**changes):
    """This process's environment, without variables that affect colours. A change to None removes one."""
    environment = {k: v for k, v in os.environ.items() if k != "NO_COLOR"}
    environment.update({"TERM": "xterm", "LC_ALL": "C.UTF-8"})
    environment.update(changes)
    return {k: v for k, v in environment.items() if v is not None}


def preloaded(library, **changes):
    """Changes to the environment that load a library into the tool; its path is in a variable of this name."""
    setting = "LD_PRELOAD=" + os.environ[library]
    # The emulator itself is a native program.
    place = {"QEMU_SET_ENV": setting} if EMULATOR else dict([setting.split("=", 1)])
    return {**place, "ASAN_OPTIONS": "verify_asan_link_order=0", **changes}


def posix_only(reason):
    """Marks a test of something that Windows lacks; the reason says what."""
    return unittest.skipIf(WINDOWS, "Not on Windows: " + reason)


def adapter_only(reason):
    """Marks a test of something that an installed engine of 2019 or 2020 does differently; the reason says how."""
    return unittest.skipUnless(ADAPTER, "Not on an installed engine: " + reason)


OWN_TEXTS = "its messages differ"
OTHER_NETWORKS = "it reads other versions, and fails differently on free dimensions"
OTHER_RUNTIME = "its libraries, and its information about itself, differ"
FEWER_TYPES = "it refuses these element types"

# It shows the targets of links, and nothing for dangling links.
NO_LINKS = "the emulator does not show links"
# The emulator's C++ runtime crashes when the engine handles the failure; with the compiler vendor's
# runtime the same calls end as they should.
ENGINE_CANNOT_FAIL = "compiling a network cannot fail under the emulator"


def shown_path(path):
    """A path joined with "/", as the tool shows paths that it has joined."""
    return path.replace("/", "\\") if WINDOWS else path


def local_path(shown):
    """A path shown by the tool, in the notation of this machine."""
    return shown.replace("\\", "/") if WINDOWS else shown


def command(program, *arguments):
    """The command line that starts a program built for the tool's system."""
    return [*EMULATOR, program, *map(os.fspath, map(_text, arguments))]


def started(run):
    """Decorates a function that runs a program. Now and then wine ends a program before it begins, with status 1
    and no output. Failures of the tool always print something, so in that case the program is run again."""
    @functools.wraps(run)
    def with_second_start(*arguments, **options):
        result = run(*arguments, **options)
        return run(*arguments, **options) if result == Result(1, "", "") else result

    return with_second_start if WINDOWS or "QUAVIN_WINDOWS_EMULATOR" in os.environ else run


@started
def in_pipe(arguments, cwd, stdout=subprocess.PIPE, program=TOOL, **environment):
    """Runs the program with both streams as pipes, unless `stdout` is given."""
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
    # Decode strictly: the tool prints UTF-8, whatever its input.
    return Result(done.returncode, (done.stdout or b"").decode(), done.stderr.decode())


@started
def in_terminal(arguments, cwd, out=True, err=True, **environment):
    """Runs the tool with a separate terminal for each stream selected, and a pipe for the other."""
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
    """What a program wrote to the emulator's console, without the console's own drawing: it hides the
    cursor meanwhile, skips blanks, and ends lines itself."""
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
            except OSError:  # how a terminal signals that its last user has left
                return
            if not some:
                return
            self._bytes += some
