"""Models of frameworks that are too large to install for a test, written byte by byte. Each is y = 2 x or y = x + 1,
of [1, 4] floats."""

import struct

import flatbuffers


def message(*fields):
    """A protobuf message, of (number, value): numbers, floats, texts, bytes and other messages."""
    return b"".join(_field(number, value) for number, value in fields)


def _field(number, value):
    if isinstance(value, float):
        return _varint(number << 3 | 5) + struct.pack("<f", value)
    if isinstance(value, int):
        return _varint(number << 3) + _varint(value)
    data = value.encode() if isinstance(value, str) else value
    return _varint(number << 3 | 2) + _varint(len(data)) + data


def _varint(number):
    number &= (1 << 64) - 1  # negative numbers are the largest
    data = b""
    while number > 127:
        data += bytes([number & 127 | 128])
        number >>= 7
    return data + bytes([number])


def tensorflow_graph():
    """A frozen graph: y = x + 1."""
    shape = message(*((2, message((1, size))) for size in (1, 4)))
    one = message((1, 1), (2, b""), (4, struct.pack("<f", 1)))

    def node(name, operation, inputs=(), **attributes):
        entries = (message((1, key), (2, value)) for key, value in attributes.items())
        return message((1, name), (2, operation), *((3, each) for each in inputs), *((5, entry) for entry in entries))

    floats = message((6, 1))
    nodes = (
        node("x", "Placeholder", dtype=floats, shape=message((7, shape))),
        node("one", "Const", dtype=floats, value=message((8, one))),
        node("y", "AddV2", ["x", "one"], T=floats),
    )
    return message(*((1, each) for each in nodes))


def paddle_program():
    """A program without parameters: y = 2 x."""

    def variable(name, kind, *details):
        return message((1, name), (2, message((1, kind), *details)), (3, int(not details)))

    def operation(kind, inputs, outputs, *attributes):
        ports = [(field, message((1, parameter), (2, variable)))
                 for field, group in ((1, inputs), (2, outputs)) for parameter, variable in group.items()]  # fmt: skip
        return message(*ports, (3, kind), *((4, message((1, name), *value)) for name, *value in attributes))

    floats = (3, message((1, message((1, 5), (2, 1), (2, 4))), (2, 0)))
    block = message(
        (1, 0),
        (2, -1),
        (3, variable("feed", 9)),
        (3, variable("fetch", 10)),
        (3, variable("x", 7, floats)),
        (3, variable("y", 7, floats)),
        (4, operation("feed", {"X": "feed"}, {"Out": "x"}, ("col", (2, 0), (3, 0)))),
        (4, operation("scale", {"X": "x"}, {"Out": "y"}, ("scale", (2, 1), (4, 2.0)), ("bias", (2, 1), (4, 0.0)),
                      ("bias_after_scale", (2, 6), (10, 1)))),
        (4, operation("fetch", {"X": "y"}, {"Out": "fetch"}, ("col", (2, 0), (3, 0)))),
    )  # fmt: skip
    return message((1, block), (4, message((1, 2004000))))


def tensorflow_lite_model():
    """y = x + x."""
    builder = flatbuffers.Builder()

    def vector(values, prepend, size=4):
        builder.StartVector(size, len(values), size)
        for value in reversed(values):
            prepend(value)
        return builder.EndVector()

    def table(slots, *members):
        builder.StartObject(slots)
        for slot, (add, value) in members:
            add(slot, value, 0)
        return builder.EndObject()

    def offsets(*values):
        return vector(values, builder.PrependUOffsetTRelative)

    def numbers(*values):
        return vector(values, builder.PrependInt32)

    offset, unsigned = builder.PrependUOffsetTRelativeSlot, builder.PrependUint32Slot

    def tensor(name):
        shape, text = numbers(1, 4), builder.CreateString(name)
        return table(4, (0, (offset, shape)), (2, (unsigned, 0)), (3, (offset, text)))

    tensors = offsets(tensor("x"), tensor("y"))
    add_options = table(1)
    operands, results = numbers(0, 0), numbers(1)
    add = ((3, (builder.PrependUint8Slot, 11)), (4, (offset, add_options)))
    operators = offsets(table(5, (1, (offset, operands)), (2, (offset, results)), *add))
    inputs, outputs = numbers(0), numbers(1)
    graph = table(5, (0, (offset, tensors)), (1, (offset, inputs)), (2, (offset, outputs)), (3, (offset, operators)))
    codes = offsets(table(4, (2, (builder.PrependInt32Slot, 1))))
    graphs, buffers = offsets(graph), offsets(table(1))
    model = table(5, (0, (unsigned, 3)), (1, (offset, codes)), (2, (offset, graphs)), (4, (offset, buffers)))
    builder.Finish(model, b"TFL3")
    return bytes(builder.Output())
