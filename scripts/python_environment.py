#!/usr/bin/env python3
"""Puts the packages of requirements files into a virtual environment in the cache, and prints its interpreter.

    scripts/python_environment.py [--system-site-packages] NAME REQUIREMENTS...

With the option, the system's own packages can be imported there too. NAME begins the environment's folder. The cache
folder is that of scripts/fetch_openvino.py. If the environment is there already, the network is not used. If the
packages cannot be installed, it fails with one line on standard error.
"""

import argparse
import hashlib
import pathlib
import shutil
import subprocess
import sys
import tempfile

from fetch_openvino import cache_root


def install(environment, requirements, options):
    # The pip outside installs, so Debian's package with the pip of virtual environments isn't needed.
    subprocess.run([sys.executable, "-m", "venv", "--without-pip", *options, str(environment)], check=True)
    command = [
        sys.executable, "-m", "pip", "--python", str(environment / "bin" / "python"), "install", "--quiet",
        "--disable-pip-version-check", "--only-binary=:all:", "--require-hashes", "--no-cache-dir", "--retries", "1",
    ]
    for file in requirements:
        command += ["--requirement", str(file)]
    result = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True, check=False)
    if result.returncode != 0:
        reason = next((line for line in reversed(result.stdout.splitlines()) if line.startswith("ERROR: ")),
                      f"pip ended with {result.returncode}")
        sys.exit(f"python_environment: the packages of {' and '.join(map(str, requirements))} cannot be installed; is "
                 f"the package index reachable? ({reason})")


def main():
    parser = argparse.ArgumentParser(usage="python_environment.py [--system-site-packages] NAME REQUIREMENTS...")
    parser.add_argument("--system-site-packages", action="append_const", const="--system-site-packages", default=[])
    parser.add_argument("name")
    parser.add_argument("requirements", nargs="+", type=pathlib.Path)
    arguments = parser.parse_args()
    name, requirements = arguments.name, arguments.requirements
    version = f"{sys.version_info.major}.{sys.version_info.minor}"
    digest = hashlib.sha256(b"".join(file.read_bytes() for file in requirements)).hexdigest()[:16]
    target = cache_root() / f"{name}-python{version}-{digest}"
    if not target.is_dir():
        target.parent.mkdir(parents=True, exist_ok=True)
        # Renamed at the end, so that an interrupted run leaves no incomplete cache.
        work = pathlib.Path(tempfile.mkdtemp(prefix=f".{name}-", dir=target.parent))
        try:
            install(work / "environment", requirements, arguments.system_site_packages)
            if not target.is_dir():  # otherwise another run was faster
                (work / "environment").rename(target)
        finally:
            shutil.rmtree(work, ignore_errors=True)
    print(target / "bin" / "python")


if __name__ == "__main__":
    main()
