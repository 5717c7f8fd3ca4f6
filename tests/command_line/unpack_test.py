"""quavin unpack: archives from other tools, encrypted ones, and hostile ones made with Python's tarfile."""

import io
import subprocess
import tarfile
import unittest

import packages
import process
from support import KEY_HEX, OTHER_KEY_HEX, CommandLineTest, tree

CONTENT = {
    "manifest.json": b"{}",
    "empty": b"",
    "one block": b"x" * 512,
    "more": bytes(range(256)) * 9,
    "größe 日本": b"letters",
    "sub/deeper/file": b"below",
    "a" * 60 + "/" + "b" * 70: b"a name too long for the header",
}
VECTOR = bytes(range(16, 32))


class UnpackCase(CommandLineTest):
    def setUp(self):
        super().setUp()
        for name, content in CONTENT.items():
            self.write(f"source/model/{name}", content)
        self.expected = tree(self.dir / "source")

    def archive(self, tool="tar", *options, name="a.tar", what="model"):
        command = [tool, *options, "-cf", name, "-C", "source", what]
        subprocess.run(command, cwd=self.dir, env=process.clean_environment(), check=True)
        return self.dir / name


class Unpack(UnpackCase):
    def test_archives_of_other_tools_are_unpacked(self):
        tools = {
            "tar": ["gnu", "posix", "ustar"],
            "bsdtar": ["pax", "ustar", "gnutar"],
        }
        for tool, formats in tools.items():
            for form in formats:
                with self.subTest(tool=tool, form=form):
                    self.archive(tool, "--format=" + form)
                    self.succeed("unpack", "a.tar", f"{tool} {form}")
                    self.assertEqual(tree(self.dir / f"{tool} {form}"), self.expected)

    def test_archives_of_python_are_unpacked(self):
        for form in tarfile.USTAR_FORMAT, tarfile.GNU_FORMAT, tarfile.PAX_FORMAT:
            with self.subTest(form):
                with tarfile.open(self.dir / "a.tar", "w", format=form) as archive:
                    archive.add(self.dir / "source/model", "model")
                self.succeed("unpack", "a.tar", f"form {form}")
                self.assertEqual(tree(self.dir / f"form {form}"), self.expected)

    def test_archives_of_the_current_directory_are_unpacked(self):
        self.archive(what=".")
        self.succeed("unpack", "a.tar", "new")
        self.assertEqual(tree(self.dir / "new"), self.expected)

    def test_the_directory_of_the_archive_is_reported(self):
        self.archive()
        report = self.succeed_json("unpack", "a.tar", "new")
        self.assertEqual(report, {"directory": "new", "root": process.shown_path("new/model")})
        out = self.succeed("unpack", "a.tar", "again")
        self.assertEqual(out, f"Unpacked a.tar to {process.shown_path('again/model')}\n")

    def test_the_destination_is_reported_if_the_archive_has_no_directory(self):
        self.archive(what="model/empty")
        report = self.succeed_json("unpack", "a.tar", "new")
        self.assertEqual(report, {"directory": "new", "root": "new"})
        self.assertEqual(tree(self.dir / "new"), {"model": None, "model/empty": b""})

    def test_missing_parent_directories_are_created(self):
        self.archive()
        self.succeed("unpack", "a.tar", "one/two/new/")
        self.assertEqual(tree(self.dir / "one/two/new"), self.expected)

    def test_other_files_are_kept_and_older_ones_replaced(self):
        self.archive()
        self.write("there/model/other", "precious")
        self.write("there/model/manifest.json", "older and longer")
        self.succeed("unpack", "a.tar", "there")
        expected = {**self.expected, "model/other": b"precious"}
        self.assertEqual(tree(self.dir / "there"), expected)


class Encrypted(UnpackCase):
    def setUp(self):
        super().setUp()
        self.plain = self.archive(name="plain.tar").read_bytes()
        self.write("a.tar", packages.openssl_encrypt(self.plain, KEY_HEX, VECTOR))
        self.key_file()

    def test_encrypted_archive_is_unpacked_with_its_key(self):
        self.succeed("unpack", "a.tar", "one", "--key-file", "key")
        self.succeed("unpack", "a.tar", "two", "--key-env", "THE_KEY", THE_KEY=KEY_HEX)
        for name in "one", "two":
            self.assertEqual(tree(self.dir / name), self.expected)

    def test_encrypted_archive_is_refused_with_a_wrong_key_or_none(self):
        self.key_file(OTHER_KEY_HEX)
        for options, advice in ((["--key-file", "key"], "key may be wrong"), ([], "--key-file")):
            with self.subTest(options), self.nothing_changes():
                self.assertIn(advice, self.refused(21, "unpack", "a.tar", "new", *options))

    def test_a_leading_zero_byte_after_decryption_is_not_an_empty_archive(self):
        made_with_another_key = b"\x00" + b"x" * 1023
        self.write("a.tar", packages.openssl_encrypt(made_with_another_key, KEY_HEX, VECTOR))
        with self.nothing_changes():
            self.refused(21, "unpack", "a.tar", "new", "--key-file", "key")

    def test_a_leading_zero_byte_without_a_key_is_not_an_empty_archive(self):
        vector = b"\x00" + VECTOR[1:]
        self.write("a.tar", packages.openssl_encrypt(self.plain, KEY_HEX, vector))
        with self.nothing_changes():
            self.refused(21, "unpack", "a.tar", "new")

    def test_encrypted_archive_must_consist_of_whole_blocks(self):
        content = (self.dir / "a.tar").read_bytes()
        for broken in content[:-1], content[:15], b"":
            with self.subTest(len(broken)):
                self.write("a.tar", broken)
                reason = self.refused(7, "unpack", "a.tar", "new", "--key-file", "key")
                self.assertIn("multiple of 16", reason)

    def test_plain_archive_is_refused_with_a_key(self):
        self.refused(21, "unpack", "plain.tar", "new", "--key-file", "key")


class Refusals(UnpackCase):
    def refused_without_traces(self, code, *arguments):
        with self.nothing_changes():
            return self.refused(code, "unpack", *arguments)

    def test_a_destination_that_is_a_file_is_refused(self):
        self.archive()
        self.write("file", "precious")
        for name in "file", "file/below":
            with self.subTest(name):
                self.assertIn("file", self.refused_without_traces(3, "a.tar", name))

    def test_an_archive_that_is_missing_or_not_a_file_is_refused(self):
        for name in "nowhere", "source":
            with self.subTest(name):
                self.assertIn(name, self.refused_without_traces(3, name, "new"))

    def test_a_damaged_archive_is_refused(self):
        content = bytearray(self.archive().read_bytes())
        content[0] ^= 1
        (self.dir / "a.tar").write_bytes(content)
        self.refused_without_traces(21, "a.tar", "new")

    def test_a_truncated_archive_is_refused(self):
        content = self.archive().read_bytes()
        for length in 0, 100, 512, 1024, 2048 + 100:
            with self.subTest(length):
                self.write("a.tar", content[:length])
                self.refused_without_traces(7, "a.tar", "new")

    def test_a_file_in_place_of_a_directory_is_refused(self):
        self.archive()
        self.write("there/model", "a file where the directory goes")
        self.assertIn("model", self.refused_without_traces(3, "a.tar", "there"))


class Hostile(UnpackCase):
    """Each archive begins with a good file, which must not be unpacked either."""

    def unpack_refused(self, code, member, content=b"evil"):
        with tarfile.open(self.dir / "a.tar", "w", format=tarfile.GNU_FORMAT) as archive:
            good = tarfile.TarInfo("good")
            archive.addfile(good, io.BytesIO())
            if member.type == tarfile.REGTYPE:
                member.size = len(content)
            archive.addfile(member, io.BytesIO(content))
        (self.dir / "new").mkdir(exist_ok=True)
        with self.nothing_changes():
            return self.refused(code, "unpack", "a.tar", "new")

    def test_names_that_lead_outside_are_refused(self):
        long = "a/" * 80
        for name in "../x", "model/../../x", "..", "/tmp/quavin-x", "..\\x", "C:\\x", long + "../x":
            for kind in tarfile.REGTYPE, tarfile.DIRTYPE:
                with self.subTest(name=name, kind=kind):
                    member = tarfile.TarInfo(name)
                    member.type = kind
                    self.assertIn(name[:20], self.unpack_refused(7, member))

    def test_links_and_devices_are_refused(self):
        kinds = tarfile.SYMTYPE, tarfile.LNKTYPE, tarfile.FIFOTYPE, tarfile.CHRTYPE, tarfile.BLKTYPE
        for kind in kinds:
            with self.subTest(kind):
                member = tarfile.TarInfo("entry")
                member.type, member.linkname = kind, "../source/model/empty"
                self.assertIn("entry", self.unpack_refused(22, member))

    def test_control_characters_in_names_do_not_reach_the_terminal(self):
        member = tarfile.TarInfo("../\x1b[31m\x9b31m\n")
        self.assertNotRegex(self.unpack_refused(7, member), "[\x00-\x1f\x7f-\x9f]")

    @process.posix_only(process.NO_LINKS)
    def test_existing_links_are_not_followed(self):
        self.write("outside/model/manifest.json", "precious")
        self.archive()
        for link, target in ("model", "../outside/model"), ("model/manifest.json", "../../outside"):
            with self.subTest(link):
                path = self.dir / "new" / link
                path.parent.mkdir(parents=True, exist_ok=True)
                path.symlink_to(target)
                self.assertIn("symbolic link", self.refused(3, "unpack", "a.tar", "new"))
                outside = {"model": None, "model/manifest.json": b"precious"}
                self.assertEqual(tree(self.dir / "outside"), outside)
                path.unlink()


if __name__ == "__main__":
    unittest.main()
