#!/usr/bin/env python3
"""Writes the networks that both sides load, from one description each and with the same weights.

    make_networks.py DIR KIND...

For each KIND (see models/make_mobilenet.py), DIR gets KIND.onnx, the model package KIND, and KIND.input: random values
for the only input, as plain 32-bit floats.
"""

import pathlib
import sys

import numpy as np

HERE = pathlib.Path(__file__).resolve().parent
sys.path[:0] = [str(HERE.parent / "models"), str(HERE.parents[1] / "scripts")]
from ir_writer import IrNetwork  # noqa: E402
from make_mobilenet import SEED, about, build  # noqa: E402
from model_package import write_package  # noqa: E402
from onnx_writer import OnnxNetwork  # noqa: E402


def main():
    folder = pathlib.Path(sys.argv[1])
    folder.mkdir(parents=True, exist_ok=True)
    for kind in sys.argv[2:]:
        network = build(kind, IrNetwork)
        write_package(folder / kind, network, "model", about(kind))
        build(kind, OnnxNetwork).write(folder / f"{kind}.onnx")
        (only_input,) = network.inputs
        values = np.random.default_rng(SEED).standard_normal(only_input.shape, np.float32)
        values.tofile(folder / f"{kind}.input")


if __name__ == "__main__":
    main()
