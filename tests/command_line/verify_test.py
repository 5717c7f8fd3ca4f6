"""quavin verify: good packages, keys, and how findings are reported."""

import unittest

import networks
import packages
from support import KEY_HEX, OTHER_KEY_HEX, CommandLineTest

GOOD = {"ok": True, "authenticated": False, "findings": []}


class Verify(CommandLineTest):
    def test_finds_nothing_in_a_good_package(self):
        for name in "affine", "doubling", "arithmetic", "typed_sum", "tripling_integers", "scalar":
            with self.subTest(name):
                packages.write_package(self.dir / name, getattr(networks, name)())
                self.assertEqual(self.succeed_json("verify", name), GOOD)
                self.assertRegex(self.succeed("verify", name), rf"\Ausable: {name} .+\n\Z")

    def test_does_not_claim_to_check_the_origin_of_a_package(self):
        packages.write_package(self.dir / "package")
        unchecked = ". Who made it was not checked: that needs --public-key\n"
        claim = "usable: package loads, matches its network and predicts" + unchecked
        self.assertEqual(self.succeed("verify", "package"), claim)
        with packages.changed_manifest(self.dir / "package") as target:
            target["components"].append({"name": "file", "path": "more.bin"})
        self.assertIn("see the warnings" + unchecked, self.succeed("verify", "package"))

    def test_changes_nothing(self):
        packages.write_package(self.dir / "package")
        with self.nothing_changes():
            self.succeed("verify", "package")

    def test_accepts_the_key_of_a_secured_package(self):
        packages.write_package(self.dir / "package", key_hex=KEY_HEX)
        self.key_file()
        call = ["verify", "package"]
        self.assertEqual(self.succeed_json(*call, "--key-file", "key"), GOOD)
        self.assertEqual(self.succeed_json(*call, "--key-env", "THE_KEY", THE_KEY=KEY_HEX), GOOD)

    def test_accepts_a_key_that_a_plain_package_does_not_need(self):
        packages.write_package(self.dir / "package")
        self.key_file()
        self.assertEqual(self.succeed_json("verify", "package", "--key-file", "key"), GOOD)

    def test_accepts_a_package_with_one_plain_and_one_secured_file(self):
        packages.write_package(self.dir / "package")
        packages.write_package(self.dir / "secured", key_hex=KEY_HEX)
        (self.dir / "secured/net.bin").rename(self.dir / "package/net.bin")
        with packages.changed_manifest(self.dir / "package") as target:
            target["components"][1]["name"] = "secured_file"
        self.key_file()
        self.assertEqual(self.succeed_json("verify", "package", "--key-file", "key"), GOOD)

    def test_accepts_secured_files_without_padding(self):
        packages.write_package(self.dir / "package")
        plain = (self.dir / "package/net.bin").read_bytes()
        secured = packages.openssl_encrypt(plain, KEY_HEX, bytes(16), padding=False)
        self.write("package/net.bin", secured)
        with packages.changed_manifest(self.dir / "package") as target:
            target["components"][1]["name"] = "secured_file"
        self.key_file()
        self.assertEqual(self.succeed_json("verify", "package", "--key-file", "key"), GOOD)

    def test_accepts_empty_secured_weights_without_padding(self):
        packages.write_package(self.dir / "package", networks.doubling())
        self.write("package/net.bin", bytes(16))
        with packages.changed_manifest(self.dir / "package") as target:
            target["components"][1]["name"] = "secured_file"
        self.key_file()
        self.succeed("bench", "package", "--key-file", "key", "--seconds", "0.01")
        self.assertEqual(self.succeed_json("verify", "package", "--key-file", "key"), GOOD)

    def test_reports_a_wrong_key(self):
        packages.write_package(self.dir / "package", key_hex=KEY_HEX)
        self.key_file(OTHER_KEY_HEX)
        finding = self.only_finding("--key-file", "key")
        self.assertEqual((finding["level"], finding["where"]), ("error", "network"))
        self.assertIn("key is wrong", finding["advice"])

    def test_reports_a_missing_key(self):
        packages.write_package(self.dir / "package", key_hex=KEY_HEX)
        finding = self.only_finding()
        self.assertEqual((finding["level"], finding["where"]), ("error", "components"))
        self.assertIn("--key-file", finding["advice"])

    def only_finding(self, *options):
        result = self.quavin("verify", "package", "--json", *options)
        self.assertEqual(result.status, 1)
        self.failure_text(12, result)
        report = packages.json.loads(result.out)
        self.assertIs(report["ok"], False)
        self.assertEqual(len(report["findings"]), 1, report)
        return report["findings"][0]


class Findings(CommandLineTest):
    def setUp(self):
        super().setUp()
        self.package = packages.write_package(self.dir / "package", networks.arithmetic())

    def test_all_findings_are_reported_at_once(self):
        with packages.changed_manifest(self.package) as target:
            target["components"].append({"name": "file", "path": "more.bin"})
            target["inputs"][0]["tensor"]["dataType"] = "int32"
            target["inputs"][1]["name"] = "wrong"
            target["outputs"] = target["outputs"][:1]
        result = self.quavin("verify", "package")
        self.assertEqual(result.status, 1)
        expected = [
            'warning: component "more.bin": ',
            'error: input "left": ',
            'error: input "right": ',
            'warning: input "wrong": ',
            'warning: output "product": ',
        ]
        told = [line for line in result.out.splitlines() if not line.startswith("    ")]
        self.assertEqual(len(told), len(expected), result.out)
        for begin in expected:
            self.assertTrue(any(line.startswith(begin) for line in told), begin)

    def test_findings_in_files_do_not_hide_those_in_the_manifest(self):
        (self.package / "net.xml").unlink()
        with packages.changed_manifest(self.package) as target:
            target["outputs"] = []
        out = self.quavin("verify", "package").out
        self.assertIn('error: component "net.xml": The file is missing', out)
        self.assertIn("error: outputs: None are declared", out)

    def test_findings_have_advice_on_a_separate_line(self):
        (self.package / "net.xml").unlink()
        result = self.quavin("verify", "package")
        self.assertEqual(
            result.out,
            'error: component "net.xml": The file is missing\n'
            "    Add the file, or correct the path in the manifest.\n",
        )
        self.assertIn("package", self.failure_text(12, result))

    def test_warnings_alone_are_not_a_failure(self):
        with packages.changed_manifest(self.package) as target:
            target["components"].append({"name": "file", "path": "more.bin"})
        self.assertRegex(self.succeed("verify", "package"), r"\Awarning: .+\n    .+\nusable: ")
        report = self.succeed_json("verify", "package")
        self.assertIs(report["ok"], True)
        self.assertEqual([finding["level"] for finding in report["findings"]], ["warning"])

    def test_findings_are_printed_in_quiet_mode(self):
        with packages.changed_manifest(self.package) as target:
            target["components"].append({"name": "file", "path": "more.bin"})
        self.assertRegex(self.succeed("verify", "package", "--quiet"), r"\Awarning: .+\n    .+\n\Z")


if __name__ == "__main__":
    unittest.main()
