"""What the tests share. Packages and networks are written by the helpers of the command line's tests."""

import sys
import tarfile
from pathlib import Path

import numpy as np
import pytest

sys.dont_write_bytecode = True

import packages  # noqa: E402  # from tests/command_line
import quavin  # noqa: E402

ROOT = Path(__file__).resolve().parents[2]
DIGITS = ROOT / "examples" / "digits"
KEY_HEX = "6b1fe0a94c7d3825f3b29d5e81c46a37"
KEY = bytes.fromhex(KEY_HEX)
OTHER_KEY = bytes(range(16))


@pytest.fixture
def make_package(tmp_path):
    """Writes a package, by default of the affine network, and returns its directory."""

    def make(network=None, key_hex=None):
        return packages.write_package(tmp_path / "package", network, key_hex)

    return make


@pytest.fixture
def load(make_package):
    """Loads a network, by default the affine one, and closes it after the test."""
    models = []

    def load_network(network=None, **options):
        models.append(quavin.load(make_package(network), **options))
        return models[-1]

    yield load_network
    for model in models:
        model.close()


@pytest.fixture
def model(load):
    """y = 2 x + (0.5, 1, 1.5, 2), of [1, 4] floats."""
    return load()


@pytest.fixture
def x():
    return np.float32([[1, 2, 3, -4]])


# By hand from the definition above.
Y = [[2.5, 5, 7.5, -6]]


def status_of(failure):
    """The status of what pytest.raises caught."""
    return failure.value.status


def archive_of(package):
    """The package in a tar archive."""
    path = package.with_suffix(".tar")
    with tarfile.open(path, "w", format=tarfile.USTAR_FORMAT) as archive:
        archive.add(package, package.name)
    return path


def files_of(package):
    return {file.name: bytearray(file.read_bytes()) for file in package.iterdir()}


def predicted(source, x, **keys):
    with quavin.load(source, **keys) as model:
        return model.predict({"x": x})["y"].tolist()


def is_lent(data):
    """Whether the library uses the memory of a bytearray, which cannot grow then."""
    try:
        data.append(0)
    except BufferError:
        return True
    data.pop()
    return False
