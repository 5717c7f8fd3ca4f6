#!/usr/bin/env python3
"""Trains the digit classifier and writes what the digits example needs.

Run it as `python3 train.py` with the packages of requirements.txt; README.md beside it describes
the files that it writes. Every random choice derives from SEED: the same kind of processor with
the same packages yields the same weights again.

The network, for images of 8x8 pixels with values from 0 to 16:
    image / 16 -> conv 3x3, 16 -> ReLU -> conv 3x3, 32 -> ReLU -> max pool 2x2
               -> linear, 10 -> SoftMax
"""

import os
import sys
from pathlib import Path

# The way sums are split over threads affects their last bits and so, after thousands of steps, the
# weights: with one thread, the result is independent of the number of cores.
os.environ["OPENBLAS_NUM_THREADS"] = "1"

import numpy as np  # noqa: E402
from numpy.lib.stride_tricks import sliding_window_view  # noqa: E402
from sklearn.datasets import load_digits  # noqa: E402
from sklearn.model_selection import train_test_split  # noqa: E402

HERE = Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parents[1] / "scripts"))
from ir_writer import IrNetwork  # noqa: E402
from model_package import write_package  # noqa: E402

SEED = 20
EPOCHS = 40
BATCH = 32
LEARNING_RATE = 2e-3
HELD_OUT_PART = 0.25
WANTED_ACCURACY = 0.97

CHANNELS = (1, 16, 32)
POOLED = 4  # width and height of a feature map after pooling
CLASSES = 10


def initial_weights(rng):
    """He initialisation: kernels [out, in, 3, 3], the linear layer [out, in], biases zero."""
    shapes = {
        "conv1": (CHANNELS[1], CHANNELS[0], 3, 3),
        "conv2": (CHANNELS[2], CHANNELS[1], 3, 3),
        "linear": (CLASSES, CHANNELS[2] * POOLED * POOLED),
    }
    weights = {}
    for name, shape in shapes.items():
        deviation = np.sqrt(2 / np.prod(shape[1:]))
        weights[name] = rng.normal(0, deviation, shape).astype(np.float32)
        weights[name + "/bias"] = np.zeros(shape[0], np.float32)
    return weights


def conv(x, kernel, bias):
    """3x3 convolution that keeps width and height; also returns the patches it used."""
    n, _, h, w = x.shape
    padded = np.pad(x, ((0, 0), (0, 0), (1, 1), (1, 1)))
    windows = sliding_window_view(padded, (3, 3), axis=(2, 3))  # [n, c, h, w, 3, 3]
    patches = windows.transpose(0, 2, 3, 1, 4, 5).reshape(n * h * w, -1)
    y = patches @ kernel.reshape(len(kernel), -1).T + bias
    return y.reshape(n, h, w, -1).transpose(0, 3, 1, 2), patches


def conv_gradients(dy, kernel, patches):
    """Gradients of a conv's kernel, bias and input, from the gradient of its output."""
    n, c, h, w = dy.shape
    rows = dy.transpose(0, 2, 3, 1).reshape(-1, c)
    d_patches = (rows @ kernel.reshape(c, -1)).reshape(n, h, w, -1, 3, 3)
    dx = np.zeros((n, kernel.shape[1], h + 2, w + 2), np.float32)
    for i in range(3):
        for j in range(3):
            dx[:, :, i : i + h, j : j + w] += d_patches[..., i, j].transpose(0, 3, 1, 2)
    return (rows.T @ patches).reshape(kernel.shape), rows.sum(axis=0), dx[:, :, 1:-1, 1:-1]


def forward(weights, images):
    """Class probabilities of each image, and the intermediate results that `gradients` needs."""
    h1, patches1 = conv(images / np.float32(16), weights["conv1"], weights["conv1/bias"])
    h1 = np.maximum(h1, 0)
    h2, patches2 = conv(h1, weights["conv2"], weights["conv2/bias"])
    h2 = np.maximum(h2, 0)
    n, c, _, _ = h2.shape
    pooled = h2.reshape(n, c, POOLED, 2, POOLED, 2).max(axis=(3, 5))
    flat = pooled.reshape(n, -1)
    logits = flat @ weights["linear"].T + weights["linear/bias"]
    exponents = np.exp(logits - logits.max(axis=1, keepdims=True))
    probabilities = exponents / exponents.sum(axis=1, keepdims=True)
    return probabilities, (h1, patches1, h2, patches2, pooled, flat)


def gradients(weights, images, labels):
    """Gradients of the mean cross-entropy over a batch, by name of the weights."""
    probabilities, (h1, patches1, h2, patches2, pooled, flat) = forward(weights, images)
    n, c, h, w = h2.shape
    d_logits = (probabilities - np.eye(CLASSES, dtype=np.float32)[labels]) / np.float32(n)
    grads = {"linear": d_logits.T @ flat, "linear/bias": d_logits.sum(axis=0)}

    d_pooled = (d_logits @ weights["linear"]).reshape(n, c, POOLED, 1, POOLED, 1)
    blocks = h2.reshape(n, c, POOLED, 2, POOLED, 2)
    d_h2 = d_pooled * (blocks == pooled.reshape(d_pooled.shape))
    d_h2 = d_h2.reshape(n, c, h, w) * (h2 > 0)
    grads["conv2"], grads["conv2/bias"], d_h1 = conv_gradients(d_h2, weights["conv2"], patches2)
    grads["conv1"], grads["conv1/bias"], _ = conv_gradients(
        d_h1 * (h1 > 0), weights["conv1"], patches1
    )
    return grads


def shifted(images, rng):
    """The images, each shifted by at most one pixel in each direction: cheap additional examples."""
    padded = np.pad(images, ((0, 0), (0, 0), (1, 1), (1, 1)))
    moved = np.empty_like(images)
    for i, (dy, dx) in enumerate(rng.integers(0, 3, (len(images), 2))):
        moved[i] = padded[i, :, dy : dy + 8, dx : dx + 8]
    return moved


def train(images, labels):
    """Adam, with a learning rate that decays to zero along half a cosine."""
    rng = np.random.default_rng(SEED)
    weights = initial_weights(rng)
    mean = {name: np.zeros_like(w) for name, w in weights.items()}
    square = {name: np.zeros_like(w) for name, w in weights.items()}
    steps = EPOCHS * (len(images) // BATCH)
    step = 0
    for _ in range(EPOCHS):
        order = rng.permutation(len(images))
        for start in range(0, len(images) - BATCH + 1, BATCH):
            batch = order[start : start + BATCH]
            step += 1
            rate = LEARNING_RATE * (1 + np.cos(np.pi * step / steps)) / 2
            grads = gradients(weights, shifted(images[batch], rng), labels[batch])
            for name, grad in grads.items():
                mean[name] += 0.1 * (grad - mean[name])
                square[name] += 0.001 * (grad * grad - square[name])
                corrected = np.sqrt(square[name] / (1 - 0.999**step)) + 1e-8
                update = rate / (1 - 0.9**step) * mean[name] / corrected
                weights[name] -= update.astype(np.float32)
    return weights


def build_network(weights):
    """The trained network as IR. In this format, biases are separate Add layers."""
    net = IrNetwork("digits")
    image = net.parameter("image", (1, 1, 8, 8))
    sixteenth = net.constant("sixteenth", np.full((1, 1, 1, 1), 1 / 16, np.float32))
    x = net.layer("Multiply", "scaled", [image, sixteenth], image.shape)
    window = {"pads_begin": (1, 1), "pads_end": (1, 1), "strides": (1, 1), "dilations": (1, 1)}
    for name in ("conv1", "conv2"):
        shape = (1, len(weights[name]), 8, 8)
        kernel = net.constant(name + "/kernel", weights[name])
        bias = net.constant(name + "/bias", weights[name + "/bias"].reshape(1, -1, 1, 1))
        x = net.layer("Convolution", name, [x, kernel], shape, **window, auto_pad="explicit")
        x = net.layer("Add", name + "/biased", [x, bias], shape)
        x = net.layer("ReLU", name + "/relu", [x], shape)
    x = net.layer(
        "MaxPool", "pooled", [x], (1, CHANNELS[2], POOLED, POOLED),
        kernel=(2, 2), strides=(2, 2), pads_begin=(0, 0), pads_end=(0, 0),
        rounding_type="floor", auto_pad="explicit",
    )  # fmt: skip
    features = weights["linear"].shape[1]
    flat_shape = net.constant("flat/shape", np.array([1, features], np.int64))
    x = net.layer("Reshape", "flat", [x, flat_shape], (1, features), special_zero=False)
    matrix = net.constant("linear/matrix", weights["linear"])
    bias = net.constant("linear/bias", weights["linear/bias"].reshape(1, -1))
    x = net.layer(
        "MatMul", "linear", [x, matrix], (1, CLASSES), transpose_a=False, transpose_b=True
    )
    x = net.layer("Add", "logits", [x, bias], (1, CLASSES))
    net.result(net.layer("SoftMax", "probabilities", [x], (1, CLASSES), axis=1))
    return net


def main():
    digits = load_digits()
    images = digits.images.astype(np.float32).reshape(-1, 1, 8, 8)
    images, held_out, labels, held_out_labels = train_test_split(
        images, digits.target, test_size=HELD_OUT_PART, random_state=SEED, stratify=digits.target
    )
    weights = train(images, labels)
    predicted = forward(weights, held_out)[0].argmax(axis=1)
    correct = int((predicted == held_out_labels).sum())
    accuracy = correct / len(held_out)
    print(f"trained on {len(images)} digits")
    print(f"{correct} of {len(held_out)} held-out digits right: accuracy {accuracy:.4f}")
    if accuracy < WANTED_ACCURACY:
        sys.exit(f"train.py: nothing written, the accuracy is below {WANTED_ACCURACY}")

    network = build_network(weights)
    about = {
        "id": "digits-8x8",
        "name": "Handwritten digits",
        "author": "quavin_on_device_sdk examples",
        "description": "Recognises a handwritten digit in a picture of 8x8 pixels",
        "sdkVersion": "1.0",
        "version": 1,
    }
    descriptions = {
        "image": "grey levels row by row, 0 (paper) to 16 (ink)",
        "probabilities": "one probability for each digit from 0 to 9",
    }
    key = (HERE / "demo.key").read_text(encoding="ascii").strip()
    write_package(HERE / "package", network, "digits", about, descriptions)
    write_package(HERE / "secured_package", network, "digits", about, descriptions, key_hex=key)
    records = np.concatenate([held_out.reshape(-1, 64), held_out_labels[:, None]], axis=1)
    (HERE / "held_out.bin").write_bytes(records.astype(np.uint8).tobytes())


if __name__ == "__main__":
    main()
