"""Public keys, and why they are refused."""

import base64

from signing import openssl

PRIMES = {
    "p256": 2**256 - 2**224 + 2**192 + 2**96 - 1,
    "p384": 2**384 - 2**128 - 2**96 + 2**32 - 1,
}
NO_PEM = "it is not one block of PEM with a public key"
OTHER_KEY = "it is not an uncompressed key on the curve P-256 or P-384"
TOO_LARGE = "a coordinate of its point is not below the prime of its curve"
# Whether a point is on the curve is for the system to say.
NO_POINT = "the system's cryptography refuses it: its point may not be on the curve"


def armoured(der, label="PUBLIC KEY", line=64):
    digits = base64.b64encode(der).decode()
    lines = [digits[at:at + line] for at in range(0, len(digits), line)]
    return "\n".join([f"-----BEGIN {label}-----", *lines, f"-----END {label}-----", ""]).encode()


def key_cases(keys):
    """Tuples of name, PEM and reason."""
    p256 = keys["p256"]
    pem = p256.pem
    der = openssl("pkey", "-pubin", "-outform", "DER", stdin=pem).stdout
    line = pem.splitlines()[1]

    def form(*options):
        return openssl("ec", "-in", p256.private, "-pubout", *options).stdout

    for name in ("p256", "p384", "other"):
        yield name, keys[name].pem, ""
    yield "line_ends_of_two_bytes", pem.replace(b"\n", b"\r\n"), ""
    yield "blanks_around", b"\n \t" + pem + b"\n\n", ""
    yield "one_line", armoured(der, line=1000), ""
    yield "short_lines", armoured(der, line=7), ""
    yield "no_last_line_end", pem.rstrip(), ""

    yield "empty", b"", NO_PEM
    yield "bytes", der, NO_PEM
    yield "text_before", b"a key\n" + pem, NO_PEM
    yield "text_after", pem + b"a key\n", NO_PEM
    yield "two_keys", pem + keys["other"].pem, NO_PEM
    yield "private_key", openssl("pkcs8", "-topk8", "-nocrypt", "-in", p256.private).stdout, NO_PEM
    yield "old_private_key", p256.private.read_bytes(), NO_PEM
    yield "other_label", armoured(der, "EC PUBLIC KEY"), NO_PEM
    yield "no_end", pem[:pem.index(b"-----END")], NO_PEM
    yield "headers", pem.replace(b"KEY-----\n", b"KEY-----\nName: value\n\n", 1), NO_PEM
    yield "blanks_inside", pem.replace(line, line + b" "), NO_PEM
    yield "no_base64", pem.replace(line, b"*" + line[1:]), NO_PEM
    yield "no_padding", pem.replace(b"=", b""), NO_PEM

    yield "no_bytes", b"-----BEGIN PUBLIC KEY-----\n-----END PUBLIC KEY-----\n", OTHER_KEY
    for name in ("p521", "k256"):
        yield name, keys[name].pem, OTHER_KEY
    rsa = openssl("genpkey", "-algorithm", "RSA", "-pkeyopt", "rsa_keygen_bits:1024").stdout
    yield "rsa", openssl("pkey", "-pubout", stdin=rsa).stdout, OTHER_KEY
    yield "compressed", form("-conv_form", "compressed"), OTHER_KEY
    yield "hybrid", form("-conv_form", "hybrid"), OTHER_KEY
    yield "explicit_curve", form("-param_enc", "explicit"), OTHER_KEY
    yield "byte_after", armoured(der + b"\0"), OTHER_KEY
    yield "byte_missing", armoured(der[:-1]), OTHER_KEY
    yield "long_form_of_length", armoured(b"\x30\x81" + der[1:]), OTHER_KEY

    yield "point_beside_curve", armoured(der[:-1] + bytes([der[-1] ^ 1])), NO_POINT
    yield "point_of_zeros", armoured(der[:-64] + bytes(64)), NO_POINT
    yield "coordinate_too_large", armoured(der[:-64] + b"\xFF" * 32 + der[-32:]), TOO_LARGE
    for name, curve in ("", "p256"), ("_p384", "p384"):
        der = openssl("pkey", "-pubin", "-outform", "DER", stdin=keys[curve].pem).stdout
        prime, size = PRIMES[curve], PRIMES[curve].bit_length() // 8
        for at, start in ("x", len(der) - 2 * size), ("y", len(der) - size):
            for word, number, problem in ("is", prime, TOO_LARGE), ("is_below", prime - 1, NO_POINT):
                point = der[:start] + number.to_bytes(size, "big") + der[start + size:]
                yield f"{at}_{word}_the_prime{name}", armoured(point), problem
