"""The archives for Linux need no newer system than docs/releasing.md says, according to the versions of their symbols."""

import re
import unittest

import artefacts

NEEDED = re.compile(r"\((GLIBC|GLIBCXX|CXXABI)_([0-9.]+)\)")
SYSTEM_LIBRARIES = {"libc.so.6", "libm.so.6", "libdl.so.2", "libpthread.so.0", "libstdc++.so.6", "libgcc_s.so.1",
                    "ld-linux-x86-64.so.2", "ld-linux-aarch64.so.1"}


def as_numbers(version):
    return tuple(map(int, version.split(".")))


def stated(artefact):
    """The newest versions that the page allows: a row for each of glibc's and libstdc++'s names of versions."""
    page = (artefact.folder / artefacts.DOCUMENTATION / "docs/releasing.md").read_text(encoding="utf-8")
    rows = re.findall(r"^\| `(GLIBC|GLIBCXX|CXXABI)` \| ([0-9.]+)[^|]*\| ([0-9.]+)", page, re.MULTILINE)
    column = 2 if artefact.system == "linux-arm64" else 1
    return {row[0]: row[column] for row in rows}


class BaselineTest(unittest.TestCase):
    def test_no_binary_needs_newer_symbols_than_stated(self):
        for artefact in artefacts.for_linux():
            newest = dict.fromkeys(("GLIBC", "GLIBCXX", "CXXABI"), "0")
            for path in filter(artefacts.is_binary, artefact.folder.rglob("*")):
                for name, version in NEEDED.findall(artefact.binutil("objdump", "-T", path)):
                    newest[name] = max(newest[name], version, key=as_numbers)
            # Equal, so that the page promises neither too much nor too little.
            self.assertEqual(newest, stated(artefact), artefact.name)

    def test_the_system_provides_only_the_c_and_cpp_libraries(self):
        for artefact in artefacts.for_linux():
            shipped = {path.name for path in artefact.folder.glob("lib/**/*.so*")}
            for path in filter(artefacts.is_binary, artefact.folder.rglob("*")):
                needed = set(re.findall(r"\(NEEDED\).*\[(.+)\]", artefact.binutil("readelf", "-dW", path)))
                self.assertLessEqual(needed, SYSTEM_LIBRARIES | shipped, path)

    def test_the_library_exports_no_symbol_of_the_cryptography_inside(self):
        for artefact in artefacts.for_linux():
            names = artefact.binutil("nm", "-D", "--defined-only", "--format=just-symbols", artefact.library).split()
            self.assertIn("quavin_version", names)
            self.assertEqual([name for name in names if not re.match(r"quavin_|_Z\w*13VelmoraQuavin", name)], [])

    def test_windows_provides_the_rest_of_what_the_dlls_import(self):
        system = {"kernel32.dll", "msvcrt.dll", "bcrypt.dll", "ntdll.dll", "advapi32.dll", "shell32.dll", "user32.dll",
                  # Microsoft's redistributable runtime, which docs/porting.md names.
                  "msvcp140.dll", "vcruntime140.dll", "vcruntime140_1.dll"}
        for artefact in (found for found in artefacts.artefacts() if found.is_windows):
            shipped = {path.name.lower() for path in (artefact.folder / "bin").iterdir()}
            for path in filter(artefacts.is_binary, (artefact.folder / "bin").iterdir()):
                imported = {name.lower() for name in re.findall(r"DLL Name: (\S+)", artefact.binutil("objdump", "-p", path))}
                self.assertEqual({name for name in imported - shipped - system if not name.startswith("api-ms-win-")},
                                 set(), path)


if __name__ == "__main__":
    unittest.main()
