"""Writes rows to try score.py with: the held-out digits of examples/digits, over and over.

    python3 digit_rows.py FOLDER ROWS
"""

import sys
from pathlib import Path

import numpy as np
import pyarrow as pa
import pyarrow.parquet as pq

RECORDS = np.fromfile(Path(__file__).parents[1] / "digits" / "held_out.bin", np.uint8).reshape(-1, 65)
ROWS_PER_FILE = 50_000


def write_rows(folder: Path, count: int) -> None:
    folder.mkdir()
    for first in range(0, count, ROWS_PER_FILE):
        ids = np.arange(first, min(first + ROWS_PER_FILE, count))
        records = RECORDS[ids % len(RECORDS)]
        pixels = records[:, :64].astype(np.float32)
        image = pa.FixedSizeListArray.from_arrays(pixels.ravel(), 64)
        rows = pa.table({"id": ids, "image": image, "label": records[:, 64]})
        pq.write_table(rows, folder / f"{first:010}.parquet")


if __name__ == "__main__":
    write_rows(Path(sys.argv[1]), int(sys.argv[2]))
