"""Predicts the digits of the example from Python, through the C interface and ctypes alone.

Every declaration below is written by hand from include/quavin/c.h, as a host in any language would do it.

    host_from_c_header.py LIBRARY DIGITS_EXAMPLE
"""

import ctypes
import sys
from ctypes import POINTER, byref, c_char_p, c_float, c_int32, c_int64, c_size_t, c_uint8, c_void_p
from pathlib import Path

SUCCESS = 1
OUT_OF_RANGE = 14
LABEL = 64  # after the pixels


class Keys(ctypes.Structure):
    _fields_ = [("size", c_size_t), ("archive_key", c_void_p), ("component_key", c_void_p),
                ("component_keys", c_void_p), ("component_key_count", c_size_t)]


class LoadOptions(ctypes.Structure):
    _fields_ = [("size", c_size_t), ("engine", c_void_p), ("keys", POINTER(Keys)), ("registered", c_int32),
                ("reserved", c_int32)]


class Port(ctypes.Structure):
    _fields_ = [("size", c_size_t), ("name", c_char_p), ("description", c_char_p), ("dims", POINTER(c_int64)),
                ("rank", c_size_t), ("bytes", c_size_t), ("kind", c_int32), ("element_type", c_int32),
                ("required", c_int32), ("reserved", c_int32)]


class Output(ctypes.Structure):
    _fields_ = [("size", c_size_t), ("name", c_char_p), ("data", c_void_p), ("bytes", c_size_t),
                ("dims", POINTER(c_int64)), ("rank", c_size_t), ("element_type", c_int32), ("reserved", c_int32)]


SIGNATURES = {
    "quavin_init": [c_void_p],
    "quavin_terminate": [],
    "quavin_load_directory": [c_char_p, POINTER(LoadOptions), POINTER(c_void_p)],
    "quavin_model_get_input": [c_void_p, c_size_t, POINTER(Port)],
    "quavin_model_release": [c_void_p],
    "quavin_predict": [c_void_p, POINTER(c_void_p), POINTER(c_size_t), c_size_t, POINTER(c_void_p)],
    "quavin_outputs_get": [c_void_p, c_size_t, POINTER(Output)],
    "quavin_outputs_release": [c_void_p],
}


class Quavin:
    """The library, with a method for each of the functions above that raises RuntimeError on failure."""

    def __init__(self, library):
        self.library = ctypes.CDLL(library)
        self.library.quavin_last_error.restype = c_char_p
        for name, arguments in SIGNATURES.items():
            function = getattr(self.library, name)
            function.argtypes = arguments
            function.restype = c_int32

    def __getattr__(self, name):
        function = getattr(self.library, "quavin_" + name)

        def call(*arguments):
            status = function(*arguments)
            if status != SUCCESS:
                raise RuntimeError(f"status {status}: {self.library.quavin_last_error().decode()}")
        return call


def right_predictions(quavin, folder, options, digits):
    """The number of digits that the package in the folder recognises."""
    model, outputs = c_void_p(), c_void_p()
    quavin.load_directory(str(folder).encode(), options, byref(model))
    port = Port(size=ctypes.sizeof(Port))
    quavin.model_get_input(model, 0, byref(port))
    assert port.name == b"image" and port.dims[:port.rank] == [1, 1, 8, 8] and port.bytes == 256, port.name

    image = (c_float * 64)()
    inputs = (c_void_p * 1)(ctypes.addressof(image))
    sizes = (c_size_t * 1)(port.bytes)
    output = Output(size=ctypes.sizeof(Output))
    right = 0
    for digit in digits:
        image[:] = digit[:LABEL]
        quavin.predict(model, inputs, sizes, 1, byref(outputs))
        quavin.outputs_get(outputs, 0, byref(output))
        probabilities = ctypes.cast(output.data, POINTER(c_float))[:10]
        right += probabilities.index(max(probabilities)) == digit[LABEL]
        quavin.outputs_release(outputs)
    try:
        quavin.model_get_input(model, 1, byref(port))
        raise AssertionError("the model has a second input")
    except RuntimeError as failure:
        assert str(failure) == f"status {OUT_OF_RANGE}: There is no index 1 among 1", failure
    quavin.model_release(model)
    return right


def main(library, example):
    folder = Path(example)
    bytes_of_digits = (folder / "held_out.bin").read_bytes()
    digits = [bytes_of_digits[i:i + LABEL + 1] for i in range(0, len(bytes_of_digits), LABEL + 1)]
    key = (c_uint8 * 16).from_buffer_copy(bytes.fromhex((folder / "demo.key").read_text(encoding="ascii")))
    keys = Keys(size=ctypes.sizeof(Keys), component_key=ctypes.addressof(key))
    options = LoadOptions(size=ctypes.sizeof(LoadOptions), keys=ctypes.pointer(keys))

    quavin = Quavin(library)
    quavin.init(None)
    plain = right_predictions(quavin, folder / "package", None, digits)
    secured = right_predictions(quavin, folder / "secured_package", options, digits)
    quavin.terminate()
    print(f"{plain} and {secured} of {len(digits)} digits right")
    return 0 if plain == secured and plain * 100 >= len(digits) * 97 else 1


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
