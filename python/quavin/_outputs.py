"""Outputs as arrays over the engine's own memory."""

from __future__ import annotations

from typing import Any

import numpy as np
import numpy.typing as npt

from quavin._library import ffi, lib, sized, text
from quavin._ports import DTYPES
from quavin._runtime import call


class _Memory:
    """Memory that NumPy can make an array over; the array keeps this object, and this the outputs' handle."""

    __slots__ = ("__array_interface__", "outputs")

    def __init__(self, outputs: Any, output: Any) -> None:
        self.outputs = outputs
        self.__array_interface__ = {
            "version": 3,
            "typestr": DTYPES[output.element_type].str,
            "shape": tuple(output.dims[0 : output.rank]) if output.rank else (),
            "data": (int(ffi.cast("uintptr_t", output.data)), False),
        }


def arrays_over(outputs: Any) -> dict[str, npt.NDArray[Any]]:
    """An array for each output of a prediction. The last one that is dropped releases the handle."""
    count = ffi.new("size_t *")
    call(lib.quavin_outputs_get_count, outputs, count)
    output = sized("quavin_output")
    arrays = {}
    for index in range(count[0]):
        call(lib.quavin_outputs_get, outputs, index, output)
        arrays[text(output.name)] = np.asarray(_Memory(outputs, output))
    return arrays
