"""Rows per second of examples/batch_scoring, beside one process that does the same without Ray.

Run by scripts/test-batch-scoring.sh --measure. The sides take turns; figures are medians over the rounds.
"""

from __future__ import annotations

import logging
import sys
import tempfile
import time
from collections.abc import Callable
from pathlib import Path
from statistics import median

import pyarrow.parquet as pq
import ray

ROOT = Path(__file__).resolve().parents[1]
sys.path.insert(0, str(ROOT / "examples" / "batch_scoring"))

from digit_rows import write_rows  # noqa: E402
from score import Scorer, score  # noqa: E402

PACKAGE = str(ROOT / "examples" / "digits" / "package")
SIZES = (100_000, 500_000)
ROUNDS = 3


def in_one_process(source: Path, target: Path, cache: str) -> None:
    scorer = Scorer(PACKAGE, threads=1, cache=cache)
    target.mkdir()
    for file in source.iterdir():
        pq.write_table(scorer(pq.read_table(file)), target / file.name)


def on_workers(workers: int) -> Callable[[Path, Path, str], None]:
    def run(source: Path, target: Path, cache: str) -> None:
        score(str(source), str(target), workers, 1, 10_000, package=PACKAGE, cache=cache)

    return run


def main() -> None:
    sides = {"one process": in_one_process, "1 worker": on_workers(1), "2 workers": on_workers(2)}
    # A CPU more than there are workers, for Ray to read and write with; the machine may have fewer.
    ray.init(num_cpus=3, log_to_driver=False, logging_level=logging.ERROR)
    logging.getLogger("ray.data").setLevel(logging.ERROR)
    with tempfile.TemporaryDirectory(prefix="quavin-batch-") as name:
        folder = Path(name)
        seconds: dict[tuple[str, int], list[float]] = {(side, size): [] for size in SIZES for side in sides}
        for size in SIZES:
            write_rows(folder / str(size), size)
        for round_number in range(ROUNDS):
            for (side, size), times in seconds.items():
                begin = time.monotonic()
                sides[side](folder / str(size), folder / f"{side}-{size}-{round_number}", str(folder / "cache"))
                times.append(time.monotonic() - begin)
    small, large = SIZES
    print(f"{'':12}{f'{small} rows':>14}{f'{large} rows':>14}{'rows per second beyond the start':>36}")
    for side in sides:
        first, second = median(seconds[side, small]), median(seconds[side, large])
        print(f"{side:12}{first:12.1f} s{second:12.1f} s{(large - small) / (second - first):36.0f}")


if __name__ == "__main__":
    main()
