"""What scripts/performance_chart.py draws of small pages, and how it compares the chart with the page."""

import pathlib
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree

sys.dont_write_bytecode = True
SCRIPTS = pathlib.Path(__file__).resolve().parents[2] / "scripts"
sys.path.insert(0, str(SCRIPTS))

import performance_chart  # noqa: E402  # from the folder above

TABLE = "## Speed\n\n| what | bound | measured | noise |\n|---|---|---|---|\n"
FAST = "| `go`, once | 0.80x of by hand | 0.500x; as a guest 0.900x | 1.000x |\n"
SLOW = "| `stop` <now> | below 1.00x of others & us | **missed**: 1.500x (7 rounds) | 1.010x |\n"
MEMORY = "| its peak memory | within 5 % of by hand | 141 MiB, the same | |\n"
RATE = "| two at once, predictions per second | 1.15x of one | 1.19x | 0.99x |\n"
NAMESPACE = "{http://www.w3.org/2000/svg}"


def rows_of(*rows):
    return performance_chart.read_rows(TABLE + "".join(rows))


def drawn(*rows):
    return ElementTree.fromstring(performance_chart.Drawing(rows_of(*rows)).svg())


def texts(svg):
    return ["".join(text.itertext()) for text in svg.iter(f"{NAMESPACE}text")]


class ReadingTest(unittest.TestCase):
    def test_a_row_has_the_first_ratio_of_each_cell_and_what_it_is_a_ratio_of(self):
        self.assertEqual([performance_chart.Row("Speed", "go, once", "by hand", "0.80", "0.500", False)], rows_of(FAST))

    def test_a_missed_bound_is_noticed(self):
        self.assertEqual([performance_chart.Row("Speed", "stop <now>", "others & us", "1.00", "1.500", True)],
                         rows_of(SLOW))

    def test_rows_without_a_ratio_and_rates_are_left_out(self):
        self.assertEqual(["go, once"], [row.what for row in rows_of(MEMORY, RATE, FAST)])

    def test_other_tables_are_left_out(self):
        other = "| what | bound | measured |\n|---|---|---|\n| `go` | 0.80x of by hand | 0.500x |\n"
        self.assertEqual(1, len(performance_chart.read_rows(TABLE + FAST + "\n" + other)))

    def test_a_page_without_rows_is_refused(self):
        with self.assertRaisesRegex(performance_chart.PageError, "no row"):
            rows_of(MEMORY)

    def test_a_ratio_of_nothing_is_refused(self):
        with self.assertRaisesRegex(performance_chart.PageError, 'bound of "`go`" does not say'):
            rows_of("| `go` | 0.80x | 0.500x | 1.000x |\n")

    def test_a_bound_without_a_measured_ratio_is_refused(self):
        with self.assertRaisesRegex(performance_chart.PageError, 'no ratio was measured for "`go`"'):
            rows_of("| `go` | 0.80x of by hand | soon | |\n")

    def test_a_row_with_too_few_cells_is_refused(self):
        with self.assertRaisesRegex(performance_chart.PageError, "4 cells"):
            rows_of("| `go` | 0.80x of by hand | 0.500x |\n")


class DrawingTest(unittest.TestCase):
    # The scale ends at 1.5 and is 560 wide: 0.5 is 186.7, and 0.8 is 298.7 to the right of the margin of 20.
    def test_bars_and_marks_are_as_long_as_their_ratios(self):
        svg = drawn(FAST, SLOW)
        bars = [rect.get("width") for rect in svg.iter(f"{NAMESPACE}rect") if rect.get("class") != "ground"]
        marks = [line.get("x1") for line in svg.iter(f"{NAMESPACE}line") if line.get("class") == "bound"]
        self.assertEqual(["186.7", "560.0"], bars)
        self.assertEqual(["318.7", "393.3"], marks)

    def test_every_figure_stands_in_a_text(self):
        found = texts(drawn(FAST, SLOW))
        for text in ("go, once vs. by hand", "0.500x", "0.80x",
                     "stop <now> vs. others & us", "1.500x", "1.00x, missed"):
            self.assertIn(text, found)

    def test_the_description_tells_all_that_the_bars_show(self):
        svg = drawn(FAST, SLOW)
        self.assertEqual("img", svg.get("role"))
        labels = {element.get("id"): element.text for element in svg if element.get("id")}
        self.assertEqual(sorted(svg.get("aria-labelledby").split()), sorted(labels))
        self.assertIn("go, once: 0.500x of by hand, bound 0.80x. ", labels["description"])
        self.assertIn("stop <now>: 1.500x of others & us, bound 1.00x, missed.", labels["description"])

    def test_every_colour_has_one_for_the_dark(self):
        style = drawn(FAST).findtext(f"{NAMESPACE}style")
        light, dark = style.split("@media (prefers-color-scheme: dark)")
        coloured = [line.split("{")[0].strip() for line in light.splitlines() if "#" in line]
        self.assertEqual(coloured, [line.split("{")[0].strip() for line in dark.splitlines() if "#" in line])


class CheckTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = pathlib.Path(folder.name)
        (self.root / "docs").mkdir()
        self.write(TABLE + FAST)

    def write(self, page):
        (self.root / performance_chart.PAGE).write_text(page, encoding="utf-8")

    def run_script(self, *options):
        done = subprocess.run([sys.executable, SCRIPTS / "performance_chart.py", *options, self.root], check=False,
                              stderr=subprocess.PIPE, text=True)
        return done.returncode, done.stderr

    def test_a_chart_just_drawn_passes(self):
        self.assertEqual((0, ""), self.run_script())
        self.assertEqual((0, ""), self.run_script("--check"))

    def test_a_changed_figure_is_found_and_nothing_is_drawn(self):
        self.run_script()
        chart = (self.root / performance_chart.CHART).read_bytes()
        self.write(TABLE + FAST.replace("0.500x", "0.501x"))
        code, text = self.run_script("--check")
        self.assertEqual(1, code)
        self.assertIn("docs/images/performance.svg differs from the figures in docs/performance.md", text)
        self.assertEqual(chart, (self.root / performance_chart.CHART).read_bytes())

    def test_a_missing_chart_is_found(self):
        self.assertEqual(1, self.run_script("--check")[0])

    def test_an_unreadable_row_is_named_with_its_page(self):
        self.write(TABLE + "| `go` | 0.80x | 0.500x | 1.000x |\n")
        self.assertEqual((1, 'docs/performance.md: the bound of "`go`" does not say what it is a ratio of\n'),
                         self.run_script())


if __name__ == "__main__":
    unittest.main()
