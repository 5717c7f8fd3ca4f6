"""quavin verify: each finding, in a package that has nothing else.

What is an error and what a warning is not for the tool alone to say: with a warning the package can
be used, and with an error it cannot, which "quavin bench" shows.
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
        """That there is this finding alone, and that its level is what it should be."""
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
    def test_is_missing_or_no_directory(self):
        self.package.rename(self.dir / "other")
        self.assert_found("error", "package", "no directory or archive package", "holds manifest.json")
        self.write("package", "an archive, perhaps")
        self.assert_found("error", "package", "neither a directory nor", "holds manifest.json")


class Manifest(FindingsTest):
    def test_is_missing(self):
        (self.package / "manifest.json").unlink()
        self.assert_found("error", "manifest.json", "Failed to open", "quavin pack")

    def test_is_none(self):
        for text in "", "no JSON", "[]":
            with self.subTest(text):
                self.write("package/manifest.json", text)
                self.assert_found("error", "manifest.json", "Failed to open", "quavin pack")

    def test_has_no_targets(self):
        self.write("package/manifest.json", "{}")
        self.assert_found("error", "manifest.json", "No target", "package-format.md")

    def test_has_no_target_for_the_engine(self):
        manifest = packages.read_manifest(self.package)
        manifest["targets"]["CoreML"] = manifest["targets"].pop("Openvino")
        packages.write_manifest(self.package, manifest)
        self.assert_found("error", "manifest.json", '"Openvino"', "no other")


class Components(FindingsTest):
    def components(self, *kinds_and_paths):
        self.change(components=[{"name": k, "path": p} for k, p in kinds_and_paths])

    def test_of_another_kind(self):
        self.components(("file", "net.xml"), ("file", "net.bin"), ("memory_stream", "other"))
        where = 'component "other"'
        self.assert_found("warning", where, '"memory_stream" is not read', '"secured_file"')

    def test_are_too_few(self):
        self.components(("file", "net.xml"))
        self.assert_found("error", "components", "There are 1 files", "empty file")
        self.components()
        self.assert_found("error", "components", "There are 0 files", "empty file")

    def test_are_too_many(self):
        self.components(("file", "net.xml"), ("file", "net.bin"), ("file", "third"))
        self.assert_found("warning", 'component "third"', "not read", "Remove it")

    def test_are_missing(self):
        (self.package / "net.bin").unlink()
        self.assert_found("error", 'component "net.bin"', "missing", "Put it there")

    def test_are_no_files(self):
        (self.package / "net.bin").unlink()
        (self.package / "net.bin").mkdir()
        self.assert_found("error", 'component "net.bin"', "no plain file", "path")

    def test_lie_outside(self):
        self.components(("file", "../package/net.xml"), ("file", "net.bin"))
        where = 'component "../package/net.xml"'
        self.assert_found("warning", where, "out of the package", "in the package")

    def test_lie_outside_by_backslashes(self):
        self.components(("file", "..\\package\\net.xml"), ("file", "net.bin"))
        where = 'component "..\\package\\net.xml"'
        self.assert_found("warning", where, "out of the package", "in the package")

    def test_are_found_where_loading_finds_them(self):
        (self.package / "sub").mkdir()
        (self.package / "net.bin").rename(self.package / "sub/net.bin")
        for path in "sub/net.bin", "sub\\net.bin", "./sub//net.bin":
            with self.subTest(path):
                self.components(("file", "net.xml"), ("file", path))
                self.succeed("bench", "package", "--seconds", "0.01")
                self.assertEqual(self.succeed_json("verify", "package")["findings"], [])

    def test_with_a_separator_in_front_are_found_where_loading_finds_them(self):
        self.components(("file", "/net.xml"), ("file", "net.bin"))
        self.succeed("bench", "package", "--seconds", "0.01")
        self.assertIs(self.succeed_json("verify", "package")["ok"], True)

    def test_are_of_a_length_that_no_secured_file_has(self):
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
    def test_of_no_inputs(self):
        self.change(inputs=[])
        result = self.quavin("verify", "package")
        self.assertEqual(result.status, 1)
        self.assertIn("error: inputs: There are none", result.out)
        self.assertIn("Declare one", result.out)

    def test_of_no_outputs(self):
        self.change(outputs=[])
        result = self.quavin("verify", "package")
        self.assertEqual(result.status, 1)
        self.assertIn("error: outputs: There are none", result.out)
        self.assertIn("Declare one", result.out)

    def test_that_are_there_twice(self):
        for kind, name in ("input", "x"), ("output", "y"):
            with self.subTest(kind):
                packages.write_package(self.package)
                with packages.changed_manifest(self.package) as target:
                    target[kind + "s"] *= 2
                self.assert_found("warning", f'{kind} "{name}"', "declared twice", "Remove one")

    def test_of_a_first_input_without_a_usable_shape(self):
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
