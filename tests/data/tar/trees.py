"""The trees that make_archives.py packs: path to content, None for a directory."""


def counted(size):
    return bytes((7 * place + size) % 251 for place in range(size))


def padded(beginning, length, filling="n"):
    return beginning + filling * (length - len(beginning))


# What every layout can hold: names below 100 bytes.
SHORT = {
    "tree": None,
    "tree/0.bin": b"",
    "tree/511.bin": counted(511),
    "tree/512.bin": counted(512),
    "tree/513.bin": counted(513),
    "tree/empty directory": None,
    "tree/a": None,
    "tree/a/b": None,
    "tree/a/b/c": None,
    "tree/a/b/c/d": None,
    "tree/a/b/c/d/deep.txt": b"deep\n",
    "tree/größe.txt": b"latin\n",
    "tree/模型": None,
    "tree/模型/😀.txt": b"wide\n",
    "tree/my model": None,
    "tree/my model/read me.txt": b"blanks\n",
    padded("tree/99-", 99): b"ninety-nine",
}

_OUTER_PREFIX = padded("tree/p", 85, "p")
_PREFIX = padded(_OUTER_PREFIX + "/q", 155, "q")

# What a name and a prefix can hold: 100 and 155 bytes.
USTAR = {
    **SHORT,
    padded("tree/100-", 100): b"one hundred",
    _OUTER_PREFIX: None,
    _PREFIX: None,
    padded(_PREFIX + "/255-", 255): b"two hundred and fifty-five",
    padded(_PREFIX + "/256-", 256): b"two hundred and fifty-six",
    padded("tree/a/101-", 101): b"one hundred and one",
}

_OUTER = padded("tree/o", 205, "o")
_INNER = padded(_OUTER + "/i", 456, "i")

# What only the extensions can hold.
ALL = {
    **USTAR,
    _OUTER: None,
    _INNER: None,
    padded(_INNER + "/ü", 700): b"seven hundred characters",
    padded("tree/101-", 106): b"a last part of one hundred and one",
}

# Without blanks, for hosts that call the overload without a length.
SIMPLE = {
    "package": None,
    "package/manifest.json": b'{"files": []}\n',
    "package/weights": None,
    "package/weights/512.bin": counted(512),
    "package/weights/513.bin": counted(513),
    "package/weights/0.bin": b"",
}
