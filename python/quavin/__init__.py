"""Runs machine-learning models on the user's own device::

    import numpy as np
    import quavin

    with quavin.load("examples/digits/package") as model:
        image = np.zeros((1, 1, 8, 8), np.float32)
        image[0, 0, 1:7, 3:5] = 16
        print(model.predict({"image": image})["probabilities"].argmax())

Inputs are read in place, and outputs are arrays over the engine's own memory. The library is switched on when
it is first needed, and off at exit. Its log goes to the logger "quavin".
"""

from quavin._engine import EngineInfo, engine_info
from quavin._errors import QuavinError, Status
from quavin._library import lib as _lib
from quavin._library import text as _text
from quavin._loading import load
from quavin._model import Metadata, Model
from quavin._network import Network, describe, describe_files
from quavin._packing import ConversionError, PackReport, pack
from quavin._ports import Port

__version__ = _text(_lib.quavin_version())

__all__ = [
    "ConversionError",
    "EngineInfo",
    "Metadata",
    "Model",
    "Network",
    "PackReport",
    "Port",
    "QuavinError",
    "Status",
    "describe",
    "describe_files",
    "engine_info",
    "load",
    "pack",
]
