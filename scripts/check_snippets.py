#!/usr/bin/env python3
"""Checks that the documentation matches the tree.

- A ```cpp or ```python block in README.md or below docs/ follows a line "<!-- from PATH -->" and appears
  verbatim in that file, apart from common indentation: quoted code is compiled or run. For blocks in other
  languages the line is optional.
- Relative links on every page, images included, lead to a file, and their #anchors to a heading.
- Every file in docs/ can be reached by links from docs/README.md.
- Every status code of the public header has a row, with its number, in a table on a reachable page.

docs/site/ is left out: the build of the site, which moves its pages, checks them itself.

    scripts/check_snippets.py [ROOT]

prints the errors and exits with 1, or prints what was checked. ROOT is a tree to check instead of this one.
"""

import pathlib
import re
import sys
import textwrap

FENCE = re.compile(r"^(\s*)(`{3,}|~{3,})\s*(\S*)")
SOURCE = re.compile(r"^\s*<!-- from (\S+) -->\s*$")
LINK = re.compile(r"\[[^\]\[]*\]\(([^)\s]+)\)")
CODE_SPAN = re.compile(r"(`+)(?!`).*?(?<!`)\1(?!`)")
HEADING = re.compile(r"^#{1,6}\s+(.*?)\s*#*$")
STATUS_CODE = re.compile(r"^\s*([A-Z][A-Z0-9_]*)\s*=\s*(\d+),", re.MULTILINE)

SNIPPET_PAGES = ["README.md", "docs/**/*.md"]
LINKED_PAGES = [*SNIPPET_PAGES, "*.md", "examples/*/README.md", "benchmarks/README.md"]
INDEX = "docs/README.md"
SITE = "docs/site"
STATUS_HEADER = "include/quavin/status.h"


class Page:
    """One Markdown file, split into its code blocks and the lines between them."""

    def __init__(self, path):
        self.path = path
        self.blocks = []  # (line number, language, source or None, text)
        self.prose = []  # (line number, line)
        self._split(path.read_text(encoding="utf-8").splitlines())

    def _split(self, lines):
        fence, language, source, begin, body = None, "", None, 0, []
        for number, line in enumerate(lines, 1):
            match = FENCE.match(line)
            if fence is None and match:
                fence, language, begin, body = match[2], match[3], number, []
            elif fence is not None and match and not match[3] and match[2].startswith(fence):
                self.blocks.append((begin, language, source, "\n".join(body)))
                fence, source = None, None
            elif fence is not None:
                body.append(line)
            else:
                self.prose.append((number, line))
                named = SOURCE.match(line)
                if named or line.strip():
                    source = named[1] if named else None
        if fence is not None:
            self.blocks.append((begin, language, source, "\n".join(body)))

    def anchors(self):
        found = set()
        for _, line in self.prose:
            heading = HEADING.match(line)
            if heading:
                text = re.sub(r"\[([^\]]*)\]\([^)]*\)", r"\1", heading[1])
                slug = re.sub(r"[^\w\- ]", "", text.lower()).replace(" ", "-")
                number = 0
                while slug + (f"-{number}" if number else "") in found:
                    number += 1
                found.add(slug + (f"-{number}" if number else ""))
        return found

    def links(self):
        for number, line in self.prose:
            for target in LINK.findall(CODE_SPAN.sub("", line)):
                if not re.match(r"[a-z][a-z0-9+.-]*:", target):
                    yield number, target


class Checker:
    def __init__(self, root):
        self.root = root.resolve()
        self.errors = []
        self.snippets = 0
        self.pages = {}

    def error(self, page, line, text):
        self.errors.append(f"{page.path.relative_to(self.root)}:{line}: {text}")

    def page(self, path):
        path = path.resolve()
        if path not in self.pages:
            self.pages[path] = Page(path)
        return self.pages[path]

    def glob(self, patterns):
        paths = {path for pattern in patterns for path in self.root.glob(pattern) if not self.is_of_site(path)}
        return [self.page(path) for path in sorted(paths)]

    def is_of_site(self, path):
        return self.root / SITE in path.parents

    def check_snippets(self, page):
        for line, language, source, text in page.blocks:
            needs_source = language in ("cpp", "c++", "cxx", "python")
            if source is None and not needs_source:
                continue
            self.snippets += 1
            if source is None:
                self.error(page, line, 'no "<!-- from PATH -->" above this block')
            elif not (self.root / source).is_file():
                self.error(page, line, f"there is no {source}")
            elif not appears(text, (self.root / source).read_text(encoding="utf-8")):
                self.error(page, line, f"this block is not in {source}")

    def resolve(self, page, line, target):
        """The file a link points to, or None if it does not exist."""
        path, _, anchor = target.partition("#")
        file = (page.path.parent / path).resolve() if path else page.path
        if not file.exists() or self.root not in (file, *file.parents):
            self.error(page, line, f"the link {target} leads nowhere")
            return None
        if anchor and file.suffix == ".md" and anchor not in self.page(file).anchors():
            self.error(page, line, f"there is no heading for the link {target}")
        return file

    def reachable(self):
        """The pages and files that can be reached from the index, including the index."""
        index = (self.root / INDEX).resolve()
        if not index.is_file():
            self.errors.append(f"there is no {INDEX}")
            return set()
        seen, open_pages = {index}, [index]
        while open_pages:
            page = self.page(open_pages.pop())
            for _, target in page.links():
                path = target.partition("#")[0]
                file = (page.path.parent / path).resolve() if path else page.path
                if file.exists() and file not in seen:
                    seen.add(file)
                    if file.suffix == ".md":
                        open_pages.append(file)
        return seen

    def check_reach(self, reached):
        for file in sorted((self.root / "docs").rglob("*")):
            if file.is_file() and file.resolve() not in reached and not self.is_of_site(file):
                self.errors.append(f"{INDEX} does not lead to {file.relative_to(self.root)}")

    def check_status_codes(self, reached):
        codes = STATUS_CODE.findall((self.root / STATUS_HEADER).read_text(encoding="utf-8"))
        if not codes:
            self.errors.append(f"no status codes found in {STATUS_HEADER}")
        rows = [line for file in reached if file.suffix == ".md"
                for _, line in self.page(file).prose if line.lstrip().startswith("|")]
        for name, number in codes:
            row = re.compile(rf"\|\s*{number}\s*\|\s*`{name}`\s*\|")
            if not any(row.search(line) for line in rows):
                self.errors.append(f"no table has a row for the status code {number} `{name}`")
        return len(codes)

    def run(self):
        if not (self.root / "README.md").is_file():
            self.errors.append("there is no README.md")
        for page in self.glob(SNIPPET_PAGES):
            self.check_snippets(page)
        linked = self.glob(LINKED_PAGES)
        for page in linked:
            for line, target in page.links():
                self.resolve(page, line, target)
        reached = self.reachable()
        self.check_reach(reached)
        codes = self.check_status_codes(reached)
        return f"{self.snippets} snippets, {len(linked)} pages and {codes} status codes checked"


def appears(snippet, source):
    """Whether `source` contains the lines of `snippet`, ignoring common indentation."""
    wanted = textwrap.dedent(snippet).strip("\n").splitlines()
    lines = source.splitlines()
    if not wanted:
        return False
    for begin in range(len(lines) - len(wanted) + 1):
        part = textwrap.dedent("\n".join(lines[begin:begin + len(wanted)]))
        if part.splitlines() == wanted:
            return True
    return False


def main():
    root = sys.argv[1] if len(sys.argv) > 1 else pathlib.Path(__file__).parent.parent
    checker = Checker(pathlib.Path(root))
    summary = checker.run()
    for error in checker.errors:
        print(error)
    if checker.errors:
        sys.exit(1)
    print(summary)


if __name__ == "__main__":
    main()
