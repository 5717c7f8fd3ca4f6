"""The sketch program on a screen, with a mouse: what it recognises, and what it shows of it.

SKETCH_PROGRAM names the program.
"""

import os
import pathlib
import subprocess
import tempfile
import unittest

from PIL import Image, ImageChops
from screen import PICTURE, SECONDS, draw_frames, sketch

PROGRAM = os.environ["SKETCH_PROGRAM"]
BARS = (424, 144, 224, 24)  # left and top of the first, the length of a whole one, and down to the next
LARGEST, BAR = (0xFB, 0xBF, 0x24), (0x60, 0xA5, 0xFA)


def bar_lengths(picture):
    """The length of each digit's bar in pixels, and which of them stands out."""
    left, top, whole, pitch = BARS
    rows = [[picture.getpixel((left + x, top + 7 + pitch * digit)) for x in range(whole)] for digit in range(10)]
    return ([sum(pixel in (LARGEST, BAR) for pixel in row) for row in rows],
            [digit for digit, row in enumerate(rows) if row[0] == LARGEST])


class SketchTest(unittest.TestCase):
    def test_each_drawn_digit_is_recognised_and_its_bars_match(self):
        with sketch(PROGRAM) as window:
            window.wait_for(r"ready after .*")
            for digit in range(10):
                with self.subTest(digit):
                    probabilities = window.digit(digit)
                    lengths, largest = bar_lengths(window.screenshot())
                    self.assertEqual(probabilities.index(max(probabilities)), digit)
                    self.assertEqual(largest, [digit])
                    for length, probability in zip(lengths, probabilities):
                        self.assertAlmostEqual(length, BARS[2] * probability, delta=0.51)
                    window.clear()
            self.assertEqual(bar_lengths(window.screenshot()), ([0] * 10, []))
        self.assertEqual(window.process.returncode, 0)

    def test_a_small_digit_in_a_corner_is_recognised_too(self):
        with sketch(PROGRAM) as window:
            window.wait_for(r"ready after .*")
            probabilities = window.digit(5, scale=0.8, left=40, top=270)
            self.assertEqual(probabilities.index(max(probabilities)), 5)

    def test_probabilities_move_before_the_button_is_released(self):
        with sketch(PROGRAM) as window:
            window.wait_for(r"ready after .*")
            path = window.path([(12, 8), (86, 8), (58, 50), (40, 97)])
            window.mouse(path[0], ("mousedown", 1), *path[1:20])
            before = window.probabilities("drawing")
            window.mouse(*path[20:])
            while (after := window.probabilities("drawing")).index(max(after)) != 7:
                pass
            self.assertNotEqual(before, after)

    def test_the_window_is_drawn_while_the_model_loads(self):
        with sketch(PROGRAM) as window:
            frames = window.wait_for(r"ready after \d+ ms, frames meanwhile: (\d+)")[1]
            self.assertGreaterEqual(int(frames), 1)

    def test_a_package_that_cannot_be_loaded_is_a_failure(self):
        with tempfile.TemporaryDirectory() as folder, sketch(PROGRAM, pathlib.Path(folder)) as window:
            self.assertIn(folder, window.process.stderr.readline())
            lengths, _ = bar_lengths(window.screenshot())
            self.assertEqual(lengths, [0] * 10)
        self.assertEqual(window.process.returncode, 1)

    def test_without_a_screen_it_says_so(self):
        result = subprocess.run([PROGRAM, "package"], capture_output=True, text=True, timeout=SECONDS, check=False,
                                env={**os.environ, "DISPLAY": ":none", "SDL_VIDEODRIVER": "x11"})
        self.assertEqual(result.returncode, 1)
        self.assertRegex(result.stderr, "^sketch: .+")

    def test_other_arguments_are_refused_with_the_usage(self):
        result = subprocess.run([PROGRAM, "--print"], capture_output=True, text=True, timeout=SECONDS, check=False)
        self.assertEqual((result.returncode, result.stderr),
                         (2, "usage: sketch [--print] <folder of the digits package>\n"))

    def test_the_picture_in_the_readme_is_what_the_program_shows(self):
        [shown] = draw_frames(PROGRAM, 1)
        with Image.open(PICTURE) as picture:
            picture.seek(picture.n_frames - 1)
            difference = ImageChops.difference(shown, picture.convert("RGB")).convert("L")
        # A GIF's shades are not exact, and other processors round differently, which may move the end of a bar.
        self.assertLess(sum(difference.histogram()[16:]), 200, "make it anew: scripts/test-sketch.sh --picture")


if __name__ == "__main__":
    unittest.main()
