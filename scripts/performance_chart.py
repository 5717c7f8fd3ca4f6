#!/usr/bin/env python3
"""Draws the ratios in the tables of docs/performance.md as docs/images/performance.svg.

    scripts/performance_chart.py [ROOT]
    scripts/performance_chart.py --check [ROOT]

The second form draws nothing, and exits with 1 if the chart is not what the page's figures give. ROOT is a tree to
use instead of this one.

A row of a table headed "what | bound | measured | noise" is drawn if its bound is a ratio, such as "0.50x of by hand"
or "below 1.00x of by hand"; the first ratio under "measured" is its bar. Bounds in other units, and rates "per second",
where more is better, are left out.
"""

import pathlib
import re
import sys
from dataclasses import dataclass
from xml.sax.saxutils import escape

PAGE = "docs/performance.md"
CHART = "docs/images/performance.svg"
TITLE = "Time compared with the alternative"

HEADER = ["what", "bound", "measured", "noise"]
BOUND = re.compile(r"(?:below )?(\d+\.\d+)x(?: of (.+))?")
MEASURED = re.compile(r"(\*\*missed\*\*: )?(\d+\.\d+)x")

WIDTH, MARGIN = 860, 20
BARS, STEP = 560, 0.5  # the width of the scale, and the ratio between its lines
MEASURED_AT, BOUND_AT = 640, 725
TOP, SECTION, ROW, BAR = 84, 40, 38, 12


@dataclass(frozen=True)
class Row:
    section: str
    what: str
    base: str
    bound: str
    ratio: str
    missed: bool

    def text(self):
        outcome = ", missed" if self.missed else ""
        return f"{self.what}: {self.ratio}x of {self.base}, bound {self.bound}x{outcome}"


class PageError(Exception):
    """The page has a row that cannot be drawn; the text says which."""


def plain(cell):
    return cell.replace("`", "").strip()


def read_row(section, cells):
    """The row of these cells, or None if it is not to be drawn."""
    what, bound, measured, _ = cells
    limit = BOUND.fullmatch(plain(bound))
    if not limit or "per second" in what:
        return None
    ratio = MEASURED.match(plain(measured))
    if not ratio:
        raise PageError(f'no ratio was measured for "{what}"')
    if not limit[2]:
        raise PageError(f'the bound of "{what}" does not say what it is a ratio of')
    return Row(section, plain(what), limit[2], limit[1], ratio[2], bool(ratio[1]))


def read_rows(page):
    """The rows to draw, in the page's order."""
    rows, section, in_table = [], "", False
    for line in page.splitlines():
        cells = [cell.strip() for cell in line.strip().strip("|").split("|")] if line.startswith("|") else []
        if line.startswith("## "):
            section = line[3:].strip()
        if cells == HEADER:
            in_table = True
        elif not cells:
            in_table = False
        elif in_table and not set(line) <= set("|-: "):
            if len(cells) != len(HEADER):
                raise PageError(f"a row does not have {len(HEADER)} cells: {line}")
            rows.append(read_row(section, cells))
    rows = [row for row in rows if row]
    if not rows:
        raise PageError("there is no row to draw")
    return rows


STYLE = """\
    .ground { fill: #ffffff }
    text { fill: #1f2328; font: 13px system-ui, -apple-system, "Segoe UI", "DejaVu Sans", sans-serif }
    .title { font-size: 17px; font-weight: 600 }
    .section { font-size: 15px; font-weight: 600 }
    .note { fill: #59636e }
    .figure { font-weight: 600 }
    .grid { stroke: #d1d9e0 }
    .one { stroke: #59636e; stroke-dasharray: 4 3 }
    .bar { fill: #0969da }
    .missed { fill: #bc4c00 }
    .bound { stroke: #1f2328; stroke-width: 3 }
    @media (prefers-color-scheme: dark) {
      .ground { fill: #0d1117 }
      text { fill: #e6edf3 }
      .note { fill: #9198a1 }
      .grid { stroke: #3d444d }
      .one { stroke: #9198a1 }
      .bar { fill: #4493f8 }
      .missed { fill: #db6d28 }
      .bound { stroke: #e6edf3 }
    }"""


class Drawing:
    def __init__(self, rows):
        self._rows = rows
        self._end = -(-max(float(figure) for row in rows for figure in (row.bound, row.ratio)) // STEP) * STEP
        self._parts = []
        self._text(MARGIN, 30, "title", TITLE)
        self._text(MARGIN, 54, "note", "Shorter is better. The dashed line is 1.00x, as long as the alternative takes.")
        self._text(MARGIN, 74, "note", "The thick mark is the bound; a bar may pass it by the machine's noise.")

    def _x(self, ratio):
        return round(MARGIN + BARS * float(ratio) / self._end, 1)

    def _text(self, x, y, kind, text, note=""):
        more = f' <tspan class="note">{escape(note)}</tspan>' if note else ""
        self._parts.append(f'<text x="{x}" y="{y}" class="{kind}">{escape(text)}{more}</text>')

    def _line(self, ratio, top, bottom, kind):
        x = self._x(ratio)
        self._parts.append(f'<line x1="{x}" y1="{top}" x2="{x}" y2="{bottom}" class="{kind}"/>')

    def _section(self, name, y):
        self._text(MARGIN, y + 28, "section", name)
        for x, heading in ((self._x(1) - 16, "1.00x"), (MEASURED_AT, "measured"), (BOUND_AT, "bound")):
            self._text(x, y + 28, "note", heading)

    def _row(self, row, y):
        for step in range(int(self._end / STEP) + 1):
            ratio = step * STEP
            self._line(ratio, y + 19, y + 25 + BAR, "one" if ratio == 1 else "grid")
        self._text(MARGIN, y + 14, "what", row.what, f"vs. {row.base}")
        width = round(self._x(row.ratio) - MARGIN, 1)
        kind = "missed" if row.missed else "bar"
        self._parts.append(f'<rect x="{MARGIN}" y="{y + 22}" width="{width}" height="{BAR}" class="{kind}"/>')
        self._line(row.bound, y + 19, y + 25 + BAR, "bound")
        self._text(MEASURED_AT, y + 33, "figure", f"{row.ratio}x")
        self._text(BOUND_AT, y + 33, "note", f"{row.bound}x" + (", missed" if row.missed else ""))

    def svg(self):
        y, section = TOP, None
        for row in self._rows:
            if row.section != section:
                section = row.section
                self._section(section, y)
                y += SECTION
            self._row(row, y)
            y += ROW
        return self._page(y + 16)

    def _page(self, height):
        description = f"Bar chart. {'. '.join(row.text() for row in self._rows)}."
        body = "\n".join(f"  {part}" for part in self._parts)
        return (f'<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 {WIDTH} {height}" width="{WIDTH}" '
                f'height="{height}" role="img" aria-labelledby="title description">\n'
                f'  <title id="title">{escape(TITLE)}</title>\n'
                f'  <desc id="description">{escape(description)}</desc>\n'
                f"  <style>\n{STYLE}\n  </style>\n"
                f'  <rect width="{WIDTH}" height="{height}" class="ground"/>\n'
                f"{body}\n</svg>\n")


def main():
    arguments = sys.argv[1:]
    check = "--check" in arguments
    folders = [argument for argument in arguments if argument != "--check"]
    root = pathlib.Path(folders[0] if folders else pathlib.Path(__file__).resolve().parent.parent)
    chart = root / CHART
    try:
        drawn = Drawing(read_rows((root / PAGE).read_text(encoding="utf-8"))).svg()
    except PageError as error:
        sys.exit(f"{PAGE}: {error}")
    if not check:
        chart.parent.mkdir(exist_ok=True)
        chart.write_text(drawn, encoding="utf-8")
    elif not chart.is_file() or chart.read_text(encoding="utf-8") != drawn:
        sys.exit(f"{CHART} differs from the figures in {PAGE}: run scripts/performance_chart.py")


if __name__ == "__main__":
    main()
