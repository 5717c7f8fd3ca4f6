"""The notices name everything of others that an archive contains, with complete texts; nothing ships without an entry."""

import pathlib
import re
import sys
import tempfile
import unittest
from unittest import mock

import artefacts
from artefacts import DOCUMENTATION, WORK

sys.path.insert(0, str(WORK / "packaging"))

import components  # noqa: E402  # from the folder above

# Beginnings or typical sentences of licences, by what must be inside.
TEXTS = {
    "Apache-2.0": "Version 2.0, January 2004",
    "its grant of patents": "Grant of Patent License",
    "MIT": "to deal in the Software without restriction",
    "BSD": "Redistributions in binary form must reproduce",
    "Boost": "Boost Software License - Version 1.0",
    "GPL-3": "Version 3, 29 June 2007",
    "the exception of GCC's runtime": "GCC RUNTIME LIBRARY EXCEPTION",
}


def notices_of(artefact):
    return (artefact.folder / DOCUMENTATION / "NOTICES.txt").read_text(encoding="utf-8")


class NoticesTest(unittest.TestCase):
    def test_every_binary_that_is_not_ours_has_an_entry(self):
        for artefact in artefacts.artefacts():
            notices = notices_of(artefact)
            others = [path for path in artefact.folder.rglob("*")
                      if artefacts.is_binary(path) and path not in artefacts.ours(artefact)]
            self.assertGreater(len(others), 5)
            for path in others:
                self.assertIn(f"    Shipped: {path.relative_to(artefact.folder).as_posix()}\n", notices)

    def test_what_is_compiled_or_linked_into_our_binaries_has_an_entry(self):
        for artefact in artefacts.artefacts():
            names = ["OpenVINO runtime", "oneTBB", "RapidJSON", "CLI11", "UTF8-CPP", "xxHash", "GCC runtime library"]
            names += ["MinGW-w64 runtime"] if artefact.is_windows else ["OpenSSL", "GNU C Library"]
            for name in names:
                self.assertRegex(notices_of(artefact), rf"(?m)^{name} \S")

    def test_the_version_of_the_cryptography_inside_is_the_one_in_the_notices(self):
        for artefact in artefacts.for_linux():
            stated = re.search(r"(?m)^OpenSSL (\d+\.\d+\.\d+)-", notices_of(artefact))[1]
            self.assertIn(f"\0{stated}\0".encode(), artefact.library.read_bytes())

    def test_the_texts_are_complete(self):
        for artefact in artefacts.artefacts():
            for what, sentence in TEXTS.items():
                self.assertIn(sentence, notices_of(artefact), what)

    def test_every_text_that_an_entry_refers_to_is_there(self):
        for artefact in artefacts.artefacts():
            notices = notices_of(artefact)
            referred = {number for line in notices.splitlines() if line.startswith("    Texts below: ")
                        for number in line.split(": ")[1].split(", ")}
            self.assertTrue(referred)
            for number in referred:
                self.assertRegex(notices, rf"(?m)^Text {number}: \S")

    def test_they_say_that_no_licence_is_granted_for_the_project_itself(self):
        for artefact in artefacts.artefacts():
            self.assertIn("No licence has been granted yet", notices_of(artefact))


class RefusalTest(unittest.TestCase):
    """Packing fails if something is inside that no component claims."""

    def refusal(self, *, files=(), headers=(), objects=()):
        with tempfile.TemporaryDirectory(dir=WORK) as folder:
            for name in files:
                path = pathlib.Path(folder, name)
                path.parent.mkdir(parents=True, exist_ok=True)
                path.touch()
            with mock.patch.object(components, "compiled_headers", return_value=list(headers)), \
                    mock.patch.object(components, "linked_objects", return_value=list(objects)), \
                    self.assertRaises(components.UnknownContent) as caught:
                components.find(pathlib.Path(folder), pathlib.Path(folder))
        return str(caught.exception)

    def test_a_shipped_file_without_an_entry_is_refused(self):
        said = self.refusal(files=["bin/quavin", "lib/quavin/libsurprise.so.1"])
        self.assertIn("lib/quavin/libsurprise.so.1", said)
        self.assertNotIn("bin/quavin", said)

    def test_a_compiled_header_without_an_entry_is_refused(self):
        self.assertIn("/opt/boost/any.hpp", self.refusal(headers=["/usr/include/rapidjson/document.h", "/opt/boost/any.hpp"]))

    def test_a_linked_library_without_an_entry_is_refused(self):
        self.assertIn("/opt/libz.a", self.refusal(objects=["/opt/libz.a"]))

    def test_a_build_without_the_linkers_record_is_refused(self):
        with tempfile.TemporaryDirectory(dir=WORK) as folder, self.assertRaises(components.UnknownContent):
            components.linked_objects(pathlib.Path(folder))


if __name__ == "__main__":
    unittest.main()
