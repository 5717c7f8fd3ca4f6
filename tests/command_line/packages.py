"""Creates packages and secured files without the tool, using the scripts folder and openssl."""

import json
import subprocess

import networks
import model_package  # from the scripts folder, which networks.py has put on the path

# How a manifest has to declare the types that a network takes.
model_package.DATA_TYPES.update(
    {"f16": "float", "f64": "float", "i8": "int8", "i16": "int16", "i64": "int32"}
)

ABOUT = {
    "id": "the-id",
    "name": "The name",
    "author": "The author",
    "description": "What it does",
    "sdkVersion": "3.2",
    "version": 7,
}


def write_network(directory, network=None, stem="net"):
    """Writes STEM.xml and STEM.bin, and returns the path of the first."""
    network = network or networks.affine()
    directory.mkdir(parents=True, exist_ok=True)
    paths = [directory / (stem + ending) for ending in (".xml", ".bin")]
    network.write(*paths)
    return paths[0]


def write_package(directory, network=None, key_hex=None):
    """Writes a package of "net.xml" and "net.bin": plain, or secured if a key is given."""
    network = network or networks.affine()
    model_package.write_package(directory, network, "net", ABOUT, key_hex=key_hex)
    return directory


def write_private_key(path, curve="prime256v1"):
    """Writes a new private key, as people make them."""
    subprocess.run(["openssl", "ecparam", "-name", curve, "-genkey", "-noout", "-out", path], check=True)
    path.chmod(0o600)
    return path


def read_manifest(package):
    return json.loads((package / "manifest.json").read_text())


def write_manifest(package, manifest):
    (package / "manifest.json").write_text(json.dumps(manifest))


class changed_manifest:
    """Gives the engine's target in the manifest of a package, and writes it back at the end of the block."""

    def __init__(self, package):
        self._package = package

    def __enter__(self):
        self._manifest = read_manifest(self._package)
        return self._manifest["targets"]["Openvino"]

    def __exit__(self, failure, *_):
        if failure is None:
            write_manifest(self._package, self._manifest)


def openssl_encrypt(plain, key_hex, vector, padding=True):
    """The secured form of some bytes."""
    return vector + _openssl(plain, key_hex, vector, padding)


def openssl_decrypt(secured, key_hex, padding=True):
    """The plain form; with `padding`, openssl checks and removes it."""
    return _openssl(secured[16:], key_hex, secured[:16], padding, "-d")


def _openssl(data, key_hex, vector, padding, *options):
    command = ["openssl", "enc", "-aes-128-cbc", "-K", key_hex, "-iv", vector.hex(), *options]
    command += [] if padding else ["-nopad"]
    return subprocess.run(command, input=data, stdout=subprocess.PIPE, check=True).stdout
