"""How Sphinx makes the site; scripts/build-site.sh puts the pages in place and calls it."""

import pathlib
import re
import sys

from sphinx.domains.c import CDomain
from sphinx.domains.cpp import CPPDomain

root = pathlib.Path(__file__).resolve().parents[2]
build = root / "build" / "site"
sys.path.insert(0, str(root / "python"))

project = "quavin_on_device_sdk"
version_header = (root / "include/quavin/version.h").read_text(encoding="utf-8")
release = ".".join(re.findall(r"#define QUAVIN_VERSION_\w+ (\d+)", version_header))

extensions = ["breathe", "myst_parser", "sphinx.ext.autodoc"]
include_patterns = ["*.md", "docs/**", "examples/*/README.md", "reference/**"]
exclude_patterns = ["docs/site"]
highlight_language = "none"  # of indented blocks, which don't name one

# Anchors as Git hosts make them.
myst_heading_anchors = 6

breathe_projects = {"cpp": str(build / "doxygen-cpp/xml"), "c": str(build / "doxygen-c/xml")}
breathe_default_project = "cpp"
breathe_domain_by_file_pattern = {"*/c.h": "c"}
breathe_show_include = False
suppress_warnings = ["duplicate_declaration.cpp"]  # each header declares the namespace
toc_object_entries_show_parents = "hide"
maximum_signature_line_length = 90  # longer ones have a line for each parameter

# The package opens the library when it is imported, and is only read here.
autodoc_mock_imports = ["numpy", "quavin._library"]
autodoc_member_order = "bysource"
autodoc_typehints_format = "short"
default_role = "py:obj"  # of names between backticks in docstrings

html_theme = "furo"
html_title = f"{project} {release}"
html_static_path = ["site.css"]
html_css_files = ["site.css"]
html_use_index = False  # the search does better
html_domain_indices = False
html_copy_source = False
html_show_copyright = False


def without_parameters(domain):
    """The domain with functions and types alone, so that the search doesn't list a function for each parameter too."""
    class Domain(domain):
        def get_objects(self):
            return (entry for entry in super().get_objects() if entry[2] not in ("functionParam", "templateParam"))

    return Domain


def setup(app):
    app.add_domain(without_parameters(CDomain), override=True)
    app.add_domain(without_parameters(CPPDomain), override=True)
