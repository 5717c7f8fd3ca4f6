"""A call of each command, and a directory in which the calls work."""

import shutil
import subprocess

import packages
from support import KEY_HEX, CommandLineTest

# Each with the fewest arguments that make sense.
COMMANDS = {
    "pack": ["net.xml", "-o", "new"],
    "inspect": ["package"],
    "verify": ["package"],
    "sign": ["package", "--private-key", "private.pem"],
    "run": ["package", "-i", "x=x.npy", "-o", "results"],
    "bench": ["package"],
    "unpack": ["a.tar", "new"],
    "encrypt": ["plain", "new", "--key-file", "key"],
    "decrypt": ["secured", "new", "--key-file", "key"],
    "keygen": ["new"],
    "doctor": [],
}
REPORTING = ["pack", "inspect", "verify", "run", "bench", "unpack", "doctor"]


class WithAPackage(CommandLineTest):
    """A directory in which the arguments of COMMANDS work."""

    def setUp(self):
        super().setUp()
        packages.write_network(self.dir, packages.networks.affine())
        packages.write_package(self.dir / "package")
        packages.networks.np.save(self.dir / "x.npy", packages.networks.OFFSETS)
        subprocess.run(["tar", "-cf", "a.tar", "package"], cwd=self.dir, check=True)
        self.key_file()
        packages.write_private_key(self.dir / "private.pem")
        self.write("plain", "some text")
        self.write("secured", packages.openssl_encrypt(b"some text", KEY_HEX, bytes(range(16))))

    def call(self, command, *options):
        quick = ["--seconds", "0.01"] if command == "bench" else []
        return [command, *COMMANDS[command], *quick, *options]

    def remove_results(self):
        for name in "new", "results", "package/model.sig":
            path = self.dir / name
            shutil.rmtree(path) if path.is_dir() else path.unlink(missing_ok=True)
