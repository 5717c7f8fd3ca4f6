"""What commands leave behind if the disk fails, or if they are killed, at any call that touches it."""

import shutil
import subprocess
import unittest

import packages
from faults import UNFINISHED, FaultSweep, Tests, WithASigner
from support import KEY_HEX, tree

CONTENT = bytes(range(251)) * 40


class Encrypt(Tests, FaultSweep):
    CALL = ["encrypt", "plain", "new", "--key-file", "key", "--quiet"]

    def prepare(self):
        self.write("plain", CONTENT)

    def assert_done(self):
        self.assertEqual(set(self.finished()) - set(self.before), {"new"})
        self.assertEqual(packages.openssl_decrypt((self.dir / "new").read_bytes(), KEY_HEX), CONTENT)


class Sign(Tests, WithASigner):
    CALL = ["sign", "package", "--private-key", "private.pem", "--quiet"]
    CODE = "(3|12)"  # the latter for the manifest

    # An empty file may be left of a process that was killed when it had just been created.
    def assert_done(self):
        files = self.files()
        self.assertEqual([name for name, content in files.items() if UNFINISHED.search(name) and content], [])
        self.assertEqual(set(self.finished()) - set(self.before), {"package/model.sig"})
        self.assert_right((self.dir / "package/model.sig").read_bytes(), files)


class Unpack(Tests, FaultSweep):
    CALL = ["unpack", "files.tar", "there", "--quiet"]
    DONE = {"there/model": None, "there/model/deep": None, "there/model/deep/file": CONTENT,
            "there/model/old": b"new"}

    def prepare(self):
        self.write("source/model/old", "new")
        self.write("source/model/deep/file", CONTENT)
        subprocess.run(["tar", "-cf", "files.tar", "-C", "source", "model"], cwd=self.dir, check=True)
        shutil.rmtree(self.dir / "source")
        self.write("there/model/old", "from before")

    def assert_done(self):
        self.assertEqual(self.finished(), {**self.before, **self.DONE})

    # What was reached before a failure stays; each file is whole.
    def assert_whole(self):
        now = self.finished()
        self.assertEqual(set(self.before) - set(now), set())
        for name, content in now.items():
            self.assertIn(content, [tree[name] for tree in (self.before, self.DONE) if name in tree], name)

    def assert_failed(self, result):
        self.failure_text(3, result)
        self.assertEqual(tree(self.folder), self.finished())

    def assert_works_after(self):
        self.succeed(*self.CALL)
        self.assert_done()


# Base classes, which contain no tests.
del Tests, WithASigner, FaultSweep

if __name__ == "__main__":
    unittest.main()
