"""A network that crashes the engine. It takes down a child process, but not the tool."""

import unittest

import networks
import packages
import process
from support import KEY_HEX, CommandLineTest

SIGNAL = "crashed with 0xC0000005" if process.WINDOWS else "was ended by signal 11"


@process.adapter_only("no operation is known to crash it")
class CrashingNetwork(CommandLineTest):
    def last_line(self, code, result):
        """The tool's own message: an emulator may have printed lines before it."""
        *_, last = result.err.splitlines(keepends=True)
        return self.failure_text(code, process.Result(result.status, result.out, last))

    def assert_found(self, *key):
        result = self.quavin("verify", "package", "--json", *key)
        self.assertEqual(result.status, 1, result)
        self.last_line(12, result)
        report = packages.json.loads(result.out)
        self.assertIs(report["ok"], False)
        [finding] = report["findings"]
        self.assertEqual((finding["level"], finding["where"]), ("error", "prediction"))
        self.assertIn(SIGNAL, finding["what"])
        self.assertIn("Do not load it", finding["advice"])

    def test_verify_reports_a_crash_as_a_finding(self):
        packages.write_package(self.dir / "package", networks.crashing())
        with self.nothing_changes():
            self.assert_found()

    def test_verify_reports_a_crash_in_a_secured_package(self):
        packages.write_package(self.dir / "package", networks.crashing(), KEY_HEX)
        self.key_file()
        with self.nothing_changes():
            self.assert_found("--key-file", "key")

    def test_a_crash_does_not_hide_other_findings(self):
        packages.write_package(self.dir / "package", networks.crashing())
        with packages.changed_manifest(self.dir / "package") as target:
            target["components"].append({"name": "file", "path": "more.bin"})
        result = self.quavin("verify", "package")
        self.assertEqual(result.status, 1)
        self.assertIn('warning: component "more.bin"', result.out)
        self.assertIn("error: prediction: ", result.out)

    def test_pack_refuses_the_network_and_leaves_nothing_behind(self):
        packages.write_network(self.dir, networks.crashing())
        self.key_file()
        secured = ["--key-file", "key", "--encrypt"]
        for options in (
            ["new"],
            ["deep/new.tar"],
            ["new", *secured, "components"],
            ["new.tar", *secured, "archive"],
        ):
            with self.subTest(options), self.nothing_changes():
                result = self.quavin("pack", "net.xml", "-o", *options)
                self.assertEqual((result.status, result.out), (1, ""))
                text = self.last_line(13, result)
                self.assertIn("net.xml cannot be packed: the engine crashed", text)
                self.assertIn(SIGNAL, text)


if __name__ == "__main__":
    unittest.main()
