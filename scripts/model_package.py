"""Writes model packages: a folder with manifest.json, a network description and its weights.

A secured package holds the two files encrypted, each as a random 16-byte initialisation vector
followed by AES-128-CBC ciphertext with PKCS#7 padding. To make one by hand, with the key and the
vector as 32 hexadecimal digits each:

    (printf "$IV" | xxd -r -p; openssl enc -aes-128-cbc -K "$KEY" -iv "$IV" -in plain) > secured

The key is on the command line, where other users of the machine can see it while the command runs.
That is good enough for the example and benchmark packages made here, and for nothing else.

Needs Python 3.10 and the `openssl` command; NumPy comes with the network.
"""

import json
import os
import re
import subprocess
import tempfile
from pathlib import Path

DATA_TYPES = {"f32": "float", "i64": "int64", "i32": "int32", "u8": "uint8"}
IV_SIZE = 16


def write_package(folder, network, stem, about, descriptions=None, key_hex=None):
    """Writes `network` (an IrNetwork) as the package `folder`: plain, or secured if a key is given.

    `stem` is the base name of the files, `about` holds the manifest's members about the model, and
    `descriptions` maps names of inputs and outputs to texts.
    """
    folder = Path(folder)
    folder.mkdir(parents=True, exist_ok=True)
    files = (stem + ".xml", stem + ".bin")
    if key_hex is None:
        network.write(folder / files[0], folder / files[1])
        components = [{"name": "file", "path": file} for file in files]
    else:
        with tempfile.TemporaryDirectory() as plain:
            network.write(Path(plain) / files[0], Path(plain) / files[1])
            for file in files:
                encrypt_file(Path(plain) / file, folder / file, key_hex)
        components = [{"name": "secured_file", "path": f, "encryption": "aes"} for f in files]

    target = {
        "components": components,
        "inputs": [_feature(port, descriptions, required=True) for port in network.inputs],
        "outputs": [_feature(port, descriptions) for port in network.outputs],
    }
    text = json.dumps({**about, "targets": {"Openvino": target}}, indent=2)
    text = re.sub(r"\[([\d\s,]+)\]", lambda m: "[" + " ".join(m[1].split()) + "]", text)  # shapes
    (folder / "manifest.json").write_text(text + "\n", encoding="utf-8", newline="\n")


def _feature(port, descriptions, **members):
    description = (descriptions or {}).get(port.name)
    return {
        "name": port.name,
        **({"description": description} if description else {}),
        **members,
        "featureType": "tensor",
        "tensor": {"shape": list(port.shape), "dataType": DATA_TYPES[port.element_type]},
    }


def encrypt_file(source, target, key_hex):
    """Writes the secured form of `source`. A target that already decrypts to it is left alone, so that
    random vectors do not change a package whose content has not changed."""
    if target.exists() and _decrypts_to(target, source, key_hex):
        return
    iv = os.urandom(IV_SIZE)
    with open(target, "wb") as file:
        file.write(iv)
        file.flush()
        command = _openssl(key_hex, iv) + ["-in", str(source)]
        subprocess.run(command, stdout=file, check=True)


def _decrypts_to(secured, plain, key_hex):
    with open(secured, "rb") as file:
        iv = file.read(IV_SIZE)
        if len(iv) != IV_SIZE:
            return False
        command = _openssl(key_hex, iv) + ["-d"]
        result = subprocess.run(command, input=file.read(), capture_output=True, check=False)
    return result.returncode == 0 and result.stdout == plain.read_bytes()


def _openssl(key_hex, iv):
    return ["openssl", "enc", "-aes-128-cbc", "-K", key_hex, "-iv", iv.hex()]
