"""Recognises a digit, as short as it gets."""

from pathlib import Path

import numpy as np

import quavin

PACKAGE = Path(__file__).parents[1] / "digits" / "package"

with quavin.load(PACKAGE) as model:
    image = np.zeros((1, 1, 8, 8), np.float32)
    image[0, 0, 1:7, 3:5] = 16  # a vertical stroke, drawn in ink
    probabilities = model.predict({"image": image})["probabilities"]

print(f"This is a {probabilities.argmax()}.")
