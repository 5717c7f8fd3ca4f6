"""What the command line says of a failure beside its error: the library's diagnostics."""

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

    def test_a_call_that_succeeds_has_none(self):
        for command in "inspect", "verify", "run", "bench", "pack":
            with self.subTest(command):
                self.assertEqual(self.notes(*self.call(command)), [])

    def test_say_where_a_manifest_is_no_json(self):
        self.write("package/manifest.json", '{\n  "id": "x"\n  "name": "y"}')
        for options in [], ["--json"], ["--quiet"]:
            with self.subTest(options):
                (note,) = self.notes("inspect", "package", *options)
                self.assertIn("package", note)
                self.assertIn("line 3, column 3: Missing a comma or", note)

    def test_come_before_the_error(self):
        self.write("package/manifest.json", "{}")
        result = self.quavin("inspect", "package")
        self.assertEqual((result.status, result.out), (1, ""))
        self.assertRegex(result.err, r"\Aquavin: note: [^\n]+\nquavin: status 12: [^\n]+\n\Z")

    def test_of_verify_leave_the_findings_alone(self):
        self.write("package/manifest.json", "{]")
        result = self.quavin("verify", "package", "--json")
        self.assertEqual(len(json.loads(result.out)["findings"]), 1)
        self.assertRegex(result.err, r"\Aquavin: note: [^\n]*line 1, column 2[^\n]*\nquavin: status 12: ")

    def test_show_names_without_control_characters(self):
        self.write("package/manifest.json", '{"\\u001b[31mred\\nquavin: forged": 1}')
        (note,) = self.notes("inspect", "package")
        self.assertIn('"?[31mred quavin: forged"', note)

    def test_name_the_components_that_are_skipped(self):
        with packages.changed_manifest(self.dir / "package") as target:
            target["components"][1]["name"] = "File"
        (note,) = self.notes("bench", "package")
        self.assertIn('skipped for their names: "File"', note)

    def test_tell_the_engines_words(self):
        self.change_input(dataType="int32")
        networks.np.save(self.dir / "x.npy", networks.OFFSETS.astype(networks.np.int32))
        self.assertIn("Unknown/internal", self.refused(13, *RUN))
        (note,) = self.notes(*RUN)
        self.assertRegex(note, r"\Apredict: the engine fails: .*FP32.*I32")

    def test_withhold_the_engines_words_of_a_secured_package(self):
        packages.write_package(self.dir / "package", key_hex=KEY_HEX)
        self.change_input(dataType="int32")
        (note,) = self.notes("bench", "package", "--key-file", "key")
        self.assertIn("withheld", note)

    def test_say_once_that_an_input_is_read_in_another_shape(self):
        self.change_input(shape=[4, 1])
        networks.np.save(self.dir / "x.npy", networks.OFFSETS.reshape(4, 1))
        expected = ['predict: input "x" has the shape [4, 1] and is read as the network\'s [1, 4]']
        self.assertEqual(self.notes(*RUN), expected)
        self.assertEqual(self.notes(*RUN, "--json"), expected)
        self.assertEqual(self.notes("bench", "package", "--seconds", "0.05"), expected)
        self.assertEqual(self.notes(*RUN, "--quiet"), [])

    def test_come_from_trials_in_a_process_of_their_own(self):
        # verify compares a feature of another kind with the network only as a warning for hosts.
        with packages.changed_manifest(self.dir / "package") as target:
            target["inputs"].append({"name": "picture", "featureType": "image"})
        result = self.quavin("verify", "package")
        self.assertIn("error: prediction", result.out)
        (note,) = self.notes("verify", "package")
        self.assertEqual(note, 'allocateInputs: input "picture" has the feature type image')

    def test_of_an_engine_that_is_misspelt_are_findings_of_verify(self):
        manifest = packages.read_manifest(self.dir / "package")
        manifest["targets"]["OpenVino"] = manifest["targets"].pop("Openvino")
        packages.write_manifest(self.dir / "package", manifest)
        result = self.quavin("verify", "package")
        self.assertIn('warning: target "OpenVino"', result.out)
        self.assertIn('There is no target "Openvino"', result.out)

    @process.adapter_only(process.OTHER_RUNTIME)
    @unittest.skipIf(process.EMULATOR, "No program here lists what the emulated one has loaded")
    def test_name_the_library_that_the_runtime_lacks(self):
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
        """A copy of the runtime that the tool uses, without the libraries of a name."""
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

    def test_do_not_repeat_what_verify_finds(self):
        self.change_input(shape=[4, 1])
        self.assertIn("[4, 1]", self.quavin("verify", "package").out)
        self.assertEqual(self.notes("verify", "package"), [])

    def test_show_no_key(self):
        packages.write_package(self.dir / "package", key_hex=KEY_HEX)
        secured = self.dir / "package" / "net.xml"
        secured.write_bytes(secured.read_bytes() + b"?")
        (note,) = self.notes("bench", "package", "--key-file", "key")  # looks for keys
        self.assertRegex(note, r"decrypting .*net\.xml.*multiple of 16")
        self.key_file(OTHER_KEY_HEX + "\n")
        secured.write_bytes(secured.read_bytes()[:-1])
        self.notes("bench", "package", "--key-file", "key")


if __name__ == "__main__":
    unittest.main()
