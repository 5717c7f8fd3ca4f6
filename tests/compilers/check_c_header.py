"""Compiles the C interface's header for several systems, alone, as C99 and as C++, and reports every warning.

Nothing but the compiler's own headers is used: what passes needs no library.

    check_c_header.py --compiler clang++-14 INCLUDE
"""

import argparse
import subprocess
import sys

TARGETS = ["x86_64-linux-gnu", "aarch64-linux-gnu", "x86_64-w64-mingw32", "x86_64-pc-windows-msvc", "arm64-apple-macos"]
LANGUAGES = [("c", "c99"), ("c", "c11"), ("c++", "c++11"), ("c++", "c++17")]

OPTIONS = [
    "-fsyntax-only",
    "-ffreestanding",
    "-nostdlibinc",
    "-nostdinc++",
    "-pedantic-errors",
    "-Wall",
    "-Wextra",
    "-Werror",
]

# Twice, as two headers of a host might, and with what hosts write.
PROGRAM = """#include "quavin/c.h"
#include "quavin/c.h"

int use(void);
int use(void) {
    quavin_config config = QUAVIN_CONFIG_INIT;
    quavin_engine_options engine = QUAVIN_ENGINE_OPTIONS_INIT;
    quavin_load_options options = QUAVIN_LOAD_OPTIONS_INIT;
    quavin_keys keys = QUAVIN_KEYS_INIT;
    quavin_metadata metadata = QUAVIN_METADATA_INIT;
    quavin_port port = QUAVIN_PORT_INIT;
    quavin_output output = QUAVIN_OUTPUT_INIT;
    quavin_engine_details details = QUAVIN_ENGINE_DETAILS_INIT;
    quavin_registry_entry entry = QUAVIN_REGISTRY_ENTRY_INIT;
    config.engine = &engine;
    options.engine = &engine;
    options.keys = &keys;
    return quavin_init(&config) == QUAVIN_SUCCESS && metadata.size && port.size && output.size && details.size &&
           entry.size && options.size;
}
"""


def complaint_about(compiler, include, target, language, standard):
    """Returns the compiler's output if it has anything to say."""
    command = [compiler, *OPTIONS, f"--target={target}", f"-std={standard}", "-I", include, "-x", language, "-"]
    done = subprocess.run(command, input=PROGRAM, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          check=False)
    return done.stdout or (f"status {done.returncode}\n" if done.returncode else "")


def main(arguments=None):
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("--compiler", required=True)
    parser.add_argument("include")
    given = parser.parse_args(arguments)

    tries = [(target, *language) for target in TARGETS for language in LANGUAGES]
    refused = 0
    for target, language, standard in tries:
        complaint = complaint_about(given.compiler, given.include, target, language, standard)
        if complaint:
            refused += 1
            print(f"as {standard} for {target}:\n{complaint}", end="")
    print(f"{len(tries) - refused} of {len(tries)} compilations pass")
    return 1 if refused else 0


if __name__ == "__main__":
    sys.exit(main())
