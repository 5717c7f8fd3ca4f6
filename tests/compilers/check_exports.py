"""Compares what a DLL exports with what the public headers mark for import.

clang lists the marked declarations with their linker names; objdump lists what the DLL exports. The two lists
must be the same, so that hosts find everything that the headers promise, and nothing else.

    check_exports.py --compiler clang++-14 --objdump OBJDUMP --dll DLL --system-include DIR...
        --include DIR... HEADER...
"""

import argparse
import json
import re
import subprocess
import sys

import check_sources

# Which declarations are looked at: those whose name contains one of these.
FILTERS = ["VelmoraQuavin", "quavin_"]


def objects_in(text):
    """Yields the JSON objects of a text that has other lines between them."""
    decoder = json.JSONDecoder()
    start = text.find("{")
    while start != -1:
        found, end = decoder.raw_decode(text, start)
        yield found
        start = text.find("{", end)


def marked_in(declaration, names=()):
    """Yields the linker's names of the marked declarations below this one."""
    for inner in declaration.get("inner", []):
        path = (*names, inner.get("name", ""))
        kind = inner["kind"]
        if any(attribute["kind"] == "DLLImportAttr" for attribute in inner.get("inner", [])):
            if kind == "CXXRecordDecl":
                if inner["definitionData"].get("isPolymorphic"):
                    nested = "N" + "".join(f"{len(name)}{name}" for name in path) + "E"
                    yield from ("_ZTV" + nested, "_ZTI" + nested)
            elif not inner.get("pure") and not inner.get("explicitlyDeleted"):
                yield inner["mangledName"]
        if kind in ("NamespaceDecl", "CXXRecordDecl"):
            yield from marked_in(inner, path)


def promised_by(header, compiler, options):
    promised = set()
    for name_filter in FILTERS:
        tree = subprocess.run(
            [compiler, *check_sources.READING, *options,
             "-Xclang", "-ast-dump=json", "-Xclang", f"-ast-dump-filter={name_filter}", header],
            stdout=subprocess.PIPE, text=True, check=True).stdout
        promised |= {without_variant(name)
                     for root in objects_in(tree) for name in marked_in({"inner": [root]})}
    return promised


def exported_by(library, objdump):
    listing = subprocess.run([objdump, "-p", library], stdout=subprocess.PIPE, text=True, check=True).stdout
    table = re.search(r"^\[Ordinal/Name Pointer\] Table\n((?:\s+\[.*\n)*)", listing, re.MULTILINE)
    return {without_variant(line.split()[-1]) for line in table[1].splitlines()} if table else set()


def without_variant(name):
    """Returns one name for all variants in which a constructor or destructor is exported."""
    return re.sub(r"([CD])[0-3](?=E)", r"\1", name)


def main(arguments=None):
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    check_sources.add_reading_arguments(parser)
    parser.add_argument("--objdump", required=True)
    parser.add_argument("--dll", required=True)
    parser.add_argument("headers", nargs="+", metavar="header")
    given = parser.parse_args(arguments)

    options = check_sources.include_options(given)
    promised = set().union(*(promised_by(header, given.compiler, options) for header in given.headers))
    exported = exported_by(given.dll, given.objdump)
    for name in sorted(promised - exported):
        print("marked in the headers but not exported:", name)
    for name in sorted(exported - promised):
        print("exported but not marked in the headers:", name)
    print(f"{len(promised)} names are marked, {len(exported)} are exported")
    return 0 if promised and promised == exported else 1


if __name__ == "__main__":
    sys.exit(main())
