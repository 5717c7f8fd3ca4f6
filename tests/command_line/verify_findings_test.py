"""quavin verify: each finding, in a package with no other.

The level of each finding is checked with "quavin bench": with a warning the package can be used, with an
error it cannot.
"""

import json
import unittest

import packages
from support import KEY_HEX, CommandLineTest

FLOATS = {"shape": [1, 4], "dataType": "float"}


class FindingsTest(CommandLineTest):
    def setUp(self):
        super().setUp()
        self.package = packages.write_package(self.dir / "package")

    def change(self, **members):
        """Changes members of the only input or output, or replaces a list of the target."""
        with packages.changed_manifest(self.package) as target:
            for name, value in members.items():
                if isinstance(value, list):
                    target[name] = value
                else:
                    target[name + "s"][0].update(value)

    def assert_found(self, level, where, what, advice, *options):
        """Asserts that this is the only finding, and that its level is right."""
        result = self.quavin("verify", "package", "--json", *options)
        self.assertIn(result.status, (0, 1), result.err)
        report = json.loads(result.out)
        self.assertEqual(len(report["findings"]), 1, report)
        finding = report["findings"][0]
        self.assertEqual((finding["level"], finding["where"]), (level, where))
        self.assertIn(what, finding["what"])
        self.assertIn(advice, finding["advice"])
        status = 1 if level == "error" else 0
        self.assertEqual((result.status, report["ok"]), (status, status == 0))
        used = self.quavin("bench", "package", "--seconds", "0.01", *options)
        self.assertEqual(used.status, status, used.err)


class Package(FindingsTest):
    def test_a_missing_package_or_other_file_is_an_error(self):
        self.package.rename(self.dir / "other")
        self.assert_found("error", "package", "no directory or archive package", "contains manifest.json")
        self.write("package", "an archive, perhaps")
        self.assert_found("error", "package", "neither a directory nor", "contains manifest.json")


class Manifest(FindingsTest):
    def test_a_missing_manifest_is_an_error(self):
        (self.package / "manifest.json").unlink()
        self.assert_found("error", "manifest.json", "Failed to open", "quavin pack")

    def test_an_invalid_manifest_is_an_error(self):
        for text in "", "no JSON", "[]":
            with self.subTest(text):
                self.write("package/manifest.json", text)
                self.assert_found("error", "manifest.json", "Failed to open", "quavin pack")

    def test_a_manifest_without_targets_is_an_error(self):
        self.write("package/manifest.json", "{}")
        self.assert_found("error", "manifest.json", "No target", "package-format.md")

    def test_a_manifest_without_a_target_for_the_engine_is_an_error(self):
        manifest = packages.read_manifest(self.package)
        manifest["targets"]["CoreML"] = manifest["targets"].pop("Openvino")
        packages.write_manifest(self.package, manifest)
        self.assert_found("error", "manifest.json", '"Openvino"', "no other")


class Components(FindingsTest):
    def components(self, *kinds_and_paths):
        self.change(components=[{"name": k, "path": p} for k, p in kinds_and_paths])

    def test_a_component_of_another_kind_is_a_warning(self):
        self.components(("file", "net.xml"), ("file", "net.bin"), ("memory_stream", "other"))
        where = 'component "other"'
        self.assert_found("warning", where, '"memory_stream" is ignored', '"secured_file"')

    def test_too_few_components_are_an_error(self):
        self.components(("file", "net.xml"))
        self.assert_found("error", "components", "There are 1 files", "empty file")
        self.components()
        self.assert_found("error", "components", "There are 0 files", "empty file")

    def test_too_many_components_are_a_warning(self):
        self.components(("file", "net.xml"), ("file", "net.bin"), ("file", "third"))
        self.assert_found("warning", 'component "third"', "is ignored", "Remove it")

    def test_a_missing_component_is_an_error(self):
        (self.package / "net.bin").unlink()
        self.assert_found("error", 'component "net.bin"', "missing", "Add the file")

    def test_a_component_that_is_not_a_file_is_an_error(self):
        (self.package / "net.bin").unlink()
        (self.package / "net.bin").mkdir()
        self.assert_found("error", 'component "net.bin"', "not a regular file", "path")

    def test_a_component_outside_the_package_is_a_warning(self):
        self.components(("file", "../package/net.xml"), ("file", "net.bin"))
        where = 'component "../package/net.xml"'
        self.assert_found("warning", where, "out of the package", "in the package")

    def test_a_component_outside_by_backslashes_is_a_warning(self):
        self.components(("file", "..\\package\\net.xml"), ("file", "net.bin"))
        where = 'component "..\\package\\net.xml"'
        self.assert_found("warning", where, "out of the package", "in the package")

    def test_components_are_found_where_loading_finds_them(self):
        (self.package / "sub").mkdir()
        (self.package / "net.bin").rename(self.package / "sub/net.bin")
        for path in "sub/net.bin", "sub\\net.bin", "./sub//net.bin":
            with self.subTest(path):
                self.components(("file", "net.xml"), ("file", path))
                self.succeed("bench", "package", "--seconds", "0.01")
                self.assertEqual(self.succeed_json("verify", "package")["findings"], [])

    def test_components_with_a_leading_separator_are_found_where_loading_finds_them(self):
        self.components(("file", "/net.xml"), ("file", "net.bin"))
        self.succeed("bench", "package", "--seconds", "0.01")
        self.assertIs(self.succeed_json("verify", "package")["ok"], True)

    def test_a_component_of_an_impossible_secured_length_is_an_error(self):
        packages.write_package(self.package, key_hex=KEY_HEX)
        self.key_file()
        secured = (self.package / "net.bin").read_bytes()
        for content in secured[:-1], secured + b"x", secured[:15], b"":
            with self.subTest(len(content)):
                self.write("package/net.bin", content)
                where, advice = 'component "net.bin"', "quavin encrypt"
                what = f"{len(content)} bytes"
                self.assert_found("error", where, what, advice, "--key-file", "key")


class Declarations(FindingsTest):
    def test_declaring_no_inputs_is_an_error(self):
        self.change(inputs=[])
        result = self.quavin("verify", "package")
        self.assertEqual(result.status, 1)
        self.assertIn("error: inputs: None are declared", result.out)
        self.assertIn("Declare at least one", result.out)

    def test_declaring_no_outputs_is_an_error(self):
        self.change(outputs=[])
        result = self.quavin("verify", "package")
        self.assertEqual(result.status, 1)
        self.assertIn("error: outputs: None are declared", result.out)
        self.assertIn("Declare at least one", result.out)

    def test_declaring_a_port_twice_is_a_warning(self):
        for kind, name in ("input", "x"), ("output", "y"):
            with self.subTest(kind):
                packages.write_package(self.package)
                with packages.changed_manifest(self.package) as target:
                    target[kind + "s"] *= 2
                self.assert_found("warning", f'{kind} "{name}"', "declared twice", "Remove one")

    def test_a_first_input_without_a_usable_shape_is_an_error(self):
        for shape, shown in ([-1, 4], "variable"), ([0, 4], "[0, 4]"):
            with self.subTest(shape):
                self.change(input={"tensor": {**FLOATS, "shape": shape}})
                result = self.quavin("verify", "package")
                self.assertEqual(result.status, 1)
                what = f"The first input has the shape {shown}"
                self.assertIn(f'error: input "x": {what}', result.out)
                self.assertIn("loading refuses any other", result.out)
                self.assertEqual(self.quavin("bench", "package").status, 1)


if __name__ == "__main__":
    unittest.main()
