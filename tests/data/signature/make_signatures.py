#!/usr/bin/env python3
"""Creates the signatures in this folder with the openssl command. Keys and signatures are random, so
that they differ each time; what is right and wrong about them does not.

keys/NAME.pem       public keys; keys.tsv says why a key is refused
bundles/NAME.sig    signatures of a model, right and wrong; bundles.tsv says which
package             a plain package with its signature
secured             the same one with secured files in a folder, and its signature
without_weights.sig, with_another_file.sig
                    for "package", covering less and more

keys.tsv     NAME, the reason for refusing it (empty if it is accepted)
bundles.tsv  NAME, the trusted key, openssl's verdict on the signature alone (blank if there is not
             one signature to look at), the verdict of PyPI's model-signing, and the text of the
             refusal (empty if it is accepted)

model_signing_verdicts.py fills in the verdicts of model-signing.

With --add, makes only what the tables do not list, with new keys whose names end in a number, and looks again at the
rest: openssl's verdicts and the reasons are written anew.
"""

import base64
import json
import pathlib
import shutil
import sys
import tempfile

import bundle_cases
import ecdsa_cases
import statement_cases
from key_cases import key_cases
from signing import Key, openssl, pae, resource, resources_in, sha256, verifies, write_signature

HERE = pathlib.Path(__file__).resolve().parent
NUMBERS = HERE.parent / "numbers" / "just_above_one"
COMPONENTS = ("net.xml", "net.bin")


def empty(name):
    shutil.rmtree(HERE / name, ignore_errors=True)
    (HERE / name).mkdir()
    return HERE / name


def listed(table):
    """The columns of a table by the first one."""
    lines = [line.split("\t") for line in (HERE / table).read_text().splitlines()]
    return {line[0]: line for line in lines}


def write_table(table, lines):
    (HERE / table).write_text("".join("\t".join(line) + "\n" for line in lines))


def cases(keys):
    for group in (ecdsa_cases.signatures, bundle_cases.encodings, bundle_cases.bundles, statement_cases.statements,
                  statement_cases.names):
        yield from group(keys)


def openssl_verdict(pem, hash_name, content):
    """The verdict on the one signature in a bundle; blank if there is not one."""
    try:
        envelope = json.loads(content)["dsseEnvelope"]
        [signature] = envelope["signatures"]
        message = pae(base64.b64decode(envelope["payload"], validate=True))
        right = verifies(pem, hash_name, message,
                         base64.b64decode(signature["sig"], validate=True))
    except (ValueError, KeyError, TypeError, RecursionError):
        return ""
    return "right" if right else "wrong"


def make_bundles(keys, kept):
    """Returns the keys of new bundles, by name."""
    lines, used = [], {}
    for case in cases(keys):
        file = HERE / "bundles" / f"{case.name}.sig"
        key, verdict_of_other = keys[case.key].name, ""
        if case.name in kept:
            key, verdict_of_other = kept[case.name][1], kept[case.name][3]
        else:
            file.write_bytes(case.content)
            used[key] = keys[case.key]
        pem = used[key].pem if key in used else (HERE / "keys" / f"{key}.pem").read_bytes()
        verdict = openssl_verdict(pem, keys[case.key].hash, file.read_bytes())
        lines.append((case.name, key, verdict, verdict_of_other, case.problem))
    write_table("bundles.tsv", lines)
    return used


def make_keys(keys, kept, used):
    lines = {}
    for name, pem, problem in (*key_cases(keys), *((name, key.pem, "") for name, key in used.items())):
        if name not in kept and name not in lines:
            (HERE / "keys" / f"{name}.pem").write_bytes(pem)
        lines[name] = (name, problem)
    write_table("keys.tsv", {**kept, **lines}.values())


def make_packages(key):
    plain = empty("package")
    for name in ("manifest.json", *COMPONENTS):
        shutil.copyfile(NUMBERS / name, plain / name)
    resources = resources_in(plain)
    write_signature(plain / "model.sig", resources, key)
    write_signature(HERE / "without_weights.sig",
                    [one for one in resources if one["name"] != "net.bin"], key)
    write_signature(HERE / "with_another_file.sig",
                    [*resources, resource("notes.txt", sha256(b"notes"))], key)

    secured = empty("secured")
    (secured / "files").mkdir()
    manifest = (NUMBERS / "manifest.json").read_text().replace('"file"', '"secured_file"')
    vector = bytes(range(0xA0, 0xB0))
    for name in COMPONENTS:
        manifest = manifest.replace(f'"{name}"', f'"files\\\\{name}"')
        text = openssl("enc", "-aes-128-cbc", "-K", bytes(range(16)).hex(), "-iv", vector.hex(),
                       stdin=(NUMBERS / name).read_bytes()).stdout
        (secured / "files" / name).write_bytes(vector + text)
    (secured / "manifest.json").write_text(manifest)
    write_signature(secured / "model.sig", resources_in(secured), key)


def main():
    kept_bundles, kept_keys, ending = {}, {}, ""
    if "--add" in sys.argv:
        kept_bundles, kept_keys = listed("bundles.tsv"), listed("keys.tsv")
        ending = f"_{2 + sum(name.startswith('p256_') for name in kept_keys)}"
    else:
        empty("bundles")
        empty("keys")
    with tempfile.TemporaryDirectory() as folder:
        keys = {name: Key(name, pathlib.Path(folder), ending)
                for name in ("p256", "p384", "other", "p521", "k256")}
        used = make_bundles(keys, kept_bundles)
        make_keys(keys, kept_keys, used)
        if not kept_bundles:
            make_packages(keys["p256"])


if __name__ == "__main__":
    main()
