"""What loading leaves in the cache of compiled networks if the disk fails, or if it is killed, at any call on it."""

import shutil
import unittest

import numpy as np

import networks
from faults import REMOVING, FaultSweep, sample
from support import tree


class Cache(FaultSweep):
    """Whatever happens to the cache of compiled networks, a load that is not killed predicts."""

    CALL = ["run", "package", "-i", "x=x.npy", "-o", "results", "--cache", "cache"]

    def prepare(self):
        (self.dir / "cache").mkdir()

    def faulty_folder(self):
        return self.dir / "cache"

    def assert_succeeded(self, result):
        self.assertEqual(result.status, 0, result.err)
        self.assertRegex(result.err, r"\A(quavin: note: .+\n)*\Z")
        expected = networks.affine_result(networks.OFFSETS)
        np.testing.assert_array_equal(np.load(self.dir / "results/y.npy"), expected)
        (self.dir / "results/y.npy").unlink()

    # An entry that is not whole would be noted by the load that finds it.
    def assert_done(self):
        [name] = self.finished()
        self.assertTrue(name.endswith(".quavin-network"))
        result = self.quavin(*self.CALL)
        self.assertEqual(result.err, "")
        self.assert_succeeded(result)

    def assert_works_after(self):
        self.assert_succeeded(self.quavin(*self.CALL))
        self.assert_done()

    def test_a_failing_call_costs_the_cache_but_not_the_load(self):
        calls = self.calls_without_a_fault()
        for kind in "fail", "full":
            for at in sample(calls):
                with self.subTest(kind=kind, at=at, call=calls[at - 1]):
                    result = self.with_fault(kind, at)
                    self.assert_succeeded(result)
                    self.assert_whole()
                    if kind == "full" or calls[at - 1][0] not in REMOVING:
                        self.assertEqual(tree(self.folder), self.finished())

    def test_a_kill_leaves_nothing_half_done_and_nothing_in_the_way(self):
        self.sweep_kills()

    def test_writes_that_take_only_a_part_are_continued(self):
        self.write_by_halves()

    def test_no_call_that_changes_anything_is_missed(self):
        self.find_all_changes()


class DamagedCache(Cache):
    """The same where there is an entry to replace."""

    def prepare(self):
        super().prepare()
        self.succeed(*self.CALL)
        shutil.rmtree(self.dir / "results")
        [entry] = (self.dir / "cache").iterdir()
        content = bytearray(entry.read_bytes())
        content[-1] ^= 1
        entry.write_bytes(content)


# Base classes, which contain no tests.
del FaultSweep

if __name__ == "__main__":
    unittest.main()
