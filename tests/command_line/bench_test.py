"""quavin bench: what it reports. How long anything takes is not for a test to say."""

import unittest

import networks
import packages
import process
from support import KEY_HEX, OTHER_KEY_HEX, CommandLineTest

QUICK = ["--seconds", "0.01"]
TIMES = ["loadSeconds", "firstPredictionSeconds", "medianSeconds", "p90Seconds", "p99Seconds"]


class Bench(CommandLineTest):
    def test_reports_times_counts_and_memory(self):
        packages.write_package(self.dir / "package")
        report = self.succeed_json("bench", "package", *QUICK)
        others = ["elapsedSeconds", "predictions", "predictionsPerSecond", "peakResidentBytes"]
        self.assertEqual(sorted(report), sorted(TIMES + others))
        for name, value in report.items():
            self.assertGreater(value, 0, name)
        self.assertLessEqual(report["medianSeconds"], report["p90Seconds"])
        self.assertLessEqual(report["p90Seconds"], report["p99Seconds"])
        self.assertLessEqual(report["p99Seconds"], report["elapsedSeconds"])
        self.assertIsInstance(report["predictions"], int)
        rate = report["predictions"] / report["elapsedSeconds"]
        self.assertAlmostEqual(report["predictionsPerSecond"] / rate, 1, 9)

    def test_tells_people_the_same(self):
        packages.write_package(self.dir / "package")
        lines = self.succeed("bench", "package", *QUICK).splitlines()
        expected = ["load", "first prediction", "median", "p90", "p99"]
        expected += ["predictions", "per second", "peak memory"]
        self.assertEqual([line.split("  ")[1] for line in lines], expected)
        for line in lines[:5]:
            self.assertRegex(line, r" \d+\.\d\d (s|ms|us)\Z")

    def test_takes_packages_with_inputs_of_any_type(self):
        packages.write_package(self.dir / "package", networks.typed_sum())
        self.succeed("bench", "package", *QUICK)

    def test_needs_the_key_of_a_secured_package(self):
        packages.write_package(self.dir / "package", key_hex=KEY_HEX)
        self.assertIn("--key-file", self.refused(7, "bench", "package", *QUICK))
        self.key_file()
        self.succeed("bench", "package", *QUICK, "--key-file", "key")
        self.succeed("bench", "package", *QUICK, "--key-env", "KEY", KEY=KEY_HEX)
        self.key_file(OTHER_KEY_HEX)
        self.refused(3, "bench", "package", *QUICK, "--key-file", "key")

    def test_takes_no_other_times_than_from_a_hundredth_of_a_second_to_a_day(self):
        packages.write_package(self.dir / "package")
        for seconds in "0", "0.009", "-1", "86401", "inf", "soon", "":
            with self.subTest(seconds):
                self.misused("bench", "package", "--seconds=" + seconds)

    def test_takes_no_time_that_is_no_number(self):
        packages.write_package(self.dir / "package")
        self.misused("bench", "package", "--seconds", "nan")

    def test_has_nothing_to_measure_where_there_is_no_package(self):
        self.assertIn("nowhere", self.refused(7, "bench", "nowhere", *QUICK))

    @process.posix_only(process.ENGINE_CANNOT_FAIL)
    def test_has_nothing_to_measure_where_the_engine_cannot_compile_the_network(self):
        packages.write_package(self.dir / "package", networks.uncompilable())
        self.assertIn("LRN", self.refused(2, "bench", "package", *QUICK))


if __name__ == "__main__":
    unittest.main()
