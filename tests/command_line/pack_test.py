"""quavin pack: the content of packages, compared with manifests written by hand."""

import re
import shutil
import unittest

import networks
import packages
import process
from support import CommandLineTest, tree

NAMES = ["manifest.json", "net.bin", "net.xml"]

# A network of three inputs and two outputs, not in alphabetical order. " NAMES" marks where the names of
# tensors go.
DIM = '<dim>2</dim>'
HEAD = '<?xml version="1.0"?><net name="ordered" version="%d"><layers>'
PARAMETER = (
    '<layer id="%d" name="%s" type="Parameter" version="opset1"><data element_type="f32" shape="2"/>'
    '<output><port id="0" precision="FP32" NAMES="%s">' + DIM + "</port></output></layer>"
)
PARAMETERS = "".join(PARAMETER % (i, name, name) for i, name in enumerate("zma"))
ADD = "".join(
    f'<layer id="{i}" name="{name}" type="Add" version="opset1"><input><port id="0">{DIM}</port>'
    f'<port id="1">{DIM}</port></input><output><port id="2" precision="FP32" NAMES="{mark}">{DIM}'
    "</port></output></layer>"
    for i, name, mark in ((3, "b &amp; c", "b"), (4, "y", "y"))
)
RESULT = (
    '<layer id="%d" name="%s" type="Result" version="opset1"><input><port id="0">' + DIM
    + "</port></input></layer>"
)
EDGE = '<edge from-layer="%d" from-port="%d" to-layer="%d" to-port="%d"/>'
# The first result returns the second sum.
RESULTS = RESULT % (6, "r1") + RESULT % (5, "r2")
EDGES = (0, 0, 3, 0), (1, 0, 3, 1), (1, 0, 4, 0), (2, 0, 4, 1), (3, 2, 5, 0), (4, 2, 6, 0)
FOOT = "</layers><edges>" + "".join(EDGE % edge for edge in EDGES) + "</edges></net>"
SPLIT = (
    '<layer id="0" name="x" type="Parameter" version="opset1"><data element_type="f32" shape="6"/>'
    '<output><port id="0" precision="FP32"><dim>6</dim></port></output></layer>'
    '<layer id="1" name="axis" type="Const" version="opset1"><data element_type="i64" shape="" '
    'offset="0" size="8"/><output><port id="0" precision="I64"/></output></layer>'
    '<layer id="2" name="s" type="Split" version="opset1"><data num_splits="3"/><input><port id="0">'
    '<dim>6</dim></port><port id="1"/></input><output>'
    + "".join(f'<port id="{i}" precision="FP32">{DIM}</port>' for i in (2, 3, 4))
    + "</output></layer>"
)


def ordered(version, names):
    """The network, with tensor names given by the marks of their ports."""
    text = HEAD % version + PARAMETERS + ADD + RESULTS + FOOT
    named = (lambda found: f' names="{names[found[1]]}"') if names else ""
    return re.sub(r' NAMES="(.*?)"', named, text)


def port(name, shape, data_type):
    """An input or output as declared in a manifest."""
    tensor = {"shape": shape, "dataType": data_type}
    return {"name": name, "required": True, "featureType": "tensor", "tensor": tensor}


def shown(name, shape, data_type):
    """An input or output in the tool's report."""
    return {"name": name, "shape": shape, "dataType": data_type}


class PackTest(CommandLineTest):
    def packed(self, network, *options, stem="net"):
        """Packs a network, and returns the engine's part of the manifest."""
        packages.write_network(self.dir, network, stem)
        self.succeed("pack", stem + ".xml", "-o", "new", *options)
        return packages.read_manifest(self.dir / "new")["targets"]["Openvino"]


class Manifest(PackTest):
    def test_manifest_equals_one_written_by_hand(self):
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

    def test_manifest_contains_the_given_identity(self):
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

    def test_manifest_keeps_the_line_breaks_of_a_description(self):
        self.packed(networks.affine(), "--description", "One line.\nAnd another.\t!")
        manifest = packages.read_manifest(self.dir / "new")
        self.assertEqual(manifest["description"], "One line.\nAnd another.\t!")

    def test_manifest_declares_several_inputs_and_outputs(self):
        target = self.packed(networks.arithmetic())
        inputs = [port("left", [2, 3], "float"), port("right", [2, 3], "float")]
        self.assertEqual(target["inputs"], inputs)
        outputs = [port("sum", [2, 3], "float"), port("product", [2, 3], "float")]
        self.assertEqual(target["outputs"], outputs)

    def test_manifest_declares_the_types_that_predictions_take(self):
        target = self.packed(networks.typed_sum())
        inputs = [port("whole", [3], "int32"), port("half", [3], "float")]
        self.assertEqual(target["inputs"], [*inputs, port("real", [3], "float")])

    def test_manifest_declares_each_element_type(self):
        self.assert_declared({"f16": "float", "i16": "int16", "i32": "int32"})

    @process.adapter_only(process.FEWER_TYPES)
    def test_manifest_declares_converted_element_types(self):
        self.assert_declared({"f64": "float", "i8": "int8", "i64": "int32"})

    def assert_declared(self, types):
        for element_type, declared in types.items():
            with self.subTest(element_type):
                name = "net-" + element_type
                packages.write_network(self.dir, networks.affine(dtype=element_type), name)
                self.succeed("pack", name + ".xml", "-o", name)
                target = packages.read_manifest(self.dir / name)["targets"]["Openvino"]
                self.assertEqual(target["inputs"], [port("x", [1, 4], declared)])

    def test_manifest_contains_the_given_descriptions(self):
        text = 'a = "b"; größer,\n--louder'
        options = ["--describe", f"left={text}", "--describe=sum=left and right"]
        target = self.packed(networks.arithmetic(), *options)
        left, total = port("left", [2, 3], "float"), port("sum", [2, 3], "float")
        self.assertEqual(target["inputs"], [{**left, "description": text}, port("right", [2, 3], "float")])
        described = {**total, "description": "left and right"}
        self.assertEqual(target["outputs"], [described, port("product", [2, 3], "float")])
        self.assertIn(text.replace("\n", "?"), self.succeed("inspect", "new"))

    def test_manifest_declares_integer_outputs(self):
        target = self.packed(networks.tripling_integers())
        self.assertEqual(target["outputs"], [port("y", [4], "int32")])

    def test_manifest_declares_a_scalar_without_dimensions(self):
        target = self.packed(networks.scalar())
        self.assertEqual(target["inputs"], [port("x", [], "float")])
        self.assertEqual(target["outputs"], [port("y", [], "float")])

    def test_manifest_keeps_non_ascii_names(self):
        target = self.packed(networks.affine("größe/ein:1", 'aus "gabe"'))
        self.assertEqual(target["inputs"][0]["name"], "größe/ein:1")
        self.assertEqual(target["outputs"][0]["name"], 'aus "gabe"')


class Order(PackTest):
    """Inputs and outputs are in the order of the network's text, not sorted by name."""

    def packed_names(self, text):
        self.write("net.xml", text)
        self.write("net.bin", bytes(8))
        self.succeed("pack", "net.xml", "-o", "new")
        target = packages.read_manifest(self.dir / "new")["targets"]["Openvino"]
        return [[p["name"] for p in target[kind]] for kind in ("inputs", "outputs")]

    def test_ports_of_version_10_are_in_the_order_of_the_layers(self):
        for names in {}, {"z": "t9", "m": "t5", "a": "t7", "y": "out2", "b": "out1"}:
            with self.subTest(names):
                text = ordered(10, names)
                self.assertEqual(self.packed_names(text), [["z", "m", "a"], ["y", "b & c"]])
                shutil.rmtree(self.dir / "new")

    @process.adapter_only(process.OTHER_NETWORKS)
    def test_ports_of_version_11_are_in_the_order_of_the_layers(self):
        names = {"z": "t9", "m": "t&lt;5", "a": "t7", "y": "out\\,2", "b": "out1"}
        text = ordered(11, names)
        self.assertEqual(self.packed_names(text), [["t9", "t<5", "t7"], ["out,2", "out1"]])

    def test_outputs_of_one_layer_are_in_the_order_of_the_results(self):
        parts = SPLIT + "".join(RESULT % (9 - i, f"r{i}") for i in (2, 0, 1))
        edges = "".join(EDGE % (2, 2 + i, 9 - i, 0) for i in range(3))
        edges += EDGE % (0, 0, 2, 0) + EDGE % (1, 0, 2, 1)
        text = HEAD % 10 + parts + "</layers><edges>" + edges + "</edges></net>"
        self.assertEqual(self.packed_names(text), [["x"], ["s.2", "s.0", "s.1"]])

    def test_order_is_found_despite_unusual_xml(self):
        text = ordered(10, {}).replace("<layers>", "<!-- <layers><layer type='Parameter'> --><layers>")
        text = text.replace('<layer id="0" name="z"', "<layer\n\tname = 'z'\n id='0' ")
        text = text.replace("</net>", '<rt_info><layers><layer name="a"/></layers></rt_info></net>')
        self.assertEqual(self.packed_names(text), [["z", "m", "a"], ["y", "b & c"]])


class Files(PackTest):
    def test_package_contains_the_files_of_the_network_and_the_manifest(self):
        self.packed(networks.affine())
        files = tree(self.dir / "new")
        self.assertEqual(sorted(files), NAMES)
        for name in "net.xml", "net.bin":
            self.assertEqual(files[name], (self.dir / name).read_bytes())

    def test_named_weights_are_packed(self):
        packages.write_network(self.dir, networks.affine(), "model")
        (self.dir / "model.bin").rename(self.dir / "constants.weights")
        self.succeed("pack", "model.xml", "constants.weights", "-o", "new")
        components = packages.read_manifest(self.dir / "new")["targets"]["Openvino"]["components"]
        self.assertEqual([c["path"] for c in components], ["model.xml", "constants.weights"])
        self.assertEqual(
            (self.dir / "new/constants.weights").read_bytes(),
            (self.dir / "constants.weights").read_bytes(),
        )

    def test_a_network_without_constants_gets_empty_weights(self):
        packages.write_network(self.dir, networks.doubling())
        (self.dir / "net.bin").unlink()
        self.succeed("pack", "net.xml", "-o", "new")
        self.assertEqual((self.dir / "new/net.bin").read_bytes(), b"")

    def test_non_ascii_file_names_are_packed(self):
        packages.write_network(self.dir, networks.affine(), "größe 日本")
        self.succeed("pack", "größe 日本.xml", "-o", "neu ü")
        names = ["größe 日本.bin", "größe 日本.xml", "manifest.json"]
        self.assertEqual(sorted(tree(self.dir / "neu ü")), names)
        self.succeed("verify", "neu ü")

    def test_missing_parent_directories_are_created(self):
        packages.write_network(self.dir, networks.affine())
        self.succeed("pack", "net.xml", "-o", "a/b/new/")
        names = [f"b/new/{name}" for name in NAMES]
        self.assertEqual(sorted(tree(self.dir / "a")), ["b", "b/new", *names])

    def test_absolute_paths_are_accepted(self):
        network = packages.write_network(self.dir / "elsewhere", networks.affine())
        self.succeed("pack", network, "-o", self.dir / "new")
        self.assertEqual(sorted(tree(self.dir / "new")), NAMES)


class Report(PackTest):
    def test_json_report_lists_files_and_ports(self):
        packages.write_network(self.dir, networks.typed_sum())
        report = self.succeed_json("pack", "net.xml", "-o", "new")
        self.assertEqual(report["output"], "new")
        files = {file["name"]: file["bytes"] for file in report["files"]}
        written = {name: len(content) for name, content in tree(self.dir / "new").items()}
        self.assertEqual(files, written)
        inputs = [shown("whole", [3], "int32"), shown("half", [3], "float")]
        self.assertEqual(report["inputs"], [*inputs, shown("real", [3], "float")])
        self.assertEqual(report["outputs"], [shown("total", [3], "float")])

    def test_text_report_names_the_package_and_its_ports(self):
        packages.write_network(self.dir, networks.typed_sum())
        out = self.succeed("pack", "net.xml", "-o", "new")
        self.assertRegex(out, r"\APacked net\.xml as new\n")
        self.assertRegex(out, r"input +whole +int32 +\[3\]\n")
        self.assertRegex(out, r"output +total +float +\[3\]\n")


if __name__ == "__main__":
    unittest.main()
