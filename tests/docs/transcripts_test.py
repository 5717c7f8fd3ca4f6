"""docs/command-line.md shows what really happens.

All ```console blocks are run in order, by one shell, in a folder that holds the digits example's network.
"$ " starts a command, "> " continues it, and the other lines are what it prints to both of its outputs:
"..." stands for any lines, "<...>" for any text within a line, and spaces between the columns of a table for
at least two spaces.

The environment variable QUAVIN_TOOL names the program "quavin".
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "scripts"))

import check_snippets  # noqa: E402  # from the folder above

ROOT = pathlib.Path(__file__).resolve().parents[2]
PAGE = ROOT / "docs/command-line.md"
FILES = ["package/digits.xml", "package/digits.bin", "held_out.bin"]

# Precedes the output of each command, which cannot contain it.
MARK = "\x1e"


def steps(block):
    """Returns the commands of a block, each with the lines that it should print."""
    found = []
    for line in block.splitlines():
        if line.startswith("$ "):
            found.append((line[2:], []))
        elif line.startswith("> ") and not found[-1][1]:
            found[-1] = (found[-1][0] + "\n" + line[2:], [])
        else:
            found[-1][1].append(line)
    return found


def pattern_of(lines):
    def of_text(text):
        columns = re.split(r"(?<=\S) {2,}(?=\S)", text)
        return r" {2,}".join(re.escape(column) for column in columns)

    def of_line(line):
        if line == "...":
            return r"(?:.*\n)*?"
        return ".+?".join(of_text(text) for text in line.split("<...>")) + r"\n"
    return "".join(map(of_line, lines))


def matches(lines, output):
    return re.fullmatch(pattern_of(lines), output) is not None


def run(commands, folder, tool):
    """Returns what each of the commands prints to both outputs."""
    script = ["exec 2>&1", "umask 022"]
    for command in commands:
        # Keeps "$?" as the previous command left it.
        script += [f"status=$?; printf '{MARK}'; (exit $status)", command]
    # The python3 that has the modules the tests need.
    path = [pathlib.Path(tool).parent, pathlib.Path(sys.executable).parent, os.environ["PATH"]]
    environment = {**os.environ, "PATH": ":".join(map(str, path)), "LC_ALL": "C.UTF-8"}
    done = subprocess.run(["bash", "-c", "\n".join(script)], cwd=folder, env=environment,
                          stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, check=False)
    return done.stdout.decode().split(MARK)[1:]


class TranscriptsTest(unittest.TestCase):
    def test_the_page_shows_what_happens(self):
        blocks = check_snippets.Page(PAGE).blocks
        shown = [(line, *step) for line, language, _, text in blocks if language == "console"
                 for step in steps(text)]
        self.assertGreater(len(shown), 20)
        with tempfile.TemporaryDirectory() as folder:
            for file in FILES:
                shutil.copy(ROOT / "examples/digits" / file, folder)
            printed = run([command for _, command, _ in shown], folder, os.environ["QUAVIN_TOOL"])
        self.assertEqual(len(shown), len(printed))
        for (line, command, lines), output in zip(shown, printed):
            with self.subTest(block=f"{PAGE.name}:{line}", command=command):
                if not matches(lines, output):
                    self.assertEqual("\n".join(lines) + "\n", output)
                    self.fail("the output does not match")

    def test_every_command_is_shown_and_every_option_mentioned(self):
        def help_of(*command):
            return subprocess.run([os.environ["QUAVIN_TOOL"], *command, "--help"], check=True,
                                  stdout=subprocess.PIPE).stdout.decode()
        commands = re.findall(r"^  (\w+) ", help_of().split("Commands:\n")[1], re.M)
        self.assertGreater(len(commands), 5)
        page = PAGE.read_text(encoding="utf-8")
        for command in commands:
            with self.subTest(command):
                self.assertRegex(page, rf"(?m)^\$ quavin {command}\b")
                self.assertRegex(page, rf"(?m)^    quavin {command}\b")
                mentioned = set(re.findall(r"--[a-z-]+", page))
                self.assertLessEqual(set(re.findall(r"--[a-z-]+", help_of(command))), mentioned)


class ReadingTest(unittest.TestCase):
    """How the page is read, on small examples."""

    def test_commands_and_their_output_are_distinguished(self):
        self.assertEqual([("a", ["1", "> 2"]), ("cat <<E\nb\nE", []), ("c", [])],
                         steps("$ a\n1\n> 2\n$ cat <<E\n> b\n> E\n$ c"))

    def test_commands_share_a_shell_and_the_last_status(self):
        with tempfile.TemporaryDirectory() as folder:
            printed = run(["x=7", "(exit $x)", "echo $?", "echo error >&2", "printf end"], folder,
                          "/bin/true")
        self.assertEqual(["", "", "7\n", "error\n", "end"], printed)

    def test_equal_output_matches(self):
        for lines, output in [([], ""), (["a", "b"], "a\nb\n"), (["a.b*"], "a.b*\n"),
                              (["..."], ""), (["...", "b", "..."], "1\n2\nb\n3\n"),
                              (["in <...> ms"], "in 12.5 ms\n"), (["  a  b"], "  a     b\n")]:
            with self.subTest(lines):
                self.assertTrue(matches(lines, output))

    def test_different_output_does_not_match(self):
        for lines, output in [([], "a\n"), (["a"], ""), (["a"], "a"), (["a"], "b\n"), (["a"], "ab\n"),
                              (["a"], "a\nb\n"), (["a.b"], "axb\n"), (["...", "b"], "1\nb\n2\n"),
                              (["in <...> ms"], "in 1\n2 ms\n"), (["in <...> ms"], "in  ms\n"),
                              (["  a  b"], "  a b\n"), (["  a  b"], "   a  b\n")]:
            with self.subTest(lines):
                self.assertFalse(matches(lines, output))


if __name__ == "__main__":
    unittest.main()
