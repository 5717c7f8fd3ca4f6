"""Writes small networks as OpenVINO IR version 10: an XML description and a file of weights.

A network is built from its inputs to its outputs. Every call returns a port, which later layers use:

    net = IrNetwork("double")
    x = net.parameter("x", (1, 8))
    y = net.layer("Multiply", "y", [x, net.constant("two", np.float32([[2]]))], (1, 8))
    net.result(y)
    net.write(Path("model.xml"), Path("model.bin"))

Nothing is inferred: the caller states every layer's output shape. All layers are from opset1. Readers
identify an input by the name of its Parameter, and an output by the name of the layer that produces it.

Needs Python 3.10 and NumPy.
"""

from dataclasses import dataclass
from xml.sax.saxutils import quoteattr

import numpy as np

# Element type as spelled in layers: (as spelled in ports, NumPy type as stored in the weights file).
ELEMENT_TYPES = {
    "f32": ("FP32", np.dtype("<f4")),
    "i64": ("I64", np.dtype("<i8")),
    "i32": ("I32", np.dtype("<i4")),
    "u8": ("U8", np.dtype("u1")),
}

# Constants start at multiples of this, so that a runtime can use them in place.
ALIGNMENT = 64


@dataclass(frozen=True)
class Port:
    """The single output of a layer, as used by later layers."""

    layer_id: int
    port_id: int
    name: str
    shape: tuple
    element_type: str


class IrNetwork:
    def __init__(self, name):
        self.name = name
        self.inputs = []
        self.outputs = []
        self._layers = []  # XML text, in order of ids
        self._edges = []
        self._constants = []  # (offset, array)
        self._weights_size = 0
        self._names = set()

    def parameter(self, name, shape, element_type="f32"):
        """An input of the network."""
        data = {"element_type": element_type, "shape": _comma(shape)}
        port = self._add("Parameter", name, [], shape, element_type, data)
        self.inputs.append(port)
        return port

    def constant(self, name, array):
        """A constant in the weights file; its element type follows the array's."""
        element_type = next((k for k, v in ELEMENT_TYPES.items() if v[1] == array.dtype), None)
        if element_type is None:
            raise ValueError(f"constant {name}: no element type for {array.dtype}")
        offset = -(-self._weights_size // ALIGNMENT) * ALIGNMENT
        self._constants.append((offset, array))
        self._weights_size = offset + array.nbytes
        data = {
            "element_type": element_type,
            "shape": _comma(array.shape),
            "offset": offset,
            "size": array.nbytes,
        }
        return self._add("Const", name, [], array.shape, element_type, data)

    def layer(self, kind, name, inputs, shape, **data):
        """A layer with one output, which has the element type of the first input."""
        return self._add(kind, name, inputs, shape, inputs[0].element_type, data)

    def result(self, port):
        """Makes a port an output of the network."""
        self._add("Result", port.name + "/result", [port], None, None, {})
        self.outputs.append(port)

    def write(self, xml_path, bin_path):
        with open(xml_path, "w", encoding="utf-8", newline="\n") as file:
            file.write('<?xml version="1.0"?>\n')
            file.write(f'<net name={quoteattr(self.name)} version="10">\n  <layers>\n')
            file.writelines(self._layers)
            file.write("  </layers>\n  <edges>\n")
            file.writelines(self._edges)
            file.write("  </edges>\n</net>\n")
        with open(bin_path, "wb") as file:
            for offset, array in self._constants:
                file.write(bytes(offset - file.tell()))
                file.write(np.ascontiguousarray(array).data)

    def _add(self, kind, name, inputs, shape, element_type, data):
        if name in self._names:
            raise ValueError(f"two layers are named {name}")
        self._names.add(name)
        layer_id = len(self._layers)
        text = f'    <layer id="{layer_id}" name={quoteattr(name)} type="{kind}"'
        text += ' version="opset1">\n'
        if data:
            attributes = "".join(f" {key}={quoteattr(_text(v))}" for key, v in data.items())
            text += f"      <data{attributes}/>\n"
        if inputs:
            ports = "".join(_port(i, p.shape, p.element_type) for i, p in enumerate(inputs))
            text += f"      <input>\n{ports}      </input>\n"
        if shape is not None:
            port = _port(len(inputs), shape, element_type)
            text += f"      <output>\n{port}      </output>\n"
        self._layers.append(text + "    </layer>\n")
        for i, source in enumerate(inputs):
            self._edges.append(
                f'    <edge from-layer="{source.layer_id}" from-port="{source.port_id}"'
                f' to-layer="{layer_id}" to-port="{i}"/>\n'
            )
        return Port(layer_id, len(inputs), name, tuple(shape or ()), element_type)


def _comma(values):
    return ",".join(str(v) for v in values)


def _text(value):
    """An attribute's value as spelled in IR: lists with commas, booleans in lower case."""
    if isinstance(value, (tuple, list)):
        return _comma(value)
    return str(value).lower() if isinstance(value, bool) else str(value)


def _port(port_id, shape, element_type):
    dims = "".join(f"<dim>{d}</dim>" for d in shape)
    precision = ELEMENT_TYPES[element_type][0]
    return f'        <port id="{port_id}" precision="{precision}">{dims}</port>\n'
