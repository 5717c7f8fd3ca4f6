"""OpenVINO's Python package, which converts models, without its usage statistics."""

from __future__ import annotations

import importlib
import re
import sys
from typing import Any

from quavin._engine import engine_info

_STATISTICS = "openvino_telemetry"


def load_openvino() -> Any:
    """The package. Its converter sends nothing from then on, whoever calls it.

    Raises ImportError if there is none, or another version than that of the library's runtime.
    """
    if sys.modules.get("openvino") is None:
        _import_without_statistics()
    openvino = sys.modules["openvino"]
    ours, theirs = (_release(text) for text in (engine_info().runtime_version, openvino.__version__))
    if ours != theirs:
        raise ImportError(f"the package openvino has the version {theirs}, and the library's runtime {ours}")
    # The converter's own stand-in for statistics; it imported the real ones if somebody was here before.
    silent = importlib.import_module("openvino.tools.ovc.telemetry_stub")
    for name, module in list(sys.modules.items()):
        if name.startswith("openvino.tools.") and hasattr(module, "tm"):
            setattr(module, "tm", silent)
    return openvino


def _import_without_statistics() -> None:
    known = sys.modules.get(_STATISTICS)
    sys.modules[_STATISTICS] = None  # type: ignore[assignment]  # makes its import fail
    try:
        importlib.import_module("openvino")
    except ModuleNotFoundError as error:
        if error.name != "openvino":
            raise
        raise ImportError("converting models needs the package openvino") from None
    finally:
        if known is None:
            del sys.modules[_STATISTICS]
        else:
            sys.modules[_STATISTICS] = known


def _release(version: str) -> str:
    """Without the number of the build."""
    found = re.match(r"[\d.]+", version)
    return found[0] if found else version
