"""A new file or directory that appears complete or not at all."""

from __future__ import annotations

import contextlib
import os
import shutil
import tempfile
from collections.abc import Iterator
from pathlib import Path

_MEMORY = "/dev/shm"


def absent(path: Path) -> Path:
    """The path, made absolute.

    Raises FileExistsError if there is something, and ValueError for an archive without a name.
    """
    target = Path(os.path.abspath(path))
    if not stem_of(target):
        raise ValueError(f"{path} has no name before .tar")
    if os.path.lexists(target):
        raise FileExistsError(f"{path} already exists")
    return target


@contextlib.contextmanager
def staged(target: Path) -> Iterator[Path]:
    """A place for what is to become `target`, on the same file system, which only this user may enter. At the end of
    the block it is moved; after a failure nothing is left, and a target that somebody else made meanwhile is not
    touched.

    Raises OSError.
    """
    folder = target.parent
    while not folder.exists():
        folder = folder.parent
    with tempfile.TemporaryDirectory(prefix=".quavin-", dir=folder) as private:
        stage = Path(private, target.name)
        yield stage
        target.parent.mkdir(parents=True, exist_ok=True)
        _move(stage, target)


def _move(stage: Path, target: Path) -> None:
    """Unlike a rename, which replaces a file, and on some systems an empty directory."""
    if stage.is_dir():
        absent(target)
        stage.rename(target)
        return
    try:
        os.link(stage, target)
    except FileExistsError:
        raise FileExistsError(f"{target} already exists") from None
    except OSError:  # a file system without links
        absent(target)
        stage.rename(target)


def stem_of(target: Path) -> str:
    """The name without what makes it an archive."""
    return target.name[:-4] if target.name.lower().endswith(".tar") else target.name


@contextlib.contextmanager
def private_folder(secret_bytes: int | None) -> Iterator[Path]:
    """A temporary folder that only this user may enter: in memory, if its content is secret and there is room."""
    folder = None
    if secret_bytes is not None and os.access(_MEMORY, os.W_OK) and shutil.disk_usage(_MEMORY).free > 2 * secret_bytes:
        folder = _MEMORY
    with tempfile.TemporaryDirectory(prefix="quavin-", dir=folder) as path:
        yield Path(path)
