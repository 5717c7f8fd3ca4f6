"""Makes a converted model fit for a package: fixed shapes, element types, names."""

from __future__ import annotations

import operator
import shlex
import shutil
from collections.abc import Mapping, Sequence
from pathlib import Path
from typing import Any

import numpy as np
import numpy.typing as npt

from quavin._original import Original
from quavin._packing import ConversionError

# What a package takes and returns instead of a model's own types, by OpenVINO's names.
_INPUT_TYPES = {
    "f16": "f32", "f64": "f32",
    "i64": "i32", "u64": "i32", "u32": "i32", "u16": "i32",
    "boolean": "i8", "u8": "i8",
    "f32": "f32", "i32": "i32", "i16": "i16", "i8": "i8",
}  # fmt: skip
_OUTPUT_TYPES = {
    "f16": "f32", "bf16": "f32", "f64": "f32", "f32": "f32",
    "i64": "i32", "u64": "i32", "u32": "i32", "u16": "i32", "i16": "i32", "u8": "i32", "i8": "i32",
    "boolean": "i32", "i32": "i32",
}  # fmt: skip
_DTYPES: dict[str, np.dtype[Any]] = {
    "f32": np.dtype(np.float32), "i32": np.dtype(np.int32), "i16": np.dtype(np.int16), "i8": np.dtype(np.int8),
}  # fmt: skip
_SPOKEN = {
    "f16": "float16", "bf16": "bfloat16", "f32": "float32", "f64": "float64", "boolean": "bool",
    "i8": "int8", "i16": "int16", "i32": "int32", "i64": "int64",
    "u8": "uint8", "u16": "uint16", "u32": "uint32", "u64": "uint64",
}  # fmt: skip
_BYTES = "uint8, as the int8 of the same bits"


class Fitted:
    """A model that can be packed, made from an original that stays as it is."""

    def __init__(self, openvino: Any, original: Original) -> None:
        self._openvino = openvino
        self.model = original.model.clone()
        self.input_names = list(original.input_names)
        self.output_names = list(original.output_names)
        self.changes: list[str] = []
        self.shapes: dict[str, tuple[int, ...]] = {}
        self.types: dict[str, str] = {}
        self.names: dict[str, str] = {}

    def fix_shapes(self, shapes: Mapping[str, Sequence[int]], examples: Mapping[str, npt.NDArray[Any]]) -> None:
        """Gives every input a fixed shape: the wanted one, that of its example, or its own.

        Raises ValueError for an unknown name, TypeError for what is not a shape, and ConversionError if a dimension
        stays open or does not fit.
        """
        require_known(shapes, self.input_names, "shapes", "input")
        wanted = {name: array.shape for name, array in examples.items()}
        wanted |= {name: _sizes(name, shape) for name, shape in shapes.items()}
        before = [str(port.partial_shape) for port in self.model.inputs]
        try:
            self.model.reshape({i: wanted[name] for i, name in enumerate(self.input_names) if name in wanted})
        except Exception as error:
            raise ConversionError(f"the model does not work with these shapes: {str(error).strip()}") from error
        ports = dict(zip(self.input_names, self.model.inputs))
        if any(port.partial_shape.is_dynamic for port in ports.values()):
            raise ConversionError(_advice(ports))
        self.shapes = {name: tuple(port.shape) for name, port in ports.items()}
        self.types = {name: port.element_type.get_type_name() for name, port in ports.items()}
        for (name, shape), old in zip(self.shapes.items(), before):
            if old != str(ports[name].partial_shape):
                self.changes.append(f'input "{name}": the shape {old} is fixed to {list(shape)}')

    def select(self, outputs: Sequence[str] | None) -> None:
        """Keeps these outputs, in this order, and the inputs that they depend on.

        Raises ValueError for an unknown name, and ConversionError for an output whose shape is not fixed.
        """
        require_known(outputs or (), self.output_names, "outputs", "output")
        results = dict(zip(self.output_names, self.model.get_results()))
        kept = list(outputs or self.output_names)
        for name in kept:
            shape = results[name].get_output_partial_shape(0)
            if shape.is_dynamic:
                raise ConversionError(
                    f'the output "{name}" has the shape {shape}, which depends on the data: packages need fixed ones'
                )
        reached = _reached([results[name] for name in kept])
        parameters = dict(zip(self.input_names, self.model.get_parameters()))
        unused = [name for name, node in parameters.items() if node.get_name() not in reached]
        self.changes += [f'input "{name}" is left out: no output depends on it' for name in unused]
        self.output_names = kept
        self.input_names = [name for name in self.input_names if name not in unused]
        self.model = self._openvino.Model(
            [results[name] for name in kept],
            self.model.get_sinks(),
            [parameters[name] for name in self.input_names],
            self.model.get_friendly_name(),
        )

    def has_half_precision(self) -> bool:
        """Whether anything in the model has 16 bits, which the engine computes with 32."""
        values = (value for node in self.model.get_ops() for value in node.outputs())
        return any(value.get_element_type() == self._type("f16") for value in values)

    def fit_types(self) -> None:
        """Converts what packages cannot take or return, inside the model.

        Raises ConversionError for a type that they have no other type for, such as text.
        """
        steps = self._openvino.preprocess.PrePostProcessor(self.model)
        for index, name in enumerate(self.input_names):
            own = self.types[name]
            target = _target(_INPUT_TYPES, own, f'the input "{name}"')
            if target == own:
                continue
            steps.input(index).tensor().set_element_type(self._type(target))
            if own == "u8":
                steps.input(index).preprocess().custom(self._same_bits)
                self.changes.append(
                    f'input "{name}": uint8 goes in as the int8 of the same bits (view it as int8, don\'t convert it)'
                )
            else:
                self.changes.append(f'input "{name}": {_SPOKEN[own]} becomes {_SPOKEN[target]}')
        for index, name in enumerate(self.output_names):
            own = self.model.outputs[index].element_type.get_type_name()
            target = _target(_OUTPUT_TYPES, own, f'the output "{name}"')
            if target != own:
                steps.output(index).tensor().set_element_type(self._type(target))
                self.changes.append(f'output "{name}": {_SPOKEN[own]} becomes {_SPOKEN[target]}')
        self.model = steps.build()

    def name_ports(self, rename: Mapping[str, str]) -> None:
        """Gives each port one name of its own.

        Raises ValueError for a new name that cannot be used or is there twice.
        """
        for new in rename.values():
            if new != _usable(new):
                raise ValueError(f"rename: {new!r} cannot be used as a name; {_usable(new)!r} could")
        self._separate_outputs()
        taken: set[str] = set()
        for ports, names in ((self.model.inputs, self.input_names), (self.model.outputs, self.output_names)):
            for port, old in zip(ports, names):
                new = rename.get(old, _usable(old))
                if new in taken:
                    raise ValueError(f'two inputs or outputs would be called "{new}": choose names with rename')
                taken.add(new)
                port.get_tensor().set_names({new})
                self.names[old] = new
                if new != old:
                    self.changes.append(f'"{old}" is now called "{new}"')

    def described(self, descriptions: Mapping[str, str]) -> dict[str, str]:
        """The descriptions of the ports, by their new names."""
        texts = {self.names[name]: text for name, text in descriptions.items() if text and name in self.names}
        for name in self.input_names:
            if self.types[name] == "u8":  # which the package's own type does not tell
                texts[self.names[name]] = "; ".join(filter(None, (descriptions.get(name), _BYTES)))
        return texts

    def size(self) -> int:
        """At least the bytes of the files to be written, but for the text of the network."""
        return sum(node.get_byte_size() for node in self.model.get_ops() if node.get_type_name() == "Constant")

    def write(self, folder: Path, stem: str, fp16: bool) -> Path:
        """Writes the network and its weights, and returns the path of the first.

        Raises OSError.
        """
        # Names that OpenVINO made up are different each time; packages of one model are not to be.
        for index, node in enumerate(self.model.get_ordered_ops()):
            kind = node.get_type_name()
            if kind == "Constant" or node.get_friendly_name() == node.get_name():
                node.set_friendly_name(f"{kind}_{index}")
        path = folder / f"{stem}.xml"
        try:
            self._openvino.save_model(self.model, path, compress_to_fp16=fp16)
        except RuntimeError as error:  # without the system's own reason
            room = shutil.disk_usage(folder).free
            raise OSError(f"{path} cannot be written, with {room} bytes free there: {str(error).strip()}") from error
        return path

    def package_inputs(self, arrays: Mapping[str, npt.NDArray[Any]]) -> dict[str, npt.NDArray[Any]]:
        """What the package takes in place of what the original takes."""
        return {self.names[name]: _package_input(arrays[name], self.types[name]) for name in self.input_names}

    def package_outputs(self, arrays: Mapping[str, npt.NDArray[Any]]) -> dict[str, npt.NDArray[Any]]:
        """The original's outputs that the package has, under their new names."""
        return {self.names[name]: arrays[name] for name in self.output_names}

    def _type(self, name: str) -> Any:
        return getattr(self._openvino.Type, name)

    def _same_bits(self, node: Any) -> Any:
        """Bytes from int8 of the same bits: the remainder by 256. In floats, where the engine fuses it: as fast as
        bytes themselves, while it has no fast way to combine bits."""
        opset = self._openvino.opset13
        remainder = opset.floor_mod(opset.convert(node, "f32"), opset.constant(np.float32(256)))
        return opset.convert(remainder, "u8").output(0)

    def _separate_outputs(self) -> None:
        """An output that is also an input, or another output, would share its names."""
        seen: set[tuple[str, int]] = set()
        for result in self.model.get_results():
            source = result.input_value(0)
            node = source.get_node()
            place = (node.get_name(), source.get_index())
            if place in seen or node.get_type_name() == "Parameter":
                result.input(0).replace_source_output(self._openvino.opset16.identity(source).output(0))
            seen.add(place)
        self.model.validate_nodes_and_infer_types()  # until then they go on sharing names


def _package_input(array: npt.NDArray[Any], own_type: str) -> npt.NDArray[Any]:
    return array.view(np.int8) if own_type == "u8" else np.require(array, _DTYPES[_INPUT_TYPES[own_type]], ["C", "A"])


def require_known(names: Any, known: Sequence[str], option: str, kind: str) -> None:
    """Raises ValueError for a name that is not known."""
    for name in names:
        if name not in known:
            there = ", ".join(f'"{each}"' for each in known)
            raise ValueError(f'{option}: the model has no {kind} "{name}"; it has {there}')


def _sizes(name: str, shape: Sequence[int]) -> tuple[int, ...]:
    try:
        return tuple(map(operator.index, shape))
    except TypeError:
        raise TypeError(f'shapes: "{name}" must be a sequence of integers, not {shape!r}') from None


def _advice(ports: Mapping[str, Any]) -> str:
    dynamic = {name: port.partial_shape for name, port in ports.items() if port.partial_shape.is_dynamic}
    fixed = {
        name: ["..."] if shape.rank.is_dynamic else ["1" if d.is_dynamic else str(d.get_length()) for d in shape]
        for name, shape in dynamic.items()
    }
    there = ", ".join(f'"{name}" {shape}' for name, shape in dynamic.items())
    argument = ", ".join(f'"{name}": [{", ".join(sizes)}]' for name, sizes in fixed.items())
    options = " ".join("--shape " + shlex.quote(f"{name}={','.join(sizes)}") for name, sizes in fixed.items())
    return (
        f"packages need fixed shapes, and these inputs have open ones: {there}. Fix them with shapes={{{argument}}}, "
        f"or on the command line with {options}, and put the sizes that you need in place of each 1"
    )


def _reached(results: Sequence[Any]) -> set[str]:
    """The names of the nodes that these depend on."""
    reached: set[str] = set()
    ahead = list(results)
    while ahead:
        node = ahead.pop()
        if node.get_name() not in reached:
            reached.add(node.get_name())
            ahead += [value.get_node() for value in node.input_values()]
    return reached


def _target(types: Mapping[str, str], own: str, what: str) -> str:
    if own not in types:
        raise ConversionError(f"{what} has the element type {_SPOKEN.get(own, own)}, which packages do not have")
    return types[own]


def _usable(name: str) -> str:
    """The name with "_" for what has a meaning in lists of names or on command lines, or cannot be printed."""
    return "".join("_" if c in '\\,="' or c.isspace() or not c.isprintable() else c for c in name) or "_"
