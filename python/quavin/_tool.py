"""Finds and runs the command `quavin`, which makes the packages."""

from __future__ import annotations

import os
import subprocess
import sys
from collections.abc import Mapping, Sequence
from pathlib import Path

from quavin_command import program, program_environment

_TREE = Path(__file__).resolve().parents[2]  # if the package was imported from a source tree
_NAME = "quavin.exe" if sys.platform == "win32" else "quavin"
_BUILDS = ("release", "demo", "debug")


class ToolError(Exception):
    """The command failed; the text is its own."""


def find_tool() -> tuple[str, ...]:
    """The words that start the command.

    Raises FileNotFoundError if there is none.
    """
    named = os.environ.get("QUAVIN_TOOL")
    if named:
        return (named,)
    for file in (program(), *(_TREE / "build" / build / "tools" / "quavin" / _NAME for build in _BUILDS)):
        if file.is_file():
            return (str(file),)
    raise FileNotFoundError(
        f"there is no program {program()}; build it, or name it with the variable QUAVIN_TOOL"
    )


def run_tool(arguments: Sequence[str], environment: Mapping[str, str]) -> None:
    """Runs the command with additions to its environment. It may ask for a passphrase in the terminal.

    Raises ToolError if it fails, and OSError if it cannot be started.
    """
    tool = find_tool()
    base = program_environment() if tool == (str(program()),) else os.environ
    done = subprocess.run(
        [*tool, *arguments],
        env={**base, **environment},
        stdout=subprocess.PIPE,
        stderr=subprocess.PIPE,
        check=False,
    )
    if done.returncode != 0:
        text = done.stderr.decode("utf-8", "replace").strip()
        text = text.removesuffix("\nRun with --help for more information.")
        raise ToolError(text or f"{_NAME} ended with {done.returncode}")
