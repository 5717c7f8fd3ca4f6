"""The documentation site in a browser: every page on a phone and on a desktop, every link, and the search.

Runs in the environment of requirements.txt; scripts/test-site.sh does that.
"""

import ast
import functools
import http.server
import json
import os
import pathlib
import re
import threading
import unittest
import urllib.parse

from selenium import webdriver
from selenium.webdriver.chrome.service import Service
from selenium.webdriver.support.wait import WebDriverWait

ROOT = pathlib.Path(__file__).resolve().parents[2]
SITE = ROOT / "dist/site"
SIZES = {"phone": (390, 844), "desktop": (1280, 800)}

# What a page holds, and how wide it is. An element is cut off if it ends right of the window, unless it is in a table
# or a block of code that scrolls by itself.
LOOK = """
const scrolls = element => element.tagName != "ARTICLE"
    && (/auto|scroll/.test(getComputedStyle(element).overflowX) || scrolls(element.parentElement));
const cutOff = element => element.getBoundingClientRect().right > innerWidth + 1 && !scrolls(element);
const all = (selector, read) => [...document.querySelectorAll(selector)].map(read);
return {
    width: document.scrollingElement.scrollWidth,
    cut_off: [...document.querySelectorAll("article *")].filter(cutOff).map(e => e.outerHTML.slice(0, 200)),
    title: document.title,
    headings: all("h1", e => e.textContent),
    ids: all("[id]", e => e.id),
    links: all("a[href]", e => e.href),
    parts: all("link[href]", e => e.href).concat(all("[src]", e => e.src)),
    missing_pictures: [...document.images].filter(i => i.complete && !i.naturalWidth).map(i => i.src),
};
"""


def start_browser():
    options = webdriver.ChromeOptions()
    options.binary_location = "/usr/bin/chromium"
    options.add_argument("--headless=new")
    if os.geteuid() == 0:
        options.add_argument("--no-sandbox")  # which root cannot have
    options.set_capability("goog:loggingPrefs", {"performance": "ALL", "browser": "ALL"})
    # Named, so that Selenium doesn't look for a driver elsewhere.
    browser = webdriver.Chrome(options=options, service=Service("/usr/bin/chromedriver"))
    browser.command_executor.client_config.timeout = 600  # seconds, on a busy machine
    return browser


class QuietHandler(http.server.SimpleHTTPRequestHandler):
    def log_message(self, *_):
        pass


class SiteTest(unittest.TestCase):
    maxDiff = None

    @classmethod
    def setUpClass(cls):
        cls.browser = start_browser()
        cls.addClassCleanup(cls.browser.quit)
        cls.requests, cls.page_messages = [], []
        cls.pages = {}  # page -> size -> what LOOK returns
        for size in SIZES:
            for page in sorted(SITE.rglob("*.html")):
                cls.visit(page.as_uri(), size)
                cls.pages.setdefault(page, {})[size] = cls.browser.execute_script(LOOK)
                cls.page_messages += [f"{page}: {entry['message']}" for entry in cls.browser.get_log("browser")]

    @classmethod
    def visit(cls, url, size):
        width, height = SIZES[size]
        cls.browser.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
            "width": width, "height": height, "deviceScaleFactor": 1, "mobile": size == "phone"})
        cls.browser.get(url)
        events = [json.loads(entry["message"])["message"] for entry in cls.browser.get_log("performance")]
        cls.requests += [event["params"]["request"]["url"] for event in events
                         if event["method"] == "Network.requestWillBeSent"]

    def each(self, check):
        """Calls check(page, size, found) with what was found on every page at every size."""
        for page, sizes in self.pages.items():
            for size, found in sizes.items():
                with self.subTest(page.relative_to(SITE).as_posix(), size=size):
                    check(page, size, found)

    def anchors(self, *page):
        return set(self.pages[SITE.joinpath(*page)]["desktop"]["ids"])

    def search(self, term, base=SITE.as_uri()):
        """The addresses of what the search finds, within the site."""
        self.visit(f"{base}/search.html?q={term}", "phone")
        # Results come one by one, and their number at the end.
        WebDriverWait(self.browser, 120).until(lambda browser: browser.execute_script(
            "return /^Search finished|did not match/.test(document.querySelector('.search-summary')?.textContent)"))
        links = self.browser.execute_script(
            "return [...document.querySelectorAll('#search-results li > a')].map(a => a.href)")
        return [re.sub(r"\?[^#]*", "", link.removeprefix(base + "/")) for link in links]

    def test_every_page_fits_its_window(self):
        def check(_, size, found):
            self.assertLessEqual(found["width"], SIZES[size][0])
            self.assertEqual([], found["cut_off"])
        self.each(check)

    def test_every_page_has_a_title_and_one_main_heading(self):
        def check(page, _, found):
            self.assertTrue(found["title"].strip())
            # The theme's page of search results has a smaller heading.
            self.assertEqual(0 if page.name == "search.html" else 1, len(found["headings"]))
            self.assertTrue(all(heading.strip("¶ ") for heading in found["headings"]))
        self.each(check)

    def test_every_picture_is_shown(self):
        self.each(lambda _, __, found: self.assertEqual([], found["missing_pictures"]))
        self.assertIn("<img", (SITE / "docs/performance.html").read_text(encoding="utf-8"))

    def test_every_link_within_the_site_leads_to_a_file_and_an_anchor(self):
        broken = {}
        for page, sizes in self.pages.items():
            for link in sizes["phone"]["links"] + sizes["desktop"]["links"]:
                url = urllib.parse.urlsplit(link)
                target, anchor = pathlib.Path(urllib.parse.unquote(url.path)), urllib.parse.unquote(url.fragment)
                if url.scheme == "file" and not (SITE in target.parents and target.is_file()
                                                 and (not anchor or anchor in self.anchors(target))):
                    broken[link] = page
        self.assertEqual({}, broken)

    def test_pages_are_made_of_nothing_from_other_hosts(self):
        self.each(lambda _, __, found: self.assertEqual(
            [], [part for part in found["parts"] if not re.match("file:|data:", part)]))
        for style in SITE.rglob("*.css"):
            self.assertNotRegex(style.read_text(encoding="utf-8"), r"url\([\"']?(https?:)?//|@import", style.name)

    def test_the_browser_asks_no_other_host_for_anything(self):
        self.search("predict")
        self.assertGreater(len(self.requests), len(self.pages))
        self.assertEqual([], [url for url in self.requests if not re.match(r"file:|data:|http://127\.0\.0\.1:", url)])

    def test_scripts_on_pages_run_without_errors(self):
        self.assertEqual([], self.page_messages)

    def test_the_search_finds_predict_in_every_language(self):
        found = self.search("predict")
        self.assertIn("reference/python.html#quavin.Model.predict", found)
        self.assertIn("reference/c.html#c.quavin_predict", found)
        self.assertTrue(any(link.startswith("reference/cpp/model.html#") for link in found), found)

    def test_the_search_finds_something_once(self):
        found = self.search("predict")
        self.assertEqual(sorted(set(found)), sorted(found))

    def test_the_search_finds_words_of_the_pages(self):
        self.assertIn("docs/secrets.html", self.search("wiped"))

    def test_the_search_says_so_when_it_finds_nothing(self):
        self.assertEqual([], self.search("xylophone"))

    def test_the_search_shows_the_context_when_a_web_server_delivers_the_site(self):
        handler = functools.partial(QuietHandler, directory=SITE)
        with http.server.ThreadingHTTPServer(("127.0.0.1", 0), handler) as server:
            threading.Thread(target=server.serve_forever, daemon=True).start()
            self.assertIn("docs/secrets.html", self.search("wiped", f"http://127.0.0.1:{server.server_port}"))
            WebDriverWait(self.browser, 120).until(lambda browser: browser.execute_script(
                "return document.querySelector('#search-results .context')?.textContent.includes('wiped')"))

    def test_every_markdown_page_is_on_the_site(self):
        pages = [*ROOT.glob("*.md"), *ROOT.glob("docs/*.md"), *ROOT.glob("docs/decisions/*.md"),
                 *ROOT.glob("examples/*/README.md")]
        self.assertGreater(len(pages), 30)
        wanted = {SITE / page.relative_to(ROOT).with_suffix(".html") for page in pages}
        self.assertEqual(set(), wanted - set(self.pages))

    def test_every_function_of_the_c_interface_is_in_its_reference(self):
        header = (ROOT / "include/quavin/c.h").read_text(encoding="utf-8")
        functions = re.findall(r"^QUAVIN_API [^;(]*?(\w+)\(", header, re.MULTILINE)
        self.assertGreater(len(functions), 30)
        self.assertEqual(set(), {f"c.{name}" for name in functions} - self.anchors("reference/c.html"))

    def test_every_class_of_the_cpp_interface_is_in_its_reference(self):
        classes = 0
        for header in sorted((ROOT / "include/quavin").glob("*.h")):
            if header.name == "c.h":
                continue
            names = re.findall(r"^(?:class|struct) (?:QUAVIN_\w+ )?(\w+)\b(?!::)[^;\n]*\{",
                               header.read_text(encoding="utf-8"), re.MULTILINE)
            classes += len(names)
            anchors = self.anchors("reference/cpp", header.with_suffix(".html").name)
            for name in names:
                of_class = re.compile(f"_CPPv4.*N13VelmoraQuavin{len(name)}{name}E")
                self.assertTrue(any(of_class.fullmatch(anchor) for anchor in anchors), name)
        self.assertGreater(classes, 30)

    def test_every_name_of_the_python_package_is_in_its_reference(self):
        module = ast.parse((ROOT / "python/quavin/__init__.py").read_text(encoding="utf-8"))
        names = next(ast.literal_eval(node.value) for node in module.body
                     if isinstance(node, ast.Assign) and node.targets[0].id == "__all__")
        self.assertEqual(set(), {f"quavin.{name}" for name in names} - self.anchors("reference/python.html"))


if __name__ == "__main__":
    unittest.main()
