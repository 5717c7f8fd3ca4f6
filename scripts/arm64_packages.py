"""Unpacks Debian packages for arm64 into the cache; for the fetch_arm64_*.py beside this.

The packages come from the sources configured for this system's apt, which checks their signatures, but with separate
package lists: nothing is installed, and no foreign architecture is added to the system (its libssl-dev would have to be
exactly the version installed here). The cache is that of fetch_openvino.py.
"""

import pathlib
import platform
import shutil
import subprocess
import sys
import tempfile

import fetch_openvino

TRIPLET = "aarch64-linux-gnu"


def run(command, folder):
    if subprocess.run(command, cwd=folder, stdout=sys.stderr, check=False).returncode != 0:
        sys.exit(f"arm64_packages: {command[0]} failed")


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


def fetch(name, packages, wanted, arrange=lambda whole, folder: whole.rename(folder)):
    """The cache's folder with the content of these packages, as `arrange` puts it there.

    If that has all wanted files already, the network is not used.
    """
    def complete(folder):
        return all((folder / file).exists() for file in wanted)

    # From this release of Debian: the libraries must not need a newer C library than the toolchain's.
    release = platform.freedesktop_os_release().get("VERSION_CODENAME", "unknown")
    target = fetch_openvino.cache_root() / f"{name}-{release}-linux-aarch64"
    if complete(target):
        return target
    print(f"arm64_packages: downloading {name} for arm64", file=sys.stderr)
    target.parent.mkdir(parents=True, exist_ok=True)
    # Renamed at the end, so that an interrupted run leaves no incomplete cache.
    work = pathlib.Path(tempfile.mkdtemp(prefix=".fetch-", dir=target.parent))
    try:
        state, whole, arranged = work / "apt", work / "whole", work / "arranged"
        apt_get(state, "update")
        apt_get(state, "download", *packages)
        for package in state.glob("*.deb"):
            run(["dpkg-deb", "--extract", str(package), str(whole)], work)
        arrange(whole, arranged)
        if not complete(arranged):
            sys.exit(f"arm64_packages: the packages of {name} lack expected files")
        if not complete(target):  # otherwise another run was faster
            shutil.rmtree(target, ignore_errors=True)
            arranged.rename(target)
    finally:
        shutil.rmtree(work, ignore_errors=True)
    return target
