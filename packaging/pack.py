#!/usr/bin/env python3
"""Makes archives, with notices and bills of materials, of what cpack has installed. Run by packaging/pack.cmake."""

import argparse
import os
import pathlib
import shutil
import subprocess
import sys

import archives
import components
import notices
import spdx

OUR_BINARIES = ("lib/libquavin_on_device_sdk.so.*.*.*", "bin/quavin", "bin/quavin.exe", "bin/quavin_on_device_sdk.dll")
# Nine tenths of these are symbols.
TOOLCHAIN_DLLS = ("bin/libstdc++-6.dll", "bin/libgcc_s_seh-1.dll", "bin/libwinpthread-1.dll")
NOTICES = "share/doc/quavin_on_device_sdk/NOTICES.txt"


def split_debug_symbols(staged, symbols, objcopy):
    """Moves the debug symbols of our binaries to where debuggers look for them once both archives are unpacked."""
    for binary in (path for pattern in OUR_BINARIES for path in sorted(staged.glob(pattern)) if not path.is_symlink()):
        separate = symbols / binary.relative_to(staged).parent / ".debug" / f"{binary.name}.debug"
        separate.parent.mkdir(parents=True, exist_ok=True)
        for options in (["--only-keep-debug", str(binary), str(separate)],
                        ["--strip-unneeded", f"--add-gnu-debuglink={separate}", str(binary)]):
            subprocess.run([objcopy, *options], check=True)
        separate.chmod(0o644)
    for dll in (staged / name for name in TOOLCHAIN_DLLS):
        if dll.exists():
            subprocess.run([objcopy, "--strip-unneeded", str(dll)], check=True)


def pack(folder, name, inside, options):
    """Writes one archive and its bill of materials, and returns their paths."""
    when = int(os.environ["SOURCE_DATE_EPOCH"])
    is_windows = "-windows-" in options.name
    archive = options.output / f"{name}{'.zip' if is_windows else '.tar.gz'}"
    # Both archives have the same folder, so that the symbols can be unpacked over the rest.
    (archives.write_zip if is_windows else archives.write_tar)(folder, options.name, archive, when)
    bill = archive.with_name(f"{archive.name}.spdx.json")
    bill.write_text(spdx.bill(folder, options.name, archive, options.version, inside, when), encoding="utf-8")
    return [archive, bill]


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    for option in ("staged", "build", "output"):
        parser.add_argument(f"--{option}", type=pathlib.Path, required=True)
    for option in ("name", "version", "objcopy"):
        parser.add_argument(f"--{option}", required=True)
    options = parser.parse_args()
    if "SOURCE_DATE_EPOCH" not in os.environ:
        sys.exit("pack: set SOURCE_DATE_EPOCH to the time of the commit, as scripts/release-archives.sh does")
    symbols = options.staged.with_name(f"{options.staged.name}-debug")
    shutil.rmtree(symbols, ignore_errors=True)
    split_debug_symbols(options.staged, symbols, options.objcopy)
    try:
        inside = components.find(options.staged, options.build)
    except components.UnknownContent as error:
        sys.exit(f"pack: {error}")
    (options.staged / NOTICES).write_text(notices.notices(inside, options.name), encoding="utf-8")
    made = pack(options.staged, options.name, inside, options)
    made += pack(symbols, f"{options.name}-debug", [], options)
    print("\n".join(str(path) for path in made))


if __name__ == "__main__":
    main()
