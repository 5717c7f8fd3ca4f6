"""quavin bench: what it reports. Tests do not judge how long anything takes."""

import re
import unittest

import networks
import packages
import process
from support import KEY_HEX, OTHER_KEY_HEX, CommandLineTest

QUICK = ["--seconds", "0.01"]
# In ascending order.
QUANTILES = ["minimumSeconds", "medianSeconds", "p90Seconds", "p99Seconds", "maximumSeconds"]
TIMES = ["loadSeconds", "firstPredictionSeconds", "meanSeconds", "elapsedSeconds", *QUANTILES]
OF_THE_ENGINE = ["threads", "streams"]
COUNTS = ["predictions", "predictionsPerSecond", "peakResidentBytes", *OF_THE_ENGINE]


class Bench(CommandLineTest):
    def test_reports_times_counts_and_memory(self):
        packages.write_package(self.dir / "package")
        report = self.succeed_json("bench", "package", *QUICK)
        self.assertEqual(sorted(report), sorted([*TIMES, *COUNTS, "precision", "histogram"]))
        for name in TIMES + COUNTS:
            if name not in OF_THE_ENGINE:
                self.assertGreater(report[name], 0, name)
        quantiles = [report[name] for name in QUANTILES]
        self.assertEqual(quantiles, sorted(quantiles))
        self.assertLessEqual(report["maximumSeconds"], report["elapsedSeconds"])
        self.assertIsInstance(report["predictions"], int)
        mean = report["elapsedSeconds"] / report["predictions"]
        self.assertAlmostEqual(report["meanSeconds"] / mean, 1, 9)
        self.assertAlmostEqual(report["predictionsPerSecond"] * mean, 1, 9)

    @process.adapter_only(process.OTHER_RUNTIME)
    def test_reports_how_the_engine_computes(self):
        packages.write_package(self.dir / "package")
        report = self.succeed_json("bench", "package", *QUICK)
        for name in OF_THE_ENGINE:
            self.assertGreater(report[name], 0, name)
        self.assertEqual(report["precision"], "f32")

    def test_counts_predictions_in_a_histogram_from_the_fastest_to_the_slowest(self):
        packages.write_package(self.dir / "package")
        report = self.succeed_json("bench", "package", *QUICK)
        bars = report["histogram"]
        self.assertEqual(sum(bar["predictions"] for bar in bars), report["predictions"])
        self.assertEqual(bars[0]["fromSeconds"], report["minimumSeconds"])
        self.assertEqual(bars[-1]["toSeconds"], report["maximumSeconds"])
        for bar, following in zip(bars, bars[1:]):
            self.assertEqual(bar["toSeconds"], following["fromSeconds"])
        # Nine tenths take no longer than "p90Seconds".
        fast = sum(b["predictions"] for b in bars if b["fromSeconds"] <= report["p90Seconds"])
        self.assertGreaterEqual(fast, 0.9 * report["predictions"])

    def test_prints_the_same_figures_as_text(self):
        packages.write_package(self.dir / "package")
        figures, bars = self.succeed("bench", "package", *QUICK).split("\n\n")
        lines = figures.splitlines()
        expected = ["load", "first prediction", "minimum", "mean", "median", "p90", "p99"]
        expected += ["maximum", "predictions", "per second", "precision", "threads"]
        expected += ["streams", "peak memory"]
        self.assertEqual([line.split("  ")[1] for line in lines], expected)
        for line in lines[:8]:
            self.assertRegex(line, r" \d+\.\d\d (s|ms|us)\Z")
        total = 0
        for line in bars.splitlines():
            self.assertLessEqual(len(line), 80)
            time = r"\d+\.\d\d (?:s|ms|us)"
            row = re.fullmatch(rf"  {time} +to {time} +(\d+) *(#*)", line)
            self.assertIsNotNone(row, line)
            self.assertEqual(row[1] != "0", row[2] != "")
            total += int(row[1])
        self.assertEqual(max(len(line.split()[-1]) for line in bars.splitlines()), 40)
        self.assertIn(f"  {total} in ", figures)

    def test_predicts_the_given_number_of_times(self):
        packages.write_package(self.dir / "package")
        for count in 1, 2, 7, 200:
            with self.subTest(count):
                report = self.succeed_json("bench", "package", "--iterations", count)
                self.assertEqual(report["predictions"], count)
                counted = sum(bar["predictions"] for bar in report["histogram"])
                self.assertEqual(counted, count)

    def test_does_not_count_warm_up_predictions(self):
        packages.write_package(self.dir / "package")
        report = self.succeed_json("bench", "package", "--warm-up", "50", "--iterations", "3")
        self.assertEqual(report["predictions"], 3)

    def test_rejects_counts_that_are_not_integers_in_range(self):
        packages.write_package(self.dir / "package")
        for option, smallest in ("--iterations", 1), ("--warm-up", 0):
            for number in smallest - 1, 10000001, 1.5, "many", "":
                with self.subTest(option=option, number=number):
                    self.misused("bench", "package", f"{option}={number}")

    def test_rejects_seconds_together_with_iterations(self):
        packages.write_package(self.dir / "package")
        self.misused("bench", "package", "--iterations", "3", *QUICK)

    def test_accepts_packages_with_inputs_of_any_type(self):
        packages.write_package(self.dir / "package", networks.typed_sum())
        self.succeed("bench", "package", *QUICK)

    def test_reads_inputs_from_files_and_uses_zeros_for_the_others(self):
        packages.write_package(self.dir / "package", networks.arithmetic())
        # Only a file determines the shape.
        with packages.changed_manifest(self.dir / "package") as target:
            target["inputs"][1]["tensor"]["shape"] = [-1, 3]
        self.refused(6, "bench", "package", *QUICK)
        networks.np.save(self.dir / "v.npy", networks.np.ones((2, 3), networks.np.float32))
        self.succeed("bench", "package", *QUICK, "-i", "right=v.npy")
        self.succeed("bench", "package", *QUICK, "-i", "right=v.npy", "--input", "left=v.npy")

    def test_accepts_raw_inputs(self):
        packages.write_package(self.dir / "package")
        self.write("x.raw", bytes(16))
        self.succeed("bench", "package", *QUICK, "--raw", "-i", "x=x.raw")
        self.write("x.raw", bytes(15))
        text = self.refused(7, "bench", "package", *QUICK, "--raw", "-i", "x=x.raw")
        self.assertIn("x.raw has 15 bytes", text)

    def test_rejects_inputs_that_do_not_fit(self):
        packages.write_package(self.dir / "package")
        networks.np.save(self.dir / "x.npy", networks.np.ones((1, 5), networks.np.float32))
        self.assertIn("[1, 5]", self.refused(7, "bench", "package", *QUICK, "-i", "x=x.npy"))
        self.assertIn('"z"', self.refused(7, "bench", "package", *QUICK, "-i", "z=x.npy"))
        self.assertIn("none.npy", self.refused(3, "bench", "package", *QUICK, "-i", "x=none.npy"))
        for argument in "x", "x=", "=x.npy":
            with self.subTest(argument):
                self.misused("bench", "package", *QUICK, "-i", argument)
        self.misused("bench", "package", *QUICK, "-i", "x=x.npy", "-i", "x=x.npy")

    def test_requires_the_key_of_a_secured_package(self):
        packages.write_package(self.dir / "package", key_hex=KEY_HEX)
        self.assertIn("--key-file", self.refused(7, "bench", "package", *QUICK))
        self.key_file()
        self.succeed("bench", "package", *QUICK, "--key-file", "key")
        self.succeed("bench", "package", *QUICK, "--key-env", "KEY", KEY=KEY_HEX)
        self.key_file(OTHER_KEY_HEX)
        reason = self.refused(3, "bench", "package", *QUICK, "--key-file", "key")
        self.assertIn(" The key is wrong, or a file is damaged", reason)
        self.assertNotRegex(reason, r"[!?.]\.")

    def test_rejects_durations_outside_a_hundredth_of_a_second_to_a_day(self):
        packages.write_package(self.dir / "package")
        for seconds in "0", "0.009", "-1", "86401", "inf", "soon", "":
            with self.subTest(seconds):
                self.misused("bench", "package", "--seconds=" + seconds)

    def test_rejects_nan_as_a_duration(self):
        packages.write_package(self.dir / "package")
        self.misused("bench", "package", "--seconds", "nan")

    def test_refuses_a_missing_package(self):
        self.assertIn("nowhere", self.refused(7, "bench", "nowhere", *QUICK))

    @process.posix_only(process.ENGINE_CANNOT_FAIL)
    def test_refuses_a_network_that_the_engine_cannot_compile(self):
        packages.write_package(self.dir / "package", networks.uncompilable())
        self.assertIn("LRN", self.refused(2, "bench", "package", *QUICK))


if __name__ == "__main__":
    unittest.main()
