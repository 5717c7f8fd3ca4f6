"""quavin doctor: what an installation consists of, and whether it works."""

import json
import os
import re
import shutil
import unittest
from pathlib import Path

import process
from support import CommandLineTest

MEMBERS = ["ok", "status", "problem", "quavin", "runtime", "device", "processor", "capabilities"]
MEMBERS += ["precision", "threads", "streams", "libraries", "missing"]
LATE = {"CPU plugin": "cpu_plugin", "IR frontend": "ir_frontend"}


class Doctor(CommandLineTest):
    @process.adapter_only(process.OTHER_RUNTIME)
    def test_reports_that_this_installation_works(self):
        report = self.succeed_json("doctor")
        self.assertEqual(sorted(report), sorted(MEMBERS))
        self.assertIs(report["ok"], True)
        self.assertEqual((report["status"], report["problem"], report["missing"]), (1, "", []))
        self.assertEqual("quavin " + report["quavin"] + "\n", self.succeed("--version"))
        for name in "runtime", "device", "processor", "precision":
            self.assertNotEqual(report[name], "", name)
        self.assertEqual(report["precision"], "f32")
        self.assertGreater(report["threads"], 0)
        self.assertGreater(report["streams"], 0)
        self.assertIn("FP32", report["capabilities"])

    @process.adapter_only(process.OTHER_RUNTIME)
    def test_reports_the_file_of_each_library(self):
        libraries = self.succeed_json("doctor")["libraries"]
        # "." marks the end of the name, which may be followed by numbers.
        for part in "quavin_on_device_sdk", "openvino_c.", *LATE.values(), "tbb.", "openvino.":
            with self.subTest(part):
                names = re.compile(part.replace(".", r"\d*\."))
                [library] = [each for each in libraries if names.search(each["name"].lower())]
                file = library["file"].replace("\\", "/")
                self.assertEqual(file.split("/")[-1], library["name"])
                if not process.WINDOWS:
                    self.assertTrue(Path(file).is_file(), file)

    def test_prints_the_same_facts_as_text(self):
        report = self.succeed_json("doctor")
        out = self.succeed("doctor")
        for name in "quavin", "runtime", "device", "processor", "precision", "threads", "streams":
            self.assertRegex(out, rf"(?m)^  {name} +\S")
            self.assertIn(f"{report[name]}\n", out)
        for library in report["libraries"]:
            self.assertIn(library["file"] + "\n", out)
        self.assertTrue(out.endswith("\nok: a small network loads and predicts\n"), out)

    def test_leaves_nothing_behind(self):
        with self.nothing_changes():
            self.succeed("doctor")

    def test_rejects_arguments(self):
        self.misused("doctor", "package")


@process.adapter_only(process.OTHER_RUNTIME)
class BrokenInstallation(CommandLineTest):
    """A copy of the runtime's libraries, with some missing."""

    def without(self, part, substitute=None):
        libraries = self.succeed_json("doctor")["libraries"]
        place = self.dir / "broken"
        place.mkdir()
        if process.WINDOWS:
            files = list(Path(process.TOOL).parent.glob("*.dll")) + [Path(process.TOOL)]
        else:
            files = [Path(each["file"]) for each in libraries]
            files = [file for file in files if re.search("openvino|tbb", file.name)]
        for file in files:
            if part not in file.name:
                shutil.copy(file, place)
            elif substitute:
                shutil.copy(substitute, place / file.name)
        if process.WINDOWS:
            tool = place / Path(process.TOOL).name
            return process.in_pipe(["doctor", "--json"], self.dir, program=str(tool))
        return self.quavin("doctor", "--json", LD_LIBRARY_PATH=str(place))

    def assert_misses(self, part):
        result = self.without(LATE[part])
        self.assertEqual(result.status, 1, result)
        *_, last = result.err.splitlines()
        self.assertEqual(last, "quavin: status 13: This installation cannot predict")
        report = json.loads(result.out)
        self.assertIs(report["ok"], False)
        self.assertNotEqual(report["status"], 1)
        self.assertIn(part, report["missing"])
        return report["problem"]

    @process.posix_only("no crashing plugin is built there")
    def test_a_crashing_plugin_is_reported(self):
        crashing = os.environ["QUAVIN_CRASHING_PLUGIN"]
        result = self.without(LATE["CPU plugin"], crashing)
        self.assertEqual(result.status, 1, result)
        report = json.loads(result.out)
        self.assertIs(report["ok"], False)
        self.assertIn("the engine crashed: ", report["problem"])
        self.assertIn("was ended by signal 6", report["problem"])

    def test_a_missing_plugin_is_reported_with_the_message_of_the_engine(self):
        self.assertIn("CPU", self.assert_misses("CPU plugin"))

    def test_a_missing_reader_is_reported_with_the_message_of_the_engine(self):
        self.assertNotEqual(self.assert_misses("IR frontend"), "")


if __name__ == "__main__":
    unittest.main()
