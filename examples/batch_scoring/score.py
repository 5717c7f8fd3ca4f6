"""Scores Parquet files with a model package, on this machine or on a Ray cluster.

    python3 score.py PACKAGE INPUT OUTPUT [--workers N] [--cpus-per-worker N] [--address ADDRESS]

INPUT has a column for each input of the model, under its name: lists of numbers of its type, as many as its shape
holds. Each row is one prediction. OUTPUT has a column for each of the model's outputs in their place, and INPUT's other
columns. Rows may come in another order, so one of those should tell them apart.
"""

from __future__ import annotations

import argparse
import math
import os
import socket
import sys
from pathlib import Path
from typing import Any

import numpy as np
import numpy.typing as npt
import pyarrow as pa
import pyarrow.compute as pc
import pyarrow.fs
import ray.data
import ray.exceptions

import quavin


class Scorer:
    """A model in a worker process, loaded once."""

    def __init__(self, package: str, *, threads: int, cache: str, key_file: str | None = None) -> None:
        """All paths are those of the worker's node, whose workers share the cache."""
        try:
            folder = Path(cache).expanduser()
            folder.mkdir(mode=0o700, parents=True, exist_ok=True)
            key = bytes.fromhex(Path(key_file).read_text()) if key_file else None
            self._model = quavin.load(package, key=key, threads=threads, cache=folder)
        except (quavin.QuavinError, OSError, ValueError) as error:
            raise RuntimeError(f"cannot load the package {package} on {socket.gethostname()}: {error}") from None

    def __call__(self, batch: pa.Table) -> pa.Table:
        model = self._model
        inputs = {port.name: read_in_place(batch, port) for port in model.inputs}
        outputs = {port.name: np.empty((batch.num_rows, *port.shape), port.dtype) for port in model.outputs}
        for row in range(batch.num_rows):
            prediction = model.predict({name: rows[row] for name, rows in inputs.items()})
            for name, values in prediction.items():
                outputs[name][row] = values
        scored = batch.drop_columns(list(inputs))
        for name, rows in outputs.items():
            if name in scored.column_names:
                raise ValueError(f'there is a column "{name}" already, which the model writes')
            lists = pa.FixedSizeListArray.from_arrays(rows.ravel(), math.prod(rows.shape[1:]))
            scored = scored.append_column(name, lists)
        return scored


def read_in_place(batch: pa.Table, port: quavin.Port) -> npt.NDArray[Any]:
    """The rows of an input's column, as an array over their memory."""
    if port.name not in batch.column_names:
        raise ValueError(f'there is no column "{port.name}", which the model reads')
    column, width = batch.column(port.name), math.prod(port.shape)
    if getattr(column.type, "value_type", None) != pa.from_numpy_dtype(port.dtype):
        raise ValueError(f'the column "{port.name}" is {column.type}, and the model reads lists of {port.dtype}')
    widths = pc.unique(pc.list_value_length(column)).to_pylist()
    if set(widths) - {width}:
        raise ValueError(f'the column "{port.name}" has rows of {widths} values, and the model reads {width}')
    values = column.combine_chunks().flatten()
    if values.null_count:
        raise ValueError(f'the column "{port.name}" has missing values')
    rows: npt.NDArray[Any] = values.to_numpy().reshape(batch.num_rows, *port.shape)
    return rows


def score(
    source: str, target: str, workers: int, cpus_per_worker: int, rows_per_task: int, **package: str | None
) -> None:
    """Scores the files in `source`. Then `target` holds a file `_SUCCESS`; if that fails, nothing is left there."""
    # Ray Data would start 32 processes to look at the files first.
    os.environ.setdefault("RAY_DATA_PARQUET_FOOTER_NUM_ACTORS", "2")
    # Tasks as they are read hold 128 MB: rows for one worker only, or for an hour.
    rows = ray.data.read_parquet(source).repartition(target_num_rows_per_block=rows_per_task)
    files, folder = pyarrow.fs.FileSystem.from_uri(target)
    if files.get_file_info(folder).type != pyarrow.fs.FileType.NotFound:
        raise FileExistsError(f"{target} exists already")
    files.create_dir(folder)
    try:
        scored = rows.map_batches(
            Scorer,
            fn_constructor_kwargs={"threads": cpus_per_worker, **package},
            batch_format="pyarrow",
            num_cpus=cpus_per_worker,
            compute=ray.data.ActorPoolStrategy(size=workers),
        )
        scored.write_parquet(target)
        files.open_output_stream(f"{folder}/_SUCCESS").close()
    except BaseException:
        files.delete_dir(folder)
        raise


def first_cause(error: ray.exceptions.RayError) -> str:
    """A line of the tracebacks in an error's text: they begin with the first cause, whose last line says what it is."""
    return str(error).partition("\n\nThe above exception")[0].strip().splitlines()[-1]


def place(text: str) -> str:
    """URIs such as s3://bucket/rows are left as they are. Paths become absolute, for workers in other directories."""
    return text if "://" in text else os.path.abspath(text)


def main() -> None:
    parser = argparse.ArgumentParser(description="Scores Parquet files with a model package.")
    parser.add_argument("package", type=os.path.abspath, help="a package's directory or archive, on every node")
    parser.add_argument("input", type=place, help="a Parquet file or a directory of such, as a path or a URI")
    parser.add_argument("output", type=place, help="a directory that does not exist yet, as a path or a URI")
    parser.add_argument("--workers", type=int, help="models at work (default: as many as leave one CPU free)")
    parser.add_argument("--cpus-per-worker", type=int, default=1, help="each one's CPUs, and threads (default: 1)")
    parser.add_argument("--rows-per-task", type=int, default=10_000, help="what is repeated if a worker dies")
    parser.add_argument("--cache", default="~/.cache/quavin/compiled", help="a directory for each node's cache")
    parser.add_argument("--key-file", type=os.path.abspath, help="the key in hexadecimal digits, on every node")
    parser.add_argument("--address", default="local", help="the Ray cluster's (default: this machine alone)")
    options = parser.parse_args()
    package = {"package": options.package, "cache": options.cache, "key_file": options.key_file}

    os.environ["RAY_USAGE_STATS_ENABLED"] = "0"  # on the cluster that this may start
    try:
        Scorer(threads=options.cpus_per_worker, **package)  # if that fails here, it need not fail in many workers
        ray.init(options.address)
        cpus = int(ray.cluster_resources()["CPU"])  # type: ignore[no-untyped-call]
        workers = options.workers or max(1, (cpus - 1) // options.cpus_per_worker)
        if workers * options.cpus_per_worker >= cpus:
            raise RuntimeError(f"{workers} workers leave none of the {cpus} CPUs to read and write with")
        score(options.input, options.output, workers, options.cpus_per_worker, options.rows_per_task, **package)
    except ray.exceptions.RayError as error:
        sys.exit(f"score.py: {first_cause(error)}")
    except (OSError, RuntimeError) as error:
        sys.exit(f"score.py: {type(error).__name__}: {error}")


if __name__ == "__main__":
    main()
