#!/usr/bin/env python3
"""Contrast of the captions on each shipped skin, as a table: the smallest ratio of caption, highlighted
caption and the caption of a dead button with the gradient behind the labels. Text of the usual size
needs 4.5 (WCAG 2, 1.4.3).

    tools/skin_contrast.py [FOLDER]

The gradient is computed as a straight blend, which differs from the painted one by a rounding; the unit
tests (PanelFocus_test.cpp) check every painted pixel.
"""

import math
import pathlib
import re
import sys

READABLE = 4.5
PITCH = (1740, 1260)  # twips
LABEL = (60, 840, 1695, 435)  # left, top, width and height in a cell
TWIPS = 15  # of a pixel at 96 dpi


def channels(number):
    return number & 255, number >> 8 & 255, number >> 16 & 255


def luminance(color):
    def linear(value):
        value /= 255
        return value / 12.92 if value <= 0.04045 else ((value + 0.055) / 1.055) ** 2.4

    red, green, blue = map(linear, color)
    return 0.2126 * red + 0.7152 * green + 0.0722 * blue


def contrast(a, b):
    first, second = luminance(a) + 0.05, luminance(b) + 0.05
    return max(first, second) / min(first, second)


def skin_of(path):
    text = path.read_text(encoding="utf-8-sig")
    return dict(re.findall(r'name="([^"]+)" value="([^"]*)"', text))


def label_grounds(skin):
    """The colours behind each visible label."""
    columns = int(skin["iconsperrow"])
    shown = sum(entry[2:] != "0" for entry in skin["displayicons"].split("|"))
    rows = -(-shown // columns)
    width = (columns * PITCH[0] + 90) / TWIPS
    height = (rows * PITCH[1] + 390) / TWIPS
    angle = math.radians(float(skin["angle"]))
    across, down = math.cos(angle), -math.sin(angle)
    ends = [x * across + y * down for x in (0, width) for y in (0, height)]
    low, length = min(ends), max(ends) - min(ends)
    first, last = channels(int(skin["colour1"])), channels(int(skin["colour2"]))
    for cell in range(shown):
        left = (cell % columns * PITCH[0] + LABEL[0]) / TWIPS
        top = (cell // columns * PITCH[1] + LABEL[1]) / TWIPS
        grounds = set()
        for x in range(0, LABEL[2] // TWIPS + 1, 4):
            for y in range(0, LABEL[3] // TWIPS + 1):
                share = ((left + x) * across + (top + y) * down - low) / length
                grounds.add(tuple(round(a + (b - a) * share) for a, b in zip(first, last)))
        yield grounds


def weakest(color, grounds):
    return min(contrast(color, ground) for ground in grounds)


def main():
    root = pathlib.Path(__file__).resolve().parent.parent
    folder = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else root / "resources/skins"
    print(f"{'Skin':<16}{'Caption':>9}{'Highlight':>11}{'Dead, at best':>15}")
    for path in sorted(folder.glob("*.qsk")):
        skin = skin_of(path)
        text, bright = (channels(int(skin[name])) for name in ("text1", "text2"))
        figures = [21.0, 21.0, 21.0]
        for grounds in label_grounds(skin):
            figures[0] = min(figures[0], weakest(text, grounds))
            figures[1] = min(figures[1], weakest(bright, grounds))
            best = max(weakest(color, grounds) for color in (text, (0, 0, 0), (255, 255, 255)))
            figures[2] = min(figures[2], best)
        note = "" if min(figures) >= READABLE else "   below 4.5"
        print(f"{path.stem:<16}{figures[0]:9.2f}{figures[1]:11.2f}{figures[2]:15.2f}{note}")


if __name__ == "__main__":
    main()
