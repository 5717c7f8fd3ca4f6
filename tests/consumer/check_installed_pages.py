"""The pages that the installed headers name are installed, and links between installed pages resolve.

    check_installed_pages.py PREFIX
"""

import pathlib
import re
import sys

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "scripts"))

import check_snippets  # noqa: E402  # from the folder above

prefix = pathlib.Path(sys.argv[1])
checker = check_snippets.Checker(prefix / "share/doc/quavin_on_device_sdk")
named = {name for header in (prefix / "include/quavin").glob("*.h")
         for name in re.findall(r"docs/[\w.-]+\w", header.read_text(encoding="utf-8"))}
if not named:
    checker.errors.append("the headers name no page: has their wording changed?")
for name in sorted(named):
    if not (checker.root / name).is_file():
        checker.errors.append(f"a header names {name}, which is not installed")
for page in checker.glob(check_snippets.LINKED_PAGES):
    for line, target in page.links():
        checker.resolve(page, line, target)
if checker.errors:
    sys.exit("\n".join(checker.errors))
