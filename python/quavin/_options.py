"""Keyword arguments as the structs that the library reads."""

from __future__ import annotations

import mmap
import os
from collections.abc import Mapping, Sequence
from typing import Any, Literal

from quavin._library import c_text, ffi, lib, sized

BytesLike = bytes | bytearray | memoryview | mmap.mmap
Precision = Literal["single", "fastest"]
Hint = Literal["latency", "throughput"]

_KEY_BYTES = 16
_PRECISIONS = {"single": lib.QUAVIN_PRECISION_SINGLE, "fastest": lib.QUAVIN_PRECISION_FASTEST}
_HINTS = {"latency": lib.QUAVIN_HINT_LATENCY, "throughput": lib.QUAVIN_HINT_THROUGHPUT}


def trusted(keys: Sequence[str] | None) -> tuple[str, ...]:
    """The keys of a call that trusts them, or none if it does not look at signatures.

    Raises TypeError for anything but texts, and ValueError for an empty sequence, which would trust everybody.
    """
    if keys is None:
        return ()
    if isinstance(keys, (str, bytes)) or not all(isinstance(key, str) for key in keys):
        raise TypeError("trusted_keys must be a sequence of texts in PEM, such as [Path(...).read_text()]")
    if len(keys) == 0:
        raise ValueError("trusted_keys is empty; None means that signatures are not looked at")
    return tuple(keys)


class Structs:
    """Structs for one call. They point to memory that lives as long as this object."""

    def __init__(self) -> None:
        self._kept: list[Any] = []

    def keep(self, memory: Any) -> Any:
        self._kept.append(memory)
        return memory

    def keys(
        self, key: BytesLike | None, component_keys: Mapping[str, BytesLike], archive_key: BytesLike | None
    ) -> Any:
        """A quavin_keys, or null if there are none. The keys are read where the caller has them.

        Raises TypeError or ValueError for anything that is not a key.
        """
        if key is None and archive_key is None and not component_keys:
            return ffi.NULL
        keys = self.keep(sized("quavin_keys"))
        if key is not None:
            keys.component_key = self._key(key, "key")
        if archive_key is not None:
            keys.archive_key = self._key(archive_key, "archive_key")
        components = self.keep(ffi.new("quavin_component_key[]", len(component_keys)))
        for component, (path, value) in zip(components, component_keys.items()):
            component.path = self.keep(c_text(path))
            component.key = self._key(value, f"component_keys[{path!r}]")
        keys.component_keys = components
        keys.component_key_count = len(component_keys)
        return keys

    def engine(
        self,
        threads: int | None,
        precision: Precision | None,
        hint: Hint | None,
        cache: str | os.PathLike[str] | None,
        cache_size_limit: int | None,
        map_weights: bool | None,
    ) -> Any:
        """A quavin_engine_options, or null if all are None.

        Raises ValueError for an unknown precision or hint, and OverflowError for a number that does not fit.
        """
        if all(o is None for o in (threads, precision, hint, cache, cache_size_limit, map_weights)):
            return ffi.NULL
        options = self.keep(sized("quavin_engine_options"))
        options.threads = threads or 0
        options.precision = _number(_PRECISIONS, precision or "single", "precision")
        options.hint = _number(_HINTS, hint or "latency", "hint")
        if cache is not None:
            options.cache_directory = self.keep(c_text(os.fspath(cache)))
        options.cache_size_limit = cache_size_limit or 0
        options.map_weights = bool(map_weights)
        return options

    def _key(self, key: BytesLike, name: str) -> Any:
        if isinstance(key, str):
            raise TypeError(f"{name} must be bytes, not text; for hexadecimal digits use bytes.fromhex()")
        memory = self.keep(memory_of(key, name))
        if len(memory) != _KEY_BYTES:
            raise ValueError(f"{name} must have {_KEY_BYTES} bytes, not {len(memory)}")
        return ffi.cast("const uint8_t *", memory)


def memory_of(data: BytesLike, name: str) -> Any:
    """The memory of a bytes-like object, which this keeps alive.

    Raises TypeError if it has none, and ValueError if it is not contiguous.
    """
    try:
        view = memoryview(data)
    except TypeError:
        raise TypeError(f"{name} must be bytes-like, not {type(data).__name__}") from None
    if not view.c_contiguous:
        raise ValueError(f"{name} is not contiguous")
    return ffi.from_buffer(view)


def _number(numbers: Mapping[str, int], word: str, name: str) -> int:
    if word not in numbers:
        raise ValueError(f"{name} must be one of {', '.join(map(repr, numbers))}, not {word!r}")
    return numbers[word]
