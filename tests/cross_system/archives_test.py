"""Each system can use archives made on the other, and archives made by other programs."""

import io
import shutil
import subprocess
import tarfile
import unittest
from pathlib import Path

import exchange
import networks
import packages
from exchange import LINUX, SYSTEMS, WAYS, WINDOWS
from support import KEY_HEX, tree

DATA = Path(__file__).resolve().parents[1] / "data/tar"
LETTERS = "größe日本😀"


class Archives(exchange.ExchangeTest):
    def setUp(self):
        super().setUp()
        packages.write_network(self.dir, networks.affine())
        self.key_file()

    def test_archives_are_identical_wherever_they_are_created(self):
        for system in SYSTEMS:
            self.on(system).succeed("pack", "net.xml", "-o", f"{system}/model.tar")
        made = [(self.dir / f"{system}/model.tar").read_bytes() for system in SYSTEMS]
        self.assertEqual(*made)
        with tarfile.open(fileobj=io.BytesIO(made[0])) as archive:
            self.assertEqual(archive.getnames()[0], "model")

    def test_archives_are_unpacked_by_the_other_system(self):
        for maker, reader in WAYS:
            with self.way(maker, reader):
                for form in [], ["--encrypt", "archive", "--key-file", "key"]:
                    archive, place = f"{maker}{len(form)}.tar", f"on-{reader}{len(form)}"
                    self.on(maker).succeed("pack", "net.xml", "-o", archive, "--root", "model", *form)
                    self.on(reader).succeed("unpack", archive, place, *form[2:])
                    self.assertEqual(tree(self.dir / place), self.unpacked_elsewhere(archive, form))
                    self.on(maker).succeed("verify", f"{place}/model")

    def unpacked_elsewhere(self, archive, encrypted=False):
        """Returns the tree as Python's tarfile and openssl find it."""
        content = (self.dir / archive).read_bytes()
        if encrypted:
            content = packages.openssl_decrypt(content, KEY_HEX)
        with tarfile.open(fileobj=io.BytesIO(content)) as opened:
            return {member.name: opened.extractfile(member).read() if member.isfile() else None
                    for member in opened}

    def test_archives_of_other_programs_give_the_same_trees(self):
        for program in "gnu_default", "bsdtar_default", "git":
            with self.subTest(program):
                shutil.copy(DATA / f"accepted/{program}.tar", self.dir)
                for system in SYSTEMS:
                    self.on(system).succeed("unpack", f"{program}.tar", f"{program}/{system}")
                trees = [tree(self.dir / program / str(system)) for system in SYSTEMS]
                self.assertGreater(len(trees[0]), 3)
                self.assertEqual(*trees)

    def test_names_may_be_non_ascii(self):
        network = packages.write_network(self.dir, networks.affine(), LETTERS).name
        for maker, reader in WAYS:
            with self.way(maker, reader):
                archive, place = f"{LETTERS} {maker}.tar", f"{LETTERS} on {reader}"
                self.on(maker).succeed("pack", network, "-o", archive, "--root", LETTERS)
                self.on(reader).succeed("unpack", archive, place)
                unpacked = tree(self.dir / place)
                self.assertIn(f"{LETTERS}/{LETTERS}.bin", unpacked)
                self.assertEqual(unpacked, self.unpacked_elsewhere(archive))

    def archive(self, name, contents):
        with tarfile.open(self.dir / name, "w") as archive:
            for entry, content in contents:
                member = tarfile.TarInfo(entry)
                member.size = len(content)
                archive.addfile(member, io.BytesIO(content))

    def test_names_that_windows_cannot_have_are_refused_only_there(self):
        names = ["nul", "sub/COM1.txt", "ab:c", "what?", "dot.", "space ", "tab\tin it", "<angle>"]
        for number, name in enumerate(names):
            with self.subTest(name):
                place = f"on-linux{number}"
                self.archive("a.tar", [(name, b"x")])
                self.on(LINUX).succeed("unpack", "a.tar", place)
                self.assertEqual((self.dir / place / name).read_bytes(), b"x")
                reason = self.on(WINDOWS).refused(3, "unpack", "a.tar", "on-windows")
                self.assertIn("not possible on this system", reason)
                unpacked = tree(self.dir / "on-windows").values()
                self.assertEqual([content for content in unpacked if content is not None], [])

    def test_names_that_differ_only_in_case_are_one_file_on_windows(self):
        self.archive("a.tar", [("Name", b"first"), ("name", b"second")])
        for system in SYSTEMS:
            self.on(system).succeed("unpack", "a.tar", f"on-{system}")
        self.assertEqual(tree(self.dir / "on-linux"), {"Name": b"first", "name": b"second"})
        self.assertEqual([*tree(self.dir / "on-windows").values()], [b"second"])

    def test_bad_archives_are_refused_for_the_same_reasons(self):
        self.write("tree/good", b"content")
        subprocess.run(["tar", "-cf", "good.tar", "tree"], cwd=self.dir, check=True)
        good = (self.dir / "good.tar").read_bytes()
        self.write("changed.tar", b"?" + good[1:])
        self.write("cut.tar", good[:1100])
        for number, name in enumerate(["../x", "a/../../x", "/x", "C:/x", "a\\..\\..\\x"]):
            self.archive(f"hostile{number}.tar", [(name, b"x")])
        for name in "symbolic_link", "sparse_gnu", "huge_pax":
            shutil.copy(DATA / f"refused/{name}.tar", self.dir)
        archives = sorted(path.name for path in self.dir.glob("*.tar") if path.stem != "good")
        self.assertEqual(len(archives), 10)
        for archive in [*archives, "nowhere.tar"]:
            with self.subTest(archive), self.nothing_changes():
                result = self.assert_same_on_both("unpack", archive, "new")
                self.assertEqual((result.status, result.out), (1, ""))
                self.assertRegex(result.err, r"\Aquavin: status \d+: ")


if __name__ == "__main__":
    unittest.main()
