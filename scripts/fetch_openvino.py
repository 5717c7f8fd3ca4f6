#!/usr/bin/env python3
"""Puts the pinned OpenVINO runtime into a cache and prints the folder of its CMake package.

The runtime comes as a wheel, downloaded with pip and checked against the hashes in cmake/openvino.lock.
Nothing is installed: the wheel is unpacked into the cache folder, which is QUAVIN_CACHE_DIR if set, and
otherwise quavin/ in the user's cache folder. If the runtime is cached already, the network is not used.
"""

import argparse
import os
import pathlib
import platform
import re
import shutil
import subprocess
import sys
import tempfile
import zipfile

LOCK_FILE = pathlib.Path(__file__).resolve().parent.parent / "cmake" / "openvino.lock"

# The platform tags of the wheels in the lock file. The Python tag only selects a wheel: the runtime
# libraries inside are the same for every Python, and no Python code from the wheel is run.
PLATFORM_TAGS = {
    "linux-x86_64": "manylinux_2_28_x86_64",
    "linux-aarch64": "manylinux_2_35_aarch64",
    "windows-x86_64": "win_amd64",
}
PYTHON_VERSION = "3.11"

# What to unpack: headers, libraries and the CMake package, without the Python bindings; and the
# licences, which have to be shipped with the libraries.
WANTED_FOLDERS = ("openvino/include/", "openvino/libs/", "openvino/cmake/")
LICENCE_PATTERN = re.compile(r"openvino-[^/]+\.dist-info/(?:.*/)?([^/]*licen[cs]e[^/]*|[^/]*third-party[^/]*)",
                             re.IGNORECASE)


def locked_version():
    match = re.search(r"^openvino==(\S+)", LOCK_FILE.read_text(encoding="utf-8"), re.MULTILINE)
    if not match:
        sys.exit(f"fetch_openvino: no pinned version in {LOCK_FILE.name}")
    return match.group(1)


def host_system():
    machine = {"amd64": "x86_64", "arm64": "aarch64"}.get(platform.machine().lower(), platform.machine())
    return f"{platform.system().lower()}-{machine}"


def cache_root():
    named = os.environ.get("QUAVIN_CACHE_DIR")
    if named:
        return pathlib.Path(named).resolve()
    if os.name == "nt" and os.environ.get("LOCALAPPDATA"):
        return pathlib.Path(os.environ["LOCALAPPDATA"]) / "quavin"
    base = os.environ.get("XDG_CACHE_HOME")
    return (pathlib.Path(base) if base else pathlib.Path.home() / ".cache") / "quavin"


def download(system, folder):
    print(f"fetch_openvino: downloading OpenVINO {locked_version()} for {system}", file=sys.stderr)
    command = [
        sys.executable, "-m", "pip", "download", "--quiet", "--disable-pip-version-check",
        "--no-deps", "--only-binary=:all:", "--require-hashes", "--no-cache-dir",
        "--platform", PLATFORM_TAGS[system], "--python-version", PYTHON_VERSION,
        "--implementation", "cp", "--abi", "cp" + PYTHON_VERSION.replace(".", ""),
        "--dest", str(folder), "--requirement", str(LOCK_FILE),
    ]
    result = subprocess.run(command, stdout=sys.stderr, check=False)
    wheels = list(folder.glob("openvino-*.whl"))
    if result.returncode != 0 or len(wheels) != 1:
        sys.exit(f"fetch_openvino: OpenVINO {locked_version()} for {system} could not be downloaded; "
                 "see pip's output above (is python3-pip installed, and is the package index reachable?)")
    return wheels[0]


def unpack(wheel, folder):
    with zipfile.ZipFile(wheel) as archive:
        for member in archive.namelist():
            licence = LICENCE_PATTERN.fullmatch(member)
            if member.startswith(WANTED_FOLDERS) and ".." not in member.split("/"):
                archive.extract(member, folder)
            elif licence and not member.endswith("/"):
                (folder / "licenses").mkdir(parents=True, exist_ok=True)
                (folder / "licenses" / licence[1]).write_bytes(archive.read(member))


def fetch(system):
    target = cache_root() / f"openvino-{locked_version()}-{system}"
    package = target / "openvino" / "cmake"
    if (package / "OpenVINOConfig.cmake").is_file():
        return package
    target.parent.mkdir(parents=True, exist_ok=True)
    # Unpacked beside the target and renamed at the end, so that an interrupted run leaves no incomplete cache.
    work = pathlib.Path(tempfile.mkdtemp(prefix=".fetch-", dir=target.parent))
    try:
        unpack(download(system, work), work / "unpacked")
        if not (work / "unpacked" / "openvino" / "cmake" / "OpenVINOConfig.cmake").is_file():
            sys.exit("fetch_openvino: the wheel contains no CMake package")
        if not (package / "OpenVINOConfig.cmake").is_file():  # otherwise another run was faster
            shutil.rmtree(target, ignore_errors=True)
            (work / "unpacked").rename(target)
    finally:
        shutil.rmtree(work, ignore_errors=True)
    return package


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n\n", maxsplit=1)[0])
    parser.add_argument("--system", default=host_system(), choices=sorted(PLATFORM_TAGS),
                        help="the system to fetch the runtime for (default: this one)")
    system = parser.parse_args().system
    if system not in PLATFORM_TAGS:
        sys.exit(f"fetch_openvino: there is no pinned runtime for {system}; name an installed one with "
                 "-DOpenVINO_DIR=<folder of OpenVINOConfig.cmake>")
    print(fetch(system).as_posix())


if __name__ == "__main__":
    main()
