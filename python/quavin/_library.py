"""Finds the shared library and opens it: `lib` has its functions and constants, `ffi` its types."""

from __future__ import annotations

import contextlib
import ctypes
import importlib
import os
import runpy
import sys
import tempfile
from pathlib import Path
from typing import Any

from quavin_command import engine_folder

_PACKAGE = Path(__file__).resolve().parent
_TREE = _PACKAGE.parents[1]  # if the package was imported from a source tree

_STEM = "quavin_on_device_sdk"
_FILES, _ENGINE_FILES = {
    "win32": (f"{_STEM}.dll", "openvino_c.dll"),
    "darwin": (f"lib{_STEM}*.dylib", "libopenvino_c*.dylib"),
}.get(sys.platform, (f"lib{_STEM}.so*", "libopenvino_c.so*"))
# Not those of cross builds, whose library cannot be opened here.
_BUILDS = ("release", "demo", "debug")


def _load_interface() -> Any:
    try:
        return importlib.import_module("quavin._interface").ffi
    except ModuleNotFoundError:
        pass
    header = _TREE / "include" / "quavin" / "c.h"
    if not header.is_file():
        raise ImportError("this installation of quavin is incomplete: it has no _interface.py")
    from quavin._header import write_interface

    with tempfile.TemporaryDirectory(prefix="quavin-") as folder:
        module = Path(folder, "_interface.py")
        write_interface(header, module)
        return runpy.run_path(str(module))["ffi"]


def _find() -> tuple[Path, bool]:
    """The library, and whether its engine is in the `openvino` package."""
    named = os.environ.get("QUAVIN_LIBRARY")
    if named:
        if not Path(named).is_file():
            raise ImportError(f"QUAVIN_LIBRARY names {named}, which is not a file")
        return Path(named).resolve(), False
    for file in sorted(_PACKAGE.glob(_FILES)):
        return file, True
    for build in _BUILDS:
        for file in sorted((_TREE / "build" / build / "src").glob(_FILES)):
            return file, False
    raise ImportError(
        f"there is no {_FILES} in {_PACKAGE}; build the library, or name it with QUAVIN_LIBRARY"
    )


def _open(file: Path, engine_is_package: bool) -> Any:
    with contextlib.ExitStack() as folders:
        if engine_is_package:
            engine = engine_folder()
            if sys.platform == "win32":
                folders.enter_context(os.add_dll_directory(str(engine)))
            # Loaded by name here, so that the two packages may be installed in different places.
            for library in sorted(engine.glob(_ENGINE_FILES)):
                ctypes.CDLL(str(library))
        # Unlike cffi, ctypes never closes a library, whose functions are called until the very end.
        handle = ctypes.CDLL(str(file))._handle
    return ffi.dlopen(ffi.cast("void *", handle))


ffi: Any = _load_interface()
try:
    lib: Any = _open(*_find())
except OSError as error:
    raise ImportError(f"cannot open the library: {error}") from error


def text(pointer: Any) -> str:
    """The text that the library points to."""
    data: bytes = ffi.string(pointer)
    return data.decode("utf-8", "replace")


def c_text(value: str) -> Any:
    """A copy of a text for the library.

    Raises ValueError if it contains a zero character, which would end it for the library.
    """
    data = value.encode("utf-8", "surrogateescape")
    if b"\0" in data:
        raise ValueError("embedded null character")
    return ffi.new("char[]", data)


def sized(kind: str) -> Any:
    """A zeroed struct whose member `size` is set."""
    struct = ffi.new(f"{kind} *")
    struct.size = ffi.sizeof(kind)
    return struct
