#!/usr/bin/env python3
"""Writes the seeds of the fuzz targets: small valid inputs of every kind, and a few that were wrong once.

seeds/TARGET/NAME. Only files named in this script are written: inputs that a search found stay beside them.
Numbers are in the order of little-endian machines, which all supported ones are. Needs NumPy, and openssl.
"""

import io
import json
import pathlib
import struct
import subprocess
import sys
import tarfile
import tempfile

import numpy as np

HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE.parent / "tests" / "data" / "signature"))
import signing  # noqa: E402  from the folder above

SEEDS = HERE / "seeds"
KEY = bytes(range(1, 17))  # kKey of secured_form.h


def write(target, name, content):
    path = SEEDS / target / name
    path.parent.mkdir(parents=True, exist_ok=True)
    path.write_bytes(content if isinstance(content, bytes) else content.encode())


def manifest(kind="file", **changes):
    feature = {"name": "x", "required": True, "featureType": "tensor", "description": "größe",
               "tensor": {"shape": [1, 4], "dataType": "float"}}
    image = {"name": "picture", "featureType": "image", "image": {"height": 8, "width": 8, "pixelType": "RGBA"}}
    target = {"components": [{"name": kind, "path": "net.xml", "encryption": {"algorithm": "AES"}},
                             {"name": kind, "path": "weights/net.bin"}],
              "inputs": [feature, image, {"name": "flag", "featureType": "bool"}],
              "outputs": [dict(feature, name="y", tensor={"shape": [], "dataType": "uint8"})]}
    return json.dumps({"id": "a", "name": "b", "author": "c", "description": "d", "sdkVersion": "1.0", "version": 3,
                       "targets": {"Openvino": target, "MockML": {}}, **changes}, ensure_ascii=False)


NETWORK = """<?xml version="1.0"?>
<net name="two" version="10"><!-- a comment > -->
  <layers>
    <layer id="0" name="x" type="Parameter"><output><port id="0" names="x,x:0\\,1"><dim>1</dim></port></output></layer>
    <layer id="1" name="unused&amp;&#38;&#x26;" type="Parameter"><output><port id="0" names="u"/></output></layer>
    <layer id="2" name="split" type="Split"><input><port id="0"/></input>
      <output><port id="1" names="a"/><port id='2' names='b'/></output></layer>
    <layer id="3" name="y/sink" type="Result"><input><port id="0"/></input></layer>
    <layer id="4" name="z/sink" type="Result"><input><port id="0"/></input></layer>
  </layers>
  <edges>
    <edge from-layer="0" from-port="0" to-layer="2" to-port="0"/>
    <edge from-layer="2" from-port="1" to-layer="3" to-port="0"/>
    <edge from-layer="2" from-port="2" to-layer="4" to-port="0"/>
  </edges>
  <![CDATA[<not a tag>]]>
</net>
"""


def secured(content):
    padded = content + b" " * (-len(content) % 16)
    vector = bytes(16)
    cipher = subprocess.run(["openssl", "enc", "-aes-128-cbc", "-nopad", "-K", KEY.hex(), "-iv", vector.hex()],
                            input=padded, stdout=subprocess.PIPE, check=True).stdout
    return vector + cipher


def package(kind="file"):
    encode = secured if kind == "secured_file" else bytes
    return {"manifest.json": manifest(kind).encode(), "net.xml": encode(b"<net/>"),
            "weights/net.bin": encode(bytes(range(48)))}


def archive(files, style=tarfile.USTAR_FORMAT, **header):
    stream = io.BytesIO()
    with tarfile.open(fileobj=stream, mode="w", format=style) as tar:
        for name, content in files.items():
            member = tarfile.TarInfo(name)
            member.type = tarfile.DIRTYPE if content is None else tarfile.REGTYPE
            member.size = len(content or b"")
            member.pax_headers = header
            tar.addfile(member, io.BytesIO(content or b""))
    blocks = stream.getvalue().rstrip(b"\0")
    return blocks + bytes(-len(blocks) % 512 + 1024)  # two blocks of end instead of a whole record


def buffers(files, owner):
    return b"".join(struct.pack("<BH", len(name) | owner, len(content)) + name.encode() + content
                    for name, content in files.items())


def npy(array, version=(1, 0)):
    stream = io.BytesIO()
    np.lib.format.write_array(stream, array, version=version)
    return stream.getvalue()


def ports(*listed):
    """direction, precision, index, name, dimensions"""
    section = b"QuavinEN" + struct.pack("<QQ", 1, len(listed))
    for direction, precision, index, name, dimensions in listed:
        section += struct.pack("<QQQQ", direction, precision, index, len(name)) + name.encode()
        section += struct.pack(f"<Q{len(dimensions)}Q", len(dimensions), *dimensions)
    return section + bytes(-len(section) % 64)


def entry(kind, content):
    # The name is the hash of nothing. The seal is wrong: the target seals contents itself.
    digest = bytes.fromhex("99aa06d3014798d86001c324468d497f")
    return b"QUAVINCN" + struct.pack("<HHQ", 1, kind, len(content)) + digest + bytes(28) + content


def signed_statement():
    """A statement, its signature with the private key 1, whose public half the target trusts, and what it is called."""
    name = signing.element(0xA0, bytes.fromhex("06082A8648CE3D030107"))  # P-256
    secret = signing.element(4, (1).to_bytes(32, "big"))
    der = signing.element(0x30, signing.integer(1) + secret + name)
    payload = signing.encoded(signing.statement([signing.resource("manifest.json", signing.sha256(b"{}")),
                                                 signing.resource("a/net.bin", signing.sha256(b""))]))
    with tempfile.TemporaryDirectory() as folder:
        key = pathlib.Path(folder, "key.pem")
        key.write_bytes(signing.openssl("ec", "-inform", "DER", stdin=der).stdout)
        signature = signing.openssl("dgst", "-sha256", "-sign", key, stdin=signing.pae(payload)).stdout
        pem = signing.openssl("ec", "-in", key, "-pubout").stdout
    return payload, signature, signing.sha256(pem)


def main():
    write("manifest", "full.json", manifest())
    write("manifest", "secured.json", manifest("secured_file"))
    write("manifest", "shapes.json", manifest(targets={"Openvino": {"inputs": [
        {"featureType": "tensor", "tensor": {"shape": shape, "dataType": "int64"}}
        for shape in ([-1, 2**63 - 1], [2**63], [0, "3"], [1.5])]}}))
    write("manifest", "no_targets.json", manifest(targets=[1, 2]))
    write("manifest", "nested.json", "[" * 400 + "]" * 400)
    write("manifest", "zero_byte.json", b'{"id": "a\\u0000b"}\0{}')

    for target in "network_text", "topology":
        write(target, "version_10.xml", NETWORK)
        write(target, "version_11.xml", NETWORK.replace('"10"', '"11"'))
        write(target, "stray_end.xml", "<net></net></net><layer/>")

    write("paths", "plain.txt", "weights/net.bin")
    write("paths", "upwards.txt", "a\\../..\\C:\\x")
    write("paths", "drive.txt", "c:net.bin")
    write("paths", "device.txt", "com¹ .txt")
    write("paths", "scripts.txt", "größe/模型/😀\u202e")
    write("paths", "surrogates.bin", b"\xd8\x3d\xde\x00\xd8\x00\xed\xa0\x80\xff\0x")

    write("secured_component", "own_key.bin", KEY + secured(b"<net/>"))
    write("secured_component", "vector_only.bin", KEY + bytes(16))
    write("secured_component", "odd.bin", KEY + bytes(33))

    files = {"tree/": None, "tree/a.txt": b"content", "tree/" + "n" * 90 + "/b": b""}
    for target in "tar", "tar_secured", "tar_unbounded":
        write(target, "ustar.tar", archive(files))
        write(target, "gnu.tar", archive({"long/" * 30 + "x": b"1"}, tarfile.GNU_FORMAT))
        write(target, "pax.tar", archive({"a": b"1"}, tarfile.PAX_FORMAT, path="other/größe", comment="c"))
        for name in "../x", "/x", "a/../../x", "C:\\x", "link/x", "file_link", "a\\..\\..\\x":
            shown = "".join(c if c.isalnum() or c == "." else "_" for c in name)
            write(target, f"to_{shown}.tar", archive({name: b"1"}))
    write("tar_unbounded", "white_space.tar", archive({"a b/": None, "a b/c": b"1"}))
    write("tar_unbounded", "file_as_folder.tar", archive({"a": b"1", "a/b": b"1", "a/": None}))

    for kind in "file", "secured_file":
        write("memory_archive", f"{kind}.tar", archive({"p/": None, **{f"p/{n}": c for n, c in package(kind).items()}}))
        for owner in 0, 0x80:
            write("memory_buffers", f"{kind}_{'owned' if owner else 'lent'}.bin", buffers(package(kind), owner))
    write("memory_archive", "no_manifest.tar", archive({"x": b""}))
    write("memory_archive", "at_top.tar", archive(package()))

    for code in "f4", "i1", "i2", "i4", "i8", "u1", "u2", "u4", "u8", "b1", "f2", "f8":
        write("npy", f"{code}.npy", npy(np.array([[0, 1, 3], [1, 0, 100]]).astype(code)))
    write("npy", "big_endian.npy", npy(np.arange(3, dtype=">f4")))
    write("npy", "version_2.npy", npy(np.float32([]).reshape(0, 3), (2, 0)))
    write("npy", "version_3.npy", npy(np.float32(1.5), (3, 0)))
    write("npy", "not_finite.npy", npy(np.float64([np.nan, np.inf, -1e300])))
    write("npy", "fortran.npy", npy(np.asfortranarray(np.float32([[1, 2], [3, 4]]))))
    write("npy", "fields.npy", npy(np.zeros(1, dtype=[("a", "<f4"), ("b", "<i4")])))

    write("port_section", "two.bin", ports((0, 10, 0, "x", (1, 4)), (1, 10, 0, "y", (1, 2))) + b"blob")
    write("port_section", "same_name.bin", ports((0, 71, 1, "s", ()), (1, 71, 0, "s", (0, 2**40))))
    write("port_section", "none.bin", ports())
    write("port_section", "out_of_order.bin", ports((0, 10, 0, "y", ()), (0, 10, 0, "x", ())))
    write("port_section", "too_many_elements.bin", ports((0, 10, 0, "x", (2**40, 2**40))))

    payload, signature, hint = signed_statement()
    write("signature_bundle", "signed.json", signing.encoded(signing.bundle(payload, signature, hint)))
    write("signature_bundle", "statement.json", payload)
    write("signature_bundle", "signature.bin", signature)

    write("cache_entry", "checksum.bin", entry(1, b"content"))
    write("cache_entry", "secret.bin", entry(2, b"content"))
    write("cache_entry", "wrong_size.bin", entry(1, b"content")[:-1])
    write("cache_entry", "header_only.bin", entry(1, b""))


if __name__ == "__main__":
    main()
