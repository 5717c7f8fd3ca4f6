"""quavin run: what it says of the outputs, and where it writes them."""

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

    def test_sums_an_output_up(self):
        y = networks.affine_result(X)
        output = self.report(X)
        exact = {key: output[key] for key in ("name", "dataType", "shape", "file")}
        file = process.shown_path("out/y.npy")
        self.assertEqual(exact, {"name": "y", "dataType": "float", "shape": [1, 4], "file": file})
        self.assertEqual((output["minimum"], output["maximum"]), (y.min(), y.max()))
        self.assertAlmostEqual(output["mean"], float(y.mean()), 6)
        self.assertEqual(output["indexOfMaximum"], int(y.argmax()))
        self.assertEqual(output["notFinite"], 0)

    def test_leaves_out_what_is_not_finite(self):
        output = self.report(np.float32([[np.nan, 1, np.inf, -np.inf]]))
        self.assertEqual((output["minimum"], output["maximum"], output["mean"]), (3, 3, 3))
        self.assertEqual((output["indexOfMaximum"], output["notFinite"]), (1, 3))
        out = self.succeed("run", "package", "-i", "x=x.npy", "-o", "out")
        self.assertIn("3 elements are not finite", out)

    def test_is_json_where_nothing_is_finite(self):
        output = self.report(np.full((1, 4), np.nan, np.float32))
        self.assertEqual(output["notFinite"], 4)

    def test_tells_integers(self):
        output = self.report(np.int32([-5, 1, 9, 3]), networks.tripling_integers())
        self.assertEqual((output["dataType"], output["shape"]), ("int32", [4]))
        self.assertEqual((output["minimum"], output["maximum"]), (-15, 27))
        self.assertEqual((output["mean"], output["indexOfMaximum"]), (6, 2))


class OutputNames(RunCase):
    def test_do_not_lead_out_of_the_directory(self):
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

    def test_that_windows_takes_for_devices_are_not_the_files(self):
        np.save(self.dir / "x.npy", X)
        names = {"con": "_con", "NUL.txt": "_NUL.txt", "Com1": "_Com1", "conv": "conv", "com": "com"}
        for name, stem in names.items():
            with self.subTest(name):
                self.package(networks.affine(output_name=name))
                self.succeed("run", "package", "-i", "x=x.npy", "-o", "out")
                self.assertEqual([p.name for p in (self.dir / "out").iterdir()], [stem + ".npy"])
                (self.dir / "out" / (stem + ".npy")).unlink()

    def test_that_become_one_have_files_of_their_own(self):
        # Some file systems do not tell capital letters from small ones.
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
