"""Our binaries in the archives have the protections that docs/porting.md lists."""

import re
import unittest

import artefacts

# What a function begins with that a jump may lead to.
LANDING_PADS = {
    "linux-x86_64": (b"\xf3\x0f\x1e\xfa",),  # endbr64
    "linux-arm64": (bytes.fromhex("5f2403d5"), bytes.fromhex("3f2303d5")),  # bti c, paciasp
}


def sections(artefact, path):
    """Address and file offset of each section."""
    table = artefact.binutil("readelf", "-SW", path)
    rows = re.findall(r"\] (\S+) +\w+ +([0-9a-f]{16}) ([0-9a-f]+) ([0-9a-f]+)", table)
    return [(int(address, 16), int(offset, 16), int(size, 16)) for _, address, offset, size in rows if int(address, 16)]


def beginnings(artefact, path):
    """The first bytes of each function that the library exports, by name."""
    content, places = path.read_bytes(), sections(artefact, path)
    found = {}
    for line in artefact.binutil("readelf", "--dyn-syms", "-W", path).splitlines():
        symbol = re.match(r" +\d+: ([0-9a-f]+) +\S+ FUNC +GLOBAL DEFAULT +\d+ (\S+)", line)
        if symbol:
            address = int(symbol[1], 16)
            begin, offset = next((begin, offset) for begin, offset, size in places if begin <= address < begin + size)
            found[symbol[2]] = content[address - begin + offset:][:4]
    return found


class LinuxTest(unittest.TestCase):
    def each(self):
        return [(artefact, path) for artefact in artefacts.for_linux() for path in artefacts.ours(artefact)]

    def test_relocated_data_is_read_only_after_loading(self):
        for artefact, path in self.each():
            self.assertIn("GNU_RELRO", artefact.binutil("readelf", "-lW", path), path)
            self.assertRegex(artefact.binutil("readelf", "-dW", path), r"FLAGS_1.*\bNOW\b", path)

    def test_the_stack_is_not_executable(self):
        for artefact, path in self.each():
            self.assertRegex(artefact.binutil("readelf", "-lW", path), r"GNU_STACK +(0x\w+ +){5}RW +0x", path)

    def test_no_segment_is_both_writable_and_executable(self):
        for artefact, path in self.each():
            self.assertNotRegex(artefact.binutil("readelf", "-lW", path), r"LOAD +(0x\w+ +){5}RWE", path)

    def test_functions_with_buffers_are_protected_and_calls_are_checked(self):
        for artefact, path in self.each():
            names = artefact.binutil("readelf", "--dyn-syms", "-W", path)
            self.assertRegex(names, r"UND __stack_chk_fail\b", path)
            self.assertRegex(names, r"UND __(memcpy|fprintf|memmove|read|snprintf|vsnprintf|\w+)_chk\b", path)

    def test_the_program_can_be_loaded_anywhere(self):
        for artefact in artefacts.for_linux():
            self.assertRegex(artefact.binutil("readelf", "-dW", artefact.tool), r"FLAGS_1.*\bPIE\b")

    def test_exported_functions_begin_where_jumps_may_lead(self):
        # The linker marks the whole library only if the system's start files are marked too, which Debian's are not.
        for artefact in artefacts.for_linux():
            found = beginnings(artefact, artefact.library.resolve())
            self.assertGreater(len(found), 100)
            pads = LANDING_PADS[artefact.system]
            self.assertEqual([name for name, bytes_ in found.items() if bytes_ not in pads], [])

    def test_libraries_are_searched_for_only_beside_ours(self):
        for artefact in artefacts.for_linux():
            for path in filter(artefacts.is_binary, artefact.folder.rglob("*")):
                for place in re.findall(r"\((?:RPATH|RUNPATH)\).*\[(.*)\]", artefact.binutil("readelf", "-dW", path)):
                    for part in place.split(":"):
                        self.assertRegex(part, r"^\$ORIGIN(/\.\./lib|/quavin)?$", path)


class WindowsTest(unittest.TestCase):
    def each(self):
        return [(artefact, path) for artefact in artefacts.artefacts() if artefact.is_windows
                for path in artefacts.ours(artefact)]

    def test_binaries_can_be_loaded_anywhere_and_do_not_execute_data(self):
        for artefact, path in self.each():
            headers = artefact.binutil("objdump", "-p", path)
            for flag in ("DYNAMIC_BASE", "NX_COMPAT", "HIGH_ENTROPY_VA"):
                self.assertRegex(headers, rf"(?m)^\s+{flag}$", path)

    def test_binaries_can_be_relocated(self):
        for artefact, path in self.each():
            self.assertIn(".reloc", artefact.binutil("objdump", "-h", path), path)


if __name__ == "__main__":
    unittest.main()
