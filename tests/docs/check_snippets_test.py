"""Small trees with one error each, and what scripts/check_snippets.py reports about them."""

import pathlib
import sys
import tempfile
import unittest

sys.dont_write_bytecode = True
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[2] / "scripts"))

import check_snippets  # noqa: E402  # from the folder above

GOOD_TREE = {
    "README.md": "# Top\n\nSee [the docs](docs/README.md#all-of-it).\n\n"
                 "<!-- from main.cpp -->\n```cpp\nint main() {\n    return 0;\n}\n```\n",
    "main.cpp": "// A program.\nint main() {\n    return 0;\n}\n",
    "include/quavin/status.h": "enum STATUS_CODE {\n    SUCCESS = 1,  ///< Well.\n"
                               "    FAILURE = 2,  ///< Not well.\n};\n",
    "docs/README.md": "# Docs\n\n## All of it\n\n- [errors](errors.md)\n",
    "docs/errors.md": "# Errors\n\n| code | name |\n|---|---|\n| 1 | `SUCCESS` |\n| 2 | `FAILURE` |\n",
}


class CheckSnippetsTest(unittest.TestCase):
    def errors(self, **changes):
        """Returns the errors of the good tree after some files are replaced, or removed with None."""
        with tempfile.TemporaryDirectory() as folder:
            for name, text in {**GOOD_TREE, **changes}.items():
                if text is not None:
                    path = pathlib.Path(folder, name)
                    path.parent.mkdir(parents=True, exist_ok=True)
                    path.write_text(text, encoding="utf-8")
            checker = check_snippets.Checker(pathlib.Path(folder))
            checker.run()
            return checker.errors

    def with_readme(self, text):
        return self.errors(**{"README.md": text})

    def test_a_good_tree_has_no_errors(self):
        self.assertEqual([], self.errors())

    def test_what_only_the_site_is_made_of_is_left_out(self):
        self.assertEqual([], self.errors(**{"docs/site/index.md": "# Site\n\n[errors](docs/errors.md)\n"}))

    def test_a_block_may_be_indented_less_than_its_source(self):
        text = "<!-- from main.cpp -->\n```cpp\nreturn 0;\n```\n"
        self.assertEqual([], self.with_readme(text))

    def test_a_block_without_a_source_is_found(self):
        self.assertEqual(['README.md:1: no "<!-- from PATH -->" above this block'],
                         self.with_readme("```cpp\nreturn 0;\n```\n"))

    def test_a_source_counts_only_for_the_block_below_it(self):
        text = ("<!-- from main.cpp -->\nSome words.\n```cpp\nreturn 0;\n```\n")
        self.assertEqual(['README.md:3: no "<!-- from PATH -->" above this block'],
                         self.with_readme(text))

    def test_a_block_that_differs_from_its_source_is_found(self):
        text = "<!-- from main.cpp -->\n```cpp\nreturn 1;\n```\n"
        self.assertEqual(["README.md:2: this block is not in main.cpp"], self.with_readme(text))

    def test_indentation_inside_a_block_counts(self):
        text = "<!-- from main.cpp -->\n```cpp\nint main() {\n  return 0;\n}\n```\n"
        self.assertEqual(["README.md:2: this block is not in main.cpp"], self.with_readme(text))

    def test_a_missing_source_is_found(self):
        text = "<!-- from gone.cpp -->\n```cpp\nreturn 0;\n```\n"
        self.assertEqual(["README.md:2: there is no gone.cpp"], self.with_readme(text))

    def test_python_needs_a_source_too(self):
        self.assertEqual(['README.md:1: no "<!-- from PATH -->" above this block'],
                         self.with_readme("```python\nreturn 0\n```\n"))

    def test_a_block_of_another_language_is_compared_if_it_names_a_source(self):
        text = "<!-- from main.cpp -->\n```text\nreturn 1;\n```\n"
        self.assertEqual(["README.md:2: this block is not in main.cpp"], self.with_readme(text))

    def test_blocks_of_other_languages_need_no_source(self):
        self.assertEqual([], self.with_readme("```sh\ntrue\n```\n"))

    def test_a_link_to_a_missing_file_is_found(self):
        self.assertEqual(["README.md:1: the link docs/gone.md leads nowhere"],
                         self.with_readme("[gone](docs/gone.md)\n"))

    def test_a_missing_image_is_found(self):
        self.assertEqual(["README.md:1: the link docs/gone.svg leads nowhere"],
                         self.with_readme("![gone](docs/gone.svg)\n"))

    def test_an_image_on_a_page_is_reachable(self):
        self.assertEqual([], self.errors(**{
            "docs/errors.md": GOOD_TREE["docs/errors.md"] + "\n![a chart](chart.svg)\n", "docs/chart.svg": "<svg/>"}))

    def test_a_link_to_a_missing_heading_is_found(self):
        self.assertEqual(["README.md:1: there is no heading for the link docs/errors.md#gone"],
                         self.with_readme("[gone](docs/errors.md#gone)\n"))

    def test_links_to_other_sites_and_in_code_are_left_alone(self):
        self.assertEqual([], self.with_readme("[a](https://example.org/) and `[b](gone.md)`\n"))

    def test_a_page_not_reachable_from_the_index_is_found(self):
        self.assertEqual(["docs/README.md does not lead to docs/lost.md"],
                         self.errors(**{"docs/lost.md": "# Lost\n"}))

    def test_a_status_code_without_a_row_is_found(self):
        text = GOOD_TREE["docs/errors.md"].replace("| 2 | `FAILURE` |\n", "")
        self.assertEqual(["no table has a row for the status code 2 `FAILURE`"],
                         self.errors(**{"docs/errors.md": text}))

    def test_a_status_code_with_the_wrong_number_is_found(self):
        text = GOOD_TREE["docs/errors.md"].replace("| 2 |", "| 3 |")
        self.assertEqual(["no table has a row for the status code 2 `FAILURE`"],
                         self.errors(**{"docs/errors.md": text}))

    def test_a_missing_readme_is_found(self):
        self.assertEqual(["there is no README.md"], self.errors(**{"README.md": None}))


if __name__ == "__main__":
    unittest.main()
