"""The options of the engine that run, bench and verify share."""

import unittest

import numpy as np

import networks
import process
from run_inputs_test import X, InputsCase


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


if __name__ == "__main__":
    unittest.main()
