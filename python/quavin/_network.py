"""Inputs and outputs of networks that are not loaded."""

from __future__ import annotations

import os
from collections.abc import Mapping, Sequence
from dataclasses import dataclass
from typing import Any

from quavin._library import c_text, ffi, lib
from quavin._options import BytesLike, trusted
from quavin._ports import Port, read_ports
from quavin._runtime import Outcome, attempt, require_usable, settle, turn
from quavin._sources import PackageCall, Source


@dataclass(frozen=True)
class Network:
    """What a network itself declares: its inputs and outputs, sorted by name, without descriptions."""

    inputs: tuple[Port, ...]
    outputs: tuple[Port, ...]


def describe(
    source: Source,
    *,
    key: BytesLike | None = None,
    component_keys: Mapping[str, BytesLike] | None = None,
    archive_key: BytesLike | None = None,
    trusted_keys: Sequence[str] | None = None,
) -> Network:
    """Describes the network of a package without compiling it. The arguments are those of `load`.

    Takes turns with loads. Raises as `load` does.
    """
    trust = trusted(trusted_keys)
    package = PackageCall(source, "describe")
    keys = package.structs.keys(key, component_keys or {}, archive_key)
    made = ffi.new("quavin_network **")
    with turn(trust):
        outcome = package.attempt(keys, made)
    return _network(outcome, made)


def describe_files(topology: str | os.PathLike[str], weights: str | os.PathLike[str] | None = None) -> Network:
    """Describes a network by its own two files; `weights` may be missing if it has no constants.

    May run on several threads at once. Raises QuavinError if a file cannot be read or is not a network.
    """
    require_usable()
    paths = [ffi.NULL if path is None else c_text(os.fspath(path)) for path in (topology, weights)]
    made = ffi.new("quavin_network **")
    return _network(attempt(lib.quavin_describe_files, *paths, made), made)


def _network(outcome: Outcome | None, made: Any) -> Network:
    settle(outcome)
    try:
        return Network(
            read_ports(made[0], lib.quavin_network_get_input_count, lib.quavin_network_get_input),
            read_ports(made[0], lib.quavin_network_get_output_count, lib.quavin_network_get_output),
        )
    finally:
        lib.quavin_network_release(made[0])
