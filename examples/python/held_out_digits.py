"""Loads the digits example in several ways, and predicts on several threads."""

import logging
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

import numpy as np
import numpy.typing as npt

import quavin

DIGITS = Path(__file__).parents[1] / "digits"
RECORDS = np.fromfile(DIGITS / "held_out.bin", np.uint8).reshape(-1, 65)


def load_secured() -> quavin.Model:
    key = bytes.fromhex((DIGITS / "demo.key").read_text())
    return quavin.load(DIGITS / "secured_package", key=key)


def load_from_memory() -> quavin.Model:
    files = {file.name: file.read_bytes() for file in (DIGITS / "package").iterdir()}
    return quavin.load(files)


def count_right(model: quavin.Model, records: npt.NDArray[np.uint8]) -> int:
    right = 0
    for record in records:
        image = record[:64].reshape(1, 1, 8, 8)
        outputs = model.predict({"image": image}, cast=True)
        right += int(outputs["probabilities"].argmax() == record[64])
    return right


def count_right_on_threads(threads: int) -> int:
    with quavin.load(DIGITS / "package", hint="throughput") as model:
        clones = [model.clone() for _ in range(threads)]
        with ThreadPoolExecutor(threads) as pool:
            return sum(pool.map(count_right, clones, np.array_split(RECORDS, threads)))


def load_or_explain(package: Path) -> quavin.Model | None:
    try:
        return quavin.load(package)
    except quavin.QuavinError as error:
        if error.status == quavin.Status.MODEL_METADATA_ERROR:
            print("That is not a model package.")
        print(error.details[0])
        return None


if __name__ == "__main__":
    logging.basicConfig(level=logging.WARNING)
    with quavin.load(DIGITS / "package") as plain:
        print(plain.describe())
        print(count_right(plain, RECORDS))
    with load_secured() as secured, load_from_memory() as in_memory:
        print(count_right(secured, RECORDS), count_right(in_memory, RECORDS))
    print(count_right_on_threads(2))
    load_or_explain(DIGITS / "none")
