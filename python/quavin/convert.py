"""The command `quavin-convert`: makes a package of a model in another format.

    python3 -m quavin.convert model.onnx -o package --shape ids=1,128
"""

from __future__ import annotations

import argparse
import signal
import sys
from collections.abc import Sequence
from typing import Any

import numpy as np
import numpy.typing as npt

from quavin._errors import QuavinError
from quavin._packing import ConversionError, pack


_NAMED = {"--shape": "shapes", "--rename": "rename", "--describe": "descriptions", "--input": "inputs"}


def _named(text: str) -> tuple[str, str]:
    name, equals, value = text.partition("=")
    if not (name and equals and value):
        raise argparse.ArgumentTypeError(f"takes NAME=VALUE, not {text}")
    return name, value


def _shape(text: str) -> tuple[str, tuple[int, ...]]:
    name, sizes = _named(text)
    try:
        return name, tuple(int(size) for size in sizes.split(","))
    except ValueError:
        raise argparse.ArgumentTypeError(f"takes NAME=SIZE,SIZE,..., not {text}") from None


def _array(file: str) -> npt.NDArray[Any]:
    try:
        with open(file, "rb") as stream:
            array: npt.NDArray[Any] = np.lib.format.read_array(stream, allow_pickle=False)
    except ValueError as error:
        raise ValueError(f"--input: {file} is not a .npy file of numbers: {error}") from error
    return array


def _by_name(option: str, pairs: Sequence[tuple[str, Any]]) -> dict[str, Any]:
    values: dict[str, Any] = {}
    for name, value in pairs:
        if name in values:
            raise ValueError(f"{option}: {name} is given more than once")
        values[name] = value
    return values


def _parser() -> argparse.ArgumentParser:
    parser = argparse.ArgumentParser(
        prog="quavin-convert",
        description="Makes a package of an ONNX, TensorFlow Lite, TensorFlow or PaddlePaddle model, or of OpenVINO IR, "
        "and compares its predictions with the model's. Names are those of the model.",
        allow_abbrev=False,
    )
    add = parser.add_argument
    add("source", metavar="MODEL", help="the model's file or folder")
    add("weights", metavar="WEIGHTS", nargs="?", help="its second file, if it is not beside the first")
    add("-o", "--output", dest="destination", metavar="DIR|FILE.tar", required=True,
        help="the new directory, or the new archive if it ends in .tar")  # fmt: skip

    change = parser.add_argument_group("what to change")
    add = change.add_argument
    add("--shape", dest="shapes", metavar="NAME=SIZE,...", type=_shape, action="append",
        help="the fixed shape of an input; repeat for others")  # fmt: skip
    add("--only-output", dest="outputs", metavar="NAME", action="append",
        help="keep only this output; repeat for others")  # fmt: skip
    add("--rename", metavar="NAME=NEW", type=_named, action="append", help="a new name for an input or output")
    add("--describe", dest="descriptions", metavar="NAME=TEXT", type=_named, action="append",
        help="describe an input or output")  # fmt: skip
    add("--fp16", action="store_true", help="store weights as 16-bit floats")

    check = parser.add_argument_group("how to compare")
    add = check.add_argument
    add("--input", dest="inputs", metavar="NAME=FILE", type=_named, action="append",
        help="a .npy file to compare with, in the model's own type; by default random numbers")  # fmt: skip
    add("--tolerance", metavar="PART", type=float,
        help="the largest difference allowed, as a part of the largest value "
        "(default: 1e-4, or 1e-2 with 16-bit floats)")  # fmt: skip

    package = parser.add_argument_group("the package, as for quavin pack")
    add = package.add_argument
    for name in ("id", "name", "author", "description", "sdk-version"):
        add(f"--{name}", metavar="TEXT")
    add("--model-version", dest="version", metavar="NUMBER", type=int)
    add("--root", metavar="TEXT")
    add("--encrypt", choices=["components", "archive"])
    add("--key-file", metavar="FILE")
    add("--key-env", metavar="NAME")
    add("--sign", dest="private_key", metavar="FILE")
    add("--passphrase-env", metavar="NAME")
    add("--passphrase-file", metavar="FILE")
    add("--allow-open-key-file", action="store_true")
    parser.add_argument("-q", "--quiet", action="store_true", help="print only errors")
    return parser


def _stop(number: int, frame: object) -> None:
    sys.exit(128 + number)


def _clean_up_when_stopped() -> None:
    """Python would end at once, and leave the network, perhaps one that was to be encrypted."""
    for name in ("SIGTERM", "SIGHUP"):
        number = getattr(signal, name, None)  # there is no SIGHUP on Windows
        if number is not None and signal.getsignal(number) == signal.SIG_DFL:
            signal.signal(number, _stop)


def main(arguments: Sequence[str] | None = None) -> int:
    _clean_up_when_stopped()
    options: dict[str, Any] = vars(_parser().parse_args(arguments))
    quiet = options.pop("quiet")
    try:
        for option, argument in _NAMED.items():
            options[argument] = _by_name(option, options[argument] or ())
        options["inputs"] = {name: _array(file) for name, file in options["inputs"].items()}
        report = pack(**options)
    except (ConversionError, ImportError, OSError, QuavinError, TypeError, ValueError) as error:
        print(f"quavin-convert: {error}", file=sys.stderr)
        return 1
    except KeyboardInterrupt:
        return 128 + signal.SIGINT
    if not quiet:
        print(report)
    return 0


if __name__ == "__main__":
    sys.exit(main())
