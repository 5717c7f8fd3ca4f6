"""The options of the engine that run, bench and verify share."""

import os
import re
import shutil
import signal
import subprocess
import time
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

    def entries(self, directory="cache"):
        return sorted((self.dir / directory).iterdir())

    def test_cached_loads_predict_the_same(self):
        (self.dir / "cache").mkdir()
        written = None
        for _ in range(2):
            self.succeed(*self.call("x=x.npy"), "--cache", "cache")
            np.testing.assert_array_equal(np.load(self.dir / "out/y.npy"), networks.affine_result(X))
            (self.dir / "out/y.npy").unlink()
            (entry,) = self.entries()
            written = written or entry.stat().st_mtime_ns
            self.assertEqual(entry.stat().st_mtime_ns, written)
        self.bench("--cache", "cache")
        self.succeed("verify", "package", "--cache", "cache")
        self.assertEqual(entry.stat().st_mtime_ns, written)

    def test_a_missing_cache_is_a_note_and_not_a_failure(self):
        result = self.quavin(*self.call("x=x.npy"), "--cache", "nowhere")
        self.assertEqual(result.status, 0)
        self.assertIn("with the cache \"nowhere\": ", result.err)
        np.testing.assert_array_equal(np.load(self.dir / "out/y.npy"), networks.affine_result(X))

    @process.adapter_only(process.OTHER_RUNTIME)
    def test_processes_that_load_at_once_share_an_entry(self):
        (self.dir / "cache").mkdir()
        call = process.command(process.TOOL, "verify", "package", "--cache", "cache")
        running = [
            subprocess.Popen(call, cwd=self.dir, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
            for _ in range(4)
        ]
        for each in running:
            _, err = each.communicate(timeout=process.PATIENCE)
            self.assertEqual((each.returncode, err), (0, b""))
        (entry,) = self.entries()
        written = entry.stat().st_mtime_ns
        self.succeed("verify", "package", "--cache", "cache")
        self.assertEqual(entry.stat().st_mtime_ns, written)

    @process.posix_only("it has no signals")
    def test_a_killed_load_leaves_a_cache_that_works(self):
        (self.dir / "cache").mkdir()
        call = process.command(process.TOOL, "verify", "package", "--cache", "cache")
        begin = time.monotonic()
        self.succeed("verify", "package", "--cache", "cache")
        whole = time.monotonic() - begin
        for step in range(12):
            for entry in self.entries():
                entry.unlink()
            running = subprocess.Popen(
                call, cwd=self.dir, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
                start_new_session=True)
            time.sleep(whole * step / 12)
            os.killpg(running.pid, signal.SIGKILL)
            running.wait()
            self.assertEqual(self.quavin("verify", "package", "--cache", "cache").err, "")
        (entry,) = self.entries()
        self.assertTrue(entry.name.endswith(".quavin-network"), entry.name)

    @process.posix_only("secured networks are not cached there")
    @unittest.skipUnless(shutil.which("strace"), "strace is not installed")
    @unittest.skipIf(process.EMULATOR or process.SANITIZED, "needs a plain program of this system")
    def test_nothing_plain_of_a_secured_package_reaches_the_disk(self):
        packages.write_package(self.dir / "package", key_hex=KEY_HEX)
        self.key_file()
        (self.dir / "cache").mkdir()
        traced = ["strace", "-f", "-qq", "-o", "trace", "-e",
                  "trace=openat,open,creat,mkdirat,mkdir,memfd_create,linkat,rename,renameat,renameat2"]
        call = [process.TOOL, "verify", "package", "--cache", "cache", "--key-file", "key"]
        done = subprocess.run([*traced, *call], cwd=self.dir, capture_output=True, check=False)
        if b"ptrace" in done.stderr:
            self.skipTest("processes cannot be traced here")
        self.assertEqual(done.returncode, 0, done.stderr)
        trace = (self.dir / "trace").read_text()
        self.assertIn("memfd_create(", trace)  # the engine's export
        opened = re.findall(r"open(?:at)?\((?:AT_FDCWD|\d+), \"([^\"]*)\", ([A-Z_|]+)", trace)
        written = {path for path, flags in opened
                   if re.search("O_WRONLY|O_RDWR|O_CREAT|O_TMPFILE", flags)}
        allowed = re.compile(r"/dev/|/proc/self/fd/|\.quavin-|cache$|\.$")
        self.assertEqual([path for path in written if not allowed.search(path)], [])
        (entry,) = self.entries()
        stored = entry.read_bytes()
        topology = packages.write_network(self.dir / "plain")
        for plain in topology.read_bytes(), topology.with_suffix(".bin").read_bytes():
            pieces = [plain[start:start + 16] for start in range(0, len(plain) - 15, 16)]
            self.assertTrue(pieces)
            self.assertEqual([piece for piece in pieces if piece in stored], [])


if __name__ == "__main__":
    unittest.main()
