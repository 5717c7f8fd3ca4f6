"""Loading models."""

from __future__ import annotations

import os
from collections.abc import Mapping, Sequence

from quavin._library import ffi, sized
from quavin._model import Model
from quavin._options import BytesLike, Hint, Precision, trusted
from quavin._runtime import settle, turn
from quavin._sources import PackageCall, Source


def load(
    source: Source,
    *,
    key: BytesLike | None = None,
    component_keys: Mapping[str, BytesLike] | None = None,
    archive_key: BytesLike | None = None,
    threads: int | None = None,
    precision: Precision | None = None,
    hint: Hint | None = None,
    cache: str | os.PathLike[str] | None = None,
    cache_size_limit: int | None = None,
    map_weights: bool | None = None,
    trusted_keys: Sequence[str] | None = None,
) -> Model:
    """Loads a model package.

    `source` is one of
      - the path of the package's directory;
      - the path of an archive, as `quavin pack` writes it;
      - such an archive as a bytes-like object;
      - a dict from "manifest.json" and the paths of the manifest's components to bytes-like objects. Plain
        weights are used in place, and kept alive: don't change them while the model or a clone exists.

    Keys have sixteen bytes: `key` is for all secured components but those that have one of their own in
    `component_keys`, by their paths in the manifest; `archive_key` for an archive that is secured as a whole.

    The others are the engine's options, which docs/engine-options.md explains: `threads` that the model
    computes on; `precision` "single" (the default) or "fastest"; `hint` "latency" (the default) or
    "throughput"; `cache`, an existing directory for compiled networks, and its `cache_size_limit` in bytes;
    `map_weights` for weights files that are mapped into memory instead of being read.

    With `trusted_keys`, public keys in PEM, only a package that one of them signed is loaded; docs/signatures.md
    says what is checked.

    Loads take turns, on whatever threads they are called.

    Raises TypeError or ValueError for an argument that is none of this, OSError for an archive that cannot be
    read, and QuavinError if the package cannot be loaded; docs/errors.md lists the status codes.
    """
    trust = trusted(trusted_keys)
    package = PackageCall(source, "load")
    options = package.structs.keep(sized("quavin_load_options"))
    options.keys = package.structs.keys(key, component_keys or {}, archive_key)
    options.engine = package.structs.engine(threads, precision, hint, cache, cache_size_limit, map_weights)
    made = ffi.new("quavin_model **")
    with turn(trust):
        outcome = package.attempt(options, made)
    settle(outcome)
    return Model(made[0])
