"""docs/dependencies.md names the folders that include each dependency's headers, docs/architecture.md every folder."""

import pathlib
import re
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
HEADERS = {
    "RapidJSON": r"rapidjson/",
    "OpenSSL libcrypto": r"openssl/",
    "CLI11": r"CLI/",
    "UTF8-CPP": r"utf8\.h",
    "xxHash": r"xxhash\.h",
}


def folders_that_include(header):
    """The folders of the library and its tool, two levels deep, three for the platforms."""
    found = set()
    for top in ("include", "src", "compat", "tools"):
        for file in (ROOT / top).rglob("*"):
            if file.suffix in (".cpp", ".h", ".hpp") and re.search(
                    rf"#include <{header}", file.read_text(encoding="utf-8")):
                parts = file.relative_to(ROOT).parts
                found.add("/".join(parts[:3 if parts[1] == "platform" else 2]))
    return found


class DependenciesTest(unittest.TestCase):
    def test_the_page_names_the_folders_that_use_each(self):
        page = (ROOT / "docs/dependencies.md").read_text(encoding="utf-8")
        for name, header in HEADERS.items():
            paragraph = re.search(rf"^\*\*{re.escape(name)}\.\*\*.*?(?=\n\n)", page, re.DOTALL | re.MULTILINE)[0]
            used = re.search(r"Used in\s+(.*?)(?:\.\s|;|$)", paragraph, re.DOTALL)[1]
            with self.subTest(name):
                self.assertEqual(folders_that_include(header), set(re.findall(r"`([^`]+)`", used)))


class ArchitectureTest(unittest.TestCase):
    def test_the_tree_has_every_folder(self):
        page = (ROOT / "docs/architecture.md").read_text(encoding="utf-8")
        tree = page.split("## The tree")[1].split("\n## ")[0]
        folders = [*(ROOT / "src").iterdir(), *(ROOT / "tests").iterdir(), *(ROOT / "src/platform").iterdir()]
        for folder in folders:
            if folder.is_dir() and folder.name != "__pycache__" and not folder.name.startswith("."):
                path = folder.relative_to(ROOT).as_posix()
                short = folder.name if path.startswith("src/platform/") else path
                with self.subTest(path):
                    self.assertRegex(tree, rf"`{re.escape(short)}/")


if __name__ == "__main__":
    unittest.main()
