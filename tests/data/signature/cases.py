"""What cases of signatures are made of."""

import dataclasses
import json

from signing import bundle, pae, resource

NOT_SIGNATURE = "model.sig is not the signature of a model: "
NOT_SUPPORTED = "model.sig uses a method that is not supported: "
NOT_TRUSTED = "model.sig is not signed by a trusted key"
RESOURCES = [resource("manifest.json", "11" * 32), resource("net.bin", "22" * 32),
             resource("sub/net.xml", "33" * 32)]
NULL = object()


@dataclasses.dataclass
class Case:
    name: str
    content: bytes
    problem: str = ""
    key: str = "p256"


def signed(key, payload):
    return bundle(payload, key.sign(pae(payload)), key.hint())


def changed(value, path, new):
    """A copy of a value in which the member at a path is another one (NULL stands for null), or, for None, is left
    out."""
    copy = json.loads(json.dumps(value))
    place = copy
    for step in path[:-1]:
        place = place[step]
    if new is None:
        del place[path[-1]]
    else:
        place[path[-1]] = None if new is NULL else new
    return copy
