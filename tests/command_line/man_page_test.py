"""The manual page: it matches --help, and a formatter accepts it."""

import os
import re
import subprocess
import unittest

from calls import COMMANDS
from support import CommandLineTest

PAGE = os.environ["QUAVIN_MAN_PAGE"]


def options_of_help(text):
    """Names such as "-q,--quiet", and descriptions without the additions in brackets."""
    part = text.split("Options:\n")[1].split("\n\n")[0]
    # A description begins after two blanks, or on the next line.
    part = part.replace("\n     ", "      ")
    entries = re.findall(r"^  (-\S+)(?: \S+)*?(?:\s{2,})(\S.*)$", part, re.M)
    return {name.split("=")[0].split(":")[0]: description for name, description in entries}


def positionals_of_help(text):
    if "Positionals:\n" not in text:
        return []
    part = text.split("Positionals:\n")[1].split("\n\n")[0]
    return re.findall(r"^  ([A-Z]+) ", part, re.M)


class ManPage(CommandLineTest):
    @classmethod
    def setUpClass(cls):
        with open(PAGE, encoding="utf-8") as file:
            text = file.read().replace("\\-", "-")
        whole, commands = text.split(".SH COMMANDS\n")
        cls.sections = {"": whole.split(".SH OPTIONS\n")[1]}
        for section in commands.split(".SH ")[0].split(".SS ")[1:]:
            cls.sections[section.split()[1].strip('"')] = section

    def entries(self, section):
        """Names and descriptions."""
        found = re.findall(r"^\.TP\n\\fB(\S+?)\\fR.*\n(.*)$", self.sections[section], re.M)
        return dict(found)

    def help_of(self, section):
        return self.succeed(*([section] if section else []), "--help")

    def test_has_one_section_per_command(self):
        self.assertEqual(sorted(self.sections), sorted(["", *COMMANDS]))

    def test_lists_the_same_options_as_help(self):
        for section in self.sections:
            with self.subTest(section):
                options = options_of_help(self.help_of(section))
                self.assertIn("-h,--help", options)
                expected = sorted([*options, *positionals_of_help(self.help_of(section))])
                self.assertEqual(sorted(self.entries(section)), expected)

    def test_describes_options_as_help_does(self):
        for section in self.sections:
            entries = self.entries(section)
            for name, description in options_of_help(self.help_of(section)).items():
                with self.subTest(section=section, name=name):
                    self.assertIn(description, entries[name])

    def test_describes_commands_as_help_does(self):
        for name, description in re.findall(r"^  ([a-z]+) +(\S.*)$", self.help_of(""), re.M):
            with self.subTest(name):
                self.assertIn("\n" + description + "\n", self.sections[name])

    def test_describes_the_exit_status(self):
        with open(PAGE, encoding="utf-8") as file:
            self.assertRegex(file.read(), r"\.SH EXIT STATUS\n0 on success")

    def test_passes_the_lint_of_mandoc(self):
        done = subprocess.run(
            ["mandoc", "-Tlint", "-W", "error", PAGE],
            stdout=subprocess.PIPE,
            stderr=subprocess.STDOUT,
            check=False,
        )
        self.assertEqual((done.returncode, done.stdout.decode()), (0, ""))


if __name__ == "__main__":
    unittest.main()
