"""quavin verify: each finding about a network and what the manifest says of it."""

import os
import unittest

import networks
import packages
import process
from support import CommandLineTest
from verify_findings_test import FLOATS, FindingsTest


class Network(FindingsTest):
    @process.adapter_only(process.OWN_TEXTS)
    def test_cannot_be_read(self):
        self.write("package/net.xml", "no network")
        self.assert_found("error", "network", "XML", "Export the network again")

    def test_has_too_few_weights(self):
        os.truncate(self.package / "net.bin", 79)
        self.assert_found("error", "network", "weights", "with its weights")

    @process.adapter_only(process.OWN_TEXTS)
    def test_has_unknown_dimensions(self):
        packages.write_network(self.package, networks.dynamic())
        self.assert_found("error", "network", '"frames"', "fixed dimensions")

    def test_takes_an_input_that_is_not_declared(self):
        packages.write_package(self.package, networks.arithmetic())
        with packages.changed_manifest(self.package) as target:
            del target["inputs"][1]
        advice = "a tensor of float, shape [2, 3]"
        self.assert_found("error", 'input "right"', "needs it", advice)

    def test_gives_an_output_that_is_not_declared(self):
        packages.write_package(self.package, networks.arithmetic())
        with packages.changed_manifest(self.package) as target:
            del target["outputs"][1]
        advice = "a tensor of float, shape [2, 3]"
        self.assert_found("warning", 'output "product"', "gives it", advice)

    def test_has_no_input_of_a_declared_name(self):
        with packages.changed_manifest(self.package) as target:
            target["inputs"].append({"name": "z", "featureType": "tensor", "tensor": FLOATS})
        self.assert_found("warning", 'input "z"', "none of this name", 'the network has "x"')

    def test_has_no_output_of_a_declared_name(self):
        with packages.changed_manifest(self.package) as target:
            target["outputs"].append({"name": "z", "featureType": "tensor", "tensor": FLOATS})
        self.assert_found("error", 'output "z"', "none of this name", 'the network has "y"')

    def test_takes_no_other_features_than_tensors(self):
        self.change(input={"featureType": "double", "double": FLOATS})
        self.assert_found("error", 'input "x"', "featureType", "a tensor of float, shape [1, 4]")

    def test_takes_a_type_that_predictions_cannot_give(self):
        packages.write_package(self.package, networks.affine(dtype="u8"))
        self.assert_found("error", 'input "x"', "uint8", "float, int8, int16 or int32")

    def test_takes_another_type(self):
        self.change(input={"tensor": {**FLOATS, "dataType": "int32"}})
        self.assert_found("error", 'input "x"', "int32", '"dataType": "float"')

    def test_has_a_larger_input(self):
        self.change(input={"tensor": {**FLOATS, "shape": [1, 3]}})
        what = "Its shape is [1, 3] and the network's is [1, 4]"
        self.assert_found("error", 'input "x"', what, '"shape": [1, 4]')

    def test_has_a_smaller_input_or_one_of_another_shape(self):
        for shape in [1, 5], [4], [2, 2]:
            with self.subTest(shape):
                self.change(input={"tensor": {**FLOATS, "shape": shape}})
                what = "and the network's is [1, 4]"
                self.assert_found("warning", 'input "x"', what, '"shape": [1, 4]')

    @process.posix_only(process.ENGINE_CANNOT_FAIL)
    def test_cannot_be_compiled(self):
        packages.write_package(self.package, networks.uncompilable())
        self.assert_found("error", "prediction", "LRN", "lack one of its operations")


class Outputs(FindingsTest):
    """What is said of an output's type and shape is for hosts; predicting does not look at it."""

    def test_of_another_type(self):
        self.change(output={"tensor": {**FLOATS, "dataType": "int32"}})
        self.assert_found("warning", 'output "y"', "int32", '"dataType": "float"')

    def test_of_another_shape(self):
        for shape in [1, 3], [1, 5], [4]:
            with self.subTest(shape):
                self.change(output={"tensor": {**FLOATS, "shape": shape}})
                what = "and the network's is [1, 4]"
                self.assert_found("warning", 'output "y"', what, '"shape": [1, 4]')

    def test_of_a_variable_shape(self):
        self.change(output={"tensor": {**FLOATS, "shape": [-1, 4]}})
        self.assert_found("warning", 'output "y"', "variable", "the network's shape")

    def test_of_another_kind(self):
        self.change(output={"featureType": "double", "double": FLOATS})
        self.assert_found("warning", 'output "y"', "featureType", "a tensor of float")


class LaterInputs(CommandLineTest):
    def test_of_a_variable_shape_are_for_hosts_to_fill_and_run_can(self):
        package = packages.write_package(self.dir / "package", networks.arithmetic())
        with packages.changed_manifest(package) as target:
            target["inputs"][1]["tensor"]["shape"] = [-1, 3]
        findings = self.succeed_json("verify", "package")["findings"]
        self.assertEqual(len(findings), 1)
        self.assertEqual(findings[0]["level"], "warning")
        self.assertEqual(findings[0]["where"], 'input "right"')
        self.assertIn("variable and the network's is [2, 3]", findings[0]["what"])
        values = networks.np.float32([[1, 2, 3], [4, 5, 6]])
        networks.np.save(self.dir / "v.npy", values)
        self.succeed("run", "package", "-i", "left=v.npy", "-i", "right=v.npy", "-o", "out")
        self.assertEqual(networks.np.load(self.dir / "out/sum.npy").tolist(), (2 * values).tolist())


if __name__ == "__main__":
    unittest.main()
