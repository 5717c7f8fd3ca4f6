"""The model to convert: OpenVINO's form of it, and what its own framework predicts."""

from __future__ import annotations

import contextlib
import inspect
import itertools
import os
import sys
from collections.abc import Callable, Iterator, Mapping, Sequence
from dataclasses import dataclass, field
from pathlib import Path
from typing import Any

import numpy as np
import numpy.typing as npt

from quavin._packing import ConversionError

Arrays = Mapping[str, npt.NDArray[Any]]


@dataclass(frozen=True)
class Original:
    """A model before anything is changed."""

    model: Any
    """The openvino.Model."""
    input_names: tuple[str, ...]
    output_names: tuple[str, ...]
    framework: str
    """What `predict` computes with."""
    predict: Callable[[Arrays], Sequence[npt.NDArray[Any]]]
    """Returns the outputs in the order of their names."""
    examples: Arrays = field(default_factory=dict)
    """Inputs that came with the model."""


def read_original(openvino: Any, source: Any, weights: Any, example_inputs: Any, outputs: Any) -> Original:
    """Reads a model from a file, or takes a PyTorch module.

    Raises ConversionError if OpenVINO cannot convert it, TypeError or ValueError for arguments that don't fit,
    and OSError if there is no such file.
    """
    if isinstance(source, (str, os.PathLike)):
        if example_inputs is not None:
            raise ValueError("example_inputs are for PyTorch modules; compare files with inputs=...")
        return _read_file(openvino, Path(source), weights, outputs)
    torch = sys.modules.get("torch")
    if torch is None or not isinstance(source, torch.nn.Module):
        raise TypeError(f"source must be a path or a PyTorch module, not {type(source).__name__}")
    if weights is not None:
        raise ValueError("weights are for files; a module has its own")
    if not hasattr(torch, "float8_e4m3fn"):  # OpenVINO's own failure would be that it lacks this
        raise ConversionError(
            "OpenVINO converts modules of PyTorch 2.1 or later; export this one with torch.onnx.export, and pack the file"
        )
    return _read_module(openvino, torch, source, example_inputs)


def _read_file(openvino: Any, path: Path, weights: Any, outputs: Sequence[str] | None) -> Original:
    if not path.exists():
        raise FileNotFoundError(f"there is no model {path}")
    kind = path.suffix.lower()
    if weights is not None and kind not in (".xml", ".pdmodel"):
        raise ValueError(f"weights are for OpenVINO IR and PaddlePaddle, not for {path.name}")
    with _converting(path.name):
        if kind == ".xml":
            model = openvino.Core().read_model(path, *([weights] if weights else []))
        else:
            # Those outputs of an ONNX model that are not wanted may be all that cannot be converted.
            wanted = list(outputs) if outputs and kind == ".onnx" else None
            model = openvino.convert_model([path, Path(weights)] if weights else path, output=wanted)
    # TensorFlow numbers the outputs of a layer. In ONNX such a number is part of the name.
    number = "" if kind == ".onnx" else ":0"
    inputs, names = port_names(model.inputs, "input", number), port_names(model.outputs, "output", number)
    run = _onnxruntime(path, names) if kind == ".onnx" else None
    framework, predict = run or (f"OpenVINO {_version(openvino)}", _openvino(openvino, model, inputs))
    return Original(model, inputs, _distinct(names, inputs), framework, predict)


def port_names(ports: Sequence[Any], fallback: str, number: str) -> tuple[str, ...]:
    """The author's name for each port, of those that OpenVINO knows, without a number at the end."""
    return tuple(
        _name(port, fallback if len(ports) == 1 else f"{fallback}_{index}", number) for index, port in enumerate(ports)
    )


def _name(port: Any, fallback: str, number: str) -> str:
    names: set[str] = {name.removesuffix(number) for name in port.get_names()}
    layer: str = port.get_node().get_friendly_name().removesuffix("/sink_port_0")
    if layer in names or not names:
        return layer if layer in names else fallback
    return min(names, key=lambda name: (len(name), name))


def _distinct(names: Sequence[str], taken: Sequence[str]) -> tuple[str, ...]:
    """The names, with a number where the same is there already."""
    distinct: list[str] = []
    for name in names:
        numbered = (f"{name}_{number}" for number in itertools.count(1))
        distinct.append(next(each for each in itertools.chain([name], numbered) if each not in (*taken, *distinct)))
    return tuple(distinct)


def _onnxruntime(path: Path, outputs: Sequence[str]) -> Any:
    """None if ONNX Runtime is not installed."""
    os.environ.setdefault("ORT_DISABLE_TELEMETRY", "1")
    try:
        import onnxruntime
    except ImportError:
        return None
    onnxruntime.disable_telemetry_events()
    options = onnxruntime.SessionOptions()
    options.log_severity_level = 4  # errors are raised, and need not be printed as well
    with _converting(path.name):
        session = onnxruntime.InferenceSession(path, options, providers=["CPUExecutionProvider"])

    def predict(inputs: Arrays) -> Sequence[npt.NDArray[Any]]:
        result: Sequence[npt.NDArray[Any]] = session.run(list(outputs), dict(inputs))
        return result

    return f"onnxruntime {onnxruntime.__version__}", predict


def _openvino(openvino: Any, model: Any, names: Sequence[str]) -> Callable[[Arrays], Sequence[npt.NDArray[Any]]]:
    original = model.clone()

    def predict(inputs: Arrays) -> Sequence[npt.NDArray[Any]]:
        compiled = openvino.Core().compile_model(original, "CPU", {"INFERENCE_PRECISION_HINT": "f32"})
        results = compiled([inputs[name] for name in names])
        return [results[index] for index in range(len(original.outputs))]

    return predict


def _read_module(openvino: Any, torch: Any, module: Any, example_inputs: Any) -> Original:
    if example_inputs is None:
        raise ValueError("a PyTorch module needs example_inputs")
    if module.training:
        raise ValueError("the module is in training mode, where it predicts something else: call its eval() first")
    if isinstance(example_inputs, torch.Tensor):
        example_inputs = (example_inputs,)
    by_name = isinstance(example_inputs, Mapping)
    if not by_name and not isinstance(example_inputs, (tuple, list)):
        kind = type(example_inputs).__name__
        raise TypeError(f"example_inputs must be a tensor, a tuple of them, or a dict of them by name, not {kind}")
    bound = inspect.signature(module.forward).bind(
        *(() if by_name else example_inputs), **(example_inputs if by_name else {})
    )
    examples = {name: value for name, value in bound.arguments.items() if isinstance(value, torch.Tensor)}

    def run(tensors: Mapping[str, Any]) -> dict[str, Any]:
        arguments = {**bound.arguments, **tensors}
        call = inspect.BoundArguments(bound.signature, arguments)
        with torch.no_grad():
            return _flattened(torch, module(*call.args, **call.kwargs))

    def predict(inputs: Arrays) -> Sequence[npt.NDArray[Any]]:
        return [_array(value) for value in run({name: torch.from_numpy(inputs[name]) for name in inputs}).values()]

    with _converting(type(module).__name__):
        outputs = tuple(run({}))
        model = openvino.convert_model(module, example_input=example_inputs)
    if len(model.outputs) != len(outputs):
        raise ConversionError(f"the module returns {len(outputs)} tensors, and its converted form {len(model.outputs)}")
    inputs = tuple(port.get_node().get_friendly_name() for port in model.inputs)
    if not set(inputs) <= set(examples):
        if len(inputs) != len(examples):
            raise ConversionError(f"the module's arguments {_listed(examples)} became the inputs {_listed(inputs)}")
        inputs = tuple(examples)
    arrays = {name: _array(examples[name]) for name in inputs}
    return Original(model, inputs, _distinct(outputs, inputs), f"torch {torch.__version__}", predict, arrays)


def _flattened(torch: Any, result: Any) -> dict[str, Any]:
    """The tensors that a module returns, by name; those without one are numbered."""
    if isinstance(result, Mapping):
        return {str(name): value for name, value in result.items() if value is not None}
    values = [result] if isinstance(result, torch.Tensor) else list(result)
    if len(values) == 1:
        return {"output": values[0]}
    return {f"output_{index}": value for index, value in enumerate(values)}


def _array(tensor: Any) -> npt.NDArray[Any]:
    tensor = tensor.detach().cpu()
    # NumPy lacks some of PyTorch's types.
    return np.ascontiguousarray((tensor.double() if tensor.is_floating_point() else tensor).numpy())


def _version(openvino: Any) -> str:
    return str(openvino.__version__).partition("-")[0]


def _listed(names: Any) -> str:
    return ", ".join(f'"{name}"' for name in names)


@contextlib.contextmanager
def _converting(what: str) -> Iterator[None]:
    """Turns whatever a converter raises into a ConversionError."""
    try:
        yield
    except Exception as error:
        raise ConversionError(f"{what} cannot be converted: {str(error).strip()}") from error
