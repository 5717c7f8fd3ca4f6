"""Checks what a host passes to `predict`: the library reads it in place, so it must be exactly right."""

from __future__ import annotations

from collections.abc import Mapping
from typing import Any

import numpy as np
import numpy.typing as npt

from quavin._ports import Port


def checked_inputs(
    ports: tuple[Port, ...], inputs: Mapping[str, npt.ArrayLike], cast: bool
) -> list[npt.NDArray[Any] | None]:
    """The arrays in the ports' order; None for an input that is left out.

    Raises TypeError or ValueError for an input that is unknown, missing or unusable.
    """
    if not isinstance(inputs, Mapping):
        raise TypeError(f"inputs must be a dict of arrays, not {type(inputs).__name__}")
    missing = [port.name for port in ports if port.required and port.name not in inputs]
    if missing:
        raise ValueError(f"the input {_quoted(missing)} is missing")
    unknown = [name for name in inputs if name not in {port.name for port in ports}]
    if unknown:
        raise ValueError(f"the model has no input {_quoted(unknown)}; it has {_quoted(p.name for p in ports)}")
    return [_checked(port, inputs[port.name], cast) if port.name in inputs else None for port in ports]


def _checked(port: Port, value: npt.ArrayLike, cast: bool) -> npt.NDArray[Any]:
    if port.kind != "tensor" or port.dtype is None:
        raise TypeError(f'input "{port.name}" is not a tensor but of the kind "{port.kind}"; leave it out')
    if cast:
        array = _cast(port, np.asarray(value), port.dtype)
    elif isinstance(value, np.ndarray):
        array = value
    else:
        raise TypeError(
            f'input "{port.name}" is not a NumPy array but of the type {type(value).__name__}; '
            "with cast=True it would be converted"
        )
    if array.dtype != port.dtype:
        raise TypeError(
            f'input "{port.name}" has the type {array.dtype}, and the model reads {port.dtype}; '
            "with cast=True it would be converted"
        )
    _require_shape(port, array)
    if not (array.flags.c_contiguous and array.flags.aligned):
        raise ValueError(
            f'input "{port.name}" is not contiguous and aligned in memory; with cast=True it would be copied'
        )
    return array


def _require_shape(port: Port, array: npt.NDArray[Any]) -> None:
    fits = len(array.shape) == len(port.shape) and all(
        wanted in (-1, extent) for wanted, extent in zip(port.shape, array.shape)
    )
    if not fits:
        raise ValueError(
            f'input "{port.name}" has the shape {list(array.shape)}, and the model reads {list(port.shape)}'
        )


def _cast(port: Port, array: npt.NDArray[Any], dtype: np.dtype[Any]) -> npt.NDArray[Any]:
    """Numbers may lose precision on the way, but not their kind, as from 0.5 to an integer, or their size."""
    if not np.can_cast(array.dtype, dtype, "same_kind"):
        raise TypeError(f'input "{port.name}" has the type {array.dtype}, which cannot be cast to {dtype}')
    if dtype.kind in "iu" and array.size and array.dtype.kind in "iu":
        limits = np.iinfo(dtype)
        if int(array.min()) < limits.min or int(array.max()) > limits.max:
            raise ValueError(f'input "{port.name}" has values that do not fit into {dtype}')
    return np.require(array, dtype, ["C", "A"])


def _quoted(names: Any) -> str:
    return ", ".join(f'"{name}"' for name in names)
