"""The library's life in this process: switching it on and off, turns, forks, the log."""

from __future__ import annotations

import atexit
import contextlib
import logging
import os
import threading
from collections.abc import Iterator
from typing import Any, NamedTuple

from quavin._errors import QuavinError, Status
from quavin._library import c_text, ffi, lib, sized, text

_IMPORTANT_LEVEL = 3

logger = logging.getLogger("quavin")
logger.addHandler(logging.NullHandler())  # a program that configures no logging gets no output


class _State:
    used = False  # the engine may have threads
    started = False  # by this module, which then switches it off
    trusted_keys: tuple[str, ...] = ()  # with which it was started
    forked = False  # from a process that had used it: its threads do not exist here
    ended = False


_state = _State()
_turns = threading.RLock()  # a signal handler may want a turn of its own


class _Call(threading.local):
    """What the library reports during a thread's call, kept until the call returns: a handler of the log may
    then call the library itself, and be as slow as it likes."""

    def __init__(self) -> None:
        self.running = False
        self.records: list[tuple[int, str]] = []


_call = _Call()


def _emit(level: int, message: str) -> None:
    logger.log(logging.WARNING if level >= _IMPORTANT_LEVEL else logging.INFO, "%s", message)


@ffi.callback("quavin_log")  # type: ignore[untyped-decorator]
def _on_record(record: Any, _user: Any) -> None:
    if _call.running:
        _call.records.append((record.level, text(record.message)))
    else:  # on a thread of the engine's, or of a host in another language
        _emit(record.level, text(record.message))


class Outcome(NamedTuple):
    """How a call ended that did not simply succeed."""

    status: int
    text: str
    records: list[tuple[int, str]]


def attempt(function: Any, *arguments: Any) -> Outcome | None:
    """Calls a function of the library, without the GIL. What comes of it must be settled, without a lock."""
    _call.running = True
    try:
        status: int = function(*arguments)
    finally:
        _call.running = False
    if status == Status.SUCCESS and not _call.records:
        return None
    what = text(lib.quavin_last_error()) if status != Status.SUCCESS else ""
    records, _call.records = _call.records, []
    return Outcome(status, what, records)


def settle(outcome: Outcome | None) -> None:
    """Passes on what the library reported during a call.

    Raises QuavinError unless it succeeded.
    """
    if outcome is None:
        return
    for level, message in outcome.records:
        _emit(level, message)
    if outcome.status != Status.SUCCESS:
        raise QuavinError(outcome.status, outcome.text, tuple(message for _, message in outcome.records))


def call(function: Any, *arguments: Any) -> None:
    """Calls a function of the library, without the GIL.

    Raises QuavinError unless it succeeds.
    """
    settle(attempt(function, *arguments))


def is_forked() -> bool:
    """Whether this process was forked from one that had used the library, whose handles mean nothing here."""
    return _state.forked


def require_usable() -> None:
    """Raises QuavinError in a process that was forked from one that had used the library."""
    if _state.forked:
        raise QuavinError(
            Status.INVALID_OPERATION,
            "quavin was used before this process was forked, and its engine does not survive that; "
            'start worker processes with the method "spawn"',
        )
    _state.used = True


@contextlib.contextmanager
def turn(trusted_keys: tuple[str, ...] | None = None) -> Iterator[None]:
    """For loading and cloning: one at a time in the process, with the library switched on. None leaves the
    trusted keys as they are.

    Raises QuavinError if that fails.
    """
    require_usable()
    with _turns:
        _start(trusted_keys)
        yield


def _start(trusted_keys: tuple[str, ...] | None) -> None:
    if lib.quavin_is_initialized():
        if trusted_keys is None or trusted_keys == _state.trusted_keys:
            return
        if not _state.started:
            raise QuavinError(
                Status.INVALID_OPERATION,
                "trusted_keys cannot be set: another part of this process has switched the library on",
            )
        # The library trusts keys from one start to the next. Models do not notice.
        call(lib.quavin_terminate)
    config = sized("quavin_config")
    config.log = _on_record
    config.diagnostics = 1
    pems = [c_text(pem) for pem in trusted_keys or ()]
    array = ffi.new("char *[]", pems)
    config.trusted_keys = array
    config.trusted_key_count = len(pems)
    call(lib.quavin_init, config)
    _state.started = True
    _state.trusted_keys = trusted_keys or ()


def owned(handle: Any, release: Any) -> Any:
    """A handle that is released with the last reference to it, on any thread."""

    def end(dying: Any) -> None:
        # At exit the library leaves what there is alone, and so must this: arrays may still be read.
        if not (_state.ended or _state.forked):
            release(dying)

    return ffi.gc(handle, end)


@atexit.register
def _end() -> None:
    _state.ended = True
    if _state.started and not _state.forked:
        lib.quavin_terminate()


def _after_fork() -> None:
    _state.forked = _state.forked or _state.used


if hasattr(os, "register_at_fork"):
    os.register_at_fork(after_in_child=_after_fork)
