"""The icons of the Core nodes."""

from canvas import (
    ball,
    box,
    colour,
    common,
    curve,
    cut,
    disc,
    down,
    grown,
    line,
    mix,
    moved,
    polygon,
    union,
)
from style import BLACK, BLUE, GREEN, RED, WHITE, shadow, tile


def maths(base):
    """Plus, minus, times and divided by."""
    canvas = tile(base)
    arm, width = 3.6, 3
    signs = {
        (9.5, 9.5): [line([(-arm, 0), (arm, 0)], width), line([(0, -arm), (0, arm)], width)],
        (22.5, 9.5): [line([(-arm, 0), (arm, 0)], width)],
        (9.5, 22.5): [line([(-3, -3), (3, 3)], width), line([(-3, 3), (3, -3)], width)],
        (22.5, 22.5): [line([(-arm, 0), (arm, 0)], 2.6), disc(0, -4, 1.7), disc(0, 4, 1.7)],
    }
    shapes = union(*(moved(union(*sign), *place) for place, sign in signs.items()))
    shadow(canvas, shapes, blur=5)
    canvas.paint(grown(shapes, 0.7), colour("#7A1523"))
    canvas.paint(grown(shapes, -0.1), down(WHITE, colour("#FFD9C9"), 5, 27))
    return canvas


def layer_blend(base):
    """Two overlapping translucent discs; the tile is flat, because there are few colours."""
    canvas = tile(base, shade=0)
    back, front = disc(12, 12.5, 7.75), disc(19.5, 19, 7.75)
    canvas.paint(back, colour("#FFE45C"))
    canvas.paint(front, colour("#2F5FD0"))
    canvas.paint(common(back, front), colour("#9BD6FF"))
    return canvas


def swizzle(base):
    """A vector of three cells that is split into its components."""
    canvas = tile(base)
    parts = list(zip((RED, GREEN, BLUE), (10.5, 16, 21.5), (6.5, 16, 25.5)))
    wires = [curve((8, a), (16, a), (15, b), (23, b), 1.8) for _, a, b in parts]
    balls = [disc(24, b, 3.6) for _, _, b in parts]
    vector = box(4.5, 7, 12, 25, 3)
    shadow(canvas, union(vector, *wires, *balls))
    for (tone, _, b), wire, end in zip(parts, wires, balls):
        canvas.paint(grown(wire, 0.5), colour("#25255A"))
        canvas.paint(wire, mix(tone, WHITE, 0.35))
        canvas.paint(grown(end, 0.6), mix(tone, BLACK, 0.45))
        canvas.paint(grown(end, -0.4), ball(tone, 24, b, 3.6))
    canvas.paint(grown(vector, 0.6), colour("#25255A"))
    for tone, a, _ in parts:
        cell = common(vector, box(0, a - 2.4, 32, a + 2.4))
        canvas.paint(cell, lambda x, y, tone=tone: mix(mix(tone, WHITE, 0.45), tone, (x - 4) / 7))
    return canvas


def constant(base):
    """A colour swatch and the slider that sets it."""
    canvas = tile(base)
    tone = colour("#F0682B")
    swatch = box(5.5, 5, 26.5, 18, 3)
    shadow(canvas, swatch)
    canvas.paint(grown(swatch, 0.7), mix(tone, BLACK, 0.5))
    canvas.paint(grown(swatch, -0.3), down(mix(tone, WHITE, 0.3), tone, 11, 18))
    canvas.paint(common(grown(swatch, -0.3), disc(16, -8, 19)), WHITE, 0.25)
    ink = colour("#3F6B45")
    track, knob = box(5, 22, 27, 26, 2), disc(19, 24, 3.6)
    canvas.paint(grown(track, 0.5), ink)
    canvas.paint(grown(track, -0.4), lambda x, y: mix(WHITE, tone, (x - 5) / 22))
    shadow(canvas, knob)
    canvas.paint(grown(knob, 0.3), ink)
    canvas.paint(grown(knob, -0.9), down(WHITE, colour("#D5E3D5"), 21, 27))
    return canvas


def texture(base):
    """A landscape painted on a sheet whose corner curls up."""
    canvas = tile(base)
    sheet = box(4, 4, 28, 28, 0.6)
    paper = cut(sheet, polygon([(29, 18), (29, 29), (18, 29)]))
    shadow(canvas, paper, 0.5, 6, 2.2)
    canvas.paint(paper, lambda x, y: mix(WHITE, colour("#E6DEC8"), (x + y - 12) / 40))
    picture = common(grown(sheet, -1), grown(paper, -1))

    glow, sun = disc(10.5, 10.5, 0), disc(10.5, 10.5, 2.7)

    def sky(x, y):
        tone = mix(colour("#2F7AD0"), colour("#CDEBFA"), (y - 4) / 17 + (x - 16) / 70)
        return mix(colour("#FFF0A8"), tone, 0.3 + glow(x, y) / 14)

    def rock(x, y):
        tone = mix(colour("#A9BAD6"), colour("#4A6388"), (x - 6) / 24)
        return mix(tone, colour("#C9D6C0"), (y - 11) / 16)

    def meadow(x, y):
        tone = mix(colour("#B4E05A"), colour("#2C7A33"), (y - 19) / 10)
        return mix(tone, colour("#1F5F4A"), (x - 6) / 36)

    canvas.paint(picture, sky)
    canvas.paint(common(picture, sun), ball(colour("#FFD23F"), 10.5, 10.5, 3.5))
    ridge = [(3, 22), (9, 16.5), (14, 20), (21, 10), (30, 21), (30, 30), (3, 30)]
    canvas.paint(common(picture, polygon(ridge)), rock)
    snow = polygon([(21, 10), (18, 14.3), (20, 13.6), (21.5, 15), (22.6, 13.8), (24, 13.8)])
    canvas.paint(common(picture, snow), WHITE, 0.9)
    canvas.paint(common(picture, disc(11, 37.5, 17)), meadow)

    curl = polygon([(28, 19), (19, 28), (19.5, 20)])
    canvas.paint(common(moved(curl, -1, -1), paper), BLACK, 0.4, 3)
    canvas.paint(curl, lambda x, y: mix(colour("#B0A97A"), WHITE, (47 - x * 0.9 - y * 1.1) / 7))
    return canvas


def animated_uv(base):
    """A strip of film, with a cell of a grid as its frame."""
    canvas = tile(base)
    film = box(3, 5, 29, 27, 1.5)
    shadow(canvas, film, 0.5, 4, 1.6)
    canvas.paint(film, lambda x, y: mix(colour("#66575F"), colour("#241C22"), (x / 2 + y - 6) / 32))
    for x in range(4, 28, 4):
        for y in (6, 24):
            canvas.paint(box(x + 1, y, x + 3, y + 2), down(WHITE, colour("#D8C8D0"), 5, 27))

    def cell(column, row):
        return box(6 + 7 * column, 9 + 5 * row, 12 + 7 * column, 13 + 5 * row)

    def glass(x, y):
        return mix(colour("#D9C8D1"), colour("#7F6B77"), (x / 3 + y - 11) / 20)

    for row in range(3):
        for column in range(3):
            canvas.paint(cell(column, row), glass)
    flame = colour("#FF9A1F")
    canvas.paint(cell(0, 1), flame, 0.35)
    canvas.paint(cell(1, 1), flame, 0.65)
    here = cell(2, 1)
    canvas.paint(here, flame, 0.7, 8)
    canvas.paint(grown(here, 1), WHITE)
    canvas.paint(here, down(colour("#FFB347"), colour("#F57C00"), 14, 18))
    return canvas


def uv(base):
    """The unit square with its u and v axes."""
    canvas = tile(base)
    left, top, side = 9, 4, 19
    square = box(left, top, left + side, top + side)
    shadow(canvas, square)
    canvas.paint(square, WHITE)

    def chart(x, y):
        u, v = (x - left) / side, 1 - (y - top) / side
        low = mix(colour("#4343A8"), colour("#EE3F5C"), u)
        return mix(low, mix(colour("#3CCB72"), colour("#FFE34D"), u), v)

    for row in range(4):
        for column in range(4):
            x, y = left + 5 * column, top + 5 * row
            canvas.paint(box(x, y, x + 4, y + 4), chart)

    ink = colour("#2B2B6B")
    canvas.paint(line([(6, 26), (25, 26)], 2), ink)
    canvas.paint(line([(6, 26), (6, 7)], 2), ink)
    canvas.paint(polygon([(29, 26), (24.5, 23), (24.5, 29)]), ink)
    canvas.paint(polygon([(6, 3), (3, 7.5), (9, 7.5)]), ink)
    return canvas


def vertex_colour(base):
    """A triangle that blends the colours of its corners."""
    canvas = tile(base)
    points = [(16, 6), (6, 25), (26, 25)]
    tones = [colour("#FF3030"), colour("#30D848"), colour("#3070FF")]
    face = polygon(points)
    shadow(canvas, face, 0.5, 7)

    def blend(x, y):
        low = (y - 6) / 19
        right = ((x - 16) / 10 / low + 1) / 2
        return mix(tones[0], mix(tones[1], tones[2], right), low)

    ink = colour("#5A2A5A")
    canvas.paint(grown(face, 1.2), ink)
    canvas.paint(grown(face, 0.2), blend)
    for (x, y), tone in zip(points, tones):
        canvas.paint(disc(x, y, 4), ink)
        canvas.paint(disc(x, y, 3.2), WHITE)
        canvas.paint(disc(x, y, 2.3), ball(tone, x, y, 3))
    return canvas


# Name, drawing function, base colour, and number of colours including transparent.
ICONS = [
    ("CoreVertexColour", vertex_colour, "#FDCFFD", 443),
    ("CoreUv", uv, "#CFCFFC", 233),
    ("CoreTexture", texture, "#EEF48F", 632),
    ("CoreConstant", constant, "#CDF5CD", 129),
    ("CoreMaths", maths, "#F59090", 265),
    ("CoreSwizzle", swizzle, "#9090F5", 230),
    ("CoreLayerBlend", layer_blend, "#71B631", 12),
    ("CoreAnimatedUv", animated_uv, "#C1ACB7", 258),
]
