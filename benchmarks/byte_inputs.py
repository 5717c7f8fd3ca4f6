#!/usr/bin/env python3
"""Measures in which type the bytes of an image best go into a package.

    PYTHONPATH=python benchmarks/byte_inputs.py

packs a network of three convolutions for an image of 224x224x3 bytes, once as it is, once with an int32 and once with a
float32 input, and prints the median time of a prediction and of what the host does before. Needs onnx and openvino.
"""

import tempfile
import time
from pathlib import Path

import numpy as np
import onnx
from onnx import TensorProto, helper, numpy_helper

import quavin

ROUNDS = 200
SHAPE = (1, 224, 224, 3)
TYPES = {"uint8": TensorProto.UINT8, "float32": TensorProto.FLOAT, "int32": TensorProto.INT32}
FOR_PACKAGE = {
    "uint8": lambda image: image.view(np.int8),
    "float32": lambda image: image.astype(np.float32),
    "int32": lambda image: image.astype(np.int32),
}


def write_network(path, element_type):
    random = np.random.default_rng(0)
    nodes = [
        helper.make_node("Cast", ["image"], ["real"], to=TensorProto.FLOAT),
        helper.make_node("Sub", ["real", "mean"], ["centred"]),
        helper.make_node("Transpose", ["centred"], ["features0"], perm=[0, 3, 1, 2]),
    ]
    constants = {"mean": np.float32(117)}
    for layer, (channels, wanted) in enumerate([(3, 16), (16, 32), (32, 32)]):
        constants[f"w{layer}"] = random.standard_normal((wanted, channels, 3, 3)).astype(np.float32) * np.float32(0.1)
        operands = [f"features{layer}", f"w{layer}"]
        nodes += [
            helper.make_node("Conv", operands, [f"c{layer}"], strides=[2, 2], pads=[1, 1, 1, 1]),
            helper.make_node("Relu", [f"c{layer}"], [f"features{layer + 1}"]),
        ]
    nodes.append(helper.make_node("ReduceMean", ["features3"], ["y"], axes=[2, 3], keepdims=0))
    graph = helper.make_graph(
        nodes,
        "bytes",
        [helper.make_tensor_value_info("image", element_type, SHAPE)],
        [helper.make_tensor_value_info("y", TensorProto.FLOAT, (1, 32))],
        [numpy_helper.from_array(np.asarray(value), name) for name, value in constants.items()],
    )
    onnx.save(helper.make_model(graph, opset_imports=[helper.make_opsetid("", 17)], ir_version=9), path)


def seconds(function, *arguments):
    begin = time.perf_counter()
    result = function(*arguments)
    return time.perf_counter() - begin, result


image = np.random.default_rng(1).integers(0, 256, SHAPE, np.uint8)
models = {}
with tempfile.TemporaryDirectory() as folder:
    for name, element_type in TYPES.items():
        network = Path(folder, f"{name}.onnx")
        write_network(network, element_type)
        quavin.pack(network, Path(folder, name), inputs={"image": image})
        models[name] = quavin.load(Path(folder, name))
times = {name: ([], []) for name in models}
for _ in range(ROUNDS):  # alternately, so that a machine that slows down does so for all
    for name, model in models.items():
        host, array = seconds(FOR_PACKAGE[name], image)
        prediction, _ = seconds(model.predict, {"image": array})
        times[name][0].append(prediction)
        times[name][1].append(host)
print("network's input  package's input  prediction  on the host before")
for name, (predictions, hosts) in times.items():
    taken = models[name].inputs[0].dtype
    print(f"{name:15}  {taken!s:15}  {np.median(predictions) * 1e6:7.0f} us  {np.median(hosts) * 1e6:7.0f} us")
