"""The worked example and the recipes of docs/package-format.md, checked with openssl and tar.

The environment variable QUAVIN_TOOL names the program "quavin"; UnpackingTest needs it.
"""

import os
import pathlib
import re
import shutil
import subprocess
import sys
import tarfile
import tempfile
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "scripts"))

import check_snippets  # noqa: E402  # from the folder above

ROOT = pathlib.Path(__file__).resolve().parents[2]
PAGE = check_snippets.Page(ROOT / "docs/package-format.md")
PACKAGE = ROOT / "examples/digits/package"
KEY = "000102030405060708090a0b0c0d0e0f"


def cipher(*options, key, vector, text):
    command = ["openssl", "enc", "-aes-128-cbc", "-K", key.hex(), "-iv", vector.hex(), *options]
    return subprocess.run(command, input=text, stdout=subprocess.PIPE, check=True).stdout


def decrypted(secured):
    return cipher("-d", key=bytes.fromhex(KEY), vector=secured[:16], text=secured[16:])


class WorkedExampleTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        rows = dict(re.findall(r"^\| (key|vector) \| `([0-9a-f ]+)` \|$",
                               "\n".join(line for _, line in PAGE.prose), re.M))
        cls.key = bytes.fromhex(rows["key"])
        cls.vector = bytes.fromhex(rows["vector"])
        cls.plain = b'<net name="tiny" version="10"/>\n'
        cls.dump = [block for _, language, _, block in PAGE.blocks if language == "text"][0]
        cls.lines = [re.fullmatch(r"([0-9a-f]{8}): ([0-9a-f ]{39})  (.{16})", line).groups()
                     for line in cls.dump.splitlines()]
        cls.secured = b"".join(bytes.fromhex(digits) for _, digits, _ in cls.lines)

    def test_the_page_names_the_plain_file(self):
        row = [line for _, line in PAGE.prose if line.startswith("| plain file |")]
        self.assertEqual([f"| plain file | the 31 characters `{self.plain[:31].decode()}` "
                          "and a line feed |"], row)

    def test_the_dump_agrees_with_itself(self):
        self.assertEqual(64, len(self.secured))
        for number, (offset, digits, shown) in enumerate(self.lines):
            self.assertEqual(16 * number, int(offset, 16))
            text = "".join(chr(b) if 32 <= b < 127 else "." for b in bytes.fromhex(digits))
            self.assertEqual(text, shown)

    def test_openssl_produces_the_same(self):
        made = cipher(key=self.key, vector=self.vector, text=self.plain)
        self.assertEqual(self.secured, self.vector + made)

    def test_without_padding_the_file_ends_earlier(self):
        made = cipher("-nopad", key=self.key, vector=self.vector, text=self.plain)
        self.assertEqual(self.secured[:0x30], self.vector + made)

    def test_openssl_decrypts_it_to_the_file_and_its_padding(self):
        plain = cipher("-d", "-nopad", key=self.key, vector=self.secured[:16],
                       text=self.secured[16:])
        self.assertEqual(self.plain + b"\x10" * 16, plain)


class Recipes(unittest.TestCase):
    """Runs all shell blocks of the page, in order, in a folder that holds the example's package."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        shutil.copytree(PACKAGE, self.folder / "digits")
        shutil.copy(PACKAGE / "digits.xml", self.folder)
        shutil.copy(ROOT / "docs/package-manifest.schema.json", self.folder)
        (self.folder / "secured").mkdir()
        script = "\n".join(block for _, language, _, block in PAGE.blocks if language == "sh")
        # The python3 that has the modules the tests need.
        path = f"{pathlib.Path(sys.executable).parent}:{os.environ['PATH']}"
        subprocess.run(["sh", "-eu", "-c", script], cwd=self.folder, check=True,
                       env={**os.environ, "PATH": path, "key": KEY})


class RecipesTest(Recipes):
    def test_a_file_is_encrypted_and_decrypted(self):
        plain = (PACKAGE / "digits.xml").read_bytes()
        secured = (self.folder / "secured/digits.xml").read_bytes()
        self.assertEqual(16 + len(plain) // 16 * 16 + 16, len(secured))
        self.assertEqual(plain, decrypted(secured))
        self.assertEqual(plain, (self.folder / "plain.xml").read_bytes())

    def test_an_archive_suits_every_form_of_extraction(self):
        with tarfile.open(self.folder / "digits.tar") as archive:
            entries = archive.getmembers()
        self.assertEqual("digits", entries[0].name)
        self.assertEqual([tarfile.DIRTYPE] + 3 * [tarfile.REGTYPE], [e.type for e in entries])
        self.assertEqual({"digits/manifest.json", "digits/digits.xml", "digits/digits.bin"},
                         {entry.name for entry in entries[1:]})
        header = (self.folder / "digits.tar").read_bytes()[:512]
        self.assertEqual(b"digits/\0", header[:8])
        self.assertEqual(b"ustar\x0000", header[257:265])
        self.assertEqual(b"\0" * 155, header[345:500])
        self.assertRegex(header[148:156], rb"\A[0-7]{6}\0 \Z")

    def test_an_archive_is_encrypted(self):
        secured = (self.folder / "secured.tar").read_bytes()
        self.assertEqual((self.folder / "digits.tar").read_bytes(), decrypted(secured))


class UnpackingTest(Recipes):
    def expect_unpacked(self, archive, *options):
        subprocess.run([os.environ["QUAVIN_TOOL"], "unpack", archive, "to", *options],
                       cwd=self.folder, check=True, stdout=subprocess.DEVNULL)
        self.assertEqual(["digits"], os.listdir(self.folder / "to"))
        for file in PACKAGE.iterdir():
            self.assertEqual(file.read_bytes(), (self.folder / "to/digits" / file.name).read_bytes())

    def test_the_archive_of_the_recipe_is_unpacked(self):
        self.expect_unpacked("digits.tar")

    def test_the_encrypted_archive_of_the_recipe_is_unpacked(self):
        key = self.folder / "the.key"
        key.write_text(KEY + "\n", encoding="ascii")
        key.chmod(0o600)
        self.expect_unpacked("secured.tar", "--key-file", str(key))


if __name__ == "__main__":
    unittest.main()
