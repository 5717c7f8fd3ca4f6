"""The key that a package is encrypted with, wherever the caller has it."""

from __future__ import annotations

import os
from pathlib import Path
from typing import Any

from quavin._library import ffi
from quavin._options import BytesLike, memory_of

_BYTES = 16
_VARIABLE = "QUAVIN_PACK_KEY"


class Secret:
    """A key, as options for the command `quavin` and for loading."""

    def __init__(
        self,
        encrypt: str | None,
        key: BytesLike | None,
        key_file: str | os.PathLike[str] | None,
        key_env: str | None,
    ) -> None:
        """Raises ValueError or TypeError for options that don't fit together, or something that is not a key."""
        keys = {"key": key, "key_file": key_file, "key_env": key_env}
        given = [name for name, value in keys.items() if value is not None]
        if encrypt not in (None, "components", "archive"):
            raise ValueError(f'encrypt must be "components" or "archive", not {encrypt!r}')
        if encrypt is None and given:
            raise ValueError(f"{given[0]} is given without encrypt")
        if encrypt is not None and len(given) != 1:
            raise ValueError(f"encrypt needs one of {', '.join(keys)}")
        self._encrypt, self._file, self._variable = encrypt, key_file, key_env
        self.environment: dict[str, str] = {}
        self.options: list[str] = []
        if encrypt is not None:
            self.options = ["--encrypt", encrypt]
        if key_file is not None:
            self.options += ["--key-file", os.fspath(key_file)]
        elif key_env is not None:
            self.options += ["--key-env", key_env]
        elif key is not None:
            # Neither other users nor the disk see it there.
            self.environment[_VARIABLE] = _checked(key).hex()
            self.options += ["--key-env", _VARIABLE]

    def for_loading(self) -> dict[str, Any]:
        """The key as an option for `load`; only after the command accepted it."""
        if self._encrypt is None:
            return {}
        if self._file is not None:
            text = Path(self._file).read_bytes()
        else:
            name = self._variable or _VARIABLE
            text = (self.environment.get(name) or os.environ[name]).encode("utf-8", "surrogateescape")
        key = text if len(text) == _BYTES else bytes.fromhex(text.decode("ascii"))
        return {"archive_key" if self._encrypt == "archive" else "key": key}


def _checked(key: BytesLike) -> bytes:
    if isinstance(key, str):
        raise TypeError("key must be bytes, not text; for hexadecimal digits use bytes.fromhex, or key_file or key_env")
    data = bytes(ffi.buffer(memory_of(key, "key")))  # bytes(key) would make sixteen zeros of the number 16
    if len(data) != _BYTES:
        raise ValueError(f"key must have {_BYTES} bytes, not {len(data)}")
    return data
