"""The sketch program on a screen of its own, with a mouse that follows strokes."""

import contextlib
import os
import pathlib
import queue
import re
import subprocess
import threading
import time

from PIL import ImageGrab

ROOT = pathlib.Path(__file__).resolve().parents[2]
PACKAGE = ROOT / "examples/digits/package"
PICTURE = ROOT / "docs/images/sketch.gif"
SIZE = (752, 400)  # of the window
PAPER = (24, 24, 352)  # left, top, side
SECONDS = 60  # to wait for anything; busy machines are slow


def digit_strokes(digit):
    """The strokes of digits.txt, as lists of points on a square of 100."""
    for line in (pathlib.Path(__file__).parent / "digits.txt").read_text(encoding="ascii").splitlines():
        label, strokes = line.split(":")
        if int(label) == digit:
            return [[tuple(map(int, point.split(","))) for point in stroke.split()] for stroke in strokes.split("|")]
    raise ValueError(f"digits.txt has no {digit}")


def smooth(points):
    """The points of a line without its corners, which hands don't draw: twice cuts off a quarter on each side."""
    for _ in range(2):
        cuts = [((3 * x + to_x) / 4, (3 * y + to_y) / 4) for pair in zip(points, points[1:])
                for (x, y), (to_x, to_y) in (pair, pair[::-1])]
        points = [points[0], *cuts, points[-1]]
    return points


def steps(points, length):
    """Points at most this far apart along the line through these."""
    yield points[0]
    for (x, y), (to_x, to_y) in zip(points, points[1:]):
        count = max(1, round(max(abs(to_x - x), abs(to_y - y)) / length))
        for part in range(1, count + 1):
            yield x + (to_x - x) * part / count, y + (to_y - y) * part / count


class Sketch:
    """A running program, and the screen it is on."""

    def __init__(self, display, process):
        self.process = process
        self._display = display
        self._lines: queue.Queue[str] = queue.Queue()
        threading.Thread(target=self._read, daemon=True).start()

    def _read(self):
        for line in self.process.stdout:
            self._lines.put(line.rstrip("\n"))

    def wait_for(self, pattern):
        """The next line that matches; the ones before it are dropped."""
        end = time.monotonic() + SECONDS
        seen = []
        while True:
            try:
                seen.append(self._lines.get(timeout=max(0.0, end - time.monotonic())))
            except queue.Empty:
                raise AssertionError(f"no line matches {pattern!r} after {seen}") from None
            match = re.fullmatch(pattern, seen[-1])
            if match:
                return match

    def mouse(self, *commands):
        words = [str(word) for command in commands for word in command]
        subprocess.run(["xdotool", *words], check=True, timeout=SECONDS, env={**os.environ, "DISPLAY": self._display})

    def path(self, points, scale=2.9, left=PAPER[0] + 31, top=PAPER[1] + 31):
        """Moves of the mouse along points on a square of 100."""
        return [("mousemove", round(left + scale * x), round(top + scale * y)) for x, y in steps(smooth(points), 3)]

    def stroke(self, points, **place):
        """Draws one stroke, and returns the probabilities after it."""
        path = self.path(points, **place)
        self.mouse(path[0], ("mousedown", 1), *path[1:], ("mouseup", 1))
        return self.probabilities("drawn")

    def digit(self, digit, **place):
        """Draws a digit, and returns the probabilities after its last stroke."""
        return [self.stroke(points, **place) for points in digit_strokes(digit)][-1]

    def probabilities(self, kind):
        return [float(word) for word in self.wait_for(rf"{kind}((?: [01]\.\d+){{10}})")[1].split()]

    def clear(self):
        self.mouse(("mousemove", PAPER[0] + 5, PAPER[1] + 5), ("click", 3))
        self.wait_for("cleared")

    def screenshot(self):
        return ImageGrab.grab(xdisplay=self._display).convert("RGB")


@contextlib.contextmanager
def screen():
    """A screen as large as the window; yields its name."""
    read, write = os.pipe()
    server = subprocess.Popen(
        ["Xvfb", "-displayfd", str(write), "-screen", "0", f"{SIZE[0]}x{SIZE[1]}x24", "-nolisten", "tcp", "-noreset"],
        pass_fds=[write], stderr=subprocess.DEVNULL)
    os.close(write)
    try:
        with open(read, encoding="ascii") as number:
            yield f":{number.readline().strip()}"
    finally:
        server.terminate()
        server.wait(SECONDS)


@contextlib.contextmanager
def sketch(program, package=PACKAGE):
    """The program on a new screen; it is closed at the end, and must then end by itself."""
    with screen() as display:
        process = subprocess.Popen([program, "--print", str(package)], stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                                   text=True, env={**os.environ, "DISPLAY": display, "SDL_VIDEODRIVER": "x11"})
        try:
            yield Sketch(display, process)
            process.terminate()  # arrives in the program as the window's being closed
            process.wait(SECONDS)
        finally:
            process.kill()
            process.wait()
            process.stdout.close()
            process.stderr.close()


def draw_frames(program, count):
    """The window while somebody draws a 3, in this many pictures; the last is of the finished digit."""
    with sketch(program) as window:
        window.wait_for(r"ready after .*")
        path = window.path(digit_strokes(3)[0])
        window.mouse(path[0], ("mousedown", 1))
        size = -(-len(path) // count)
        for begin in range(0, len(path), size):
            window.mouse(*path[begin:begin + size])
            last = begin + size >= len(path)
            if last:
                window.mouse(("mouseup", 1))
                window.probabilities("drawn")
            else:
                time.sleep(0.5)  # for what is on its way to the screen
            if last or count > 1:
                yield window.screenshot()
