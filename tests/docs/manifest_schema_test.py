"""The JSON Schema of manifests accepts what can be loaded, and refuses what would cause surprises.

The environment variable QUAVIN_TOOL names the program "quavin"; PackedManifestTest needs it.
"""

import json
import os
import pathlib
import re
import subprocess
import tempfile
import unittest

import jsonschema

ROOT = pathlib.Path(__file__).resolve().parents[2]
SCHEMA = json.loads((ROOT / "docs/package-manifest.schema.json").read_text(encoding="utf-8"))
VALIDATOR = jsonschema.Draft202012Validator(SCHEMA)
PAGE = ROOT / "docs/package-format.md"

TENSOR = {"name": "x", "featureType": "tensor", "tensor": {"shape": [1, 2], "dataType": "float"}}
GOOD = {
    "name": "twice",
    "version": 1,
    "targets": {
        "Openvino": {
            "components": [{"name": "file", "path": "n.xml"}, {"name": "file", "path": "n.bin"}],
            "inputs": [TENSOR, {**TENSOR, "name": "z"}, {"name": "flag", "featureType": "bool"}],
            "outputs": [{**TENSOR, "name": "y"}],
        }
    },
}
TARGET = ("targets", "Openvino")
NETWORK = (*TARGET, "components", 0)
FIRST = (*TARGET, "inputs", 0)
SECOND = (*TARGET, "inputs", 1)
VALUE = (*TARGET, "inputs", 2)
OUTPUT = (*TARGET, "outputs", 0)

# What is changed in the good manifest, and to what; None removes it.
ACCEPTED = {
    "a name of the schema": (("$schema",), "package-manifest.schema.json"),
    "no texts": (("name",), None),
    "the smallest version": (("version",), -2147483648),
    "the largest version": (("version",), 2147483647),
    "another engine beside it": (("targets", "CoreML"), {"components": []}),
    "one of two files secured": (NETWORK, {"name": "secured_file", "path": "n", "encryption": "aes"}),
    "a path with directories": ((*NETWORK, "path"), "a/b..c/.hidden"),
    "a kind that is skipped": ((*TARGET, "components"), [
        {"name": "secured_tar", "path": "all.tar", "encryption": "aes"},
        *GOOD["targets"]["Openvino"]["components"]]),
    "an input without dimensions": ((*FIRST, "tensor", "shape"), []),
    "a later input of variable shape": ((*SECOND, "tensor", "shape"), [-1, 2]),
    "an optional input": ((*FIRST, "required"), False),
    "an input of int32": ((*FIRST, "tensor", "dataType"), "int32"),
    "a value with its block": ((*VALUE, "bool"), {"dataType": "bool"}),
    "a value as the first input": (FIRST, {"name": "flag", "featureType": "string"}),
    "an output of int32": ((*OUTPUT, "tensor", "dataType"), "int32"),
}
REFUSED = {
    "no targets": (("targets",), None),
    "targets that are a list": (("targets",), []),
    "no target of this engine": (TARGET, None),
    "the engine's other spelling": (("targets", "OpenVino"), {}),
    "a target that is a text": (TARGET, "digits.xml"),
    "an unknown name at the root": (("verison",), 1),
    "an unknown name in a target": ((*TARGET, "weights"), "n.bin"),
    "a version that is a text": (("version",), "1"),
    "a version with a fraction": (("version",), 1.5),
    "a version of more than 32 bits": (("version",), 3000000000),
    "a name that is a number": (("name",), 8),
    "a name that would be cut off": (("name",), "tw\0ice"),
    "no components": ((*TARGET, "components"), None),
    "one file": (NETWORK, None),
    "three files": ((*TARGET, "components"), [{"name": "file", "path": c} for c in "abc"]),
    "an unknown kind": ((*NETWORK, "name"), "File"),
    "a component without a kind": ((*NETWORK, "name"), None),
    "a component without a path": ((*NETWORK, "path"), None),
    "a component that is a text": (NETWORK, "n.xml"),
    "an empty path": ((*NETWORK, "path"), ""),
    "an absolute path": ((*NETWORK, "path"), "/n.xml"),
    "a path with a drive": ((*NETWORK, "path"), "c:n.xml"),
    "a path that leads outside": ((*NETWORK, "path"), "a/../../n.xml"),
    "a path that ends above": ((*NETWORK, "path"), ".."),
    "a path with backslashes": ((*NETWORK, "path"), "a\\n.xml"),
    "a plain file that is marked as encrypted": ((*NETWORK, "encryption"), "aes"),
    "no inputs": ((*TARGET, "inputs"), None),
    "an empty list of inputs": ((*TARGET, "inputs"), []),
    "no outputs": ((*TARGET, "outputs"), None),
    "an empty list of outputs": ((*TARGET, "outputs"), []),
    "an input that is a text": (FIRST, "x"),
    "an input without a name": ((*FIRST, "name"), None),
    "an input with an empty name": ((*FIRST, "name"), ""),
    "an input without a kind": ((*FIRST, "featureType"), None),
    "an input that is an image": ((*FIRST, "featureType"), "image"),
    "an unknown kind of input": ((*FIRST, "featureType"), "Tensor"),
    "an input without its block": ((*FIRST, "tensor"), None),
    "an input without a shape": ((*FIRST, "tensor", "shape"), None),
    "a shape with a text in it": ((*FIRST, "tensor", "shape"), [1, "2"]),
    "a shape that is a text": ((*FIRST, "tensor", "shape"), "1, 2"),
    "a shape with a fraction": ((*FIRST, "tensor", "shape"), [1, 2.5]),
    "a dimension of more than 64 bits": ((*FIRST, "tensor", "shape"), [2**63]),
    "a first input of variable shape": ((*FIRST, "tensor", "shape"), [-1, 2]),
    "a first input without elements": ((*FIRST, "tensor", "shape"), [0, 2]),
    "a later input without elements": ((*SECOND, "tensor", "shape"), [0, 2]),
    "a later input of negative shape": ((*SECOND, "tensor", "shape"), [-2, 2]),
    "an input without an element type": ((*FIRST, "tensor", "dataType"), None),
    "an element type that is not supported": ((*FIRST, "tensor", "dataType"), "uint8"),
    "an element type with another spelling": ((*FIRST, "tensor", "dataType"), "float32"),
    "a mark that is not a boolean": ((*FIRST, "required"), "yes"),
    "a value with another kind's block": (VALUE, {"name": "flag", "featureType": "bool", "double": {}}),
    "a value with a tensor's block": ((*VALUE, "tensor"), TENSOR["tensor"]),
    "an output that is a value": (OUTPUT, {"name": "y", "featureType": "double"}),
    "an output of variable shape": ((*OUTPUT, "tensor", "shape"), [-1, 2]),
    "an output of another type": ((*OUTPUT, "tensor", "dataType"), "double"),
}


def changed(place, value):
    manifest = json.loads(json.dumps(GOOD))  # a deep copy
    inner = manifest
    for key in place[:-1]:
        inner = inner[key]
    if value is None:
        del inner[place[-1]]
    else:
        inner[place[-1]] = value
    return manifest


def paths_of_errors(manifest):
    return [tuple(error.absolute_path) for error in VALIDATOR.iter_errors(manifest)]


def is_on_the_way(path, place):
    return path[:len(place)] == place or place[:len(path)] == path


def problems(manifest):
    return [f"{error.json_path}: {error.message}" for error in VALIDATOR.iter_errors(manifest)]


class SchemaTest(unittest.TestCase):
    def test_the_schema_is_valid(self):
        jsonschema.Draft202012Validator.check_schema(SCHEMA)

    def test_the_good_manifest_is_accepted(self):
        self.assertEqual([], problems(GOOD))

    def test_loadable_manifests_are_accepted(self):
        for name, change in ACCEPTED.items():
            with self.subTest(name):
                self.assertEqual([], problems(changed(*change)))

    def test_wrong_manifests_are_refused(self):
        for name, (place, value) in REFUSED.items():
            with self.subTest(name):
                paths = paths_of_errors(changed(place, value))
                self.assertNotEqual([], paths)
                # And only for that.
                self.assertEqual([], [p for p in paths if not is_on_the_way(p, place)])

    def test_values_that_are_not_objects_are_refused(self):
        for manifest in ([GOOD], "manifest", 1, None):
            self.assertNotEqual([], problems(manifest))

    def test_the_packages_of_the_tree_are_accepted(self):
        paths = [*ROOT.glob("examples/**/manifest.json"), *ROOT.glob("tests/consumer/**/manifest.json")]
        self.assertGreaterEqual(len(paths), 3)
        for path in paths:
            with self.subTest(path.relative_to(ROOT)):
                self.assertEqual([], problems(json.loads(path.read_text(encoding="utf-8"))))

    def test_the_manifests_of_the_page_are_accepted(self):
        blocks = re.findall(r"^```json\n(.*?)^```$", PAGE.read_text(encoding="utf-8"), re.M | re.S)
        manifests = [block for block in map(json.loads, blocks) if "targets" in block]
        self.assertGreaterEqual(len(manifests), 1)
        for manifest in manifests:
            self.assertEqual([], problems(manifest))


class PackedManifestTest(unittest.TestCase):
    def packed(self, *options):
        """Returns the manifest that the tool writes for the example's network."""
        with tempfile.TemporaryDirectory() as folder:
            key = pathlib.Path(folder, "key")
            key.write_bytes(bytes(range(16)))
            key.chmod(0o600)
            package = pathlib.Path(folder, "package")
            options = [str(key) if option == "KEY" else option for option in options]
            network = ROOT / "examples/digits/package/digits.xml"
            subprocess.run([os.environ["QUAVIN_TOOL"], "pack", network, "-o", package, *options],
                           check=True, stdout=subprocess.DEVNULL)
            return json.loads((package / "manifest.json").read_text(encoding="utf-8"))

    def kinds(self, manifest):
        return [component["name"] for component in manifest["targets"]["Openvino"]["components"]]

    def test_the_manifest_of_a_plain_package_is_accepted(self):
        manifest = self.packed("--name", "Handwritten \"digits\"", "--model-version", "7")
        self.assertEqual(["file", "file"], self.kinds(manifest))
        self.assertEqual([], problems(manifest))

    def test_the_manifest_of_a_secured_package_is_accepted(self):
        manifest = self.packed("--encrypt", "components", "--key-file", "KEY")
        self.assertEqual(["secured_file", "secured_file"], self.kinds(manifest))
        self.assertEqual([], problems(manifest))


if __name__ == "__main__":
    unittest.main()
