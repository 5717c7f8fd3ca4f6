"""What predictions are computed on."""

from __future__ import annotations

from dataclasses import dataclass
from typing import Any

from quavin._library import ffi, lib, sized, text
from quavin._runtime import Outcome, attempt, call, settle, turn


@dataclass(frozen=True)
class EngineInfo:
    """The engine's runtime, and how it computes. What a runtime does not report is "" or 0."""

    runtime_version: str
    """The runtime's own name for its build."""
    device: str
    """The runtime's device, always "CPU"."""
    device_name: str
    """The full name of the processor."""
    precision: str
    """"f32", "bf16" or "f16"."""
    capabilities: tuple[str, ...]
    """What the device supports, in the runtime's terms."""
    threads: int
    """Threads that one prediction runs on."""
    streams: int
    """Predictions of one model and its clones that can run at the same time."""


def read_engine_info(outcome: Outcome | None, made: Any) -> EngineInfo:
    """What is in the engine info that a call has made, which this releases.

    Raises QuavinError if the call failed.
    """
    settle(outcome)
    try:
        details = sized("quavin_engine_details")
        call(lib.quavin_engine_info_get, made[0], details)
        return EngineInfo(
            runtime_version=text(details.runtime_version),
            device=text(details.device),
            device_name=text(details.device_name),
            precision=text(details.precision),
            capabilities=tuple(text(details.capabilities[i]) for i in range(details.capability_count)),
            threads=details.threads,
            streams=details.streams,
        )
    finally:
        lib.quavin_engine_info_release(made[0])


def engine_info() -> EngineInfo:
    """The engine, as a model without options would use it.

    Raises QuavinError if it cannot start.
    """
    made = ffi.new("quavin_engine_info **")
    with turn():
        outcome = attempt(lib.quavin_get_engine_info, made)
    return read_engine_info(outcome, made)
