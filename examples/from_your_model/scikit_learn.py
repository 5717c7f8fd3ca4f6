#!/usr/bin/env python3
"""Trains a classifier with scikit-learn and exports it to ONNX.

    scikit_learn.py DIR

writes iris.onnx, an input (flower.npy) and scikit-learn's result for it (expected.npy).
"""

import pathlib
import sys

import numpy
from skl2onnx import to_onnx
from sklearn.datasets import load_iris
from sklearn.linear_model import LogisticRegression
from sklearn.pipeline import make_pipeline
from sklearn.preprocessing import StandardScaler

folder = pathlib.Path(sys.argv[1])
flowers, species = load_iris(return_X_y=True)
flowers = flowers.astype(numpy.float32)
classifier = make_pipeline(StandardScaler(), LogisticRegression()).fit(flowers, species)

onnx_model = to_onnx(
    classifier,
    flowers[:1],
    options={"zipmap": False},  # probabilities as a tensor, not as a list of dictionaries
    black_op={"LinearClassifier", "LinearRegressor", "Normalizer", "Scaler"},  # plain operators instead
)
(folder / "iris.onnx").write_bytes(onnx_model.SerializeToString())

numpy.save(folder / "flower.npy", flowers[60:61])
numpy.save(folder / "expected.npy", classifier.predict_proba(flowers[60:61]))
