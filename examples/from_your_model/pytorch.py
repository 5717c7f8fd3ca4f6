#!/usr/bin/env python3
"""Exports a small PyTorch network to ONNX.

    pytorch.py DIR

writes photo.onnx, an input (photo.npy) and PyTorch's result for it (expected.npy). Needs PyTorch and NumPy.
"""

import pathlib
import sys

import numpy
import torch


class Network(torch.nn.Module):
    def __init__(self):
        super().__init__()
        self.convolution = torch.nn.Conv2d(3, 8, 3, padding=1)
        self.linear = torch.nn.Linear(8, 5)

    def forward(self, image):
        features = torch.relu(self.convolution(image)).mean(dim=(2, 3))
        return torch.softmax(self.linear(features), dim=1)


folder = pathlib.Path(sys.argv[1])
torch.manual_seed(0)
network = Network().eval()
photo = torch.rand(1, 3, 32, 32)

torch.onnx.export(network, (photo,), str(folder / "photo.onnx"), input_names=["image"], output_names=["probabilities"])

numpy.save(folder / "photo.npy", numpy.array(photo.tolist(), dtype=numpy.float32))
with torch.no_grad():
    numpy.save(folder / "expected.npy", numpy.array(network(photo).tolist()))
