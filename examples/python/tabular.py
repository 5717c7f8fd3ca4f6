"""From a scikit-learn pipeline to a signed, encrypted archive, and back to scikit-learn's own numbers.

    python3 examples/python/tabular.py [FOLDER]

leaves what it makes in the folder, if one is given. Needs scikit-learn, skl2onnx, openssl, and the command `quavin`,
which the variable QUAVIN_TOOL may name.
"""

import os
import secrets
import subprocess
import sys
import tempfile
from pathlib import Path
from typing import Any

import numpy as np
import numpy.typing as npt
from skl2onnx import to_onnx
from sklearn.datasets import load_iris
from sklearn.model_selection import train_test_split
from sklearn.neural_network import MLPClassifier
from sklearn.pipeline import make_pipeline
from sklearn.preprocessing import StandardScaler

import quavin

TOLERANCE = 1e-5
COMMAND = os.environ.get("QUAVIN_TOOL", "quavin")


def main(folder: Path) -> None:
    flowers, species = load_iris(return_X_y=True)
    train, test, train_species, _ = train_test_split(flowers.astype(np.float32), species, random_state=0)
    classifier = make_pipeline(StandardScaler(), MLPClassifier(max_iter=2000, random_state=0))
    classifier.fit(train, train_species)

    onnx_model = to_onnx(
        classifier,
        train[:1],
        options={"zipmap": False},  # probabilities as a tensor, not as a list of dictionaries
        black_op={"Normalizer", "Scaler"},  # plain operators instead
    )
    onnx_file = folder / "iris.onnx"
    onnx_file.write_bytes(onnx_model.SerializeToString())

    key = secrets.token_bytes(16)
    make_signing_key(folder)
    archive = folder / "iris.tar"
    report = quavin.pack(
        onnx_file,
        archive,
        shapes={"X": (len(test), 4)},
        outputs=["probabilities"],
        rename={"X": "flowers"},
        descriptions={"X": "length and width of sepals, then of petals, in cm"},
        inputs={"X": test},
        name="Iris",
        encrypt="components",
        key=key,
        private_key=folder / "private.pem",
    )
    print(report)

    expected = classifier.predict_proba(test)
    public_key = (folder / "public.pem").read_text()
    with quavin.load(archive, key=key, trusted_keys=[public_key]) as model:
        compare("Python", model.predict({"flowers": test})["probabilities"], expected)

    np.save(folder / "flowers.npy", test)
    run_command(archive, folder, key)
    compare("the command line", np.load(folder / "results" / "probabilities.npy"), expected)


def make_signing_key(folder: Path) -> None:
    private, public = folder / "private.pem", folder / "public.pem"
    curve = ["-algorithm", "EC", "-pkeyopt", "ec_paramgen_curve:P-256"]
    subprocess.run(["openssl", "genpkey", *curve, "-out", private], check=True)
    private.chmod(0o600)
    subprocess.run(["openssl", "pkey", "-in", private, "-pubout", "-out", public], check=True)


def run_command(archive: Path, folder: Path, key: bytes) -> None:
    secret = {**os.environ, "IRIS_KEY": key.hex()}
    options: list[str | Path] = [archive, "--key-env", "IRIS_KEY"]
    subprocess.run([COMMAND, "verify", *options, "--public-key", folder / "public.pem"], env=secret, check=True)
    files: list[str | Path] = ["--input", f"flowers={folder / 'flowers.npy'}", "--output", folder / "results"]
    subprocess.run([COMMAND, "run", *options, *files], env=secret, check=True)


def compare(what: str, found: npt.NDArray[Any], expected: npt.NDArray[Any]) -> None:
    difference = np.abs(found - expected).max()
    print(f"largest difference between {what} and scikit-learn: {difference:.1e}")
    if difference > TOLERANCE:
        sys.exit("That is too much.")


if __name__ == "__main__":
    if len(sys.argv) > 1:
        Path(sys.argv[1]).mkdir(parents=True, exist_ok=True)
        main(Path(sys.argv[1]))
    else:
        with tempfile.TemporaryDirectory() as temporary:
            main(Path(temporary))
