"""What networks and packages declare about their inputs and outputs."""

from __future__ import annotations

from dataclasses import dataclass
from typing import Any

import numpy as np

from quavin._library import ffi, lib, sized, text
from quavin._runtime import call

KINDS = {
    lib.QUAVIN_FEATURE_BOOL: "bool",
    lib.QUAVIN_FEATURE_UINT8: "uint8",
    lib.QUAVIN_FEATURE_INT64: "int64",
    lib.QUAVIN_FEATURE_DOUBLE: "double",
    lib.QUAVIN_FEATURE_STRING: "string",
    lib.QUAVIN_FEATURE_TENSOR: "tensor",
    lib.QUAVIN_FEATURE_IMAGE: "image",
}

DTYPES: dict[int, np.dtype[Any]] = {
    lib.QUAVIN_TYPE_BOOL: np.dtype(np.bool_),
    lib.QUAVIN_TYPE_INT8: np.dtype(np.int8),
    lib.QUAVIN_TYPE_UINT8: np.dtype(np.uint8),
    lib.QUAVIN_TYPE_INT16: np.dtype(np.int16),
    lib.QUAVIN_TYPE_UINT16: np.dtype(np.uint16),
    lib.QUAVIN_TYPE_INT32: np.dtype(np.int32),
    lib.QUAVIN_TYPE_UINT32: np.dtype(np.uint32),
    lib.QUAVIN_TYPE_INT64: np.dtype(np.int64),
    lib.QUAVIN_TYPE_UINT64: np.dtype(np.uint64),
    lib.QUAVIN_TYPE_FLOAT16: np.dtype(np.float16),
    lib.QUAVIN_TYPE_FLOAT: np.dtype(np.float32),
    lib.QUAVIN_TYPE_DOUBLE: np.dtype(np.float64),
}


@dataclass(frozen=True)
class Port:
    """One input or output."""

    name: str
    """The name that `Model.predict` uses."""
    dtype: np.dtype[Any] | None
    """The type of a tensor's elements; None if it has none, or the port is not a tensor."""
    shape: tuple[int, ...]
    """The dimensions, outermost first; -1 where any extent will do; () for a single element."""
    description: str = ""
    """Free text of the package's author."""
    required: bool = True
    """Whether the model needs the value."""
    kind: str = "tensor"
    """The kind of value: "tensor" in nearly all packages, and only tensors can be predicted with."""


def port_of(struct: Any) -> Port:
    is_tensor = struct.kind == lib.QUAVIN_FEATURE_TENSOR
    return Port(
        name=text(struct.name),
        dtype=DTYPES.get(struct.element_type) if is_tensor else None,
        shape=tuple(struct.dims[0 : struct.rank]) if struct.rank else (),
        description=text(struct.description),
        required=struct.required != 0,
        kind=KINDS.get(struct.kind, "unknown"),
    )


def read_ports(handle: Any, get_count: Any, get_port: Any) -> tuple[Port, ...]:
    """All inputs or outputs of what a handle stands for, with the library's two functions for them."""
    count = ffi.new("size_t *")
    call(get_count, handle, count)
    ports = []
    for index in range(count[0]):
        struct = sized("quavin_port")
        call(get_port, handle, index, struct)
        ports.append(port_of(struct))
    return tuple(ports)


def printable(line: str) -> str:
    """The line without what could control a terminal: packages may come from anywhere."""
    return "".join(c if c.isprintable() else "?" for c in line)


def table(ports: tuple[Port, ...]) -> list[str]:
    """One line for each port, in columns."""
    rows = [
        (port.name, str(port.dtype or port.kind), str(list(port.shape)), port.description) for port in ports
    ]
    widths = [max((len(row[column]) for row in rows), default=0) for column in range(4)]
    return ["  ".join(cell.ljust(width) for cell, width in zip(row, widths)).rstrip() for row in rows]
