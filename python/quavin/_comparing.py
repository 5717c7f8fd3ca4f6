"""Compares a package with the model that it was made from."""

from __future__ import annotations

from collections.abc import Mapping
from typing import Any

import numpy as np
import numpy.typing as npt

from quavin._packing import ConversionError

_SEED = 1
_DTYPES = {
    "f16": np.float16, "f32": np.float32, "f64": np.float64, "boolean": np.bool_,
    "i8": np.int8, "i16": np.int16, "i32": np.int32, "i64": np.int64,
    "u8": np.uint8, "u16": np.uint16, "u32": np.uint32, "u64": np.uint64,
}  # fmt: skip


def inputs_to_compare_with(
    shapes: Mapping[str, tuple[int, ...]], types: Mapping[str, str], given: Mapping[str, npt.ArrayLike]
) -> dict[str, npt.NDArray[Any]]:
    """An array for each input of the original: the given one, or else random numbers.

    Raises ValueError for an array of another shape, TypeError for one of another kind of numbers, and
    ConversionError for an input that arrays cannot be.
    """
    random = np.random.default_rng(_SEED)
    arrays = {}
    for name, shape in shapes.items():
        if types[name] not in _DTYPES:
            raise ConversionError(f'the input "{name}" has the element type {types[name]}, which arrays do not have')
        dtype = np.dtype(_DTYPES[types[name]])
        array = np.asarray(given[name]) if name in given else _random(random, shape, dtype)
        if array.shape != shape:
            raise ValueError(f'inputs: "{name}" has the shape {list(array.shape)}, and the model {list(shape)}')
        if not np.can_cast(array.dtype, dtype, "same_kind"):
            raise TypeError(f'inputs: "{name}" has the type {array.dtype}, and the model reads {dtype}')
        arrays[name] = np.require(array, dtype, ["C", "A", "W"])
    return arrays


def _random(random: np.random.Generator, shape: tuple[int, ...], dtype: np.dtype[Any]) -> npt.NDArray[Any]:
    if dtype.kind == "f":
        return random.standard_normal(shape).astype(dtype)
    return random.integers(0, 256 if dtype == np.uint8 else 2, shape).astype(dtype)


def largest_difference(
    expected: Mapping[str, npt.NDArray[Any]], found: Mapping[str, npt.NDArray[Any]]
) -> float:
    """The largest difference in any output, as a part of the largest value of that output.

    Raises ConversionError if an output has another shape.
    """
    return max(_output_difference(name, expected[name], found[name]) for name in expected)


def _output_difference(name: str, expected: npt.NDArray[Any], found: npt.NDArray[Any]) -> float:
    if expected.shape != found.shape:
        raise ConversionError(
            f'the output "{name}" has the shape {list(found.shape)}, and that of the original {list(expected.shape)}'
        )
    return _difference(expected.astype(np.float64), found.astype(np.float64))


def _difference(expected: npt.NDArray[np.float64], found: npt.NDArray[np.float64]) -> float:
    same = (expected == found) | (np.isnan(expected) & np.isnan(found))
    if same.all():
        return 0.0
    if not (np.isfinite(expected[~same]).all() and np.isfinite(found[~same]).all()):
        return float("inf")
    largest = np.abs(expected[np.isfinite(expected)]).max()
    return float(np.abs(expected[~same] - found[~same]).max() / (largest or 1))
