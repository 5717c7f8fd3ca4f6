#!/usr/bin/env python3
"""Puts Debian's Python for arm64 into a cache and prints its interpreter.

scripts/build-wheel.sh runs it under qemu. arm64_packages.py says where it comes from.
"""

import sys

from arm64_packages import fetch

PYTHON = f"python{sys.version_info.major}.{sys.version_info.minor}"
PACKAGES = (f"{PYTHON}-minimal", f"lib{PYTHON}-minimal", f"lib{PYTHON}-stdlib", "libexpat1", "libffi8", "libssl3",
            "zlib1g")


if __name__ == "__main__":
    program = f"usr/bin/{PYTHON}"
    print((fetch(PYTHON, PACKAGES, (program, f"usr/lib/{PYTHON}/ctypes/__init__.py")) / program).as_posix())
