"""quavin verify: each finding about a network and how the manifest declares it."""

import os
import unittest

import networks
import packages
import process
from support import CommandLineTest
from verify_findings_test import FLOATS, FindingsTest


class Network(FindingsTest):
    @process.adapter_only(process.OWN_TEXTS)
    def test_a_network_that_cannot_be_read_is_an_error(self):
        self.write("package/net.xml", "no network")
        self.assert_found("error", "network", "XML", "Export the network again")

    def test_truncated_weights_are_an_error(self):
        os.truncate(self.package / "net.bin", 79)
        self.assert_found("error", "network", "weights", "with its weights")

    @process.adapter_only(process.OWN_TEXTS)
    def test_unknown_dimensions_are_an_error(self):
        packages.write_network(self.package, networks.dynamic())
        self.assert_found("error", "network", '"frames"', "fixed dimensions")

    def test_an_undeclared_input_is_an_error(self):
        packages.write_package(self.package, networks.arithmetic())
        with packages.changed_manifest(self.package) as target:
            del target["inputs"][1]
        advice = "a tensor of float, shape [2, 3]"
        self.assert_found("error", 'input "right"', "needs it", advice)

    def test_an_undeclared_output_is_a_warning(self):
        packages.write_package(self.package, networks.arithmetic())
        with packages.changed_manifest(self.package) as target:
            del target["outputs"][1]
        advice = "a tensor of float, shape [2, 3]"
        self.assert_found("warning", 'output "product"', "produces it", advice)

    def test_a_declared_input_that_the_network_lacks_is_a_warning(self):
        with packages.changed_manifest(self.package) as target:
            target["inputs"].append({"name": "z", "featureType": "tensor", "tensor": FLOATS})
        self.assert_found("warning", 'input "z"', "no input of this name", 'the network has "x"')

    def test_a_declared_output_that_the_network_lacks_is_an_error(self):
        with packages.changed_manifest(self.package) as target:
            target["outputs"].append({"name": "z", "featureType": "tensor", "tensor": FLOATS})
        self.assert_found("error", 'output "z"', "no output of this name", 'the network has "y"')

    def test_an_input_declared_as_another_kind_is_an_error(self):
        self.change(input={"featureType": "double", "double": FLOATS})
        self.assert_found("error", 'input "x"', "featureType", "a tensor of float, shape [1, 4]")

    def test_a_type_that_predictions_cannot_supply_is_an_error(self):
        packages.write_package(self.package, networks.affine(dtype="u8"))
        self.assert_found("error", 'input "x"', "uint8", "float, int8, int16 or int32")

    def test_an_input_of_another_type_is_an_error(self):
        self.change(input={"tensor": {**FLOATS, "dataType": "int32"}})
        self.assert_found("error", 'input "x"', "int32", '"dataType": "float"')

    def test_an_input_declared_too_small_is_an_error(self):
        self.change(input={"tensor": {**FLOATS, "shape": [1, 3]}})
        what = "Its shape is [1, 3], but the network's is [1, 4]"
        self.assert_found("error", 'input "x"', what, '"shape": [1, 4]')

    def test_an_input_declared_too_large_or_in_another_shape_is_a_warning(self):
        for shape in [1, 5], [4], [2, 2]:
            with self.subTest(shape):
                self.change(input={"tensor": {**FLOATS, "shape": shape}})
                what = "but the network's is [1, 4]"
                self.assert_found("warning", 'input "x"', what, '"shape": [1, 4]')

    @process.posix_only(process.ENGINE_CANNOT_FAIL)
    def test_a_network_that_cannot_be_compiled_is_an_error(self):
        packages.write_package(self.package, networks.uncompilable())
        self.assert_found("error", "prediction", "LRN", "lack one of its operations")


class Outputs(FindingsTest):
    """The declared type and shape of an output only inform hosts; predictions ignore them."""

    def test_an_output_of_another_type_is_a_warning(self):
        self.change(output={"tensor": {**FLOATS, "dataType": "int32"}})
        self.assert_found("warning", 'output "y"', "int32", '"dataType": "float"')

    def test_an_output_of_another_shape_is_a_warning(self):
        for shape in [1, 3], [1, 5], [4]:
            with self.subTest(shape):
                self.change(output={"tensor": {**FLOATS, "shape": shape}})
                what = "but the network's is [1, 4]"
                self.assert_found("warning", 'output "y"', what, '"shape": [1, 4]')

    def test_an_output_of_a_variable_shape_is_a_warning(self):
        self.change(output={"tensor": {**FLOATS, "shape": [-1, 4]}})
        self.assert_found("warning", 'output "y"', "variable", "the network's shape")

    def test_an_output_of_another_kind_is_a_warning(self):
        self.change(output={"featureType": "double", "double": FLOATS})
        self.assert_found("warning", 'output "y"', "featureType", "a tensor of float")


class LaterInputs(CommandLineTest):
    def test_a_later_input_of_a_variable_shape_is_a_warning_and_run_fills_it(self):
        package = packages.write_package(self.dir / "package", networks.arithmetic())
        with packages.changed_manifest(package) as target:
            target["inputs"][1]["tensor"]["shape"] = [-1, 3]
        findings = self.succeed_json("verify", "package")["findings"]
        self.assertEqual(len(findings), 1)
        self.assertEqual(findings[0]["level"], "warning")
        self.assertEqual(findings[0]["where"], 'input "right"')
        self.assertIn("variable, but the network's is [2, 3]", findings[0]["what"])
        values = networks.np.float32([[1, 2, 3], [4, 5, 6]])
        networks.np.save(self.dir / "v.npy", values)
        self.succeed("run", "package", "-i", "left=v.npy", "-i", "right=v.npy", "-o", "out")
        self.assertEqual(networks.np.load(self.dir / "out/sum.npy").tolist(), (2 * values).tolist())


if __name__ == "__main__":
    unittest.main()
