"""Writes ONNX networks from the calls that scripts/ir_writer.py writes IR from.

Covers the layers of convolution networks. They become the operators that exporters write for the same network: a
bias belongs to its convolution or matrix product, and the mean over height and width is a global pooling.
"""

from dataclasses import dataclass

import numpy as np
import onnx
from onnx import TensorProto, helper, numpy_helper

OPSET = 17
IR_VERSION = 9


@dataclass(frozen=True)
class Port:
    name: str
    shape: tuple


class OnnxNetwork:
    def __init__(self, name):
        self.name = name
        self.inputs = []
        self.outputs = []
        self._nodes = []
        self._constants = {}  # those that the layers use as they are
        self._initializers = {}
        self._layers = {
            "Add": self._add,
            "Clamp": self._clamp,
            "Convolution": self._convolution,
            "GroupConvolution": self._group_convolution,
            "MatMul": self._mat_mul,
            "ReduceMean": self._reduce_mean,
        }

    def parameter(self, name, shape):
        self.inputs.append(Port(name, shape))
        return self.inputs[-1]

    def constant(self, name, array):
        self._constants[name] = array
        return Port(name, array.shape)

    def layer(self, kind, name, inputs, shape, **data):
        if kind not in self._layers:
            raise ValueError(f"layer {name}: no translation of {kind}")
        self._layers[kind](name, inputs, **data)
        return Port(name, tuple(shape))

    def result(self, port):
        self.outputs.append(port)

    def write(self, path):
        graph = helper.make_graph(
            self._nodes,
            self.name,
            [helper.make_tensor_value_info(p.name, TensorProto.FLOAT, p.shape) for p in self.inputs],
            [helper.make_tensor_value_info(p.name, TensorProto.FLOAT, p.shape) for p in self.outputs],
            [numpy_helper.from_array(array, name) for name, array in self._initializers.items()],
        )
        model = helper.make_model(graph, opset_imports=[helper.make_opsetid("", OPSET)], ir_version=IR_VERSION)
        onnx.checker.check_model(model, full_check=True)
        onnx.save(model, path)

    def _node(self, operator, name, inputs, **attributes):
        self._nodes.append(helper.make_node(operator, inputs, [name], name, **attributes))

    def _initializer(self, name, array):
        self._initializers[name] = array
        return name

    def _add(self, name, inputs):
        first, second = inputs
        if second.name not in self._constants:
            self._node("Add", name, [first.name, second.name])
            return
        node = self._nodes[-1]
        if node.op_type not in ("Conv", "Gemm") or node.output[0] != first.name or len(node.input) != 2:
            raise ValueError(f"layer {name}: its constant is no bias")
        bias = self._constants[second.name].reshape(-1)
        node.input.append(self._initializer(second.name, bias))
        node.output[0] = node.name = name

    def _clamp(self, name, inputs, **data):
        limits = [self._initializer(f"{limit}/{data[limit]}", np.float32(data[limit])) for limit in ("min", "max")]
        self._node("Clip", name, [inputs[0].name, *limits])

    def _convolution(self, name, inputs, **data):
        self._conv(name, inputs, self._constants[inputs[1].name], 1, data)

    def _group_convolution(self, name, inputs, **data):
        kernel = self._constants[inputs[1].name]
        groups, outputs, *rest = kernel.shape
        self._conv(name, inputs, kernel.reshape(groups * outputs, *rest), groups, data)

    def _conv(self, name, inputs, kernel, groups, data):
        attributes = {
            "strides": data["strides"],
            "dilations": data["dilations"],
            "pads": [*data["pads_begin"], *data["pads_end"]],
            "group": groups,
        }
        self._node("Conv", name, [inputs[0].name, self._initializer(inputs[1].name, kernel)], **attributes)

    def _mat_mul(self, name, inputs, transpose_a, transpose_b):
        matrix = self._initializer(inputs[1].name, self._constants[inputs[1].name])
        self._node("Gemm", name, [inputs[0].name, matrix], transA=int(transpose_a), transB=int(transpose_b))

    def _reduce_mean(self, name, inputs, keep_dims):
        if keep_dims or self._constants[inputs[1].name].tolist() != [2, 3]:
            raise ValueError(f"layer {name}: only the mean over height and width, dropping both, has a translation")
        self._node("GlobalAveragePool", name + "/kept", [inputs[0].name])
        self._node("Flatten", name, [name + "/kept"])
