"""Scores handwritten digits on a cluster of three nodes of this machine: as one process does, and as they are labelled.

Runs in the environment of examples/batch_scoring; scripts/test-batch-scoring.sh does that.
"""

from __future__ import annotations

import http.server
import json
import os
import re
import shutil
import signal
import socket
import subprocess
import sys
import tempfile
import threading
import time
import unittest
from collections.abc import Iterator
from pathlib import Path
from typing import Any

import numpy as np
import numpy.typing as npt
import pyarrow as pa
import pyarrow.parquet as pq
from ray.cluster_utils import Cluster

ROOT = Path(__file__).resolve().parents[2]
DIGITS = ROOT / "examples" / "digits"
SCORE = ROOT / "examples" / "batch_scoring" / "score.py"
sys.path.insert(0, str(SCORE.parent))

from score import Scorer  # noqa: E402

FILES = 48
RECORDS = np.fromfile(DIGITS / "held_out.bin", np.uint8).reshape(-1, 65)  # 64 pixels, and the digit that they show
RIGHT = 444  # so many of them, says examples/digits/README.md
SECONDS = 240  # for a run; it takes about twenty on two idle cores

RAY = Path(os.environ["RAY_TMPDIR"], "ray")
WORK = Path(tempfile.mkdtemp(prefix="quavin-batch-"))
reports: list[bytes] = []


class Reports(http.server.BaseHTTPRequestHandler):
    """Where Ray's usage statistics go in these tests."""

    def do_POST(self) -> None:
        reports.append(self.rfile.read(int(self.headers["Content-Length"])))
        self.send_response(200)
        self.end_headers()

    def log_message(self, format: str, *arguments: Any) -> None:
        pass


def images(pixels: npt.NDArray[np.uint8]) -> pa.Array:
    """A picture in each row, as the network reads it."""
    return pa.FixedSizeListArray.from_arrays(pixels.astype(np.float32).ravel(), pixels.shape[1])


def digits(records: npt.NDArray[np.uint8] = RECORDS, first: int = 0) -> pa.Table:
    ids = np.arange(first, first + len(records))
    return pa.table({"id": ids, "image": images(records[:, :-1]), "label": records[:, -1]})


def write_rows(folder: Path, files: int, records: npt.NDArray[np.uint8] = RECORDS) -> Path:
    folder.mkdir()
    for i in range(files):
        pq.write_table(digits(records, i * len(records)), folder / f"{i:03}.parquet")
    return folder


def read_sorted(folder: Path) -> pa.Table:
    return pq.read_table(folder).sort_by("id")


def processes() -> Iterator[tuple[int, str]]:
    """Ray's running processes with their command lines; all of them have their logs open."""
    for folder in Path("/proc").glob("[0-9]*"):
        try:
            if any(os.readlink(file).startswith(str(RAY)) for file in (folder / "fd").iterdir()):
                yield int(folder.name), (folder / "cmdline").read_text(errors="replace")
        except OSError:  # it has ended
            pass


class WithAFolder(unittest.TestCase):
    def setUp(self) -> None:
        self.folder = Path(tempfile.mkdtemp(dir=WORK))
        self.output = self.folder / "scored"


class AScorer(WithAFolder):
    """In this process, without Ray."""

    def setUp(self) -> None:
        super().setUp()
        self.scorer = Scorer(str(DIGITS / "package"), threads=1, cache=str(self.folder / "cache"))

    def refusal(self, image: pa.Array) -> str:
        with self.assertRaises(ValueError) as raised:
            self.scorer(pa.table({"image": image}))
        return str(raised.exception)

    def test_lists_of_any_length_are_read_if_theirs_is_right(self) -> None:
        rows = digits()
        loose = rows.set_column(1, "image", rows["image"].cast(pa.list_(pa.float32())))
        self.assertEqual(self.scorer(loose), self.scorer(rows))

    def test_a_batch_may_be_empty_or_part_of_a_table(self) -> None:
        whole = self.scorer(digits())
        self.assertEqual(self.scorer(digits().slice(100, 7)), whole.slice(100, 7))
        self.assertEqual(self.scorer(digits().slice(0, 0)), whole.slice(0, 0))

    def test_rows_of_the_wrong_width_are_refused(self) -> None:
        self.assertEqual(self.refusal(images(RECORDS[:, :63])),
                         'the column "image" has rows of [63] values, and the model reads 64')
        ragged = pa.array([[0.0] * 64, [0.0] * 65, None], pa.list_(pa.float32()))
        self.assertEqual(self.refusal(ragged),
                         'the column "image" has rows of [64, 65, None] values, and the model reads 64')

    def test_missing_values_are_refused(self) -> None:
        image = pa.array([[0.0] * 63 + [None]], pa.list_(pa.float32(), 64))
        self.assertEqual(self.refusal(image), 'the column "image" has missing values')

    def test_numbers_of_another_type_are_refused(self) -> None:
        image = images(RECORDS[:, :64]).cast(pa.list_(pa.float64(), 64))
        self.assertIn("double", self.refusal(image))
        self.assertIn("the model reads lists of float32", self.refusal(image))
        self.assertIn("int64", self.refusal(pa.array([1, 2])))

    def test_a_missing_column_and_one_in_the_way_are_named(self) -> None:
        with self.assertRaisesRegex(ValueError, 'no column "image"'):
            self.scorer(digits().drop_columns(["image"]))
        with self.assertRaisesRegex(ValueError, 'a column "probabilities" already'):
            self.scorer(digits().append_column("probabilities", pa.array(RECORDS[:, 64])))

    def test_a_key_file_that_is_no_key_is_refused_without_showing_it(self) -> None:
        key_file = self.folder / "key"
        key_file.write_text("5eCr3t")
        with self.assertRaisesRegex(RuntimeError, "cannot load the package .*secured_package") as raised:
            Scorer(str(DIGITS / "secured_package"), threads=1, cache=str(self.folder), key_file=str(key_file))
        self.assertNotIn("5eCr3t", str(raised.exception))


class ACluster(WithAFolder):
    """Two workers with two CPUs each, so on two nodes."""

    cluster: Cluster
    rows: Path
    cache: Path
    one_process: pa.Table

    @classmethod
    def setUpClass(cls) -> None:
        cls.cluster = Cluster()
        cls.addClassCleanup(cls.cluster.shutdown)
        for _ in range(3):
            cls.cluster.add_node(num_cpus=2)
        cls.rows = write_rows(WORK / "rows", FILES)
        cls.cache = WORK / "cache"
        one = Scorer(str(DIGITS / "package"), threads=2, cache=str(WORK / "cache-of-one"))
        cls.one_process = one(pq.read_table(cls.rows)).sort_by("id")

    def start(self, package: Path = DIGITS / "package", rows: Path | None = None, *more: str) -> subprocess.Popen[str]:
        command = [sys.executable, str(SCORE), str(package), str(rows or self.rows), str(self.output)]
        options = ["--workers=2", "--cpus-per-worker=2", f"--rows-per-task={len(RECORDS)}", f"--cache={self.cache}",
                   f"--address={self.cluster.address}"]
        run = subprocess.Popen([*command, *options, *more], cwd=self.folder, text=True,
                               stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        self.addCleanup(run.wait)
        self.addCleanup(run.kill)  # if the test has failed
        return run

    def end(self, run: subprocess.Popen[str]) -> str:
        """Waits for a run to succeed."""
        log, _ = run.communicate(timeout=SECONDS)
        self.assertEqual(run.returncode, 0, log)
        self.assertTrue((self.output / "_SUCCESS").exists())
        return log

    def error_of(self, run: subprocess.Popen[str]) -> str:
        """Waits for a run to fail, and returns the line that says why."""
        log, _ = run.communicate(timeout=SECONDS)
        self.assertEqual(run.returncode, 1, log)
        self.assertFalse(self.output.exists())
        return log.rstrip().splitlines()[-1]

    def test_rows_and_numbers_are_those_of_one_process(self) -> None:
        self.end(self.start())
        scored = read_sorted(self.output)
        self.assertEqual(scored, self.one_process)
        # The rows that went in, and what people see on the pictures.
        self.assertEqual(scored["id"].to_pylist(), list(range(FILES * len(RECORDS))))
        labels = np.tile(RECORDS[:, 64], FILES)
        self.assertEqual(scored["label"].to_pylist(), labels.tolist())
        recognised = np.stack(scored["probabilities"].to_numpy()).argmax(axis=1)
        self.assertEqual(int((recognised == labels).sum()), RIGHT * FILES)

    def test_nothing_changes_if_a_worker_is_killed(self) -> None:
        run, end = self.start(), time.monotonic() + SECONDS
        while not list(self.output.glob("*.parquet")) and time.monotonic() < end:
            time.sleep(0.01)
        workers = [pid for pid, command in processes() if "::MapWorker" in command]
        self.assertEqual(len(workers), 2)
        os.kill(workers[0], signal.SIGKILL)
        self.assertLess(len(list(self.output.glob("*.parquet"))), FILES // 2, "the run was over too soon for this test")
        self.end(run)
        self.assertEqual(read_sorted(self.output), self.one_process)

    def test_workers_take_the_compiled_network_from_their_node(self) -> None:
        self.cache = self.folder / "cache"
        Scorer(str(DIGITS / "package"), threads=2, cache=str(self.cache))
        (entry,) = self.cache.iterdir()
        written = entry.stat()
        # Whoever compiles a network writes it there, so these find it.
        self.end(self.start(rows=write_rows(self.folder / "rows", 4)))
        self.assertEqual(list(self.cache.iterdir()), [entry])
        self.assertEqual((entry.stat().st_ino, entry.stat().st_mtime_ns), (written.st_ino, written.st_mtime_ns))

    def test_a_secured_package_needs_its_key_file_and_the_key_stays_there(self) -> None:
        key_file = DIGITS / "demo.key"
        self.end(self.start(DIGITS / "secured_package", None, f"--key-file={key_file}"))
        self.assertEqual(read_sorted(self.output), self.one_process)
        key = key_file.read_bytes().strip()
        logs = [file for file in RAY.rglob("*") if file.is_file() and not file.is_symlink()]
        self.assertTrue(logs)
        for file in logs:
            self.assertNotIn(key, file.read_bytes(), file)

    def test_a_package_that_cannot_be_loaded_is_refused_before_anything_starts(self) -> None:
        log, _ = self.start(self.folder / "none").communicate(timeout=SECONDS)
        self.assertRegex(log, r"^score\.py: RuntimeError: cannot load the package .*/none on .*: .*\n$")

    def test_a_package_that_one_node_lacks_ends_the_run_with_an_error_that_names_it(self) -> None:
        program = (f"import ray, score; ray.init({self.cluster.address!r}); "
                   f"score.score('{self.rows}', '{self.output}', 2, 2, 450, package='/none', cache='{self.cache}')")
        run = subprocess.run([sys.executable, "-c", program], timeout=SECONDS, check=False, text=True,
                             stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        self.assertEqual(run.returncode, 1, run.stdout)
        self.assertIn("RuntimeError: cannot load the package /none on ", run.stdout.rstrip().splitlines()[-1])
        self.assertFalse(self.output.exists())

    def test_rows_of_the_wrong_width_end_the_run_with_an_error_that_names_the_column(self) -> None:
        rows = write_rows(self.folder / "rows", 2, RECORDS[:, 1:])
        self.assertEqual(self.error_of(self.start(rows=rows)),
                         'score.py: ValueError: the column "image" has rows of [63] values, and the model reads 64')

    def test_an_output_that_exists_is_left_alone(self) -> None:
        self.output.mkdir()
        (self.output / "mine.txt").write_text("mine")
        log, _ = self.start().communicate(timeout=SECONDS)
        self.assertEqual(log.rstrip().splitlines()[-1], f"score.py: FileExistsError: {self.output} exists already")
        self.assertEqual([file.name for file in self.output.iterdir()], ["mine.txt"])

    def test_workers_that_leave_no_cpu_are_refused(self) -> None:
        self.assertEqual(self.error_of(self.start(DIGITS / "package", None, "--workers=3")),
                         "score.py: RuntimeError: 3 workers leave none of the 6 CPUs to read and write with")

    def test_a_cluster_says_only_that_its_statistics_are_off_to_the_address_that_it_is_given(self) -> None:
        self.assertEqual(len(reports), 1)
        said = {name for name, value in json.loads(reports[0]).items() if value is not None}
        self.assertEqual(said, {"schema_version", "source", "collect_timestamp_ms"})


def is_own(address: str) -> bool:
    """Whether the address is this machine's."""
    with socket.socket(socket.AF_INET, socket.SOCK_DGRAM) as probe:
        probe.connect((address, 9))  # which sends nothing
        return bool(probe.getsockname()[0] == address)


class ThisMachineAlone(WithAFolder):
    def test_a_run_reports_nothing(self) -> None:
        rows, trace = write_rows(self.folder / "rows", 4), self.folder / "trace"
        calls = "trace=connect,sendto,sendmmsg"
        tracer = ["strace", "-f", "-qq", "--seccomp-bpf", "-yy", "-s", "200", "-e", calls, "-o", str(trace)]
        # As it is for users, except that Ray would not wait for a minute before it reports.
        environment = dict(os.environ)
        del environment["RAY_USAGE_STATS_ENABLED"], environment["RAY_USAGE_STATS_REPORT_URL"]
        command = [sys.executable, str(SCORE), str(DIGITS / "package"), str(rows), str(self.output)]
        run = subprocess.run([*tracer, *command, f"--cache={self.folder}/cache"], timeout=SECONDS, env=environment,
                             check=False, text=True, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)
        self.assertEqual(run.returncode, 0, run.stdout)
        self.assertEqual(read_sorted(self.output).num_rows, 4 * len(RECORDS))
        # Neither the name, nor a connection: Ray only asks whether the machine is a cloud's.
        self.assertNotIn("usage-stats", trace.read_text())
        connected = set(re.findall(r'connect\(\d+<TCP.*"(?:::ffff:)?([0-9.]+)"', trace.read_text()))
        self.assertLessEqual({address for address in connected if not is_own(address)}, {"169.254.169.254"})
        self.assertTrue(connected)


def setUpModule() -> None:
    unittest.addModuleCleanup(shutil.rmtree, WORK)
    server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Reports)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    unittest.addModuleCleanup(server.server_close)
    unittest.addModuleCleanup(server.shutdown)
    os.environ["RAY_USAGE_STATS_REPORT_URL"] = f"http://127.0.0.1:{server.server_port}/"
    os.environ["RAY_USAGE_STATS_REPORT_INTERVAL_S"] = "1"
    unittest.addModuleCleanup(end_processes)


def end_processes() -> None:
    """Fails if one is left."""
    end = time.monotonic() + 30
    while (left := dict(processes())) and time.monotonic() < end:
        time.sleep(0.1)
    for pid in left:
        os.kill(pid, signal.SIGKILL)
    if left:
        raise AssertionError(f"these processes were left: {left}")


if __name__ == "__main__":
    unittest.main()
