"""quavin pack: what is in a package, compared with manifests written by hand."""

import unittest

import networks
import packages
from support import CommandLineTest, tree

NAMES = ["manifest.json", "net.bin", "net.xml"]


def port(name, shape, data_type):
    """An input or output as a manifest tells it."""
    tensor = {"shape": shape, "dataType": data_type}
    return {"name": name, "required": True, "featureType": "tensor", "tensor": tensor}


def shown(name, shape, data_type):
    """The same in the tool's report."""
    return {"name": name, "shape": shape, "dataType": data_type}


class PackTest(CommandLineTest):
    def packed(self, network, *options, stem="net"):
        """The engine's part of the manifest of a packed network."""
        packages.write_network(self.dir, network, stem)
        self.succeed("pack", stem + ".xml", "-o", "new", *options)
        return packages.read_manifest(self.dir / "new")["targets"]["Openvino"]


class Manifest(PackTest):
    def test_is_what_one_would_write_by_hand(self):
        packages.write_network(self.dir, networks.affine(), "model")
        self.succeed("pack", "model.xml", "-o", "new")
        expected = {
            "id": "model",
            "name": "model",
            "author": "",
            "description": "",
            "sdkVersion": "",
            "version": 1,
            "targets": {
                "Openvino": {
                    "components": [
                        {"name": "file", "path": "model.xml"},
                        {"name": "file", "path": "model.bin"},
                    ],
                    "inputs": [port("x", [1, 4], "float")],
                    "outputs": [port("y", [1, 4], "float")],
                }
            },
        }
        self.assertEqual(packages.read_manifest(self.dir / "new"), expected)

    def test_has_the_identity_that_was_given(self):
        options = {
            "id": "de.example.größe",
            "name": 'The "best" \\ model',
            "author": "Ærøskøbing & <sons>",
            "description": "日本語 — says much",
            "sdk-version": "4.5",
        }
        packages.write_network(self.dir, networks.affine())
        arguments = [part for name, text in options.items() for part in ("--" + name, text)]
        self.succeed("pack", "net.xml", "-o", "new", *arguments, "--model-version", "12")
        manifest = packages.read_manifest(self.dir / "new")
        del manifest["targets"]
        options["sdkVersion"] = options.pop("sdk-version")
        self.assertEqual(manifest, {**options, "version": 12})

    def test_keeps_the_lines_of_a_description(self):
        self.packed(networks.affine(), "--description", "One line.\nAnd another.\t!")
        manifest = packages.read_manifest(self.dir / "new")
        self.assertEqual(manifest["description"], "One line.\nAnd another.\t!")

    def test_declares_several_inputs_and_outputs(self):
        target = self.packed(networks.arithmetic())
        inputs = [port("left", [2, 3], "float"), port("right", [2, 3], "float")]
        self.assertCountEqual(target["inputs"], inputs)
        outputs = [port("sum", [2, 3], "float"), port("product", [2, 3], "float")]
        self.assertCountEqual(target["outputs"], outputs)

    def test_declares_types_as_predictions_take_them(self):
        target = self.packed(networks.typed_sum())
        inputs = [port("whole", [3], "int32"), port("half", [3], "float")]
        self.assertCountEqual(target["inputs"], [*inputs, port("real", [3], "float")])

    def test_declares_each_element_type(self):
        types = {"i8": "int8", "i16": "int16", "i32": "int32", "i64": "int32"}
        for element_type, declared in {**types, "f16": "float", "f64": "float"}.items():
            with self.subTest(element_type):
                name = "net-" + element_type
                packages.write_network(self.dir, networks.affine(dtype=element_type), name)
                self.succeed("pack", name + ".xml", "-o", name)
                target = packages.read_manifest(self.dir / name)["targets"]["Openvino"]
                self.assertEqual(target["inputs"], [port("x", [1, 4], declared)])

    def test_declares_integer_outputs(self):
        target = self.packed(networks.tripling_integers())
        self.assertEqual(target["outputs"], [port("y", [4], "int32")])

    def test_declares_a_scalar_without_dimensions(self):
        target = self.packed(networks.scalar())
        self.assertEqual(target["inputs"], [port("x", [], "float")])
        self.assertEqual(target["outputs"], [port("y", [], "float")])

    def test_keeps_names_with_any_letters(self):
        target = self.packed(networks.affine("größe/ein:1", 'aus "gabe"'))
        self.assertEqual(target["inputs"][0]["name"], "größe/ein:1")
        self.assertEqual(target["outputs"][0]["name"], 'aus "gabe"')


class Files(PackTest):
    def test_are_the_networks_own_and_the_manifest(self):
        self.packed(networks.affine())
        files = tree(self.dir / "new")
        self.assertEqual(sorted(files), NAMES)
        for name in "net.xml", "net.bin":
            self.assertEqual(files[name], (self.dir / name).read_bytes())

    def test_take_the_weights_that_are_named(self):
        packages.write_network(self.dir, networks.affine(), "model")
        (self.dir / "model.bin").rename(self.dir / "constants.weights")
        self.succeed("pack", "model.xml", "constants.weights", "-o", "new")
        components = packages.read_manifest(self.dir / "new")["targets"]["Openvino"]["components"]
        self.assertEqual([c["path"] for c in components], ["model.xml", "constants.weights"])
        self.assertEqual(
            (self.dir / "new/constants.weights").read_bytes(),
            (self.dir / "constants.weights").read_bytes(),
        )

    def test_have_empty_weights_for_a_network_without_constants(self):
        packages.write_network(self.dir, networks.doubling())
        (self.dir / "net.bin").unlink()
        self.succeed("pack", "net.xml", "-o", "new")
        self.assertEqual((self.dir / "new/net.bin").read_bytes(), b"")

    def test_may_have_letters_that_are_not_ascii(self):
        packages.write_network(self.dir, networks.affine(), "größe 日本")
        self.succeed("pack", "größe 日本.xml", "-o", "neu ü")
        names = ["größe 日本.bin", "größe 日本.xml", "manifest.json"]
        self.assertEqual(sorted(tree(self.dir / "neu ü")), names)
        self.succeed("verify", "neu ü")

    def test_lie_where_nothing_was_before(self):
        packages.write_network(self.dir, networks.affine())
        self.succeed("pack", "net.xml", "-o", "a/b/new/")
        names = [f"b/new/{name}" for name in NAMES]
        self.assertEqual(sorted(tree(self.dir / "a")), ["b", "b/new", *names])

    def test_come_from_and_go_to_absolute_paths(self):
        network = packages.write_network(self.dir / "elsewhere", networks.affine())
        self.succeed("pack", network, "-o", self.dir / "new")
        self.assertEqual(sorted(tree(self.dir / "new")), NAMES)


class Report(PackTest):
    def test_tells_files_and_ports(self):
        packages.write_network(self.dir, networks.typed_sum())
        report = self.succeed_json("pack", "net.xml", "-o", "new")
        self.assertEqual(report["output"], "new")
        files = {file["name"]: file["bytes"] for file in report["files"]}
        written = {name: len(content) for name, content in tree(self.dir / "new").items()}
        self.assertEqual(files, written)
        inputs = [shown("half", [3], "float"), shown("real", [3], "float")]
        self.assertCountEqual(report["inputs"], [*inputs, shown("whole", [3], "int32")])
        self.assertEqual(report["outputs"], [shown("total", [3], "float")])

    def test_for_people_names_the_package_and_its_ports(self):
        packages.write_network(self.dir, networks.typed_sum())
        out = self.succeed("pack", "net.xml", "-o", "new")
        self.assertRegex(out, r"\APacked net\.xml as new\n")
        self.assertRegex(out, r"input +whole +int32 +\[3\]\n")
        self.assertRegex(out, r"output +total +float +\[3\]\n")


if __name__ == "__main__":
    unittest.main()
