"""quavin run: what it reports about outputs, and where it writes them."""

import unittest

import numpy as np

import networks
import process
from run_test import RunCase, X


class Report(RunCase):
    def report(self, x, network=None):
        self.package(network)
        call = ["run", "package", "-i", "x=" + self.save("x.npy", x), "-o", "out"]
        [output] = self.succeed_json(*call)["outputs"]
        return output

    def test_report_summarises_an_output(self):
        y = networks.affine_result(X)
        output = self.report(X)
        exact = {key: output[key] for key in ("name", "dataType", "shape", "file")}
        file = process.shown_path("out/y.npy")
        self.assertEqual(exact, {"name": "y", "dataType": "float", "shape": [1, 4], "file": file})
        self.assertEqual((output["minimum"], output["maximum"]), (y.min(), y.max()))
        self.assertAlmostEqual(output["mean"], float(y.mean()), 6)
        self.assertEqual(output["indexOfMaximum"], int(y.argmax()))
        self.assertEqual(output["notFinite"], 0)

    def test_report_leaves_out_non_finite_elements(self):
        output = self.report(np.float32([[np.nan, 1, np.inf, -np.inf]]))
        self.assertEqual((output["minimum"], output["maximum"], output["mean"]), (3, 3, 3))
        self.assertEqual((output["indexOfMaximum"], output["notFinite"]), (1, 3))
        out = self.succeed("run", "package", "-i", "x=x.npy", "-o", "out")
        self.assertIn("3 elements are not finite", out)

    def test_report_is_valid_json_if_no_element_is_finite(self):
        output = self.report(np.full((1, 4), np.nan, np.float32))
        self.assertEqual(output["notFinite"], 4)

    def test_report_summarises_integers(self):
        output = self.report(np.int32([-5, 1, 9, 3]), networks.tripling_integers())
        self.assertEqual((output["dataType"], output["shape"]), ("int32", [4]))
        self.assertEqual((output["minimum"], output["maximum"]), (-15, 27))
        self.assertEqual((output["mean"], output["indexOfMaximum"]), (6, 2))


class Printed(RunCase):
    """Without --output."""

    def printed(self, x, network=None, *options):
        self.package(network)
        call = ["run", "package", "-i", "x=" + self.save("x.npy", x), *options]
        with self.nothing_changes():
            return self.succeed(*call)

    def test_first_values_and_statistics_are_printed(self):
        out = self.printed(np.float32([[1.5, -2, 3, 0.25]]))
        # 2 x + (0.5, 1, 1.5, 2)
        self.assertRegex(out, r"\A  OUTPUT +TYPE +SHAPE +MIN +MAX +MEAN +MAX AT +VALUES\n")
        row = r"  y +float +\[1, 4\] +-3 +7\.5 +2\.625 +2 +3\.5, -3, 7\.5, 2\.5\n\Z"
        self.assertRegex(out, row)

    def test_no_more_than_ten_values_are_printed(self):
        net = networks.Network("long")
        x = net.parameter("x", (12,))
        net.result(net.layer("Add", "y", [x, x], (12,)))
        out = self.printed(np.arange(12, dtype=np.float32), net)
        self.assertTrue(out.endswith("  0, 2, 4, 6, 8, 10, 12, 14, 16, 18, ...\n"), out)

    def test_integers_are_printed_as_integers(self):
        out = self.printed(np.int32([-7, 0, 5, 400_000_000]), networks.tripling_integers())
        self.assertTrue(out.endswith("  -21, 0, 15, 1200000000\n"), out)

    def test_non_finite_values_are_printed_and_counted(self):
        out = self.printed(np.float32([[np.nan, -np.nan, np.inf, -np.inf]]))
        self.assertIn("  nan, nan, inf, -inf  4 elements are not finite", out)

    def test_scalars_are_printed(self):
        out = self.printed(np.array(4.5, np.float32), networks.scalar())
        self.assertRegex(out, r"  y +float +\[\] +45 +45 +45 +0 +45\n\Z")

    def test_outputs_are_printed_in_quiet_mode(self):
        self.assertIn("VALUES", self.printed(X, None, "--quiet"))

    def test_first_values_are_printed_as_json(self):
        self.package()
        x = np.float32([[1.5, np.nan, 3, np.inf]])
        call = ["run", "package", "-i", "x=" + self.save("x.npy", x)]
        [output] = self.succeed_json(*call)["outputs"]
        expected = {
            "name": "y",
            "dataType": "float",
            "shape": [1, 4],
            "minimum": 3.5,
            "maximum": 7.5,
            "mean": 5.5,
            "indexOfMaximum": 2,
            "notFinite": 2,
            "firstValues": [3.5, None, 7.5, None],
        }
        self.assertEqual(output, expected)

    def test_outputs_for_raw_inputs_are_printed(self):
        self.package()
        self.write("x.raw", X.astype("<f4").tobytes())
        self.assertIn("VALUES", self.succeed("run", "package", "--raw", "-i", "x=x.raw"))


class OutputNames(RunCase):
    def test_output_names_do_not_lead_out_of_the_directory(self):
        np.save(self.dir / "x.npy", X)
        for name in "../x", "a/b", "/tmp/x", "..", ".hidden", "a\\b", "-rf", "größe":
            with self.subTest(name):
                self.package(networks.affine(output_name=name))
                before = {path.name for path in self.dir.iterdir()}
                call = ["run", "package", "-i", "x=x.npy", "-o", "deep/out"]
                [output] = self.succeed_json(*call)["outputs"]
                [file] = (self.dir / "deep/out").iterdir()
                self.assertEqual(self.dir / process.local_path(output["file"]), file)
                self.assertEqual(output["name"], name)
                self.assertRegex(file.name, r"\A[A-Za-z0-9_-][A-Za-z0-9_.-]*\.npy\Z")
                self.assert_array(np.load(file), networks.affine_result(X))
                file.unlink()
                now = {path.name for path in self.dir.iterdir()}
                self.assertEqual(now - before, {"deep"} - before)

    def test_output_names_of_windows_devices_are_changed(self):
        np.save(self.dir / "x.npy", X)
        names = {"con": "_con", "NUL.txt": "_NUL.txt", "Com1": "_Com1", "conv": "conv", "com": "com"}
        for name, stem in names.items():
            with self.subTest(name):
                self.package(networks.affine(output_name=name))
                self.succeed("run", "package", "-i", "x=x.npy", "-o", "out")
                self.assertEqual([p.name for p in (self.dir / "out").iterdir()], [stem + ".npy"])
                (self.dir / "out" / (stem + ".npy")).unlink()

    def test_output_directories_that_windows_does_not_allow_are_refused(self):
        np.save(self.dir / "x.npy", X)
        self.package(networks.affine())
        for name in "con", "deep/nul", "aux.d", "COM²", "a:b", "dot.":
            with self.subTest(name), self.nothing_changes():
                reason = self.refused(7, "run", "package", "-i", "x=x.npy", "-o", name)
                self.assertIn("Windows", reason)
                self.assertIn("--output", reason)
        for name in ".", "./", "out/", "out/..", "console":
            with self.subTest(name):
                self.succeed("run", "package", "-i", "x=x.npy", "-o", name)

    def test_outputs_with_colliding_names_get_separate_files(self):
        # Some file systems are case-insensitive.
        for names in ("a/b", "a_b"), ("result", "Result"):
            with self.subTest(names):
                net = networks.Network("alike")
                x = net.parameter("x", (1, 4))
                for layer, name in zip(("Add", "Multiply"), names):
                    net.result(net.layer(layer, name, [x, x], (1, 4)))
                self.package(net)
                call = ["run", "package", "-i", "x=" + self.save("x.npy", X), "-o", "out"]
                reported = self.succeed_json(*call)["outputs"]
                self.assertEqual(len({output["file"].lower() for output in reported}), 2)
                files = {output["name"]: process.local_path(output["file"]) for output in reported}
                for name, expected in zip(names, (X + X, X * X)):
                    self.assert_array(np.load(self.dir / files[name]), expected)


if __name__ == "__main__":
    unittest.main()
