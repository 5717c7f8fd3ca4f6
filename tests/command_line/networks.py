"""Small networks whose results NumPy can compute too, and networks that are unusable.

Element types have the names used in networks: "f32", "i8", ...
"""

import os
import sys

import numpy as np

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "..", "scripts"))

import ir_writer  # noqa: E402  # from the folder above
from ir_writer import IrNetwork  # noqa: E402

ir_writer.ELEMENT_TYPES.update(
    {
        "f16": ("FP16", np.dtype("<f2")),
        "f64": ("FP64", np.dtype("<f8")),
        "i8": ("I8", np.dtype("i1")),
        "i16": ("I16", np.dtype("<i2")),
        "boolean": ("BOOL", np.dtype("?")),
    }
)

OFFSETS = np.float32([[0.5, 1, 1.5, 2]])


class Network(IrNetwork):
    """An IrNetwork with layers that change the element type."""

    def convert(self, name, port, element_type):
        data = {"destination_type": element_type}
        return self._add("Convert", name, [port], port.shape, element_type, data)


def affine(input_name="x", output_name="y", dtype="f32"):
    """y = 2 x + (0.5, 1, 1.5, 2), of [1, 4] floats."""
    net = Network("affine")
    _add_affine(net, input_name, output_name, dtype)
    return net


def affines(types):
    """The same for several inputs, by their names and element types. Input "a" has the output "a_y"."""
    net = Network("affines")
    for name, dtype in types.items():
        _add_affine(net, name, f"{name}_y", dtype)
    return net


def _add_affine(net, input_name, output_name, dtype):
    x = net.parameter(input_name, (1, 4), dtype)
    real = net.convert(f"{input_name}_real", x, "f32") if dtype != "f32" else x
    two = net.constant(f"{input_name}_two", np.float32([[2]]))
    twice = net.layer("Multiply", f"{input_name}_twice", [real, two], (1, 4))
    offsets = net.constant(f"{input_name}_offsets", OFFSETS)
    net.result(net.layer("Add", output_name, [twice, offsets], (1, 4)))


def affine_result(x):
    return 2 * np.asarray(x, np.float32) + OFFSETS


def doubling(input_name="x", output_name="y"):
    """y = x + x, of [2] floats; has no constants."""
    net = Network("doubling")
    x = net.parameter(input_name, (2,))
    net.result(net.layer("Add", output_name, [x, x], (2,)))
    return net


def arithmetic():
    """Inputs "left" and "right", outputs "sum" and "product", of [2, 3] floats."""
    net = Network("arithmetic")
    left = net.parameter("left", (2, 3))
    right = net.parameter("right", (2, 3))
    net.result(net.layer("Add", "sum", [left, right], (2, 3)))
    net.result(net.layer("Multiply", "product", [left, right], (2, 3)))
    return net


def typed_sum():
    """Inputs "whole" (i32), "half" (f16) and "real" (f32) of [3], output "total" (f32)."""
    net = Network("typed_sum")
    whole = net.convert("whole/real", net.parameter("whole", (3,), "i32"), "f32")
    half = net.convert("half/real", net.parameter("half", (3,), "f16"), "f32")
    real = net.parameter("real", (3,))
    partial = net.layer("Add", "partial", [whole, half], (3,))
    net.result(net.layer("Add", "total", [partial, real], (3,)))
    return net


def tripling_integers():
    """y = 3 x, of [4] 32-bit integers."""
    net = Network("tripling_integers")
    x = net.parameter("x", (4,), "i32")
    net.result(net.layer("Multiply", "y", [x, net.constant("three", np.int32([3]))], (4,)))
    return net


def scalar():
    """y = 10 x, of no dimensions."""
    net = Network("scalar")
    x = net.parameter("x", ())
    net.result(net.layer("Multiply", "y", [x, net.constant("ten", np.float32(10))], ()))
    return net


def dynamic():
    """y = x + x, of an unknown number of floats."""
    net = Network("dynamic")
    x = net.parameter("frames", (-1, 4))
    net.result(net.layer("Add", "y", [x, x], (-1, 4)))
    return net


def joined(shapes):
    """One output "y": inputs "x0", "x1", ... of the shapes, given as text, joined along their first dimension."""
    net = Network("joined")
    dims = [[d if d.isdigit() else "-1" for d in shape.split(",")] for shape in shapes]
    inputs = [net.parameter(f"x{i}", shape) for i, shape in enumerate(dims)]
    for i, shape in enumerate(shapes):
        net._layers[i] = net._layers[i].replace(f'shape="{",".join(dims[i])}"', f'shape="{shape}"')
    net.result(net.layer("Concat", "y", inputs, (-1, *dims[0][1:]), axis=0))
    return net


def uncompilable():
    """Can be read, but the engine has no normalisation of seven dimensions."""
    net = Network("uncompilable")
    shape = (1, 1, 2, 2, 2, 2, 2)
    x = net.parameter("x", shape)
    axes = net.constant("axes", np.int64([5, 6]))
    data = {"alpha": 1.0, "beta": 1.0, "bias": 1.0, "size": 3}
    net.result(net.layer("LRN", "y", [x, axes], shape, **data))
    return net


def crashing():
    """Compiles, but predicting reads far out of bounds: the engine trusts the index in a constant."""
    net = Network("crashing")
    x = net.parameter("x", (2, 1024))
    row = net.constant("row", np.int64([[1 << 30]]))
    net.result(net.layer("GatherND", "y", [x, row], (1, 1024), batch_dims=0))
    net._layers[2] = net._layers[2].replace("opset1", "opset5")  # the version that defines the layer
    return net
