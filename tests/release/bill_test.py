"""The bills of materials are valid SPDX 2.3, according to spdx-tools, and agree with the files they describe."""

import hashlib
import re
import unittest

from spdx_tools.spdx.model import ChecksumAlgorithm, RelationshipType
from spdx_tools.spdx.parser.parse_anything import parse_file
from spdx_tools.spdx.validation.document_validator import validate_full_spdx_document

import artefacts
from artefacts import DIST


def sha256(content):
    return hashlib.sha256(content).hexdigest()


def checksum(element, algorithm):
    return next(found.value for found in element.checksums if found.algorithm == algorithm)


class BillTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        # Each archive with the unpacked folder that has its files.
        cls.folders = {archive: folder for artefact in artefacts.artefacts() for archive, folder in (
            (artefact.archive, artefact.folder), (artefact.debug_archive, artefact.symbols))}
        cls.bills = {archive: parse_file(str(archive.with_name(f"{archive.name}.spdx.json"))) for archive in cls.folders}

    def package(self, archive):
        return next(package for package in self.bills[archive].packages if package.file_name == archive.name)

    def test_they_are_valid(self):
        for archive, bill in self.bills.items():
            problems = [message.validation_message for message in validate_full_spdx_document(bill, "SPDX-2.3")]
            self.assertEqual(problems, [], archive.name)

    def test_they_have_the_checksum_of_their_archive(self):
        for archive in self.bills:
            self.assertEqual(checksum(self.package(archive), ChecksumAlgorithm.SHA256), sha256(archive.read_bytes()))

    def test_they_list_every_file_with_its_checksums(self):
        for archive, bill in self.bills.items():
            folder = self.folders[archive]
            listed = {}
            for file in bill.files:
                path = folder / file.name.removeprefix(f"./{folder.name}/")
                content = path.read_bytes()
                self.assertEqual(checksum(file, ChecksumAlgorithm.SHA256), sha256(content), path)
                self.assertEqual(checksum(file, ChecksumAlgorithm.SHA1), hashlib.sha1(content).hexdigest(), path)
                listed[path] = file
            is_debug = "-debug." in archive.name
            expected = {path for path in folder.rglob("*") if path.is_file() and not path.is_symlink()
                        and (path.suffix == ".debug") == is_debug}
            self.assertEqual(set(listed), expected, archive.name)

    def test_they_name_the_components_of_the_notices(self):
        for artefact in artefacts.artefacts():
            notices = (artefact.folder / artefacts.DOCUMENTATION / "NOTICES.txt").read_text(encoding="utf-8")
            entries = set(re.findall(r"(?m)^(\S.*)\n    Licence: ", notices))
            packages = self.bills[artefact.archive].packages
            self.assertEqual(entries, {f"{package.name} {package.version}" for package in packages
                                       if package.file_name is None})

    def test_they_tell_shipped_components_from_linked_ones(self):
        for artefact in artefacts.for_linux():
            kinds = {(relation.related_spdx_element_id, relation.relationship_type)
                     for relation in self.bills[artefact.archive].relationships}
            self.assertIn(("SPDXRef-Component-OpenSSL", RelationshipType.STATIC_LINK), kinds)
            self.assertIn(("SPDXRef-Component-oneTBB", RelationshipType.CONTAINS), kinds)


class ChecksumsTest(unittest.TestCase):
    def test_the_list_of_checksums_has_every_file(self):
        lines = (DIST / "SHA256SUMS").read_text(encoding="utf-8").splitlines()
        listed = dict(reversed(line.split("  ", 1)) for line in lines)
        files = {path.relative_to(DIST).as_posix(): sha256(path.read_bytes())
                 for path in DIST.rglob("*") if path.is_file() and path.name != "SHA256SUMS"}
        self.assertEqual(listed, files)


if __name__ == "__main__":
    unittest.main()
