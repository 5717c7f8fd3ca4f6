"""Behaviour common to the tool and all of its commands."""

import re
import subprocess
import unittest

import process
from calls import COMMANDS, REPORTING, WithAPackage
from support import KEY_HEX, CommandLineTest


class Help(CommandLineTest):
    def test_help_of_the_tool_and_each_command_goes_to_standard_output(self):
        for arguments in [], *([command] for command in COMMANDS):
            for option in "--help", "-h":
                with self.subTest(arguments=arguments, option=option):
                    self.assertIn("Usage: quavin", self.succeed(*arguments, option))

    def test_help_of_the_tool_lists_each_command(self):
        listed = re.findall(r"^  ([a-z]+) ", self.succeed("--help").split("Commands:")[1], re.M)
        self.assertEqual(sorted(listed), sorted(COMMANDS))

    def test_help_command_prints_what_the_help_option_prints(self):
        self.assertEqual(self.succeed("help"), self.succeed("--help"))
        for command in COMMANDS:
            with self.subTest(command):
                self.assertEqual(self.succeed("help", command), self.succeed(command, "--help"))

    def test_help_of_the_tool_mentions_the_help_command(self):
        self.assertIn('"quavin help COMMAND"', self.succeed("--help"))

    def test_help_of_an_unknown_command_is_a_misuse(self):
        self.assertIn('did you mean "pack"?', self.misused("help", "pakc"))
        self.assertIn("quavin help", self.misused("help", "frobnicate"))
        self.misused("help", "pack", "unpack")

    def test_version_goes_to_standard_output(self):
        self.assertRegex(self.succeed("--version"), r"\Aquavin \d+\.\d+\.\d+\n\Z")


class Misuse(CommandLineTest):
    def test_calling_without_arguments_is_a_misuse(self):
        self.misused()

    def test_an_unknown_command_is_a_misuse(self):
        for word in "frobnicate", "x", "", KEY_HEX, "-", "\x1b[31mpack" + 40 * "k":
            with self.subTest(word):
                text = self.misused(word)
                self.assertIn("no such command" if word not in ("", "-") else "quavin: ", text)
                self.assertNotIn("did you mean", text)

    def test_a_misspelt_command_gets_a_suggestion(self):
        for typed, meant in {
            "pakc": "pack",
            "pac": "pack",
            "PACK": "pack",
            "unpakc": "unpack",
            "inspekt": "inspect",
            "insp": "inspect",
            "verfiy": "verify",
            "rnu": "run",
            "rin": "run",
            "benchmark": "bench",
            "encrpyt": "encrypt",
            "dcrypt": "decrypt",
            "key-gen": "keygen",
            "hlep": "help",
        }.items():
            with self.subTest(typed):
                text = self.misused(typed, "a", "--quiet")
                self.assertIn(f'no such command; did you mean "{meant}"?', text)

    def test_a_misspelt_option_gets_a_suggestion(self):
        for typed, meant in {
            "--iput": "--input",
            "--ouptut=new": "--output",
            "--JSON": "--json",
            "--key": "--key-file",
            "--key-evn=KEY": "--key-env",
        }.items():
            with self.subTest(typed):
                text = self.misused("run", "package", "-i", "x=x.npy", "-o", "new", typed)
                self.assertIn(f"{typed.split('=')[0]}; did you mean {meant}?", text)
        unknown = self.misused("verify", "package", "--frobnicate")
        self.assertIn("Unknown argument: --frobnicate\n", unknown)
        self.assertNotIn("did you mean", unknown)

    def test_a_misspelt_option_before_any_command_gets_a_suggestion(self):
        self.assertIn("Unknown argument: --verison; did you mean --version?", self.misused("--verison"))
        self.assertIn("Unknown argument: --frobnicate\n", self.misused("--frobnicate"))
        self.assertIn("A COMMAND is required", self.misused())

    def test_a_misspelt_required_option_gets_a_suggestion(self):
        text = self.misused("run", "package", "--iput", "x=x.npy", "-o", "new")
        self.assertIn("--iput; did you mean --input?", text)

    def test_an_unknown_option_is_a_misuse(self):
        for command, arguments in COMMANDS.items():
            with self.subTest(command), self.nothing_changes():
                self.assertIn("--frobnicate", self.misused(command, *arguments, "--frobnicate"))

    def test_too_many_arguments_are_a_misuse(self):
        for command, arguments in COMMANDS.items():
            with self.subTest(command), self.nothing_changes():
                self.misused(command, *arguments, "one", "more")

    def test_a_command_without_its_arguments_is_a_misuse(self):
        for command in COMMANDS.keys() - {"doctor"}:  # takes no arguments
            with self.subTest(command):
                self.misused(command)

    def test_each_missing_required_argument_is_a_misuse(self):
        for arguments in (
            ["pack", "net.xml"],
            ["pack", "-o", "new"],
            ["run", "package", "-o", "results"],
            ["unpack", "a.tar"],
            ["encrypt", "plain", "--key-file", "key"],
            ["encrypt", "plain", "new"],
            ["decrypt", "secured", "new"],
            ["sign", "package"],
            ["sign", "--private-key", "private.pem"],
        ):
            with self.subTest(arguments), self.nothing_changes():
                self.misused(*arguments)

    def test_two_sources_of_a_key_are_a_misuse(self):
        self.key_file()
        for command in "encrypt", "decrypt", "verify", "run", "bench", "unpack", "pack":
            arguments = [a for a in COMMANDS[command] if a not in ("--key-file", "key")]
            with self.subTest(command):
                both = ["--key-file", "key", "--key-env", "KEY"]
                self.misused(command, *arguments, *both, KEY=KEY_HEX)

    def test_a_key_as_an_argument_is_rejected_and_not_repeated(self):
        self.write("plain", "text")
        for key in (
            ["--key", KEY_HEX],
            ["--key=" + KEY_HEX],
            ["-k", KEY_HEX],
            ["-k" + KEY_HEX],
            ["--" + KEY_HEX],
            [KEY_HEX],
        ):
            with self.subTest(key), self.nothing_changes():
                self.misused("encrypt", "plain", "new", *key)

    def test_errors_contain_no_control_characters(self):
        self.assertNotIn("\x1b", self.misused("keygen", "new", "--\x1b[31mred"))
        self.assertNotIn("\x1b", self.refused(3, "inspect", "\x1b[31mred"))


class Output(WithAPackage):
    def test_json_is_the_only_thing_on_standard_output(self):
        for command in REPORTING:
            with self.subTest(command):
                self.succeed_json(*self.call(command))
                self.remove_results()

    def test_quiet_prints_only_results_and_errors(self):
        silent = "pack", "verify", "sign", "unpack", "encrypt", "decrypt", "keygen"
        for command in COMMANDS:
            with self.subTest(command):
                out = self.succeed(*self.call(command, "--quiet"))
                self.assertEqual(out == "", command in silent, out)
                self.remove_results()
        self.refused(3, "inspect", "nothing", "--quiet")

    def test_output_that_cannot_be_written_is_a_failure(self):
        calls = [self.call(command) for command in COMMANDS]
        calls += [self.call(command, "--json") for command in REPORTING]
        for call in calls:
            with self.subTest(call):
                self.assert_fails_on_a_full_device(call)
                self.remove_results()

    def test_help_that_cannot_be_written_is_a_failure(self):
        for call in ["--help"], ["--version"], ["pack", "--help"], ["help"], ["help", "pack"]:
            with self.subTest(call):
                self.assert_fails_on_a_full_device(call)

    def test_closed_standard_output_is_a_failure(self):
        for command in COMMANDS:
            with self.subTest(command):
                self.assert_fails_on_a_closed_stream(self.call(command))
                self.remove_results()

    def test_help_with_closed_standard_output_is_a_failure(self):
        self.assert_fails_on_a_closed_stream(["--help"])

    def test_messages_for_closed_standard_output_do_not_end_up_in_a_file(self):
        self.assert_fails_on_a_closed_stream(self.call("decrypt"))
        self.assertEqual((self.dir / "new").read_bytes(), b"some text")

    def assert_fails_on_a_full_device(self, call):
        with open("/dev/full", "wb") as full:
            self.assertIn("output", self.refused(3, *call, stdout=full))

    def assert_fails_on_a_closed_stream(self, call):
        done = subprocess.run(
            ["sh", "-c", 'exec "$@" >&-', "sh", *process.command(process.TOOL, *call)],
            cwd=self.dir,
            env=process.clean_environment(**self.places),
            stderr=subprocess.PIPE,
            check=False,
        )
        self.assertEqual(done.returncode, 1)
        self.failure_text(3, process.Result(1, "", done.stderr.decode()))

    def test_file_names_may_equal_command_names(self):
        self.succeed("keygen", "pack")
        self.assertTrue((self.dir / "pack").is_file())


if __name__ == "__main__":
    unittest.main()
