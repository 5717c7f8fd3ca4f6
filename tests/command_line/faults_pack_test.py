"""What packing leaves behind if the disk fails, or if it is killed, at any call that touches it."""

import tarfile
import unittest

from faults import Tests, WithASigner
from support import tree


class Pack(Tests, WithASigner):
    CALL = ["pack", "net.xml", "-o", "new", "--sign", "private.pem", "--quiet"]
    CODE = "(3|12)"  # the latter for the manifest, when the package is tried

    def assert_done(self):
        self.assert_content(tree(self.dir / "new"))

    def assert_content(self, new):
        signature = new.pop("model.sig")
        self.assertEqual(set(new), {"manifest.json", "net.bin", "net.xml"})
        for name in "net.xml", "net.bin":
            self.assertEqual(new[name], (self.copy / name).read_bytes())
        self.assert_right(signature, new)

    # A copy of the process tries the network, and may be the one that is killed.
    def assert_ended(self, result):
        if result.status == 1:
            self.assertIn("the engine crashed", self.failure_text(13, result))
            self.assertEqual(tree(self.folder), self.before)
        else:
            super().assert_ended(result)


class PackArchive(Pack):
    CALL = ["pack", "net.xml", "-o", "new.tar", "--sign", "private.pem", "--quiet"]

    def assert_done(self):
        with tarfile.open(self.dir / "new.tar") as archive:
            self.assert_content({one.name.removeprefix("new/"): archive.extractfile(one).read()
                                 for one in archive if one.isfile()})


# Base classes, which contain no tests.
del Tests, WithASigner

if __name__ == "__main__":
    unittest.main()
