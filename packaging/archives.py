"""Writes archives whose bytes depend only on names and contents: in order, with fixed owners, times and modes."""

import gzip
import os
import stat
import tarfile
import time
import zipfile

from components import files_in


def mode_of(path):
    return 0o755 if path.stat().st_mode & stat.S_IXUSR else 0o644


def write_tar(folder, top, archive, when):
    with open(archive, "wb") as file, gzip.GzipFile("", "wb", 9, file, mtime=0) as packed, \
            tarfile.open(fileobj=packed, mode="w", format=tarfile.GNU_FORMAT) as tar:
        for name in files_in(folder):
            path = folder / name
            entry = tarfile.TarInfo(f"{top}/{name}")
            entry.mtime = when
            entry.uname = entry.gname = "root"
            if path.is_symlink():
                entry.type, entry.linkname, entry.mode = tarfile.SYMTYPE, os.readlink(path), 0o777
                tar.addfile(entry)
                continue
            entry.size, entry.mode = path.stat().st_size, mode_of(path)
            with open(path, "rb") as content:
                tar.addfile(entry, content)


def write_zip(folder, top, archive, when):
    with zipfile.ZipFile(archive, "w", zipfile.ZIP_DEFLATED, compresslevel=9) as packed:
        for name in files_in(folder):
            path = folder / name
            entry = zipfile.ZipInfo(f"{top}/{name}", time.gmtime(when)[:6])
            entry.create_system = 3  # so that the modes count
            entry.external_attr = (stat.S_IFREG | mode_of(path)) << 16
            entry.compress_type = zipfile.ZIP_DEFLATED
            packed.writestr(entry, path.read_bytes())
