#!/usr/bin/env python3
"""Puts Debian's libcrypto for arm64 into a cache and prints the folder with its include/ and lib/.

For cross builds. The packages come from the sources configured for this system's apt, which checks their
signatures, but with separate package lists: nothing is installed, and no foreign architecture is added to
the system (its libssl-dev would have to be exactly the version installed here). If the files exist
already, the network is not used. The cache is that of fetch_openvino.py.
"""

import pathlib
import platform
import shutil
import subprocess
import sys
import tempfile

import fetch_openvino

TRIPLET = "aarch64-linux-gnu"
PACKAGES = ("libssl-dev", "libssl3")


def run(command, folder):
    if subprocess.run(command, cwd=folder, stdout=sys.stderr, check=False).returncode != 0:
        sys.exit(f"fetch_arm64_libcrypto: {command[0]} failed")


def apt_get(state, *arguments):
    for folder in ("lists/partial", "archives/partial"):
        (state / folder).mkdir(parents=True, exist_ok=True)
    options = {
        "Dir::State": state,
        "Dir::State::status": "/dev/null",
        "Dir::Cache": state,
        "APT::Architecture": "arm64",
        "APT::Architectures": "arm64",
        "APT::Sandbox::User": "root",  # another user cannot enter a temporary folder
        "Acquire::Languages": "none",
    }
    run(["apt-get", "-qq", *(f"-o{name}={value}" for name, value in options.items()), *arguments], state)


def unpack(package, folder):
    """Headers and libcrypto, in one folder each: the cross compiler does not search Debian's folders per architecture."""
    whole = folder / "whole"
    run(["dpkg-deb", "--extract", str(package), str(whole)], folder)
    for headers in (whole / "usr/include", whole / "usr/include" / TRIPLET):
        if (headers / "openssl").is_dir():
            shutil.copytree(headers / "openssl", folder / "include/openssl", dirs_exist_ok=True)
    (folder / "lib").mkdir(exist_ok=True)
    for library in (whole / "usr/lib" / TRIPLET).glob("libcrypto.*"):
        shutil.copy2(library, folder / "lib", follow_symlinks=False)
    shutil.copytree(whole / "usr/share/doc", folder / "doc", dirs_exist_ok=True, symlinks=True)
    with open(folder / "version", "w", encoding="utf-8") as version:
        subprocess.run(["dpkg-deb", "--field", str(package), "Version"], stdout=version, check=True)
    shutil.rmtree(whole)


def complete(folder):
    return all((folder / name).exists() for name in
               ("include/openssl/evp.h", "include/openssl/configuration.h", "lib/libcrypto.so", "lib/libcrypto.a", "version"))


def fetch():
    # From this release of Debian: the library must not need a newer C library than the toolchain's.
    release = platform.freedesktop_os_release().get("VERSION_CODENAME", "unknown")
    target = fetch_openvino.cache_root() / f"libcrypto-{release}-linux-aarch64"
    if complete(target):
        return target
    print("fetch_arm64_libcrypto: downloading libcrypto for arm64", file=sys.stderr)
    target.parent.mkdir(parents=True, exist_ok=True)
    # Renamed at the end, so that an interrupted run leaves no incomplete cache.
    work = pathlib.Path(tempfile.mkdtemp(prefix=".fetch-", dir=target.parent))
    try:
        state, unpacked = work / "apt", work / "unpacked"
        unpacked.mkdir()
        apt_get(state, "update")
        apt_get(state, "download", *PACKAGES)
        for package in state.glob("*.deb"):
            unpack(package, unpacked)
        if not complete(unpacked):
            sys.exit("fetch_arm64_libcrypto: the packages lack expected files")
        if not complete(target):  # otherwise another run was faster
            shutil.rmtree(target, ignore_errors=True)
            unpacked.rename(target)
    finally:
        shutil.rmtree(work, ignore_errors=True)
    return target


if __name__ == "__main__":
    print(fetch().as_posix())
