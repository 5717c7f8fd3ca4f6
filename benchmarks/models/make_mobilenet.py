#!/usr/bin/env python3
"""Writes the model packages that the benchmarks measure, with seeded random weights.

    make_mobilenet.py --out DIR [--kind KIND] [--encrypt KEYHEX]

KIND is one of
    mobilenet       (default) a convolution network of MobileNetV2's size: "image" [1,3,224,224] to
                    "logits" [1,1000], 3.5 million weights
    large-output    almost no computation and one output of 32 MiB: "x" [1,8] to "y" [8,1048576],
                    y[i][j] = x[i] + j
    weights-100mib  a table of 100 MiB from which one row is picked: "row" [1] (int32) to
                    "embedding" [1,256]; quick to compile, so that loading is mostly reading
    three-layers    "a" and "b" [1,8] to "sum" = a + b, "product" = a * b and "relu" = max(a, 0); no
                    constants, so its weights file is empty
    small           a convolution network with 720 weights: "image" [1,1,8,8] to "logits" [1,10]

DIR gets manifest.json, model.xml and model.bin, with --encrypt (32 hexadecimal digits) as a secured
package. Needs Python 3.10, NumPy and, for --encrypt, the openssl command.
"""

import argparse
import sys
from pathlib import Path

import numpy as np

sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "scripts"))
from ir_writer import IrNetwork  # noqa: E402
from model_package import write_package  # noqa: E402

SEED = 2018
MIB = 1 << 20

# MobileNetV2's blocks: (expansion factor, output channels, repetitions, stride of the first).
BLOCKS = (
    (1, 16, 1, 1),
    (6, 24, 2, 2),
    (6, 32, 3, 2),
    (6, 64, 4, 2),
    (6, 96, 3, 1),
    (6, 160, 3, 2),
    (6, 320, 1, 1),
)
FIRST_CHANNELS = 32
LAST_CHANNELS = 1280
CLASSES = 1000


# The functions below build a network with any writer that has IrNetwork's methods up to result().


class ConvolutionNetwork:
    """Adds groups of layers with He-scaled weights and small biases."""

    def __init__(self, net):
        self.net = net
        self._rng = np.random.default_rng(SEED)

    def mobilenet(self):
        x = self.net.parameter("image", (1, 3, 224, 224))
        x = self._conv("stem", x, FIRST_CHANNELS, size=3, stride=2)
        for stage, (expansion, channels, repetitions, stride) in enumerate(BLOCKS, 1):
            for i in range(repetitions):
                first_stride = stride if i == 0 else 1
                x = self._block(f"block{stage}.{i + 1}", x, expansion, channels, first_stride)
        x = self._conv("head", x, LAST_CHANNELS, size=1)
        self.net.result(self._classify(x, CLASSES))

    def small(self):
        x = self.net.parameter("image", (1, 1, 8, 8))
        x = self._conv("conv1", x, 6, size=3)
        x = self._conv("conv2", x, 10, size=3, stride=2)
        self.net.result(self._classify(x, 10))

    def _block(self, name, x, expansion, channels, stride):
        """Widens, filters each channel, narrows without activation; adds the input if it fits."""
        entry = x
        if expansion != 1:
            x = self._conv(name + "/expand", x, expansion * x.shape[1], size=1)
        x = self._conv(name + "/depthwise", x, x.shape[1], size=3, stride=stride, depthwise=True)
        x = self._conv(name + "/project", x, channels, size=1, activation=False)
        if entry.shape == x.shape:
            x = self.net.layer("Add", name + "/residual", [entry, x], x.shape)
        return x

    def _conv(self, name, x, channels, size, stride=1, depthwise=False, activation=True):
        """Convolution with padding that keeps width and height at stride 1, bias and ReLU6."""
        _, in_channels, height, width = x.shape
        shape = (1, channels, -(-height // stride), -(-width // stride))
        if depthwise:
            kind, kernel_shape, fan_in = "GroupConvolution", (channels, 1, 1, size, size), size**2
        else:
            kind, kernel_shape = "Convolution", (channels, in_channels, size, size)
            fan_in = in_channels * size**2
        kernel = self._weights(name + "/kernel", kernel_shape, 2 if activation else 1, fan_in)
        bias = self._bias(name + "/bias", (1, channels, 1, 1))
        pads = (size // 2, size // 2)
        x = self.net.layer(
            kind, name, [x, kernel], shape,
            strides=(stride, stride), dilations=(1, 1), pads_begin=pads, pads_end=pads,
            auto_pad="explicit",
        )  # fmt: skip
        x = self.net.layer("Add", name + "/biased", [x, bias], shape)
        if activation:
            x = self.net.layer("Clamp", name + "/relu6", [x], shape, min=0, max=6)
        return x

    def _classify(self, x, classes):
        """Averages each channel, and computes the logits from these."""
        channels = x.shape[1]
        axes = self.net.constant("pool/axes", np.array([2, 3], np.int64))
        x = self.net.layer("ReduceMean", "pool", [x, axes], (1, channels), keep_dims=False)
        matrix = self._weights("classifier/matrix", (classes, channels), 1, channels)
        bias = self._bias("classifier/bias", (1, classes))
        x = self.net.layer(
            "MatMul", "classifier", [x, matrix], (1, classes), transpose_a=False, transpose_b=True
        )
        return self.net.layer("Add", "logits", [x, bias], (1, classes))

    def _weights(self, name, shape, gain, fan_in):
        values = self._rng.standard_normal(shape, np.float32) * np.float32(np.sqrt(gain / fan_in))
        return self.net.constant(name, values)

    def _bias(self, name, shape):
        values = self._rng.standard_normal(shape, np.float32) * np.float32(0.1)
        return self.net.constant(name, values)


def large_output(net):
    columns = 32 * MIB // (8 * 4)
    x = net.parameter("x", (1, 8))
    column_shape = net.constant("column/shape", np.array([8, 1], np.int64))
    column = net.layer("Reshape", "column", [x, column_shape], (8, 1), special_zero=False)
    ramp = net.constant("ramp", np.arange(columns, dtype=np.float32).reshape(1, columns))
    net.result(net.layer("Add", "y", [column, ramp], (8, columns)))


def weights_100mib(net):
    width = 256
    table_shape = (100 * MIB // (4 * width), width)
    row = net.parameter("row", (1,), "i32")
    values = np.random.default_rng(SEED).random(table_shape, np.float32)
    table = net.constant("table", values)
    axis = net.constant("axis", np.array(0, np.int64))
    net.result(net.layer("Gather", "embedding", [table, row, axis], (1, width)))


def three_layers(net):
    a = net.parameter("a", (1, 8))
    b = net.parameter("b", (1, 8))
    net.result(net.layer("Add", "sum", [a, b], (1, 8)))
    net.result(net.layer("Multiply", "product", [a, b], (1, 8)))
    net.result(net.layer("ReLU", "relu", [a], (1, 8)))


KINDS = {
    "mobilenet": lambda net: ConvolutionNetwork(net).mobilenet(),
    "large-output": large_output,
    "weights-100mib": weights_100mib,
    "three-layers": three_layers,
    "small": lambda net: ConvolutionNetwork(net).small(),
}


def build(kind, writer):
    """A network of a kind, built with a class of writers."""
    net = writer(kind.replace("-", "_"))
    KINDS[kind](net)
    return net


def about(kind):
    """The manifest's members about the model."""
    return {
        "id": f"benchmark-{kind}",
        "name": f"Benchmark network {kind}",
        "author": "quavin_on_device_sdk benchmarks",
        "description": "Generated for benchmarks; its numbers are meaningless",
        "sdkVersion": "1.0",
        "version": 1,
    }


def key(text):
    if len(text) != 32 or len(bytes.fromhex(text)) != 16:
        raise ValueError
    return text


def main():
    parser = argparse.ArgumentParser(
        description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter
    )
    parser.add_argument("--out", type=Path, required=True, help="folder of the package")
    parser.add_argument("--kind", choices=KINDS, default="mobilenet")
    parser.add_argument("--encrypt", type=key, metavar="KEYHEX", help="write a secured package")
    arguments = parser.parse_args()
    network = build(arguments.kind, IrNetwork)
    write_package(
        arguments.out, network, "model", about(arguments.kind), key_hex=arguments.encrypt
    )


if __name__ == "__main__":
    main()
