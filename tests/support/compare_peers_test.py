"""How benchmarks/peers/compare.py measures: with hosts that do nothing, and say what they were told."""

import contextlib
import io
import sys
import tempfile
import unittest
from pathlib import Path
from unittest import mock

sys.dont_write_bytecode = True
BENCHMARKS = Path(__file__).resolve().parents[2] / "benchmarks"
sys.path[:0] = [str(BENCHMARKS / "peers"), str(BENCHMARKS / "models")]

import compare  # noqa: E402  # from the folder above
from make_mobilenet import build  # noqa: E402

# host.py JOURNAL NAME SECONDS OUTPUT: appends what it is told to the journal; everything takes SECONDS.
HOST = """
import struct, sys
journal, name, seconds, output = sys.argv[1:]
print("{}", flush=True)
for line in sys.stdin:
    command, _, argument = line.strip().partition(" ")
    with open(journal, "a", encoding="utf-8") as file:
        file.write(f"{name} {line.strip()}\\n")
    if command == "output":
        with open(argument, "wb") as file:
            file.write(struct.pack("2f", 4, float(output)))
    print('{"seconds": %s}' % seconds, flush=True)
"""


class Compare(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.journal = Path(folder.name, "journal")
        self.host = Path(folder.name, "host.py")
        self.host.write_text(HOST, encoding="utf-8")
        no_pause = mock.patch("compare.PAUSE", 0)
        no_pause.start()
        self.addCleanup(no_pause.stop)

    def command(self, name, seconds, output="1"):
        return [sys.executable, str(self.host), str(self.journal), name, str(seconds), output]

    def told(self, command):
        lines = self.journal.read_text(encoding="utf-8").splitlines()
        return [line.split()[0] for line in lines if line.split()[1] == command]

    def test_sides_take_turns_and_each_round_begins_with_another(self):
        compare.compare(self.command("theirs", 1), self.command("ours", 1), 20, 2)
        # Each side gives its output before; a round loads, and later loads again. Then ours fills its cache, and
        # all load once more.
        first, second = ["theirs", "theirs", "ours"], ["theirs", "ours", "theirs"]
        self.assertEqual(self.told("load")[2:],
                         [*first * 2, "ours", *first, *second * 2, "ours", *second])

    def test_only_ours_loads_from_the_cache(self):
        compare.compare(self.command("theirs", 1), self.command("ours", 1), 20, 2)
        lines = self.journal.read_text(encoding="utf-8").splitlines()
        self.assertEqual([line for line in lines if line.endswith("cached")], ["ours load cached"] * 4)

    def test_outputs_are_compared_before_anything_is_timed(self):
        with self.assertRaisesRegex(SystemExit, "the outputs of .* differ"):
            compare.compare(self.command("theirs", 1, "1"), self.command("ours", 1, "1.0001"), 20, 2)
        self.assertEqual(self.told("predict"), [])

    def test_outputs_may_differ_by_rounding_of_the_largest(self):
        compare.compare(self.command("theirs", 1, "1"), self.command("ours", 1, "1.00002"), 20, 1)

    def test_figures_are_per_call_and_in_the_row_s_unit(self):
        rows = {row.name: row for row in compare.compare(self.command("theirs", 2), self.command("ours", 3), 20, 1)}
        self.assertEqual(rows["load"].values, [[2000], [2000], [3000]])
        self.assertAlmostEqual(rows["prediction"].values[2][0], 3e6 / 20)
        self.assertEqual(rows["prediction"].ratios(2), [1.5])
        self.assertGreater(rows["peak memory"].values[0][0], 1)

    def test_host_that_fails_ends_the_comparison(self):
        with self.assertRaisesRegex(SystemExit, "failed at its start"), contextlib.redirect_stderr(io.StringIO()):
            compare.compare([sys.executable, "-c", ""], self.command("ours", 1), 20, 1)


class Row(unittest.TestCase):
    def test_ratio_is_the_median_of_those_within_a_round(self):
        row = compare.Row("load", "ms", [[1, 10, 2, 4, 8], [1, 10, 2, 4, 8], [5, 10, 8, 12, 16]])
        self.assertEqual(row.ratios(2), [5, 1, 4, 3, 2])
        self.assertRegex(row.text(), r"load +4\.00 ms +10\.00 ms +3\.000x \[2\.000 \.\. 4\.000\] +1\.000x")


class CountingWriter:
    def __init__(self, _):
        self.weights = 0

    def constant(self, name, array):
        self.weights += array.size if array.dtype == "float32" else 0
        return mock.Mock(shape=array.shape)

    def parameter(self, name, shape):
        return mock.Mock(shape=shape)

    def layer(self, kind, name, inputs, shape, **_):
        return mock.Mock(shape=shape)

    def result(self, port):
        pass


class Networks(unittest.TestCase):
    def test_small_has_720_weights(self):
        self.assertEqual(build("small", CountingWriter).weights, 720)


if __name__ == "__main__":
    unittest.main()
