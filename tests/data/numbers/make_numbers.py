#!/usr/bin/env python3
"""Creates packages whose numbers half precision and bfloat16 cannot hold, with their expected predictions.

NAME/manifest.json, net.xml, net.bin  one input "x", one output "y", floats
NAME/x.f32                            the input
NAME/y.f64                            the output as NumPy computes it in double precision

Inputs and weights are single precision, so that the expected numbers are those of exactly the same network.
With inputs and weights rounded to half precision or bfloat16, some element is off by at least DISTINCT; computed
in single precision, every element is off by less than PRECISE. The script checks both.

Needs NumPy. Run it without arguments; it writes to its own folder.
"""

import pathlib
import sys

import numpy as np

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parents[2] / "scripts"))

import model_package  # noqa: E402  # from the folder added above
from ir_writer import IrNetwork  # noqa: E402

# Tests allow 1e-5.
PRECISE = 5e-6
DISTINCT = 1e-4
ABOUT = {
    "id": "numbers",
    "name": "Numbers",
    "author": "tests",
    "description": "Numbers that half precision cannot hold",
    "sdkVersion": "1.0",
    "version": 1,
}


def irrational(shape, seed, low, high):
    """Random numbers that use all bits of single precision."""
    return single(np.random.default_rng(seed).uniform(low, high, size=shape))


def single(value):
    return value.astype(np.float32)


def half(value):
    return value.astype(np.float16).astype(np.float64)


def bfloat16(value):
    """Rounds to the nearest by its bits."""
    bits = single(value).view(np.uint32)
    rounded = (bits + 0x7FFF + ((bits >> 16) & 1)) & 0xFFFF0000
    return rounded.astype(np.uint32).view(np.float32).astype(np.float64)


def exact(value):
    return value.astype(np.float64)


def just_above_one():
    """Products of numbers that differ from 1 and from one another in their last bits."""
    base = 1 + 2.0**-11  # half-way between two numbers of half precision
    factors = single(base + 2.0**-20 * np.arange(1, 17).reshape(16, 1))
    x = single(base + 2.0**-21 * np.arange(1, 17).reshape(1, 16))
    net = IrNetwork("just_above_one")
    port = net.parameter("x", x.shape)
    weights = net.constant("factors", factors)
    net.result(net.layer("MatMul", "y", [port, weights], (1, 1), transpose_a=False, transpose_b=False))
    return net, x, lambda kept: kept(x) @ kept(factors)


def cancelling_sums():
    """The terms of each sum cancel except for a twentieth, so that an error in them counts twenty times."""
    x = irrational((4, 64), 1, 1, 1.5)
    weights = irrational((64, 8), 2, 0.5, 1.5)
    # The second half cancels nearly all of the first.
    x[:, 32:] = x[:, :32]
    weights[32:] = -weights[:32] * np.float32(0.9)
    shift = single(np.full((1, 8), np.pi / 10))
    net = IrNetwork("cancelling_sums")
    port = net.parameter("x", x.shape)
    product = net.layer("MatMul", "product", [port, net.constant("weights", weights)], (4, 8),
                        transpose_a=False, transpose_b=False)
    net.result(net.layer("Add", "y", [product, net.constant("shift", shift)], (4, 8)))
    return net, x, lambda kept: kept(x) @ kept(weights) + kept(shift)


def convolution():
    """A 3x3 convolution, its ReLU, and a 1x1 convolution."""
    x = irrational((1, 3, 12, 12), 3, 0.5, 1.5)
    kernel = irrational((16, 3, 3, 3), 4, -0.1, 0.9)
    mixing = irrational((8, 16, 1, 1), 5, 0.1, 0.9)
    data = {"strides": [1, 1], "dilations": [1, 1], "pads_begin": [0, 0], "pads_end": [0, 0]}
    net = IrNetwork("convolution")
    port = net.parameter("x", x.shape)
    layer = net.layer("Convolution", "conv", [port, net.constant("kernel", kernel)], (1, 16, 10, 10), **data)
    layer = net.layer("ReLU", "relu", [layer], (1, 16, 10, 10))
    net.result(net.layer("Convolution", "y", [layer, net.constant("mixing", mixing)], (1, 8, 10, 10), **data))

    def expected(kept):
        windows = np.lib.stride_tricks.sliding_window_view(kept(x)[0], (3, 3), axis=(1, 2))
        features = np.maximum(np.einsum("chwij,ocij->ohw", windows, kept(kernel)), 0)
        return np.einsum("ohw,po->phw", features, kept(mixing[:, :, 0, 0]))[np.newaxis]

    return net, x, expected


def classifier():
    """Two layers and a softmax, as in a classifier."""
    x = irrational((2, 20), 6, 0, 0.2)
    first = irrational((20, 32), 7, -0.2, 0.5)
    second = irrational((32, 10), 8, -0.5, 0.5)
    net = IrNetwork("classifier")
    port = net.parameter("x", x.shape)
    plain = {"transpose_a": False, "transpose_b": False}
    layer = net.layer("MatMul", "first", [port, net.constant("w1", first)], (2, 32), **plain)
    layer = net.layer("Tanh", "tanh", [layer], (2, 32))
    layer = net.layer("MatMul", "second", [layer, net.constant("w2", second)], (2, 10), **plain)
    net.result(net.layer("SoftMax", "y", [layer], (2, 10), axis=1))

    def expected(kept):
        scores = np.tanh(kept(x) @ kept(first)) @ kept(second)
        powers = np.exp(scores - scores.max(axis=1, keepdims=True))
        return powers / powers.sum(axis=1, keepdims=True)

    return net, x, expected


def distance(given, expected):
    """The largest relative error of an element."""
    return (np.abs(given - expected) / np.abs(expected)).max()


def main():
    for make in just_above_one, cancelling_sums, convolution, classifier:
        net, x, result = make()
        expected = result(exact)
        apart = distance(result(single), expected)
        assert apart < PRECISE, f"{net.name} computed with single precision is off by {apart}"
        for coarse in half, bfloat16:
            apart = distance(result(coarse), expected)
            assert apart > DISTINCT, f"{net.name} computed with {coarse.__name__} is off by only {apart}"
        folder = HERE / net.name
        model_package.write_package(folder, net, "net", ABOUT)
        (folder / "x.f32").write_bytes(x.astype("<f4").tobytes())
        (folder / "y.f64").write_bytes(expected.astype("<f8").tobytes())


if __name__ == "__main__":
    main()
