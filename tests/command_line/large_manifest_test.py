"""Manifests made to be expensive: they are refused, or read with little memory and time."""

import os
import subprocess
import unittest

import packages
import process
from calls import WithAPackage

MEBIBYTE = 1 << 20
# For the library, the runtime and the manifest; without the manifest they take some 60 MiB.
MOST_MEMORY = 192 * MEBIBYTE
MOST_SECONDS = 20  # of processor time; a few tenths are used


def repeated(text, size, begin='{"targets": {"Openvino": {"inputs": [', end="]}}}"):
    """A manifest of nearly `size` bytes that repeats a text, separated by commas."""
    count = (size - len(begin) - len(end)) // (len(text) + 1)
    return begin + ",".join([text] * count) + end


class LargeManifests(WithAPackage):
    COMMANDS = {
        "inspect": [],
        "verify": [],
        "bench": ["--seconds", "0.01"],
        "run": ["-i", "x=x.npy", "-o", "results"],
    }

    def call(self, command):
        return [command, "package", *self.COMMANDS[command]]

    def assert_refused_everywhere(self, manifest):
        self.write("package/manifest.json", manifest)
        for command in self.COMMANDS:
            result = self.quavin(*self.call(command))
            self.assertEqual(result.status, 1)
            self.assertIn("Failed to open metadata file at ", result.out + result.err)

    def test_manifests_over_one_mebibyte_are_refused(self):
        manifest = packages.read_manifest(self.dir / "package")
        text = packages.json.dumps(manifest)
        self.write("package/manifest.json", text + " " * (MEBIBYTE - len(text)))
        self.succeed("verify", "package")
        self.assert_refused_everywhere(text + " " * (MEBIBYTE + 1 - len(text)))

    def test_manifests_with_too_many_values_are_refused(self):
        for text in "1", "[]", "{}", '{"a":1}', '""':
            with self.subTest(text):
                self.assert_refused_everywhere(repeated(text, MEBIBYTE))
        self.assert_refused_everywhere("[" * MEBIBYTE)
        self.assert_refused_everywhere('{"targets": ' + "[" * (MEBIBYTE - 100))

    def test_large_manifests_in_archives_are_refused(self):
        self.write("package/manifest.json", repeated("1", MEBIBYTE))
        subprocess.run(["tar", "-cf", "b.tar", "package"], cwd=self.dir, check=True)
        self.refused(12, "inspect", "b.tar")

    @process.posix_only("the emulator's own memory would count")
    @unittest.skipIf(process.EMULATOR, "The emulator's own time and memory would count")
    @unittest.skipIf(process.SANITIZED, "Sanitizers take additional time and memory")
    def test_manifests_just_below_the_limits_cost_little(self):
        values = 65_500
        lists = {
            "numbers": ",".join(["1"] * values),
            "objects": ",".join(["{}"] * (values // 2)),
            "tensors": ",".join(['{"featureType":"tensor"}'] * (values // 3)),
            "nested": "[" * values + "]" * values,
        }
        for kind, inputs in lists.items():
            text = '{"targets": {"Openvino": {"inputs": [' + inputs + "]}}}"
            self.assertLessEqual(len(text), MEBIBYTE)
            self.write("package/manifest.json", text)
            for command in self.COMMANDS:
                with self.subTest(kind=kind, command=command):
                    seconds, memory = self.cost_of(*self.call(command))
                    self.assertLess(memory, MOST_MEMORY)
                    self.assertLess(seconds, MOST_SECONDS)

    def cost_of(self, *arguments):
        with subprocess.Popen(
            process.command(process.TOOL, *arguments),
            cwd=self.dir,
            env=process.clean_environment(**self.places),
            stdin=subprocess.DEVNULL,
            stdout=subprocess.DEVNULL,
            stderr=subprocess.DEVNULL,
        ) as running:
            _, status, usage = os.wait4(running.pid, 0)
            running.returncode = os.waitstatus_to_exitcode(status)
        # It may be refused or cause warnings, but must neither crash nor count as misuse.
        self.assertIn(running.returncode, (0, 1))
        return usage.ru_utime + usage.ru_stime, usage.ru_maxrss * 1024


del WithAPackage

if __name__ == "__main__":
    unittest.main()
