"""Small ONNX models, whose results NumPy can compute too."""

import numpy as np
import onnx
from onnx import TensorProto, helper, numpy_helper

FLOAT, DOUBLE, HALF = TensorProto.FLOAT, TensorProto.DOUBLE, TensorProto.FLOAT16
INT64, UINT16, UINT8, BOOL, TEXT = (
    TensorProto.INT64,
    TensorProto.UINT16,
    TensorProto.UINT8,
    TensorProto.BOOL,
    TensorProto.STRING,
)

node = helper.make_node
tensor = helper.make_tensor_value_info


def write(path, nodes, inputs, outputs, constants=None):
    """Writes a model and returns its path. `inputs` and `outputs` are (type, shape) by name."""
    graph = helper.make_graph(
        nodes,
        "graph",
        [tensor(name, *port) for name, port in inputs.items()],
        [tensor(name, *port) for name, port in outputs.items()],
        [numpy_helper.from_array(np.asarray(value), name) for name, value in (constants or {}).items()],
    )
    model = helper.make_model(graph, opset_imports=[helper.make_opsetid("", 17)], ir_version=9)
    onnx.checker.check_model(model)
    onnx.save(model, path)
    return path


def doubling(path, shape=(1, 4), kind=FLOAT, names=("x", "y")):
    """y = x + x."""
    x, y = names
    return write(path, [node("Add", [x, x], [y])], {x: (kind, shape)}, {y: (kind, shape)})


def casting(path, kind, shape=(4,), to=FLOAT):
    """y is x in another type."""
    return write(path, [node("Cast", ["x"], ["y"], to=to)], {"x": (kind, shape)}, {"y": (to, shape)})


def projection(path, size=16):
    """y = x w, for a w whose numbers 16 bits cannot hold; returns the path and w."""
    w = np.random.default_rng(5).standard_normal((size, size)).astype(np.float32)
    ports = {"x": (FLOAT, (1, size))}, {"y": (FLOAT, (1, size))}
    return write(path, [node("MatMul", ["x", "w"], ["y"])], *ports, {"w": w}), w
