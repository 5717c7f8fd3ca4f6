"""From a PyTorch network that tells shapes in pictures apart to a package, and back to PyTorch's own numbers.

    python3 examples/python/pytorch_image.py [FOLDER]

leaves what it makes in the folder, if one is given. Needs PyTorch 2.1 or later, openvino, and the command `quavin`,
which the variable QUAVIN_TOOL may name.
"""

import os
import subprocess
import sys
import tempfile
from pathlib import Path
from typing import Any

import numpy as np
import numpy.typing as npt
import torch
from torch import nn

import quavin

Pictures = npt.NDArray[np.uint8]
Numbers = npt.NDArray[Any]

SHAPES = ["disc", "square", "triangle"]
SIZE = 32
TOLERANCE = 2e-6
COMMAND = os.environ.get("QUAVIN_TOOL", "quavin")


def draw(seed: int, count: int) -> tuple[Pictures, Numbers]:
    """Pictures as cameras and files give them, bytes of [count, height, width, 3], and the number of each shape."""
    random = np.random.default_rng(seed)
    labels = random.integers(0, len(SHAPES), count)
    pictures = np.empty((count, SIZE, SIZE, 3))
    rows, columns = np.mgrid[:SIZE, :SIZE]
    for picture, label in zip(pictures, labels):
        radius = random.uniform(6, 11)
        top, left = random.uniform(radius, SIZE - radius, 2)
        y, x = (rows - top) / radius, (columns - left) / radius
        inside = [x**2 + y**2 < 1, np.maximum(abs(x), abs(y)) < 0.9, (y < 0.9) & (2 * abs(x) < y + 1)][label]
        paper, ink = random.permutation([random.uniform(0, 110, 3), random.uniform(145, 255, 3)])
        picture[:] = np.where(inside[..., None], ink, paper) + random.normal(0, 12, picture.shape)
    return pictures.clip(0, 255).astype(np.uint8), labels


class ShapeNetwork(nn.Module):
    """Normalises the pictures itself, so that no host can do it differently than training did."""

    def __init__(self, mean: torch.Tensor, deviation: torch.Tensor) -> None:
        super().__init__()
        self.register_buffer("mean", mean)
        self.register_buffer("deviation", deviation)
        self.layers = nn.Sequential(
            *self.convolution(3, 8),
            *self.convolution(8, 16),
            *self.convolution(16, 32),
            nn.Flatten(),
            nn.Dropout(0.2),
            nn.Linear(32 * 4 * 4, len(SHAPES)),
        )

    @staticmethod
    def convolution(before: int, after: int) -> tuple[nn.Module, ...]:
        return nn.Conv2d(before, after, 3, stride=2, padding=1), nn.BatchNorm2d(after), nn.ReLU()

    def forward(self, image: torch.Tensor) -> torch.Tensor:
        normalised = (image.float() / 255 - self.mean) / self.deviation
        return torch.softmax(self.layers(normalised.permute(0, 3, 1, 2)), dim=1)


def train() -> nn.Module:
    torch.manual_seed(1)
    pictures, labels = map(torch.from_numpy, draw(1, 3000))
    channels = pictures.flatten(0, 2) / 255
    network = ShapeNetwork(channels.mean(0), channels.std(0))
    optimizer = torch.optim.Adam(network.parameters(), 3e-3)
    for _ in range(6):
        for chosen in torch.randperm(len(labels)).split(50):
            optimizer.zero_grad()
            nn.functional.nll_loss(network(pictures[chosen]).log(), labels[chosen]).backward()
            optimizer.step()
    return network


def predict_in_pytorch(network: nn.Module, pictures: Pictures) -> Numbers:
    with torch.no_grad():
        return np.asarray(network(torch.from_numpy(pictures)))


def predict(package: Path, pictures: Pictures) -> Numbers:
    """One by one, as a host would. The package takes bytes as int8 of the same bits, and a view copies nothing."""
    with quavin.load(package) as model:
        outputs = [model.predict({"image": picture[None].view(np.int8)}) for picture in pictures]
        return np.concatenate([output["probabilities"] for output in outputs])


def predict_on_the_command_line(package: Path, picture: Pictures, folder: Path) -> Numbers:
    np.save(folder / "image.npy", picture[None].view(np.int8))
    command: list[str | Path] = [COMMAND, "run", package, "--output", folder / "results"]
    command += ["--input", f"image={folder / 'image.npy'}"]
    subprocess.run(command, stdout=subprocess.DEVNULL, check=True)
    result: Numbers = np.load(folder / "results" / "probabilities.npy")
    return result


def compare(what: str, found: Numbers, expected: Numbers) -> None:
    difference = np.abs(found - expected).max()
    print(f"largest difference between {what} and PyTorch: {difference:.1e}")
    if found.shape != expected.shape or not difference <= TOLERANCE:
        sys.exit("That is too much.")


def main(folder: Path) -> nn.Module:
    network = train()
    network.eval()  # no dropout, and batch normalisation as training left it

    report = quavin.pack(
        network,
        folder / "shapes",
        example_inputs={"image": torch.zeros(1, SIZE, SIZE, 3, dtype=torch.uint8)},
        rename={"output": "probabilities"},
        descriptions={"image": "rows of red, green and blue bytes", "output": ", ".join(SHAPES)},
        name="Shapes",
    )
    print(report)

    pictures, labels = draw(2, 300)
    expected = predict_in_pytorch(network, pictures)
    found = predict(folder / "shapes", pictures)
    print(f"{np.sum(found.argmax(1) == labels)} of {len(labels)} shapes recognised")
    compare("Python", found, expected)
    compare("the command line", predict_on_the_command_line(folder / "shapes", pictures[0], folder), expected[:1])
    return network


if __name__ == "__main__":
    if len(sys.argv) > 1:
        Path(sys.argv[1]).mkdir(parents=True, exist_ok=True)
        main(Path(sys.argv[1]))
    else:
        with tempfile.TemporaryDirectory() as temporary:
            main(Path(temporary))
