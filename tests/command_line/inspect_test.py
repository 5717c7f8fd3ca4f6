"""quavin inspect: what it shows of packages and archives."""

import subprocess
import unittest

import networks
import packages
import process
from support import KEY_HEX, CommandLineTest

ARCHIVES = {
    "of the directory": ["-C", ".", "package"],
    "of what is in the directory": ["-C", "package", "."],
    "of the files alone": ["-C", "package", "manifest.json", "net.bin", "net.xml"],
}


def component(path, size, kind="file"):
    return {"path": path, "kind": kind, "present": True, "bytes": size}


class InspectCase(CommandLineTest):
    def setUp(self):
        super().setUp()
        self.package = packages.write_package(self.dir / "package", networks.arithmetic())
        self.expected = {
            **packages.ABOUT,
            "signed": False,
            "targets": {
                "Openvino": {
                    "components": [
                        component("net.xml", (self.package / "net.xml").stat().st_size),
                        component("net.bin", 0),
                    ],
                    "inputs": [
                        {"name": "left", "dataType": "float", "shape": [2, 3]},
                        {"name": "right", "dataType": "float", "shape": [2, 3]},
                    ],
                    "outputs": [
                        {"name": "sum", "dataType": "float", "shape": [2, 3]},
                        {"name": "product", "dataType": "float", "shape": [2, 3]},
                    ],
                }
            },
        }
        self.components = self.expected["targets"]["Openvino"]["components"]

    def archive(self, *what, name="package.tar", tool="tar"):
        subprocess.run([tool, "-cf", name, *what], cwd=self.dir, check=True)
        return name


class Inspect(InspectCase):
    def test_shows_a_directory(self):
        self.assertEqual(self.succeed_json("inspect", "package"), self.expected)
        self.assertEqual(self.succeed_json("inspect", "package/"), self.expected)

    def test_shows_archives_with_any_layout(self):
        for tool in "tar", "bsdtar":
            for layout, what in ARCHIVES.items():
                with self.subTest(tool=tool, layout=layout):
                    name = self.archive(*what, tool=tool)
                    with self.nothing_changes():
                        self.assertEqual(self.succeed_json("inspect", name), self.expected)

    def test_needs_no_directory_for_temporary_files(self):
        self.archive("package")
        with self.nothing_changes():
            result = self.with_temporary_files_at(self.dir / "none", "inspect", "package.tar", "--json")
        self.assertEqual(packages.json.loads(result.out), self.expected)

    def with_temporary_files_at(self, directory, *arguments):
        if not process.WINDOWS:
            return self.quavin(*arguments, TMPDIR=str(directory))
        # The emulator replaces the variable; only a program running in it can change it.
        place, tool = ("Z:" + str(path).replace("/", "\\") for path in (directory, process.TOOL))
        script = f"set TMP={place}&&{tool} {' '.join(arguments)}"
        return process.in_pipe(["/c", script], self.dir, program="cmd")

    def test_shows_an_archive_created_by_pack(self):
        self.succeed("pack", "package/net.xml", "-o", "model.tar")
        report = self.succeed_json("inspect", "model.tar")
        target = report["targets"]["Openvino"]
        self.assertEqual(target["components"], self.components)
        self.assertEqual((report["id"], report["version"]), ("net", 1))

    def test_shows_a_secured_package_without_its_key(self):
        packages.write_package(self.dir / "secured", networks.arithmetic(), KEY_HEX)
        components = [
            component(name, (self.dir / "secured" / name).stat().st_size, "secured_file")
            for name in ("net.xml", "net.bin")
        ]
        self.expected["targets"]["Openvino"]["components"] = components
        self.assertEqual(self.succeed_json("inspect", "secured"), self.expected)
        self.archive("secured")
        self.assertEqual(self.succeed_json("inspect", "package.tar"), self.expected)

    def test_shows_which_files_are_missing(self):
        (self.package / "net.bin").unlink()
        self.components[1] = {"path": "net.bin", "kind": "file", "present": False}
        self.assertEqual(self.succeed_json("inspect", "package"), self.expected)
        self.assertRegex(self.succeed("inspect", "package"), r"net\.bin +file +missing\n")
        self.archive("package")
        self.assertEqual(self.succeed_json("inspect", "package.tar"), self.expected)

    def test_shows_files_in_subdirectories_of_the_package(self):
        (self.package / "weights").mkdir()
        (self.package / "net.bin").rename(self.package / "weights/net.bin")
        with packages.changed_manifest(self.package) as target:
            target["components"][1]["path"] = "weights/net.bin"
        self.components[1]["path"] = "weights/net.bin"
        self.assertEqual(self.succeed_json("inspect", "package"), self.expected)
        for layout, what in list(ARCHIVES.items())[:2]:
            with self.subTest(layout):
                self.assertEqual(self.succeed_json("inspect", self.archive(*what)), self.expected)

    def test_shows_a_variable_shape_as_variable(self):
        with packages.changed_manifest(self.package) as target:
            target["inputs"][1]["tensor"]["shape"] = [-1, 3]
        self.expected["targets"]["Openvino"]["inputs"][1]["shape"] = None
        self.assertEqual(self.succeed_json("inspect", "package"), self.expected)
        self.assertRegex(self.succeed("inspect", "package"), r"right +float +variable\n")

    def test_shows_every_target(self):
        manifest = packages.read_manifest(self.package)
        manifest["targets"]["MockML"] = {}
        packages.write_manifest(self.package, manifest)
        self.expected["targets"]["MockML"] = {"components": [], "inputs": [], "outputs": []}
        self.assertEqual(self.succeed_json("inspect", "package"), self.expected)
        self.assertIn("Target MockML", self.succeed("inspect", "package"))

    def test_prints_the_same_facts_as_text(self):
        out = self.succeed("inspect", "package")
        for text in ("The name", "the-id", "The author", "What it does", "3.2", "7", "Openvino"):
            self.assertIn(text, out)
        self.assertRegex(out, r"net\.bin +file +0 bytes\n")
        self.assertRegex(out, r"product +float +\[2, 3\]\n")

    def test_aligns_columns_that_contain_non_ascii_letters(self):
        with packages.changed_manifest(self.package) as target:
            target["inputs"][0]["name"] = "größeres"
        lines = self.succeed("inspect", "package").splitlines()
        rows = [line for line in lines if "float" in line and "[2, 3]" in line][:2]
        self.assertEqual(rows[0].index("float"), rows[1].index("float"))


if __name__ == "__main__":
    unittest.main()
