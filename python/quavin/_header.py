"""Turns the C header into the interface that the package calls.

The header is the only place where the C interface is declared. A wheel contains the result, made when it is
built:

    python3 _header.py include/quavin/c.h _interface.py

In a source tree it is made on import.
"""

from __future__ import annotations

import contextlib
import io
import re
import sys
from pathlib import Path

import cffi

_CPLUSPLUS = re.compile(r"^#ifdef __cplusplus\n.*?^#endif\n", re.MULTILINE | re.DOTALL)
_COMMENT = re.compile(r"//[^\n]*|/\*.*?\*/", re.DOTALL)
_DIRECTIVE = re.compile(r"^[ \t]*#(?:[^\n]*\\\n)*[^\n]*\n", re.MULTILINE)
_EXPORT = re.compile(r"\bQUAVIN_API\s+")


def declarations(header: str) -> str:
    """The plain C declarations of a header's text."""
    text = _CPLUSPLUS.sub("", header)
    text = _COMMENT.sub("", text)  # before directives, which a comment's backslash could continue
    text = _DIRECTIVE.sub("", text)
    return _EXPORT.sub("", text)


def write_interface(header: Path, target: Path) -> None:
    """Writes a Python module that holds the interface as `ffi`, ready to be imported without a parser."""
    ffi = cffi.FFI()
    ffi.cdef(declarations(header.read_text(encoding="utf-8")))
    ffi.set_source(target.stem, None)
    with contextlib.redirect_stdout(io.StringIO()):  # it says what it does
        ffi.emit_python_code(str(target))


if __name__ == "__main__":
    write_interface(Path(sys.argv[1]), Path(sys.argv[2]))
