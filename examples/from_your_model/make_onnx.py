#!/usr/bin/env python3
"""Writes an ONNX network with everything that needs fixing: a dynamic batch dimension, 64-bit, 8-bit and boolean ports.

    make_onnx.py DIR

writes search.onnx, its inputs (ids.npy, image.npy, mask.npy), and ONNX Runtime's results for them (score.npy,
best.npy, dark.npy).
"""

import pathlib
import sys

import numpy
import onnx
import onnxruntime
from onnx import TensorProto, helper, numpy_helper

folder = pathlib.Path(sys.argv[1])
random = numpy.random.default_rng(1)
table = random.standard_normal((50, 4))
graph = helper.make_graph(
    [
        helper.make_node("Gather", ["table", "ids"], ["vectors"]),
        helper.make_node("Cast", ["image"], ["pixels"], to=TensorProto.DOUBLE),
        helper.make_node("ReduceMean", ["pixels"], ["brightness"], axes=[1, 2, 3], keepdims=1),
        helper.make_node("Squeeze", ["brightness", "axis"], ["level"]),
        helper.make_node("Mul", ["vectors", "level"], ["scaled"]),
        helper.make_node("Where", ["mask", "scaled", "nothing"], ["score"]),
        helper.make_node("ArgMax", ["score"], ["best"], axis=2, keepdims=0),
        helper.make_node("Less", ["score", "nothing"], ["dark"]),
    ],
    "search",
    [
        helper.make_tensor_value_info("ids", TensorProto.INT64, ["batch", 6]),
        helper.make_tensor_value_info("image", TensorProto.UINT8, ["batch", 8, 8, 3]),
        helper.make_tensor_value_info("mask", TensorProto.BOOL, ["batch", 6, 1]),
    ],
    [
        helper.make_tensor_value_info("score", TensorProto.DOUBLE, ["batch", 6, 4]),
        helper.make_tensor_value_info("best", TensorProto.INT64, ["batch", 6]),
        helper.make_tensor_value_info("dark", TensorProto.BOOL, ["batch", 6, 4]),
    ],
    [
        numpy_helper.from_array(table, "table"),
        numpy_helper.from_array(numpy.array([3], numpy.int64), "axis"),
        numpy_helper.from_array(numpy.zeros((), numpy.float64), "nothing"),
    ],
)
model = helper.make_model(graph, opset_imports=[helper.make_opsetid("", 17)], ir_version=9)
onnx.checker.check_model(model)
onnx.save(model, folder / "search.onnx")

inputs = {
    "ids": random.integers(0, 50, (1, 6)),
    "image": random.integers(0, 256, (1, 8, 8, 3), numpy.uint8),
    "mask": random.integers(0, 2, (1, 6, 1)).astype(bool),
}
for name, value in inputs.items():
    numpy.save(folder / f"{name}.npy", value)
session = onnxruntime.InferenceSession(folder / "search.onnx")
for name, value in zip(("score", "best", "dark"), session.run(["score", "best", "dark"], inputs)):
    numpy.save(folder / f"{name}.npy", value)
