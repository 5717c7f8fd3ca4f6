"""From a PyTorch transformer for texts of any length, through ONNX, to a package for one length, and back to PyTorch's
own numbers.

    python3 examples/python/pytorch_text.py [FOLDER]

leaves what it makes in the folder, if one is given. Needs PyTorch, openvino, and the command `quavin`, which the
variable QUAVIN_TOOL may name.
"""

import os
import subprocess
import sys
import tempfile
from collections.abc import Sequence
from pathlib import Path
from typing import Any

import numpy as np
import numpy.typing as npt
import torch
from torch import nn

import quavin

Numbers = npt.NDArray[Any]

THINGS = "film book meal hotel song game".split()
GOOD = "good great lovely funny clever perfect".split()
BAD = "bad awful boring dull noisy terrible".split()
OTHERS = "<padding> <unknown> the was not very really so but , today again".split()
WORDS = {word: number for number, word in enumerate(OTHERS + THINGS + GOOD + BAD)}
LENGTH = 24  # of the texts in the package; the network itself takes any
TOLERANCE = 2e-6
COMMAND = os.environ.get("QUAVIN_TOOL", "quavin")


def write_clause(random: np.random.Generator) -> tuple[list[str], bool]:
    good, negated, emphasis = random.integers(0, 2, 3)
    words = ["the", random.choice(THINGS), "was"] + negated * ["not"]
    words += emphasis * [random.choice(["very", "really", "so"])]
    return [*words, random.choice(GOOD if good else BAD)], good != negated


def write_review(random: np.random.Generator) -> tuple[str, bool]:
    """A text, and whether it is good. Where there is a "but", what follows it decides."""
    words, good = write_clause(random)
    if random.integers(0, 2):
        more, good = write_clause(random)
        words += [",", "but", *more]
    return " ".join(words + random.integers(0, 2) * [random.choice(["today", "again"])]), good


def write_reviews(seed: int, count: int) -> tuple[list[str], Numbers]:
    random = np.random.default_rng(seed)
    texts, labels = zip(*(write_review(random) for _ in range(count)))
    return list(texts), np.array(labels, np.int64)


def encode(texts: Sequence[str], length: int | None = None) -> dict[str, Numbers]:
    """The numbers of the words, and a mask that is 1 where there is a word: both int64, [texts, length]."""
    rows = [[WORDS.get(word, WORDS["<unknown>"]) for word in text.split()] for text in texts]
    length = length or max(map(len, rows))
    return {
        "input_ids": np.array([row + [WORDS["<padding>"]] * (length - len(row)) for row in rows]),
        "attention_mask": np.array([[1] * len(row) + [0] * (length - len(row)) for row in rows]),
    }


def tensors(inputs: dict[str, Numbers]) -> tuple[torch.Tensor, ...]:
    return tuple(map(torch.from_numpy, inputs.values()))


class ReviewNetwork(nn.Module):
    def __init__(self, width: int = 32, longest: int = 64) -> None:
        super().__init__()
        self.words = nn.Embedding(len(WORDS), width)
        self.places = nn.Embedding(longest, width)
        layer = nn.TransformerEncoderLayer(width, nhead=4, dim_feedforward=2 * width)
        self.encoder = nn.TransformerEncoder(layer, num_layers=2)
        self.head = nn.Linear(width, 2)

    def forward(self, input_ids: torch.Tensor, attention_mask: torch.Tensor) -> torch.Tensor:
        vectors = self.words(input_ids) + self.places(torch.arange(input_ids.shape[1]))
        # Words first, then texts: with batch_first, PyTorch may take a short cut that cannot be converted.
        vectors = self.encoder(vectors.transpose(0, 1), src_key_padding_mask=attention_mask == 0)
        weights = attention_mask.t().unsqueeze(-1).float()
        mean = (vectors * weights).sum(0) / weights.sum(0)
        return torch.softmax(self.head(mean), dim=1)


def train() -> nn.Module:
    torch.manual_seed(1)
    texts, labels = write_reviews(1, 2500)
    ids, mask, good = *tensors(encode(texts)), torch.from_numpy(labels)
    network = ReviewNetwork()
    optimizer = torch.optim.Adam(network.parameters(), 3e-3)
    for _ in range(5):
        for chosen in torch.randperm(len(good)).split(50):
            optimizer.zero_grad()
            nn.functional.nll_loss(network(ids[chosen], mask[chosen]).log(), good[chosen]).backward()
            optimizer.step()
    return network.eval()


def predict_in_pytorch(network: nn.Module, texts: Sequence[str]) -> Numbers:
    """One by one, each as long as it is, so without any padding."""
    with torch.no_grad():
        return np.concatenate([network(*tensors(encode([text]))) for text in texts])


def predict(package: Path, texts: Sequence[str]) -> Numbers:
    """The package takes int32, where PyTorch takes int64; cast=True also checks that the numbers fit."""
    with quavin.load(package) as model:
        outputs = [model.predict(encode([text], LENGTH), cast=True) for text in texts]
        return np.concatenate([output["probabilities"] for output in outputs])


def predict_on_the_command_line(package: Path, text: str, folder: Path) -> Numbers:
    command: list[str | Path] = [COMMAND, "run", package, "--cast", "--output", folder / "results"]
    for name, array in encode([text], LENGTH).items():
        np.save(folder / f"{name}.npy", array)
        command += ["--input", f"{name}={folder / name}.npy"]
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
    onnx_file = folder / "reviews.onnx"
    example = encode(["the film was good"])
    torch.onnx.export(
        network,
        tensors(example),
        str(onnx_file),
        input_names=list(example),
        output_names=["probabilities"],
        dynamic_axes={name: {0: "texts", 1: "length"} for name in example},
    )

    report = quavin.pack(
        onnx_file,
        folder / "reviews",
        shapes={"input_ids": (1, LENGTH), "attention_mask": (1, LENGTH)},
        inputs=encode(["the film was not good , but the song was great"], LENGTH),  # a mask of words, then padding
        descriptions={"input_ids": "numbers of words, then 0", "attention_mask": "1 for each word, then 0"},
        name="Reviews",
    )
    print(report)

    texts, labels = write_reviews(2, 300)
    expected = predict_in_pytorch(network, texts)
    found = predict(folder / "reviews", texts)
    print(f"{np.sum(found.argmax(1) == labels)} of {len(labels)} reviews understood")
    compare("Python", found, expected)
    compare("the command line", predict_on_the_command_line(folder / "reviews", texts[0], folder), expected[:1])
    return network


if __name__ == "__main__":
    if len(sys.argv) > 1:
        Path(sys.argv[1]).mkdir(parents=True, exist_ok=True)
        main(Path(sys.argv[1]))
    else:
        with tempfile.TemporaryDirectory() as temporary:
            main(Path(temporary))
