#!/usr/bin/env python3
"""Puts Debian's libcrypto for arm64 into a cache and prints the folder with its include/ and lib/.

For cross builds. arm64_packages.py says where it comes from.
"""

import gzip
import shutil

from arm64_packages import TRIPLET, fetch

WANTED = ("include/openssl/evp.h", "include/openssl/configuration.h", "lib/libcrypto.so", "lib/libcrypto.a",
          "version")


def arrange(whole, folder):
    """Headers and libcrypto, in one folder each: the cross compiler does not search Debian's folders for arm64."""
    for headers in (whole / "usr/include", whole / "usr/include" / TRIPLET):
        if (headers / "openssl").is_dir():
            shutil.copytree(headers / "openssl", folder / "include/openssl", dirs_exist_ok=True)
    (folder / "lib").mkdir(parents=True, exist_ok=True)
    for library in (whole / "usr/lib" / TRIPLET).glob("libcrypto.*"):
        shutil.copy2(library, folder / "lib", follow_symlinks=False)
    shutil.copytree(whole / "usr/share/doc", folder / "doc", symlinks=True)
    # For bills of materials. The first line of a change log is "NAME (VERSION) ...".
    with gzip.open(folder / "doc/libssl-dev/changelog.Debian.gz", "rt", encoding="utf-8") as changes:
        version = changes.readline().split("(")[1].split(")")[0]
    (folder / "version").write_text(version + "\n", encoding="utf-8")


if __name__ == "__main__":
    print(fetch("libcrypto", ("libssl-dev", "libssl3"), WANTED, arrange).as_posix())
