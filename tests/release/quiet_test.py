"""No command, and no host, uses the network or writes where it was not told to, according to strace.

The system's folder for temporary files counts as told: "doctor", and "pack" and "verify" when they try a network, work there.
"""

import pathlib
import re
import shutil
import tempfile
import unittest

import artefacts
from artefacts import WORK, run

CALL = re.compile(r"^\d+ +(\w+)\((.*)\) += (?!-1)(?:\d+<(.*)>)?", re.MULTILINE)
PATH = re.compile(r'(?:(?:AT_FDCWD|\d+)<([^>]*)>, )?"((?:[^"\\]|\\.)*)"')
NETWORK = {"socket", "connect", "bind", "listen", "sendto", "sendmsg", "sendmmsg", "accept", "accept4"}
CHANGING = {"creat", "mkdir", "mkdirat", "rename", "renameat", "renameat2", "link", "linkat", "symlink", "symlinkat",
            "unlink", "unlinkat", "rmdir", "truncate", "chmod", "fchmodat", "chown", "lchown", "fchownat", "mknod", "mknodat",
            "utime", "utimes", "utimensat", "setxattr", "lsetxattr"}
DEVICES = {"/dev/null", "/dev/tty"}
IN_MEMORY = "/memfd:"


def observed(command, folder, **variables):
    """What a command did: calls of the network, and the files that it changed."""
    log = WORK / "strace.log"
    run(["strace", "-f", "-y", "-s", "4096", "-o", log, "-e", "trace=%network,%file", *command], cwd=folder,
        env=artefacts.environment(TMPDIR=str(folder / "tmp"), **variables))
    network, changed = [], set()
    for name, arguments, opened in CALL.findall(log.read_text(encoding="utf-8", errors="replace")):
        if name in NETWORK:
            network.append(f"{name}({arguments})")
        if name in ("open", "openat") and re.search(r"\bO_(WRONLY|RDWR|CREAT|TRUNC)\b", arguments):
            changed.add(opened)
        elif name in CHANGING:
            changed.update(str(pathlib.Path(base or folder, path)) for base, path in PATH.findall(arguments))
    return network, {path for path in changed if path not in DEVICES and not path.startswith(IN_MEMORY)}


class QuietTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.native = artefacts.native()
        if not cls.native:
            raise unittest.SkipTest("strace needs programs for this system")
        (cls.artefact,) = cls.native

    def setUp(self):
        temporary = tempfile.TemporaryDirectory(dir=WORK)
        self.addCleanup(temporary.cleanup)
        self.folder = pathlib.Path(temporary.name)
        (self.folder / "tmp").mkdir()
        self.commands = set()
        for name in ("digits.xml", "digits.bin"):
            shutil.copy(self.artefact.examples / "digits/package" / name, self.folder)
        artefacts.digit_as_npy(self.artefact, self.folder / "digit.npy")

    def check(self, command, changes=True):
        network, changed = observed(command, self.folder)
        self.assertEqual(network, [], command)
        self.assertEqual({path for path in changed if not pathlib.Path(path).is_relative_to(self.folder)}, set(), command)
        if changes:
            self.assertNotEqual(changed, set(), command)

    def quavin(self, *arguments, changes=True):
        self.commands.update(word for word in arguments[:1] if word.isalpha() and word != "help")
        self.check([self.artefact.tool, *arguments], changes)

    def test_every_command_keeps_to_what_it_is_told(self):
        run(["openssl", "ecparam", "-name", "prime256v1", "-genkey", "-noout", "-out", self.folder / "sign.pem"])
        (self.folder / "sign.pem").chmod(0o600)
        run(["openssl", "ec", "-in", self.folder / "sign.pem", "-pubout", "-out", self.folder / "public.pem"])
        self.quavin("--version", changes=False)
        self.quavin("help", "pack", changes=False)
        self.quavin("doctor")
        self.quavin("keygen", "key")
        self.quavin("pack", "digits.xml", "-o", "digits.tar", "--encrypt", "components", "--key-file", "key")
        self.quavin("inspect", "digits.tar", changes=False)
        self.quavin("unpack", "digits.tar", "packages")
        self.quavin("sign", "packages/digits", "--private-key", "sign.pem")
        self.quavin("verify", "packages/digits", "--key-file", "key", "--public-key", "public.pem", changes=False)
        self.quavin("run", "packages/digits", "--key-file", "key", "--input", "image=digit.npy", "--output", "results",
                    "--cache", "cache")
        self.quavin("bench", "packages/digits", "--iterations", "5", "--key-file", "key", changes=False)
        self.quavin("encrypt", "digits.bin", "digits.enc", "--key-file", "key")
        self.quavin("decrypt", "digits.enc", "digits.dec", "--key-file", "key")
        page = (self.artefact.folder / "share/man/man1/quavin.1").read_text(encoding="utf-8")
        commands = set(re.findall(r'\.SS "quavin (\w+)', page)) - {"help"}
        self.assertEqual(commands, self.commands)

    def test_a_host_keeps_to_what_it_is_told(self):
        host = self.folder / "host"
        source = self.artefact.examples / "first_prediction/main.cpp"
        run(["g++", "-std=c++17", "-o", host, source, *self.artefact.flags])
        self.check([host, self.artefact.examples / "digits/package"], changes=False)

    def test_the_check_sees_connections_and_files_elsewhere(self):
        network, _ = observed(["bash", "-c", "exec 3<>/dev/udp/127.0.0.1/9"], self.folder)
        self.assertTrue(any("AF_INET" in call for call in network))
        _, changed = observed(["bash", "-c", "echo > ../elsewhere; mkdir tmp/deeper; rm ../elsewhere"], self.folder)
        self.assertEqual(changed, {f"{self.folder.parent}/elsewhere", f"{self.folder}/../elsewhere",
                                   f"{self.folder}/tmp/deeper"})


if __name__ == "__main__":
    unittest.main()
