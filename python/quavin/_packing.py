"""From a trained model to a package that is known to predict the same."""

from __future__ import annotations

import os
from collections.abc import Mapping, Sequence
from dataclasses import dataclass
from pathlib import Path
from typing import Any, Literal

import numpy.typing as npt

from quavin._loading import load
from quavin._options import BytesLike
from quavin._ports import Port, table
from quavin._secret import Secret
from quavin._staging import absent, private_folder, staged, stem_of
from quavin._tool import ToolError, run_tool

Encryption = Literal["components", "archive"]

_TOLERANCE = 1e-4
_TOLERANCE_HALF = 1e-2


class ConversionError(Exception):
    """A model cannot be made into a package, or the package would predict something else. The text says why."""


@dataclass(frozen=True)
class PackReport:
    """What `pack` did."""

    destination: Path
    """The new package."""
    inputs: tuple[Port, ...]
    """What the package takes."""
    outputs: tuple[Port, ...]
    """What the package returns."""
    changes: tuple[str, ...]
    """What differs from the original, a sentence for each change."""
    compared_with: str
    """What computed the expected outputs, such as "onnxruntime 1.31.1"."""
    difference: float
    """The largest difference found, as a part of the largest value of the output."""

    def __str__(self) -> str:
        lines = [f"Packed as {self.destination}", *self.changes, "inputs:"]
        lines += ["  " + line for line in table(self.inputs)]
        lines += ["outputs:"] + ["  " + line for line in table(self.outputs)]
        lines += [f"largest difference from {self.compared_with}: {self.difference:.1e} of the largest value"]
        return "\n".join(lines)


def pack(
    source: Any,
    destination: str | os.PathLike[str],
    *,
    weights: str | os.PathLike[str] | None = None,
    example_inputs: Any = None,
    shapes: Mapping[str, Sequence[int]] | None = None,
    outputs: Sequence[str] | None = None,
    fp16: bool = False,
    rename: Mapping[str, str] | None = None,
    descriptions: Mapping[str, str] | None = None,
    id: str | None = None,
    name: str | None = None,
    author: str | None = None,
    description: str | None = None,
    sdk_version: str | None = None,
    version: int | None = None,
    root: str | None = None,
    encrypt: Encryption | None = None,
    key: BytesLike | None = None,
    key_file: str | os.PathLike[str] | None = None,
    key_env: str | None = None,
    private_key: str | os.PathLike[str] | None = None,
    passphrase_env: str | None = None,
    passphrase_file: str | os.PathLike[str] | None = None,
    allow_open_key_file: bool = False,
    inputs: Mapping[str, npt.ArrayLike] | None = None,
    tolerance: float | None = None,
) -> PackReport:
    """Converts a model, compares the package with the original, and only then writes it.

    `source` is the path of an ONNX, TensorFlow Lite, TensorFlow (file or SavedModel folder) or PaddlePaddle
    model or of OpenVINO IR (.xml), or a PyTorch module in inference mode; `weights` is the second file of
    PaddlePaddle or IR, if it is not beside the first. A module needs `example_inputs`: a tensor, a tuple of the
    arguments, or a dict of them by name; their shapes become the package's.

    `destination` is a new directory, or a new archive if it ends in ".tar".

    All names below are those of the source. An output without a name is called "output", or "output_0",
    "output_1" and so on if there are several; an input "input", likewise. An output with the name of an input or of
    an output before it gets "_1" added, or the next number that is free.

      - `shapes`: fixed shapes, such as {"ids": (1, 128)}, for inputs that have none.
      - `outputs`: only these outputs, in this order.
      - `fp16`: weights are stored as 16-bit floats. They take half the space, and lose digits.
      - `rename`: new names for inputs and outputs.
      - `descriptions`: texts for them.
      - `inputs`: arrays to compare with, in the source's types. By default the example inputs, or else random
        numbers, always the same: integers are 0 or 1 (bytes 0 to 255), since larger ones may be out of range.
      - `tolerance`: the largest difference allowed, as a part of the largest value of the output; by default
        1e-4, or 1e-2 where weights or results have 16 bits.

    The other options are those of the command `quavin pack`, which makes the package: docs/command-line.md.
    `key` is a key of sixteen bytes, which the command gets in its environment.

    Element types that packages do not have are converted inside the network. A package takes and returns float32
    instead of float64 and float16, and int32 instead of int64; booleans go in as int8 and come out as int32. Bytes
    (uint8) go in as the int8 of the same bits, so pass `image.view(numpy.int8)`, which copies nothing.

    Raises ConversionError if the model cannot be converted or packed, or differs by more than the tolerance;
    TypeError or ValueError for arguments that don't fit, and OSError for files. The destination is then as it was.
    Nothing is sent over the network: the converter's usage statistics are switched off.
    """
    if isinstance(outputs, str):
        raise TypeError("outputs must be a sequence of names, not one text")
    target = absent(Path(destination))
    secret = Secret(encrypt, key, key_file, key_env)
    options = {
        "id": id,
        "name": name,
        "author": author,
        "description": description,
        "sdk-version": sdk_version,
        "model-version": version,
        "root": root,
        "sign": private_key,
        "passphrase-env": passphrase_env,
        "passphrase-file": passphrase_file,
    }
    # Not before: importing quavin takes none of the packages that converting takes.
    from quavin._comparing import inputs_to_compare_with, largest_difference
    from quavin._fitting import Fitted, require_known
    from quavin._openvino import load_openvino
    from quavin._original import read_original

    openvino = load_openvino()
    original = read_original(openvino, source, weights, example_inputs, outputs)
    ports = [*original.input_names, *original.output_names]
    require_known(inputs or {}, original.input_names, "inputs", "input")
    require_known(descriptions or {}, ports, "descriptions", "input or output")
    require_known(rename or {}, ports, "rename", "input or output")
    fitted = Fitted(openvino, original)
    fitted.fix_shapes(shapes or {}, original.examples)
    fitted.select(outputs)
    half = fp16 or fitted.has_half_precision()
    fitted.fit_types()
    fitted.name_ports(rename or {})
    arrays = inputs_to_compare_with(fitted.shapes, fitted.types, {**original.examples, **(inputs or {})})
    try:
        predicted = original.predict(arrays)
    except Exception as error:
        text = str(error).strip()
        raise ConversionError(f"{original.framework} does not predict with these inputs: {text}") from error
    expected = dict(zip(original.output_names, predicted, strict=True))

    if fp16:
        fitted.changes.append("weights are stored as 16-bit floats")

    arguments = [f"--{option}={value}" for option, value in options.items() if value not in (None, "")]
    arguments += [f"--describe={port}={text}" for port, text in fitted.described(descriptions or {}).items()]
    arguments += secret.options + ["--allow-open-key-file"] * allow_open_key_file
    with staged(target) as package:
        with private_folder(fitted.size() if encrypt else None) as folder:
            network = fitted.write(folder, stem_of(target), fp16)
            try:
                run_tool(["pack", str(network), f"--output={package}", "--quiet", *arguments], secret.environment)
            except ToolError as error:
                raise ConversionError(str(error).replace(f"{folder}{os.sep}", "")) from None
        with load(package, **secret.for_loading()) as model:
            found = model.predict(fitted.package_inputs(arrays))
            report = PackReport(
                destination=target,
                inputs=model.inputs,
                outputs=model.outputs,
                changes=tuple(fitted.changes),
                compared_with=original.framework,
                difference=largest_difference(fitted.package_outputs(expected), found),
            )
        allowed = tolerance if tolerance is not None else _TOLERANCE_HALF if half else _TOLERANCE
        if not report.difference <= allowed:
            raise ConversionError(
                f"the package differs from {report.compared_with} by {report.difference:.1e} of the largest value, and "
                f"{allowed:.1e} is allowed; was the same data meant to go in, or is a larger tolerance right?"
            )
    return report
