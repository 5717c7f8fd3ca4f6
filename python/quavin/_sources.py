"""Where a package comes from: a directory, an archive, or files in memory."""

from __future__ import annotations

import itertools
import os
from collections.abc import Mapping
from pathlib import Path
from typing import Any, Union

from quavin._library import c_text, ffi, lib
from quavin._options import BytesLike, Structs, memory_of
from quavin._runtime import Outcome, attempt

Source = Union[str, os.PathLike[str], BytesLike, Mapping[str, BytesLike]]

# What the library uses in place, by the numbers that it gives back on release.
_lent: dict[int, Any] = {}
_numbers = itertools.count(1)


@ffi.callback("void(void *)")  # type: ignore[untyped-decorator]
def _release(user: Any, lent: dict[int, Any] = _lent) -> None:
    lent.pop(int(ffi.cast("uintptr_t", user)), None)


class PackageCall:
    """A call of the function that reads a package of this kind."""

    def __init__(self, source: Source, action: str) -> None:
        """`action` is "load" or "describe".

        Raises TypeError for a source of another type, ValueError for a name or a buffer that is unusable, and
        OSError if an archive cannot be read.
        """
        self.structs = Structs()
        self._lending: dict[int, Any] = {}
        self._arguments: tuple[Any, ...]
        if isinstance(source, Mapping):
            kind, self._arguments = "buffers", self._lend(source)
        elif isinstance(source, (str, os.PathLike)) and not os.path.isfile(source):
            kind, self._arguments = "directory", (self.structs.keep(c_text(_trimmed(source))),)
        else:
            if isinstance(source, (str, os.PathLike)):
                source = Path(source).read_bytes()
            data = self.structs.keep(memory_of(source, "source"))
            kind, self._arguments = "archive", (data, len(data))
        self._function = getattr(lib, f"quavin_{action}_{kind}")

    def attempt(self, *arguments: Any) -> Outcome | None:
        """Calls the function, with further arguments. Only once."""
        # Not before, because only what the library is passed comes back; and not also kept here, because a
        # failure's traceback keeps this object.
        _lent.update(self._lending)
        self._lending.clear()
        return attempt(self._function, *self._arguments, *arguments)

    def _lend(self, files: Mapping[str, BytesLike]) -> tuple[Any, int]:
        buffers = self.structs.keep(ffi.new("quavin_buffer[]", len(files)))
        for buffer, (name, data) in zip(buffers, files.items()):
            number = next(_numbers)
            memory = self._lending[number] = memory_of(data, f"source[{name!r}]")
            buffer.name = self.structs.keep(c_text(name))
            buffer.data = memory
            buffer.size = len(memory)
            buffer.release = _release
            buffer.user = ffi.cast("void *", number)
        return buffers, len(files)


def _trimmed(path: str | os.PathLike[str]) -> str:
    """The path without separators at its end, which the library would see as an empty name."""
    written = os.fspath(path)
    return written.rstrip("/" + os.sep) or written
