"""Status codes, and the exception that carries them."""

from __future__ import annotations

from enum import IntEnum


class Status(IntEnum):
    """The library's status codes; docs/errors.md says what each means and what to do about it."""

    SUCCESS = 1
    FAILURE = 2
    FILE_ERROR = 3
    INVALID_MODEL_PATH = 4
    INVALID_WEIGHTS_PATH = 5
    INVALID_OPERATION = 6
    INVALID_ARGUMENTS = 7
    INVALID_TYPE = 8
    INVALID_TENSOR_DATA_TYPE = 9
    MODEL_NOT_LOADED = 11
    MODEL_METADATA_ERROR = 12
    ML_FRAMEWORK_ERROR = 13
    OUT_OF_RANGE = 14
    NOT_INITIALIZED = 15
    MEMORY_LIMIT_EXCEEDED = 16
    TENSOR_SIZE_MISMATCH = 17
    ALLOCATION_FAILED = 18
    EMPTY_INPUT_DESCRIPTOR = 19
    TAR_CHECKSUM_MISMATCH = 21
    TAR_UNSUPPORTED_ENTRY = 22
    SIGNATURE_ERROR = 23


class QuavinError(Exception):
    """A call into the library failed.

    `status` is the code: a member of `Status`, or a plain number if a newer library returns one that is not
    listed there. `text` is the library's fixed text for the failure, and `details` what it reported about the
    causes, both for people. Keys and the contents of secured files are in neither.
    """

    def __init__(self, status: int, text: str, details: tuple[str, ...] = ()) -> None:
        super().__init__(status, text, details)
        self.status: int = Status(status) if status in Status._value2member_map_ else status
        self.text = text
        self.details = details

    def __str__(self) -> str:
        name = self.status.name if isinstance(self.status, Status) else f"status {self.status}"
        details = f" ({'; '.join(self.details)})" if self.details else ""
        return f"{name}: {self.text}{details}" if self.text else f"{name}{details}"
