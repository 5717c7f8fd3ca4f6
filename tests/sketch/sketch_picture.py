"""Draws docs/images/sketch.gif: the sketch program while somebody draws a 3.

    sketch_picture.py PROGRAM
"""

import sys

from PIL import Image
from screen import PICTURE, draw_frames

FRAMES = 8
MILLISECONDS = 260  # for each frame; the last stays longer
HOLD = 4000


def with_palette(frames):
    """The frames with one palette for all."""
    colours = sorted({colour for frame in frames for _, colour in frame.getcolors(1 << 16)})
    palette = Image.new("P", (1, 1))
    palette.putpalette([value for colour in colours for value in colour])
    return [frame.quantize(palette=palette, dither=Image.Dither.NONE) for frame in frames]


first, *others = with_palette(list(draw_frames(sys.argv[1], FRAMES)))
PICTURE.parent.mkdir(exist_ok=True)
first.save(PICTURE, save_all=True, append_images=others, optimize=True, loop=0,
           duration=[MILLISECONDS] * len(others) + [HOLD])
