"""quavin verify: problems that reading a manifest silently ignores but verifying reports."""

import unittest

import packages
from verify_findings_test import FLOATS, FindingsTest


class Lint(FindingsTest):
    def manifest_with(self, **members):
        packages.write_package(self.package)
        packages.write_manifest(self.package, {**packages.read_manifest(self.package), **members})

    def test_texts_that_are_not_strings_are_warned_about(self):
        for name in "id", "name", "author", "description", "sdkVersion":
            for value in 3, None, ["text"]:
                with self.subTest(name=name, value=value):
                    self.manifest_with(**{name: value})
                    self.assert_found("warning", f'"{name}"', "not a string", "quotes")

    def test_a_version_that_is_not_an_integer_is_warned_about(self):
        for value in "3", 3.0, 3_000_000_000, True:
            with self.subTest(value):
                self.manifest_with(version=value)
                self.assert_found("warning", '"version"', "32-bit", "plain number")

    def test_misspelt_members_are_warned_about(self):
        self.manifest_with(Author="me")
        self.assert_found("warning", '"Author"', "member is unknown", "spelling")
        packages.write_package(self.package)
        with packages.changed_manifest(self.package) as target:
            target["output"] = []
        self.assert_found("warning", '"output" of the target', "member is unknown", "spelling")

    def test_a_schema_member_is_accepted(self):
        self.manifest_with(**{"$schema": "package-manifest.schema.json"})
        self.assertEqual(self.succeed_json("verify", "package")["findings"], [])

    def test_absent_members_are_accepted(self):
        manifest = packages.read_manifest(self.package)
        packages.write_manifest(self.package, {"targets": manifest["targets"]})
        self.assertEqual(self.succeed_json("verify", "package")["findings"], [])

    def test_an_unknown_engine_is_warned_about(self):
        targets = packages.read_manifest(self.package)["targets"]
        self.manifest_with(targets={**targets, "OpenVino": {}})
        self.assert_found("warning", 'target "OpenVino"', "engine is unknown", '"Openvino"')

    def test_other_known_engines_are_accepted(self):
        targets = packages.read_manifest(self.package)["targets"]
        others = {name: {"anything": 1} for name in ("WinML", "CoreML", "TensorflowLite", "MockML")}
        self.manifest_with(targets={**targets, **others})
        self.assertEqual(self.succeed_json("verify", "package")["findings"], [])

    def test_lists_that_are_not_arrays_are_warned_about(self):
        with packages.changed_manifest(self.package) as target:
            target["inputs"] = target["inputs"][0]
        out = self.quavin("verify", "package").out
        self.assertIn('warning: "inputs" of the target: It is not an array', out)
        self.assertIn("brackets", out)
        self.assertIn("error: inputs: None are declared", out)


class Features(FindingsTest):
    """A second input that the network lacks. It would be for hosts if it were valid."""

    def assert_found_beside(self, feature, what, advice):
        with packages.changed_manifest(self.package) as target:
            target["inputs"][1:] = [feature]
        out = self.quavin("verify", "package").out
        self.assertIn(f'warning: entry 2 of "inputs": {what}', out)
        self.assertIn(advice, out)

    def test_features_that_are_not_objects_are_warned_about(self):
        for feature in "text", None, [], 3:
            with self.subTest(feature):
                self.assert_found_beside(feature, "It is not an object", "Declare a name")

    def test_features_of_an_unknown_kind_are_warned_about(self):
        for kind in {}, {"featureType": "Tensor"}, {"featureType": 3}, {"featureType": None}:
            with self.subTest(kind):
                feature = {"name": "z", "tensor": FLOATS, **kind}
                self.assert_found_beside(feature, "Its featureType is unknown", 'Write "tensor"')

    def test_features_without_their_block_are_warned_about(self):
        for block in {}, {"int64": FLOATS}, {"tensor": []}, {"tensor": None}:
            with self.subTest(block):
                feature = {"name": "z", "featureType": "tensor", **block}
                self.assert_found_beside(feature, 'It has no block "tensor"', "dataType")

    def test_features_of_an_unknown_type_are_warned_about(self):
        for data_type in "float32", "Float", 3, None:
            with self.subTest(data_type):
                block = {"shape": [1], "dataType": data_type}
                feature = {"name": "z", "featureType": "tensor", "tensor": block}
                self.assert_found_beside(feature, "Its dataType is unknown", "Write float")

    def test_features_for_hosts_are_only_reported_as_unknown_to_the_network(self):
        feature = {"name": "z", "featureType": "string", "string": {"dataType": "float"}}
        with packages.changed_manifest(self.package) as target:
            target["inputs"].append(feature)
        self.assert_found("warning", 'input "z"', "no input of this name", "unless it is for the host")


if __name__ == "__main__":
    unittest.main()
