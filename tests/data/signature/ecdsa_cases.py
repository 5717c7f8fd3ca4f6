"""Signatures by right and wrong keys, and in right and wrong forms."""

from cases import NOT_TRUSTED, RESOURCES, Case, signed
from signing import ORDERS, bundle, element, encoded, integer, numbers, pae, pair, statement


def signatures(keys):
    key = keys["p256"]
    payload = encoded(statement(RESOURCES))
    right = signed(key, payload)
    yield Case("right", encoded(right))
    yield Case("right_p384", encoded(signed(keys["p384"], payload)), key="p384")
    yield Case("other_key", encoded(signed(keys["other"], payload)), NOT_TRUSTED)
    yield Case("other_key_without_hint",
               encoded(bundle(payload, keys["other"].sign(pae(payload)), "")), NOT_TRUSTED)
    yield Case("other_curve", encoded(bundle(payload, keys["p384"].sign(pae(payload)), "")),
               NOT_TRUSTED)
    yield Case("other_hint", encoded(bundle(payload, key.sign(pae(payload)), keys["other"].hint())),
               NOT_TRUSTED)
    yield Case("payload_alone", encoded(bundle(payload, key.sign(payload), key.hint())), NOT_TRUSTED)
    old = pae(payload).replace(b"DSSEv1", b"DSSEV1")
    yield Case("other_encoding", encoded(bundle(payload, key.sign(old), key.hint())), NOT_TRUSTED)
    yield Case("payload_changed", encoded(bundle(payload + b" ", key.sign(pae(payload)),
                                                 key.hint())), NOT_TRUSTED)
    yield from forms(keys, "p256", "")
    yield from forms(keys, "p384", "_p384")


def forms(keys, curve, ending):
    key, order = keys[curve], ORDERS[curve]
    size = (order.bit_length() + 7) // 8
    payload = encoded(statement(RESOURCES))
    while True:  # until r and s begin with a zero byte, and so do both forms of s
        r, s = numbers(key.sign(pae(payload)))
        if r >> 8 * size - 1 and s >> 8 * size - 1:
            break
    low = element(2, r.to_bytes(size, "big"))
    signatures_by_name = {
        "high_s": (pair(r, max(s, order - s)), ""),
        "low_s": (pair(r, min(s, order - s)), ""),
        "empty_signature": (b"", NOT_TRUSTED),
        "half_a_signature": (element(0x30, integer(r)), NOT_TRUSTED),
        "cut_signature": (pair(r, s)[:-1], NOT_TRUSTED),
        "byte_after_signature": (pair(r, s) + b"\0", NOT_TRUSTED),
        "byte_inside_signature": (element(0x30, integer(r) + integer(s) + b"\0"), NOT_TRUSTED),
        "long_form_of_length": (b"\x30\x81" + pair(r, s)[1:], NOT_TRUSTED),
        "indefinite_length": (b"\x30\x80" + integer(r) + integer(s) + b"\0\0", NOT_TRUSTED),
        "negative_number": (element(0x30, low + integer(s)), NOT_TRUSTED),
        "zero_byte_too_many": (element(0x30, element(2, b"\0" + integer(r)[2:]) + integer(s)),
                               NOT_TRUSTED),
        "other_tag": (b"\x31" + pair(r, s)[1:], NOT_TRUSTED),
        "no_integers": (element(0x30, element(3, integer(r)[2:]) + integer(s)), NOT_TRUSTED),
        "empty_integer": (element(0x30, element(2, b"") + integer(s)), NOT_TRUSTED),
        "r_zero": (pair(0, s), NOT_TRUSTED),
        "s_zero": (pair(r, 0), NOT_TRUSTED),
        "s_order": (pair(r, order), NOT_TRUSTED),
        "r_beyond_order": (pair(r + order, s), NOT_TRUSTED),
        "s_beyond_order": (pair(r, s + order), NOT_TRUSTED),
        "numbers_alone": (r.to_bytes(size, "big") + s.to_bytes(size, "big"), NOT_TRUSTED),
    }
    for name, (signature, problem) in signatures_by_name.items():
        yield Case(name + ending, encoded(bundle(payload, signature, key.hint())), problem, curve)
