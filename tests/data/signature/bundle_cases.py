"""Bundles around a right signature, in right and wrong forms."""

import base64
import json

from cases import NOT_SIGNATURE, NOT_SUPPORTED, NULL, RESOURCES, Case, changed, signed
from signing import bundle, encoded, pae, statement


def encodings(keys):
    right = signed(keys["p256"], encoded(statement(RESOURCES)))
    content = encoded(right)
    no_json = NOT_SIGNATURE + "it is not JSON in UTF-8"
    twice = NOT_SIGNATURE + "an object has two members of one name"
    yield Case("indented", json.dumps(right, indent=2).encode())
    yield Case("empty_file", b"", no_json)
    yield Case("no_json", content[:-1], no_json)
    yield Case("text_after", content + b"{}", no_json)
    yield Case("zero_byte_after", content + b"\0", no_json)
    yield Case("byte_order_mark", b"\xEF\xBB\xBF" + content, no_json)
    yield Case("no_utf_8", content.replace(b'"keyid": ""', b'"keyid": "\xFF"'), no_json)
    yield Case("a_list", b"[" + content + b"]", NOT_SIGNATURE + "it is not an object")
    yield Case("member_twice", content.replace(b'"keyid": ""', b'"keyid": "", "keyid": ""'), twice)
    yield Case("member_twice_by_escape",
               content.replace(b'"keyid": ""', b'"keyid": "", "keyi\\u0064": ""'), twice)
    yield Case("deeply_nested", b"[" * 100000, no_json)

    envelope = right["dsseEnvelope"]
    payload, signature = envelope["payload"], envelope["signatures"][0]["sig"]
    for name, text in (("line_end", payload[:76] + "\n" + payload[76:]),
                       ("blank", " " + payload), ("other_character", payload[:8] + "*" + payload[8:]),
                       ("other_alphabet", "-_" + payload[2:]),
                       ("text_after_padding", payload + "AAAA" if payload.endswith("=")
                        else payload[:-4] + "AA==AAAA")):
        yield Case("payload_with_" + name,
                   encoded(changed(right, ("dsseEnvelope", "payload"), text)),
                   NOT_SIGNATURE + '"payload" is not base64')
    place = ("dsseEnvelope", "signatures", 0, "sig")
    no_base64 = NOT_SIGNATURE + '"sig" is not base64'
    yield Case("signature_of_other_type", encoded(changed(right, place, 1)), no_base64)
    yield Case("signature_cut", encoded(changed(right, place, signature[:-1])), no_base64)
    whole = base64.b64decode(signature)
    one_left = base64.b64encode(whole[:len(whole) - (len(whole) - 1) % 3]).decode().rstrip("=")
    yield Case("unused_bits_set",
               encoded(changed(right, place, one_left[:-1] + chr(ord(one_left[-1]) + 1) + "==")),
               no_base64)


def bundles(keys):
    key = keys["p256"]
    right = signed(key, encoded(statement(RESOURCES)))
    envelope = right["dsseEnvelope"]
    material = "verificationMaterial"

    def case(name, path, new, problem):
        return Case(name, encoded(changed(right, path, new)), problem)

    media_type = NOT_SIGNATURE + "its media type is not " + right["mediaType"]
    yield case("no_media_type", ("mediaType",), None, media_type)
    yield case("other_media_type", ("mediaType",),
               "application/vnd.dev.sigstore.bundle+json;version=0.2", media_type)
    extra = NOT_SIGNATURE + "it has members that do not belong there"
    yield case("extra_member", ("extra",), 1, extra)
    yield case("message_signature", ("messageSignature",), {}, extra)
    yield case("no_envelope", ("dsseEnvelope",), None,
               NOT_SIGNATURE + '"dsseEnvelope" is missing or malformed')
    yield case("extra_member_of_envelope", ("dsseEnvelope", "extra"), 1,
               NOT_SIGNATURE + '"dsseEnvelope" is missing or malformed')
    yield case("extra_member_of_signature", ("dsseEnvelope", "signatures", 0, "extra"), 1,
               NOT_SIGNATURE + '"signatures" is malformed')
    yield case("no_material", (material,), None, NOT_SIGNATURE + f'"{material}" is missing or malformed')
    yield case("no_key", (material, "publicKey"), None,
               NOT_SIGNATURE + '"publicKey" is missing or malformed')
    yield case("extra_member_of_key", (material, "publicKey", "extra"), 1,
               NOT_SIGNATURE + '"publicKey" is missing or malformed')
    yield case("hint_of_other_type", (material, "publicKey", "hint"), 1,
               NOT_SIGNATURE + '"hint" is not a string')
    yield case("key_id_of_other_type", ("dsseEnvelope", "signatures", 0, "keyid"), 1,
               NOT_SIGNATURE + '"keyid" is not a string')
    yield case("key_id_null", ("dsseEnvelope", "signatures", 0, "keyid"), NULL, "")
    yield case("no_key_id", ("dsseEnvelope", "signatures", 0, "keyid"), None, "")
    yield case("key_id", ("dsseEnvelope", "signatures", 0, "keyid"), "a key", "")
    yield case("hint_null", (material, "publicKey", "hint"), NULL, "")
    yield case("no_hint", (material, "publicKey", "hint"), None, "")
    yield case("older_key", (material, "publicKey"), {"rawBytes": "AAAA", "keyDetails": "X"}, "")
    yield case("no_log", (material, "tlogEntries"), None, "")
    yield case("log_of_other_type", (material, "tlogEntries"), {},
               NOT_SIGNATURE + '"tlogEntries" is not an array')
    yield case("log", (material, "tlogEntries"), [{}], NOT_SUPPORTED + '"tlogEntries"')
    for other in ("certificate", "x509CertificateChain", "timestampVerificationData"):
        yield case(other, (material, other), {"rawBytes": "AAAA"}, NOT_SUPPORTED + f'"{other}"')
    yield Case("members_of_null", encoded({**right, "messageSignature": None,
                                           material: {**right[material], "certificate": None}}))

    one = NOT_SIGNATURE + "there must be exactly one signature"
    yield case("no_signatures", ("dsseEnvelope", "signatures"), None, one)
    yield case("empty_signatures", ("dsseEnvelope", "signatures"), [], one)
    yield case("two_signatures", ("dsseEnvelope", "signatures"), envelope["signatures"] * 2, one)
    payload = base64.b64decode(envelope["payload"])
    text = "text/plain"
    other = bundle(payload, key.sign(pae(payload, text)), key.hint())
    other_type = NOT_SIGNATURE + "its payload's type is not application/vnd.in-toto+json"
    yield Case("other_payload_type",
               encoded(changed(other, ("dsseEnvelope", "payloadType"), text)), other_type)
    yield case("no_payload_type", ("dsseEnvelope", "payloadType"), None, other_type)
