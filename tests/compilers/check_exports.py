"""Compares what the library exports with what the public headers mark.

clang lists the marked declarations with their linker names; objdump or nm lists what the library exports. The two
lists must be the same, so that hosts find everything that the headers promise, and nothing else.

    check_exports.py --target TRIPLE --compiler clang++-14 --objdump OBJDUMP --nm NM --library FILE
        --system-include DIR... --include DIR... HEADER...
"""

import argparse
import json
import re
import subprocess
import sys

import check_sources

# clang dumps the declarations whose qualified name contains this: the namespace, and the C functions.
OUR_NAMES = "uavin"
FUNCTIONS = ("FunctionDecl", "CXXMethodDecl", "CXXConstructorDecl", "CXXDestructorDecl", "CXXConversionDecl")


def objects_in(text):
    """Yields the JSON objects of a text that has other lines between them."""
    decoder = json.JSONDecoder()
    start = text.find("{")
    while start != -1:
        found, end = decoder.raw_decode(text, start)
        yield found
        start = text.find("{", end)


def has_attribute(declaration, kind):
    return any(attribute["kind"] == kind for attribute in declaration.get("inner", []))


def is_inline(declaration):
    return (any(declaration.get(reason) for reason in ("inline", "constexpr", "isImplicit", "explicitlyDefaulted"))
            or has_attribute(declaration, "CompoundStmt"))


class DllMarks:
    """clang repeats a class's mark on each of its members that a DLL exports."""

    special_objects = ("_ZTV", "_ZTI")

    @staticmethod
    def apply_to(declaration, _of_marked_class):
        return has_attribute(declaration, "DLLImportAttr")


class VisibilityMarks:
    """The members of a visible class are visible, apart from the inline ones."""

    special_objects = ("_ZTV", "_ZTI", "_ZTS")

    @staticmethod
    def apply_to(declaration, of_marked_class):
        return has_attribute(declaration, "VisibilityAttr") or of_marked_class and (
            declaration["kind"] in FUNCTIONS or declaration.get("storageClass") == "static")


def marked_in(declaration, marks, names=(), of_marked_class=False):
    """Yields the linker's names of the marked declarations below this one."""
    for inner in declaration.get("inner", []):
        path = (*names, inner.get("name", ""))
        kind = inner["kind"]
        marked = marks.apply_to(inner, of_marked_class)
        if marked:
            if kind == "CXXRecordDecl":
                if inner.get("definitionData", {}).get("isPolymorphic"):
                    nested = "N" + "".join(f"{len(name)}{name}" for name in path) + "E"
                    yield from (prefix + nested for prefix in marks.special_objects)
            elif not inner.get("pure") and not inner.get("explicitlyDeleted") and not is_inline(inner):
                yield inner["mangledName"]
        if kind in ("NamespaceDecl", "CXXRecordDecl"):
            yield from marked_in(inner, marks, path, marked and kind == "CXXRecordDecl")


def promised_by(headers, compiler, options, marks):
    # Included, so that "#pragma once" is in a header and not in the main file.
    tree = subprocess.run(
        [compiler, *options, "-Xclang", "-ast-dump=json", "-Xclang", f"-ast-dump-filter={OUR_NAMES}", "-x", "c++", "-"],
        input="".join(f'#include "{header}"\n' for header in headers),
        stdout=subprocess.PIPE, text=True, check=True).stdout
    return {without_variant(name) for name in marked_in({"inner": list(objects_in(tree))}, marks)}


def exported_by_dll(library, objdump):
    listing = subprocess.run([objdump, "-p", library], stdout=subprocess.PIPE, text=True, check=True).stdout
    table = re.search(r"^\[Ordinal/Name Pointer\] Table\n((?:\s+\[.*\n)*)", listing, re.MULTILINE)
    return {without_variant(line.split()[-1]) for line in table[1].splitlines()} if table else set()


def exported_by_elf(library, nm):
    listing = subprocess.run([nm, "--dynamic", "--defined-only", "--format=posix", library],
                             stdout=subprocess.PIPE, text=True, check=True).stdout
    return {without_variant(line.split()[0]) for line in listing.splitlines()}


def without_variant(name):
    """Returns one name for all variants in which a constructor or destructor is exported."""
    return re.sub(r"([CD])[0-3](?=E)", r"\1", name)


def main(arguments=None):
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    check_sources.add_reading_arguments(parser)
    parser.add_argument("--target", required=True)
    parser.add_argument("--objdump", required=True)
    parser.add_argument("--nm", required=True)
    parser.add_argument("--library", required=True)
    parser.add_argument("headers", nargs="+")
    given = parser.parse_args(arguments)

    options = check_sources.reading(given.target) + check_sources.include_options(given)
    is_dll = "mingw" in given.target
    marks = DllMarks if is_dll else VisibilityMarks
    promised = promised_by(given.headers, given.compiler, options, marks)
    exported = (exported_by_dll(given.library, given.objdump) if is_dll
                else exported_by_elf(given.library, given.nm))
    for name in sorted(promised - exported):
        print("marked in the headers but not exported:", name)
    for name in sorted(exported - promised):
        print("exported but not marked in the headers:", name)
    print(f"{len(promised)} names are marked, {len(exported)} are exported")
    return 0 if promised and promised == exported else 1


if __name__ == "__main__":
    sys.exit(main())
