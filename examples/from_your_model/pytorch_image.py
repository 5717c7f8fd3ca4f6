#!/usr/bin/env python3
"""Trains a PyTorch network that tells shapes in pictures apart, and packs it as it is in memory.

    pytorch_image.py FOLDER

writes the package FOLDER/shapes, a picture for it (picture.npy), and PyTorch's result for that picture (expected.npy).
"""

import pathlib
import sys

import numpy
import torch
from torch import nn

import quavin

SHAPES = ["disc", "square", "triangle"]
SIZE = 32


def draw(random, count):
    """Pictures as cameras and files give them, bytes of [count, height, width, 3], and the number of each shape."""
    labels = random.integers(0, len(SHAPES), count)
    pictures = numpy.empty((count, SIZE, SIZE, 3))
    rows, columns = numpy.mgrid[:SIZE, :SIZE]
    for picture, label in zip(pictures, labels):
        radius = random.uniform(6, 11)
        top, left = random.uniform(radius, SIZE - radius, 2)
        y, x = (rows - top) / radius, (columns - left) / radius
        inside = [x**2 + y**2 < 1, numpy.maximum(abs(x), abs(y)) < 0.9, (y < 0.9) & (2 * abs(x) < y + 1)][label]
        paper, ink = random.permutation([random.uniform(0, 110, 3), random.uniform(145, 255, 3)])
        picture[:] = numpy.where(inside[..., None], ink, paper) + random.normal(0, 12, picture.shape)
    return pictures.clip(0, 255).astype(numpy.uint8), labels


class ShapeNetwork(nn.Module):
    """Normalises the pictures itself, so that no host can do it differently than training did."""

    def __init__(self, mean, deviation):
        super().__init__()
        self.register_buffer("mean", mean)
        self.register_buffer("deviation", deviation)
        self.layers = nn.Sequential(
            *self.convolution(3, 8), *self.convolution(8, 16), *self.convolution(16, 32),
            nn.Flatten(), nn.Dropout(0.2), nn.Linear(32 * 4 * 4, len(SHAPES)),
        )

    @staticmethod
    def convolution(before, after):
        return nn.Conv2d(before, after, 3, stride=2, padding=1), nn.BatchNorm2d(after), nn.ReLU()

    def forward(self, image):
        normalised = (image.float() / 255 - self.mean) / self.deviation
        return torch.softmax(self.layers(normalised.permute(0, 3, 1, 2)), dim=1)


def train():
    torch.manual_seed(1)
    pictures, labels = map(torch.from_numpy, draw(numpy.random.default_rng(1), 3000))
    channels = pictures.flatten(0, 2) / 255
    network = ShapeNetwork(channels.mean(0), channels.std(0))
    optimizer = torch.optim.Adam(network.parameters(), 3e-3)
    for _ in range(6):
        for chosen in torch.randperm(len(labels)).split(50):
            optimizer.zero_grad()
            nn.functional.nll_loss(network(pictures[chosen]).log(), labels[chosen]).backward()
            optimizer.step()
    return network


def pack(network, package):
    return quavin.pack(
        network.eval(),  # no dropout, and the statistics of training for batch normalisation
        package,
        example_inputs={"image": torch.zeros(1, SIZE, SIZE, 3, dtype=torch.uint8)},
        rename={"output": "probabilities"},
        name="Shapes",
        descriptions={"image": "rows of red, green and blue bytes", "output": ", ".join(SHAPES)},
    )


def predict(model, pictures):
    """The package takes the bytes as int8: the same bits, so the view copies nothing."""
    for picture in pictures.view(numpy.int8):
        yield model.predict({"image": picture[None]})["probabilities"][0]


def main(folder):
    network = train()
    print(pack(network, folder / "shapes"))

    pictures, labels = draw(numpy.random.default_rng(2), 300)
    with torch.no_grad():
        expected = network(torch.from_numpy(pictures)).numpy()
    with quavin.load(folder / "shapes") as model:
        found = numpy.array(list(predict(model, pictures)))
    print(f"{(found.argmax(1) == labels).sum()} of {len(labels)} shapes recognised, "
          f"largest difference from PyTorch {abs(found - expected).max():.1e}")

    numpy.save(folder / "picture.npy", pictures[:1].view(numpy.int8))
    numpy.save(folder / "expected.npy", expected[:1])
    return network


if __name__ == "__main__":
    main(pathlib.Path(sys.argv[1]))
