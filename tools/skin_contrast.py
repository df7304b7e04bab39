#!/usr/bin/env python3
"""Contrast of the captions on each shipped skin, as a table: the smallest ratio of caption, highlighted
caption and the caption of a dead button with the gradient behind the labels, and what each needs: 4.5,
or 3 for bold text of 14 points or more (WCAG 2, 1.4.3).

    ./marl contrast [FOLDER]

The gradient is computed as a straight blend, which differs from the painted one by a rounding; the unit
tests (PanelFocus_test.cpp, ShippedSkins_test.cpp) check the painted pixels and the program's own figures.
"""

import math
import pathlib
import re
import sys

READABLE = 4.5
LARGE_BOLD = (14, 3.0)  # points, and the contrast that is enough from there on
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


def sweep(width, height, angle):
    """How far the gradient has gone at a point, from 0 to 1: the program sweeps a line that is longer
    than the area, so only at right angles does it go from edge to edge."""
    center = width // 2, height // 2
    half = (math.sqrt(2 * max(width, height) ** 2) + 2) / 2
    turn = math.radians((angle + 90) % 360)
    ends = [(sign * half * math.cos(turn) + center[0], -sign * half * math.sin(turn) + center[1])
            for sign in (-1, 1)]
    (ax, ay), (bx, by) = ends
    if abs(ay - by) >= abs(ax - bx):  # steep: sweeps across
        forward = angle <= 90 or angle > 270
        start = -max(ax, bx) if forward else width - min(ax, bx)
        length = width - min(ax, bx) - start if forward else start + max(ax, bx)
        sign = 1 if forward else -1
        return lambda x, y: sign * (x - start - ax - (bx - ax) * (y - ay) / (by - ay)) / length
    upward = angle <= 180
    start = height - min(ay, by) if upward else -max(ay, by)
    length = start + max(ay, by) if upward else height - min(ay, by) - start
    sign = -1 if upward else 1
    return lambda x, y: sign * (y - start - ay - (by - ay) * (x - ax) / (bx - ax)) / length


def label_grounds(skin):
    """The colours behind each visible label."""
    columns = int(skin["iconsperrow"])
    shown = sum(entry[2:] != "0" for entry in skin["displayicons"].split("|"))
    rows = -(-shown // columns)
    width = (columns * PITCH[0] + 90) // TWIPS
    height = (rows * PITCH[1] + 390) // TWIPS
    share = sweep(width, height, float(skin["angle"]))
    first, last = channels(int(skin["colour1"])), channels(int(skin["colour2"]))
    for cell in range(shown):
        left = (cell % columns * PITCH[0] + LABEL[0]) / TWIPS
        top = (cell // columns * PITCH[1] + LABEL[1]) / TWIPS
        grounds = set()
        for x in range(0, LABEL[2] // TWIPS + 1, 4):
            for y in range(0, LABEL[3] // TWIPS + 1):
                part = min(max(share(left + x, top + y), 0), 1)
                grounds.add(tuple(round(a + (b - a) * part) for a, b in zip(first, last)))
        yield grounds


def needed(font):
    """The contrast that text in this font needs; a font is "name|points|styles"."""
    _, points, styles = font.split("|")
    large = "b" in styles.lower() and float(points.replace(",", ".")) >= LARGE_BOLD[0]
    return LARGE_BOLD[1] if large else READABLE


def weakest(color, grounds):
    return min(contrast(color, ground) for ground in grounds)


def main():
    root = pathlib.Path(__file__).resolve().parent.parent
    folder = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else root / "resources/skins"
    print(f"{'Skin':<16}{'Caption':>9}{'Needed':>8}{'Highlight':>11}{'Needed':>8}{'Dead, at best':>15}")
    for path in sorted(folder.glob("*.qsk")):
        skin = skin_of(path)
        text, bright = (channels(int(skin[name])) for name in ("text1", "text2"))
        need = [needed(skin["font1"]), needed(skin["font2"])]
        figures = [21.0, 21.0, 21.0]
        for grounds in label_grounds(skin):
            figures[0] = min(figures[0], weakest(text, grounds))
            figures[1] = min(figures[1], weakest(bright, grounds))
            best = max(weakest(color, grounds) for color in (text, (0, 0, 0), (255, 255, 255)))
            figures[2] = min(figures[2], best)
        low = any(figure < least for figure, least in zip(figures, need + need[:1]))
        print(f"{path.stem:<16}{figures[0]:9.2f}{need[0]:8.1f}{figures[1]:11.2f}{need[1]:8.1f}"
              f"{figures[2]:15.2f}{'   hard to read' if low else ''}")


if __name__ == "__main__":
    main()
