#!/usr/bin/env python3
"""Trains a PyTorch transformer that tells good reviews from bad ones, exports it to ONNX, and packs that: encrypted,
signed, and in one archive.

    pytorch_text.py FOLDER KEYS

writes reviews.onnx, the archive reviews.tar, a text for it (input_ids.npy, attention_mask.npy), and PyTorch's result
for that text (expected.npy). KEYS is a folder with model.key, made by `quavin keygen`, and with private.pem and
public.pem, made by openssl.
"""

import pathlib
import sys

import numpy
import torch
from torch import nn

import quavin

THINGS = "film book meal hotel song game".split()
GOOD = "good great lovely funny clever perfect".split()
BAD = "bad awful boring dull noisy terrible".split()
OTHERS = "<padding> <unknown> the was not very really so but , today again".split()
WORDS = {word: number for number, word in enumerate(OTHERS + THINGS + GOOD + BAD)}
LENGTH = 24  # of the texts in the package; the network itself takes any


def write_clause(random):
    good, negated, emphasis = random.integers(0, 2, 3)
    words = ["the", random.choice(THINGS), "was"] + negated * ["not"]
    words += emphasis * [random.choice(["very", "really", "so"])]
    return words + [random.choice(GOOD if good else BAD)], int(good != negated)


def write_review(random):
    """A text, and whether it is good. Where there is a "but", what follows it decides."""
    words, good = write_clause(random)
    if random.integers(0, 2):
        more, good = write_clause(random)
        words += [",", "but", *more]
    return " ".join(words + random.integers(0, 2) * [random.choice(["today", "again"])]), good


def write_reviews(random, count):
    texts, labels = zip(*(write_review(random) for _ in range(count)))
    return texts, numpy.array(labels)


def encode(texts, length=None):
    """The numbers of the words, and a mask that is 1 where there is a word: both int64, [texts, length]."""
    rows = [[WORDS.get(word, WORDS["<unknown>"]) for word in text.split()] for text in texts]
    length = length or max(map(len, rows))
    ids = [row + [WORDS["<padding>"]] * (length - len(row)) for row in rows]
    mask = [[1] * len(row) + [0] * (length - len(row)) for row in rows]
    return numpy.array(ids), numpy.array(mask)


class ReviewNetwork(nn.Module):
    def __init__(self, width=32, longest=64):
        super().__init__()
        self.words = nn.Embedding(len(WORDS), width)
        self.places = nn.Embedding(longest, width)
        layer = nn.TransformerEncoderLayer(width, nhead=4, dim_feedforward=2 * width)
        self.encoder = nn.TransformerEncoder(layer, num_layers=2)
        self.head = nn.Linear(width, 2)

    def forward(self, input_ids, attention_mask):
        vectors = self.words(input_ids) + self.places(torch.arange(input_ids.shape[1]))
        # Words first, then texts: with batch_first, PyTorch takes a short cut that cannot be exported.
        vectors = self.encoder(vectors.transpose(0, 1), src_key_padding_mask=attention_mask == 0)
        weights = attention_mask.t().unsqueeze(-1).float()
        mean = (vectors * weights).sum(0) / weights.sum(0)
        return torch.softmax(self.head(mean), dim=1)


def train():
    torch.manual_seed(1)
    texts, labels = write_reviews(numpy.random.default_rng(1), 2500)
    ids, mask, labels = map(torch.from_numpy, (*encode(texts), labels))
    network = ReviewNetwork()
    optimizer = torch.optim.Adam(network.parameters(), 3e-3)
    for _ in range(5):
        for chosen in torch.randperm(len(labels)).split(50):
            optimizer.zero_grad()
            nn.functional.nll_loss(network(ids[chosen], mask[chosen]).log(), labels[chosen]).backward()
            optimizer.step()
    return network.eval()


def export(network, file):
    """Texts of any number and length."""
    inputs = dict(zip(["input_ids", "attention_mask"], map(torch.from_numpy, encode(["the film was good"]))))
    torch.onnx.export(
        network,
        tuple(inputs.values()),
        str(file),
        input_names=list(inputs),
        output_names=["probabilities"],
        dynamic_axes={name: {0: "texts", 1: "length"} for name in inputs},
    )


def pack(onnx, archive, keys):
    ids, mask = encode(["the film was not good , but the song was great"], LENGTH)
    return quavin.pack(
        onnx,
        archive,
        shapes={"input_ids": (1, LENGTH), "attention_mask": (1, LENGTH)},
        inputs={"input_ids": ids, "attention_mask": mask},  # what to compare with; random masks could be empty
        name="Reviews",
        descriptions={"input_ids": "numbers of words, then 0", "attention_mask": "1 for each word, then 0"},
        encrypt="components",
        key_file=keys / "model.key",
        private_key=keys / "private.pem",
    )


def load(archive, keys):
    key = bytes.fromhex((keys / "model.key").read_text())
    return quavin.load(archive, key=key, trusted_keys=[(keys / "public.pem").read_text()])


def predict(model, text):
    """The package takes int32, where PyTorch takes int64; cast=True also makes sure that the values fit."""
    ids, mask = encode([text], LENGTH)
    return model.predict({"input_ids": ids, "attention_mask": mask}, cast=True)["probabilities"][0]


def predict_in_pytorch(network, text):
    """With the text as long as it is, so without any padding."""
    with torch.no_grad():
        return network(*map(torch.from_numpy, encode([text])))[0].numpy()


def main(folder, keys):
    network = train()
    export(network, folder / "reviews.onnx")
    print(pack(folder / "reviews.onnx", folder / "reviews.tar", keys))

    texts, labels = write_reviews(numpy.random.default_rng(2), 300)
    expected = numpy.array([predict_in_pytorch(network, text) for text in texts])
    with load(folder / "reviews.tar", keys) as model:
        found = numpy.array([predict(model, text) for text in texts])
    print(f"{(found.argmax(1) == labels).sum()} of {len(labels)} reviews understood, "
          f"largest difference from PyTorch {abs(found - expected).max():.1e}")

    for name, array in zip(["input_ids", "attention_mask"], encode(texts[:1], LENGTH)):
        numpy.save(folder / f"{name}.npy", array.astype(numpy.int32))
    numpy.save(folder / "expected.npy", expected[:1])
    return network


if __name__ == "__main__":
    main(*map(pathlib.Path, sys.argv[1:]))
