"""Compiles sources with clang for Windows, each by itself, and reports those that it refuses.

Only the compiler's front end runs, with the C and C++ headers of the library's toolchain, and extensions of any
compiler are errors: what passes is plain C++17.

    check_sources.py --compiler clang++-14 --system-include DIR... --include DIR... [--in-front HEADER] FILE...
"""

import argparse
import subprocess
import sys

OPTIONS = [
    "-fno-ms-extensions",
    "-Wall",
    "-Wextra",
    "-Wpedantic",
    "-Wgnu",
    "-Wmicrosoft",
    "-Wshorten-64-to-32",
    "-Werror",
]


def reading(target):
    """Returns the options that make clang read sources for a target with only the headers it is given."""
    return [f"--target={target}", "-fsyntax-only", "-std=c++17", "-nostdinc++", "-nostdlibinc"]


def complaint_about(path, compiler, options):
    """Returns the compiler's output if it refuses a file, otherwise an empty text."""
    # Included, so that "#pragma once" is in a header and not in the main file.
    command = [compiler, *reading("x86_64-w64-mingw32"), *OPTIONS, *options, "-x", "c++", "-"]
    done = subprocess.run(command, input=f'#include "{path}"\n', stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, check=False)
    return done.stdout or f"status {done.returncode}\n" if done.returncode else ""


def add_reading_arguments(parser):
    parser.add_argument("--compiler", required=True)
    parser.add_argument("--system-include", action="append", default=[])
    parser.add_argument("--include", action="append", default=[])


def include_options(given):
    options = [o for folder in given.system_include for o in ("-isystem", folder)]
    return options + [o for folder in given.include for o in ("-I", folder)]


def main(arguments=None):
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    add_reading_arguments(parser)
    parser.add_argument("--define", action="append", default=[])
    parser.add_argument("--in-front", metavar="HEADER", help="included before each file")
    parser.add_argument("files", nargs="+")
    given = parser.parse_args(arguments)
    options = include_options(given) + [f"-D{definition}" for definition in given.define]
    if given.in_front:
        options += ["-include", given.in_front]

    refused = []
    for path in given.files:
        complaint = complaint_about(path, given.compiler, options)
        if complaint:
            refused.append(path)
            print(complaint, end="")
    print(f"{len(given.files) - len(refused)} of {len(given.files)} files pass")
    for path in refused:
        print("refused:", path)
    return 1 if refused else 0


if __name__ == "__main__":
    sys.exit(main())
