"""Notes that the command line prints with an error: the library's diagnostics."""

import json
import os
import pathlib
import re
import shutil
import subprocess
import unittest

import packages
import process
from calls import WithAPackage
from packages import networks
from support import KEY_HEX, OTHER_KEY_HEX

RUN = ["run", "package", "-i", "x=x.npy", "-o", "results"]


class Notes(WithAPackage):
    def change_input(self, **block):
        with packages.changed_manifest(self.dir / "package") as target:
            target["inputs"][0]["tensor"].update(block)

    def test_successful_calls_have_no_notes(self):
        for command in "inspect", "verify", "run", "bench", "pack":
            with self.subTest(command):
                self.assertEqual(self.notes(*self.call(command)), [])

    def test_notes_say_where_a_manifest_is_invalid_json(self):
        self.write("package/manifest.json", '{\n  "id": "x"\n  "name": "y"}')
        for options in [], ["--json"], ["--quiet"]:
            with self.subTest(options):
                (note,) = self.notes("inspect", "package", *options)
                self.assertIn("package", note)
                self.assertIn("line 3, column 3: Missing a comma or", note)

    def test_notes_come_before_the_error(self):
        self.write("package/manifest.json", "{}")
        result = self.quavin("inspect", "package")
        self.assertEqual((result.status, result.out), (1, ""))
        self.assertRegex(result.err, r"\Aquavin: note: [^\n]+\nquavin: status 12: [^\n]+\n\Z")

    def test_notes_of_verify_are_not_findings(self):
        self.write("package/manifest.json", "{]")
        result = self.quavin("verify", "package", "--json")
        self.assertEqual(len(json.loads(result.out)["findings"]), 1)
        self.assertRegex(result.err, r"\Aquavin: note: [^\n]*line 1, column 2[^\n]*\nquavin: status 12: ")

    def test_notes_contain_no_control_characters(self):
        self.write("package/manifest.json", '{"\\u001b[31mred\\nquavin: forged": 1}')
        (note,) = self.notes("inspect", "package")
        self.assertIn('"?[31mred quavin: forged"', note)

    def test_notes_name_skipped_components(self):
        with packages.changed_manifest(self.dir / "package") as target:
            target["components"][1]["name"] = "File"
        (note,) = self.notes("bench", "package")
        self.assertIn('skipped for their names: "File"', note)

    def test_notes_quote_the_message_of_the_engine(self):
        self.change_input(dataType="int32")
        networks.np.save(self.dir / "x.npy", networks.OFFSETS.astype(networks.np.int32))
        self.assertIn("Unknown/internal", self.refused(13, *RUN))
        (note,) = self.notes(*RUN)
        self.assertRegex(note, r"\Apredict: the engine failed: .*FP32.*I32")

    def test_notes_withhold_the_message_of_the_engine_for_a_secured_package(self):
        packages.write_package(self.dir / "package", key_hex=KEY_HEX)
        self.change_input(dataType="int32")
        (note,) = self.notes("bench", "package", "--key-file", "key")
        self.assertIn("withheld", note)

    def test_an_input_read_in_another_shape_is_noted_once(self):
        self.change_input(shape=[4, 1])
        networks.np.save(self.dir / "x.npy", networks.OFFSETS.reshape(4, 1))
        expected = ['predict: input "x" has the shape [4, 1] and is read as the network\'s [1, 4]']
        self.assertEqual(self.notes(*RUN), expected)
        self.assertEqual(self.notes(*RUN, "--json"), expected)
        self.assertEqual(self.notes("bench", "package", "--seconds", "0.05"), expected)
        self.assertEqual(self.notes(*RUN, "--quiet"), [])

    def test_notes_of_trial_processes_are_printed(self):
        # For a feature of another kind, verify's comparison with the network yields only a warning.
        with packages.changed_manifest(self.dir / "package") as target:
            target["inputs"].append({"name": "picture", "featureType": "image"})
        result = self.quavin("verify", "package")
        self.assertIn("error: prediction", result.out)
        (note,) = self.notes("verify", "package")
        self.assertEqual(note, 'allocateInputs: input "picture" has the feature type image')

    def test_verify_reports_a_misspelt_engine_as_a_finding(self):
        manifest = packages.read_manifest(self.dir / "package")
        manifest["targets"]["OpenVino"] = manifest["targets"].pop("Openvino")
        packages.write_manifest(self.dir / "package", manifest)
        result = self.quavin("verify", "package")
        self.assertIn('warning: target "OpenVino"', result.out)
        self.assertIn('There is no target "Openvino"', result.out)

    @process.adapter_only(process.OTHER_RUNTIME)
    @unittest.skipIf(process.EMULATOR, "No program here lists the libraries that the emulated one has loaded")
    def test_notes_name_the_library_that_the_runtime_lacks(self):
        runtime = self.runtime_without("_cpu_plugin")
        result = self.quavin("bench", "package", LD_LIBRARY_PATH=str(runtime))
        self.failure_text(2, result)
        self.assertRegex(result.err, r'note: loading the package "package": the runtime in ".*runtime" '
                                     r'lacks "openvino_[a-z]+_cpu_plugin"\n')
        runtime = self.runtime_without("_ir_frontend")
        result = self.quavin("bench", "package", LD_LIBRARY_PATH=str(runtime))
        self.failure_text(3, result)
        self.assertRegex(result.err, r'note: reading a network "package.net.xml": the runtime in '
                                     r'".*runtime" lacks "openvino_ir_frontend"\n')

    def runtime_without(self, part):
        """A copy of the runtime that the tool uses, without libraries whose names contain a part."""
        listed = subprocess.run(["ldd", process.TOOL], stdout=subprocess.PIPE, check=True).stdout.decode()
        real = pathlib.Path(re.search(r"=> (.*/libopenvino\.so\S*)", listed)[1]).parent
        copy = self.dir / "runtime"
        shutil.rmtree(copy, ignore_errors=True)
        copy.mkdir()
        for library in real.glob("*.so*"):
            if part not in library.name:
                try:
                    os.link(library, copy / library.name)
                except OSError:  # on another disk
                    shutil.copy(library, copy)
        return copy

    def test_notes_do_not_repeat_findings_of_verify(self):
        self.change_input(shape=[4, 1])
        self.assertIn("[4, 1]", self.quavin("verify", "package").out)
        self.assertEqual(self.notes("verify", "package"), [])

    def test_notes_show_no_key(self):
        packages.write_package(self.dir / "package", key_hex=KEY_HEX)
        secured = self.dir / "package" / "net.xml"
        secured.write_bytes(secured.read_bytes() + b"?")
        (note,) = self.notes("bench", "package", "--key-file", "key")  # checks for keys
        self.assertRegex(note, r"decrypting .*net\.xml.*multiple of 16")
        self.key_file(OTHER_KEY_HEX + "\n")
        secured.write_bytes(secured.read_bytes()[:-1])
        self.notes("bench", "package", "--key-file", "key")


if __name__ == "__main__":
    unittest.main()
