"""Keys, signatures and bundles, by the openssl command and the standard library."""

import base64
import hashlib
import json
import pathlib
import subprocess
import tempfile

PAYLOAD_TYPE = "application/vnd.in-toto+json"
MEDIA_TYPE = "application/vnd.dev.sigstore.bundle.v0.3+json"
ORDERS = {
    "p256": 0xFFFFFFFF00000000FFFFFFFFFFFFFFFFBCE6FAADA7179E84F3B9CAC2FC632551,
    "p384": int("F" * 48 + "C7634D81F4372DDF581A0DB248B0A77AECEC196ACCC52973", 16),
}
CURVES = {"p256": "prime256v1", "p384": "secp384r1", "p521": "secp521r1", "k256": "secp256k1",
          "other": "prime256v1"}
HASHES = {"p384": "sha384", "p521": "sha512"}  # otherwise SHA-256


def openssl(*arguments, stdin=b"", check=True):
    return subprocess.run(["openssl", *map(str, arguments)], input=stdin, check=check,
                          stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)


class Key:
    """A new key pair. The private key is never kept."""

    def __init__(self, name, folder, ending=""):
        self.name = name + ending
        self.hash = HASHES.get(name, "sha256")
        self.private = folder / f"{name}.key"
        self.public = folder / f"{name}.pem"
        openssl("ecparam", "-name", CURVES[name], "-genkey", "-noout", "-out", self.private)
        self.pem = openssl("ec", "-in", self.private, "-pubout").stdout
        self.public.write_bytes(self.pem)

    def sign(self, message):
        return openssl("dgst", f"-{self.hash}", "-sign", self.private, stdin=message).stdout

    def hint(self):
        return hashlib.sha256(self.pem).hexdigest()


def verifies(pem, hash_name, message, signature):
    """Whether both commands of openssl find a signature right. (Where it is too long, openssl dgst looks at no more of
    it than the longest signature has.)"""
    with tempfile.TemporaryDirectory() as folder:
        key, digest, file = (pathlib.Path(folder, name) for name in ("key", "digest", "signature"))
        key.write_bytes(pem)
        digest.write_bytes(hashlib.new(hash_name, message).digest())
        file.write_bytes(signature)
        by_digest = openssl("pkeyutl", "-verify", "-pubin", "-inkey", key, "-in", digest, "-sigfile", file, check=False)
        by_message = openssl("dgst", f"-{hash_name}", "-verify", key, "-signature", file, stdin=message, check=False)
        return by_digest.returncode == 0 and by_message.returncode == 0


def pae(payload, payload_type=PAYLOAD_TYPE):
    """What is signed: DSSE's encoding of a payload and its type."""
    return b"DSSEv1 %d %s %d %s" % (len(payload_type), payload_type.encode(), len(payload), payload)


def element(tag, content):
    """An element of DER, for contents of less than 128 bytes."""
    return bytes([tag, len(content)]) + content


def integer(number):
    return element(2, number.to_bytes(number.bit_length() // 8 + 1, "big"))


def pair(r, s):
    return element(0x30, integer(r) + integer(s))


def numbers(signature):
    """r and s."""
    size = signature[3]
    return (int.from_bytes(signature[4:4 + size], "big"),
            int.from_bytes(signature[6 + size:], "big"))


def sha256(content):
    return hashlib.sha256(content).hexdigest()


def resource(name, digest, algorithm="sha256"):
    return {"name": name, "algorithm": algorithm, "digest": digest}


def statement(resources, ignored=("model.sig",)):
    """The statement about resources, as a value."""
    root = hashlib.sha256(b"".join(bytes.fromhex(one["digest"]) for one in resources)).hexdigest()
    return {
        "_type": "https://in-toto.io/Statement/v1",
        "subject": [{"name": "package", "digest": {"sha256": root}}],
        "predicateType": "https://model_signing/signature/v1.0",
        "predicate": {
            "resources": resources,
            "serialization": {"allow_symlinks": False, "hash_type": "sha256", "method": "files",
                              "ignore_paths": list(ignored)},
        },
    }


def bundle(payload, signature, hint):
    """A bundle, as a value."""
    return {
        "mediaType": MEDIA_TYPE,
        "verificationMaterial": {"publicKey": {"hint": hint}, "tlogEntries": []},
        "dsseEnvelope": {
            "payload": base64.b64encode(payload).decode(),
            "payloadType": PAYLOAD_TYPE,
            "signatures": [{"sig": base64.b64encode(signature).decode(), "keyid": ""}],
        },
    }


def encoded(value):
    return json.dumps(value).encode()


def resources_in(folder):
    """The resources of a package."""
    return [resource(path.relative_to(folder).as_posix(), sha256(path.read_bytes()))
            for path in sorted(folder.rglob("*")) if path.is_file()]


def write_signature(file, resources, key, **how):
    """Signs resources."""
    payload = encoded(statement(resources, **how))
    file.write_bytes(encoded(bundle(payload, key.sign(pae(payload)), key.hint())))
