#!/usr/bin/env python3
"""Draws the textures of the examples and of the node reference.

Usage: tools/textures/draw_textures.py [folder]

The textures are written to examples/textures, or to the given folder. They are committed, and the
build does not regenerate them. All except the flag tile seamlessly; the sky tiles only horizontally.
"""

import sys
from math import cos, hypot, pi, sin, sqrt
from pathlib import Path

import png
from noise import Noise, mix, smooth

# Tiles: columns, rows, and the width of a joint as a fraction of a tile.
COLUMNS, ROWS, JOINT = 8, 8, 0.06
BEVEL = 0.10
RELIEF = 0.055  # height of a tile as a fraction of its width

SUN = 0.48, 0.64, 0.6  # its direction in the sky

FLAME_ROWS, FLAME_COLUMNS, FLAME_SIZE = 4, 8, 48


def tile_at(u, v):
    """Returns (column, row, distance to the joint) at a point, in tiles; v grows downwards."""
    row = int(v * ROWS) % ROWS
    x = u * COLUMNS + (0.5 if row % 2 else 0)
    column = int(x) % COLUMNS
    fx, fy = x % 1, (v * ROWS) % 1
    return column, row, min(fx, 1 - fx, fy, 1 - fy) - JOINT / 2


def tile_height(u, v):
    return smooth(tile_at(u % 1, v % 1)[2] / BEVEL) * RELIEF / COLUMNS


def paint(u, v):
    column, row, distance = tile_at(u, v)
    grain = Noise(7, 5).fractal(u, v, 8, 3)
    glazes = ((196, 84, 52), (206, 112, 62), (178, 70, 54), (214, 140, 84), (150, 62, 58))
    glaze = glazes[(column * 3 + row * 7 + row * row) % len(glazes)]
    joint = (96, 90, 84)
    cover = smooth(distance / 0.02)
    return mix(joint, tuple(c * (0.86 + 0.28 * grain) for c in glaze), cover)


def normal(u, v):
    """A normal: red points to the right, green up, and blue out of the image."""
    step = 1 / 512
    dx = (tile_height(u + step, v) - tile_height(u - step, v)) / (2 * step)
    dy = (tile_height(u, v - step) - tile_height(u, v + step)) / (2 * step)
    length = sqrt(dx * dx + dy * dy + 1)
    return tuple(127.5 + 127.5 * c / length for c in (-dx, -dy, 1))


def rock(u, v):
    base = Noise(11, 1).fractal(u, v, 6, 5)
    cracks = abs(2 * Noise(13, 2).fractal(u, v, 10, 4) - 1)
    light = 0.45 + 0.75 * base
    light *= 0.55 + 0.45 * smooth(cracks / 0.16)
    warm = Noise(17, 3).fractal(u, v, 6, 2)
    return tuple(c * light for c in mix((128, 126, 130), (158, 138, 112), warm))


def moss(u, v):
    clumps = Noise(19, 4).fractal(u, v, 20, 3)
    patch = Noise(23, 6).fractal(u, v, 5, 3)
    colour = mix((40, 84, 10), (150, 205, 40), smooth((clumps - 0.25) / 0.5))
    return mix(colour, (96, 140, 30), 0.5 * patch)


def noise(u, v):
    value = 255 * smooth((Noise(29, 8).fractal(u, v, 6, 4) - 0.2) / 0.6)
    return value, value, value


def flame_heat(x, y, phase):
    """Heat from 0 to 1 at x from -1 to 1 and y from 0 at the bottom to 1; phases 0 and 1 are the same."""
    field = Noise(31, 9)
    # The noise rises by whole periods while the phase goes from 0 to 1.
    turbulence = field.fractal(x * 0.25 + 0.5, (y * 0.5 - 2 * phase) % 1, 4, 4)
    sway = 0.35 * (field.fractal(0.3, (y * 0.4 - phase) % 1, 3, 2) - 0.5) * y
    width = 0.62 * max(1 - y, 0) ** 0.7 * (0.35 + 0.65 * smooth((y + 0.12) / 0.3))
    body = 1 - abs(x - sway) / max(width, 0.02)
    heat = min(max(body * 1.1 + (turbulence - 0.55) * (0.6 + 1.6 * y), 0), 1)
    # Frames are black along their edges, so that neighbouring frames do not bleed into them.
    return heat * smooth((1 - y) * 4) * smooth(y / 0.1)


def flame_colour(heat):
    """A gradient from black through red and orange to pale yellow."""
    stops = ((0, 0, 0), (110, 14, 4), (226, 74, 8), (255, 164, 32), (255, 236, 150))
    place = heat * (len(stops) - 1)
    first = min(int(place), len(stops) - 2)
    return mix(stops[first], stops[first + 1], place - first)


def flames(u, v):
    column, row = int(u * FLAME_COLUMNS), int(v * FLAME_ROWS)
    x, y = (u * FLAME_COLUMNS) % 1, (v * FLAME_ROWS) % 1
    phase = (row * FLAME_COLUMNS + column) / (FLAME_ROWS * FLAME_COLUMNS)
    # Few shades, so that the file stays small.
    heat = round(flame_heat(2.1 * x - 1.05, 1.04 - 1.08 * y, phase) * 60) / 60
    return flame_colour(heat)


def flag(u, v):
    """Waves under a sun near the pole, which is on the left."""
    sea = 0.66 + 0.045 * cos(6 * pi * u)
    second = sea + 0.13
    x, y = (u - 0.3) * 1.5, v - 0.34
    distance = hypot(x, y)
    if v > second:
        return 20, 60, 120
    if v > sea:
        return 240, 240, 232
    if distance < 0.15:
        return 240, 190, 60
    spokes = 12
    # A ray is where the cosine of the angle between spokes is close to one.
    cosine = x / distance
    sine = y / distance
    real, imaginary = 1.0, 0.0
    for _ in range(spokes):
        real, imaginary = real * cosine - imaginary * sine, real * sine + imaginary * cosine
    if 0.18 < distance < 0.27 and real > 0.55:
        return 240, 190, 60
    return 178, 38, 46


def sky(u, v):
    """A panorama for cube maps: mountains under a clear sky. The middle column is in the direction -z."""
    across, down = 2 * pi * (u - 0.5), pi * v
    direction = sin(down) * sin(across), cos(down), -sin(down) * cos(across)
    height = direction[1]
    ridge = 0.6 * Noise(37, 10).fractal(u, 0.5, 8, 3) - 0.1
    if height < 0:
        return mix((104, 132, 62), (58, 74, 36), round(-height * 20) / 20)
    if height < ridge:
        return mix((78, 88, 104), (236, 240, 244), round(height / 0.35 * 20) / 20)
    if sum(a * b for a, b in zip(direction, SUN)) > 0.97:
        return 255, 244, 204
    return mix((206, 224, 238), (44, 98, 182), round(height * 40) / 40)


TEXTURES = [
    ("paint", 192, 192, paint),
    ("normal", 256, 256, normal),
    ("rock", 192, 192, rock),
    ("moss", 192, 192, moss),
    ("noise", 128, 128, noise),
    ("flames", FLAME_COLUMNS * FLAME_SIZE, FLAME_ROWS * FLAME_SIZE, flames),
    ("flag", 384, 256, flag),
    ("sky", 256, 128, sky),
]


def draw(width, height, colour_at):
    return [
        [
            tuple(min(max(round(c), 0), 255) for c in colour_at((x + 0.5) / width, (y + 0.5) / height))
            for x in range(width)
        ]
        for y in range(height)
    ]


def main():
    root = Path(__file__).resolve().parents[2]
    folder = Path(sys.argv[1]) if len(sys.argv) > 1 else root / "examples/textures"
    folder.mkdir(parents=True, exist_ok=True)
    for name, width, height, colour_at in TEXTURES:
        png.write(folder / f"{name}.png", draw(width, height, colour_at))


if __name__ == "__main__":
    main()
