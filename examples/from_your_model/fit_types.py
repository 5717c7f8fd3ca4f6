#!/usr/bin/env python3
"""Converts a network and gives each input an element type that predict() accepts.

    fit_types.py NETWORK.onnx OUTPUT.xml NAME=SHAPE ...

where SHAPE is the input's fixed shape, such as 1,8,8,3.
"""

import sys

import openvino
from openvino.preprocess import PrePostProcessor

source, target, *inputs = sys.argv[1:]
shapes = {name: [int(size) for size in shape.split(",")] for name, shape in (text.split("=") for text in inputs)}

model = openvino.convert_model(source)
model.reshape(shapes)

# The host passes int32 or float; the network gets the type it was made with.
host_types = {"u8": openvino.Type.i32, "boolean": openvino.Type.i32, "u16": openvino.Type.i32}
steps = PrePostProcessor(model)
for port in model.inputs:
    host_type = host_types.get(port.element_type.get_type_name())
    if host_type:
        steps.input(port.any_name).tensor().set_element_type(host_type)
model = steps.build()

openvino.save_model(model, target, compress_to_fp16=False)
