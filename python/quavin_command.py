"""The command `quavin` of an installed package: starts the program that is beside the library.

Not part of the package `quavin`, because importing that opens the library: the program should start at once, and
`quavin doctor` should also tell what is wrong where the library cannot be opened.
"""

from __future__ import annotations

import importlib.util
import os
import signal
import subprocess
import sys
from pathlib import Path

_PACKAGE = Path(__file__).resolve().with_name("quavin")


def engine_folder() -> Path:
    """Where the `openvino` package has its libraries. Importing that package would take a second."""
    package = importlib.util.find_spec("openvino")
    if package is None or not package.submodule_search_locations:
        raise ImportError("quavin needs the package openvino, in the version that it was installed with")
    return Path(package.submodule_search_locations[0], "libs")


def program() -> Path:
    """The program of an installed package."""
    return _PACKAGE / ("quavin.exe" if sys.platform == "win32" else "quavin")


def program_environment() -> dict[str, str]:
    """The environment in which the program finds the engine."""
    environment = dict(os.environ)
    engine = engine_folder().resolve()
    # The library's own run path leads there if the two packages are side by side, except on Windows, which has none.
    if sys.platform == "win32" or engine != _PACKAGE.with_name("openvino") / "libs":
        variable = "PATH" if sys.platform == "win32" else "LD_LIBRARY_PATH"
        others = environment.get(variable)
        environment[variable] = f"{engine}{os.pathsep}{others}" if others else str(engine)
    return environment


def main() -> None:
    """Runs the program in place of this process, with its arguments."""
    try:
        environment = program_environment()
    except ImportError as error:
        sys.exit(f"quavin: {error}")
    command = [str(program()), *sys.argv[1:]]
    try:
        if sys.platform == "win32":  # where a process cannot be replaced
            sys.exit(_wait_for(command, environment))
        for name in ("SIGPIPE", "SIGXFSZ"):  # which Python ignores, and the program would inherit that
            signal.signal(getattr(signal, name), signal.SIG_DFL)
        os.execve(command[0], command, environment)
    except FileNotFoundError:
        sys.exit(f"quavin: this installation is incomplete: it has no {command[0]}")


def _wait_for(command: list[str], environment: dict[str, str]) -> int:
    with subprocess.Popen(command, env=environment) as process:
        while True:
            try:
                return process.wait()
            except KeyboardInterrupt:  # the program gets it too, and decides
                pass


if __name__ == "__main__":
    main()
