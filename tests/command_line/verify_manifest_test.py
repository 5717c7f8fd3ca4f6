"""quavin verify: what reading a manifest passes over in silence, and verifying does not."""

import unittest

import packages
from verify_findings_test import FLOATS, FindingsTest


class Lint(FindingsTest):
    def manifest_with(self, **members):
        packages.write_package(self.package)
        packages.write_manifest(self.package, {**packages.read_manifest(self.package), **members})

    def test_of_texts_that_are_none(self):
        for name in "id", "name", "author", "description", "sdkVersion":
            for value in 3, None, ["text"]:
                with self.subTest(name=name, value=value):
                    self.manifest_with(**{name: value})
                    self.assert_found("warning", f'"{name}"', "not read", "quotes")

    def test_of_a_version_that_is_none(self):
        for value in "3", 3.0, 3_000_000_000, True:
            with self.subTest(value):
                self.manifest_with(version=value)
                self.assert_found("warning", '"version"', "32 bits", "plain number")

    def test_of_members_that_are_misspelt(self):
        self.manifest_with(Author="me")
        self.assert_found("warning", '"Author"', "No such member", "spelt")
        packages.write_package(self.package)
        with packages.changed_manifest(self.package) as target:
            target["output"] = []
        self.assert_found("warning", '"output" of the target', "No such member", "spelt")

    def test_of_a_schema_which_is_for_editors(self):
        self.manifest_with(**{"$schema": "package-manifest.schema.json"})
        self.assertEqual(self.succeed_json("verify", "package")["findings"], [])

    def test_of_members_that_are_absent(self):
        manifest = packages.read_manifest(self.package)
        packages.write_manifest(self.package, {"targets": manifest["targets"]})
        self.assertEqual(self.succeed_json("verify", "package")["findings"], [])

    def test_of_an_engine_that_is_not_known(self):
        targets = packages.read_manifest(self.package)["targets"]
        self.manifest_with(targets={**targets, "OpenVino": {}})
        self.assert_found("warning", 'target "OpenVino"', "No such engine", '"Openvino"')

    def test_of_other_engines_which_are_not_for_this_library(self):
        targets = packages.read_manifest(self.package)["targets"]
        others = {name: {"anything": 1} for name in ("WinML", "CoreML", "TensorflowLite", "MockML")}
        self.manifest_with(targets={**targets, **others})
        self.assertEqual(self.succeed_json("verify", "package")["findings"], [])

    def test_of_lists_that_are_none(self):
        with packages.changed_manifest(self.package) as target:
            target["inputs"] = target["inputs"][0]
        out = self.quavin("verify", "package").out
        self.assertIn('warning: "inputs" of the target: It is no list', out)
        self.assertIn("brackets", out)
        self.assertIn("error: inputs: There are none", out)


class Features(FindingsTest):
    """A second input that the network does not have: for hosts, were it not wrong in itself."""

    def assert_found_beside(self, feature, what, advice):
        with packages.changed_manifest(self.package) as target:
            target["inputs"][1:] = [feature]
        out = self.quavin("verify", "package").out
        self.assertIn(f'warning: number 2 of "inputs": {what}', out)
        self.assertIn(advice, out)

    def test_that_are_no_objects(self):
        for feature in "text", None, [], 3:
            with self.subTest(feature):
                self.assert_found_beside(feature, "It is no object", "Declare a name")

    def test_of_no_known_kind(self):
        for kind in {}, {"featureType": "Tensor"}, {"featureType": 3}, {"featureType": None}:
            with self.subTest(kind):
                feature = {"name": "z", "tensor": FLOATS, **kind}
                self.assert_found_beside(feature, "Its featureType is none", 'Write "tensor"')

    def test_without_their_block(self):
        for block in {}, {"int64": FLOATS}, {"tensor": []}, {"tensor": None}:
            with self.subTest(block):
                feature = {"name": "z", "featureType": "tensor", **block}
                self.assert_found_beside(feature, 'It has no block "tensor"', "dataType")

    def test_of_no_known_type(self):
        for data_type in "float32", "Float", 3, None:
            with self.subTest(data_type):
                block = {"shape": [1], "dataType": data_type}
                feature = {"name": "z", "featureType": "tensor", "tensor": block}
                self.assert_found_beside(feature, "Its dataType is none", "Write float")

    def test_for_hosts_are_nothing_to_warn_of_but_their_name(self):
        feature = {"name": "z", "featureType": "string", "string": {"dataType": "float"}}
        with packages.changed_manifest(self.package) as target:
            target["inputs"].append(feature)
        self.assert_found("warning", 'input "z"', "none of this name", "unless it is for the host")


if __name__ == "__main__":
    unittest.main()
