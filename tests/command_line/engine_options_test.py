"""The options of the engine that run, bench and verify share."""

import unittest
from pathlib import Path

import numpy as np

import networks
import packages
import process
from run_inputs_test import X, InputsCase
from support import KEY_HEX

# A regular file that can be read but not mapped.
UNMAPPABLE = Path("/sys/devices/system/cpu/online")


class EngineOptions(InputsCase):
    def setUp(self):
        super().setUp()
        np.save(self.dir / "x.npy", X)

    def bench(self, *options):
        return self.succeed_json("bench", "package", "--iterations", "1", *options)

    @process.adapter_only(process.OTHER_RUNTIME)
    def test_threads_reach_the_runtime(self):
        self.assertEqual(self.bench("--threads", "1")["threads"], 1)
        self.assertEqual(self.bench("--threads", "0")["threads"], self.bench()["threads"])

    @process.adapter_only(process.OTHER_RUNTIME)
    def test_precision_is_the_one_the_processor_has(self):
        self.assertEqual(self.bench("--precision", "single")["precision"], "f32")
        capabilities = self.succeed_json("doctor")["capabilities"]
        fastest = "bf16" if "BF16" in capabilities else "f16" if "FP16" in capabilities else "f32"
        self.assertEqual(self.bench("--precision", "fastest")["precision"], fastest)

    @process.adapter_only(process.OTHER_RUNTIME)
    def test_throughput_never_has_fewer_streams(self):
        usual = self.bench("--hint", "latency")["streams"]
        self.assertGreaterEqual(self.bench("--hint", "throughput")["streams"], usual)

    def test_run_and_verify_take_them_too(self):
        options = ["--threads", "1", "--precision", "single", "--hint", "throughput"]
        self.succeed("verify", "package", *options)
        self.succeed(*self.call("x=x.npy"), *options)
        np.testing.assert_array_equal(np.load(self.dir / "out/y.npy"), networks.affine_result(X))

    def test_values_without_a_meaning_are_a_misuse(self):
        for option, value in (
            ("--threads", "-1"),
            ("--threads", "1025"),
            ("--threads", "many"),
            ("--threads", ""),
            ("--precision", "double"),
            ("--precision", "Single"),
            ("--hint", "speed"),
        ):
            with self.subTest(option=option, value=value):
                self.assertIn(option, self.misused("verify", "package", f"{option}={value}"))
                self.assertIn(option, self.misused("bench", "package", f"{option}={value}"))

    def test_commands_that_load_nothing_do_not_have_them(self):
        self.misused("inspect", "package", "--threads", "1")
        self.misused("inspect", "package", "--map-weights")

    def test_mapped_weights_predict_the_same(self):
        self.succeed("verify", "package", "--map-weights")
        self.succeed(*self.call("x=x.npy"), "--map-weights")
        np.testing.assert_array_equal(np.load(self.dir / "out/y.npy"), networks.affine_result(X))

    @process.posix_only("it has no such files")
    @unittest.skipUnless(UNMAPPABLE.is_file(), f"there is no {UNMAPPABLE}")
    def test_only_mapping_needs_weights_that_can_be_mapped(self):
        packages.write_package(self.dir / "package", networks.arithmetic())  # without constants
        (self.dir / "package/net.bin").unlink()
        (self.dir / "package/net.bin").symlink_to(UNMAPPABLE)
        for command in "verify", "bench":
            with self.subTest(command):
                call = [command, "package", *(["--iterations", "1"] if command == "bench" else [])]
                self.succeed(*call)
                result = self.quavin(*call, "--map-weights")
                self.assertEqual(result.status, 1)
                self.assertIn("File error!", result.out + result.err)
                self.assertIn("net.bin\": it cannot be mapped into memory: ", result.err)

    def test_secured_weights_are_not_mapped(self):
        packages.write_package(self.dir / "package", key_hex=KEY_HEX)
        self.key_file()
        key = ["--key-file", "key"]
        self.succeed("verify", "package", "--map-weights", *key)
        self.succeed(*self.call("x=x.npy"), "--map-weights", *key)
        np.testing.assert_array_equal(np.load(self.dir / "out/y.npy"), networks.affine_result(X))

    def test_archives_may_be_mapped_too(self):
        self.succeed("pack", "package/net.xml", "-o", "package.tar")
        self.succeed("run", "package.tar", "-i", "x=x.npy", "-o", "out", "--map-weights")
        np.testing.assert_array_equal(np.load(self.dir / "out/y.npy"), networks.affine_result(X))


if __name__ == "__main__":
    unittest.main()
