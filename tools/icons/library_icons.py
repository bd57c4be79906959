"""The icons of the standard library."""

from canvas import (
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
    polygon,
    union,
)
from style import BLACK, BLUE, GREEN, RED, WHITE, arrow, shadow, tile

YELLOW, DARK_RED = colour("#FFC93C"), colour("#7A1523")


def maths_strokes(canvas, shape):
    """White strokes with a dark outline."""
    shadow(canvas, shape, blur=5)
    canvas.paint(grown(shape, 0.8), DARK_RED)
    canvas.paint(grown(shape, -0.1), WHITE)


def arithmetic(base):
    """The square root of x."""
    canvas = tile(base)
    root = line([(4.5, 18), (7.5, 16.5), (11.5, 25), (15.5, 7), (27.5, 7)], 2.4)
    x = union(line([(18, 13.5), (25, 23)], 2.6), line([(25, 13.5), (18, 23)], 2.6))
    maths_strokes(canvas, union(root, x))
    return canvas


def trigonometry(base):
    """One turn of a sine on its axis."""
    canvas = tile(base)
    canvas.paint(line([(4.5, 16), (27.5, 16)], 1.2), DARK_RED)
    rise = curve((5, 16), (9, 3), (12, 3), (16, 16), 2.8)
    fall = curve((16, 16), (20, 29), (23, 29), (27, 16), 2.8)
    maths_strokes(canvas, union(rise, fall))
    return canvas


def colour_adjust(base):
    """Three sliders, one for each primary colour."""
    canvas = tile(base)
    for tone, y, x in ((RED, 9, 20), (GREEN, 16, 11), (BLUE, 23, 17)):
        track, knob = line([(6.5, y), (25.5, y)], 3), disc(x, y, 3.5)
        canvas.paint(grown(track, 0.6), mix(tone, BLACK, 0.6))
        canvas.paint(grown(track, -0.3), tone)
        shadow(canvas, knob, blur=3)
        canvas.paint(grown(knob, 0.4), mix(tone, BLACK, 0.6))
        canvas.paint(grown(knob, -0.6), WHITE)
    return canvas


def colour_ramp(base):
    """A ramp between four colours, and the marks of their positions."""
    canvas = tile(base)
    tones = [colour(text) for text in ("#2A2A7A", "#C0307A", "#FF8A2A", "#FFF0A0")]
    ramp, left, step = box(5, 7, 27, 20, 1.5), 6, 20 / 3

    def paint(x, _):
        place = min(max((x - left) / step, 0), 2.999)
        index = int(place)
        return mix(tones[index], tones[index + 1], place - index)

    shadow(canvas, ramp)
    canvas.paint(grown(ramp, 0.7), colour("#5A2A5A"))
    canvas.paint(grown(ramp, -0.2), paint)
    for index in range(4):
        x = left + step * index
        canvas.paint(polygon([(x, 21), (x - 2.6, 26), (x + 2.6, 26)]), colour("#5A2A5A"))
    return canvas


def noise(base):
    """A field of cells, each of its own brightness."""
    canvas = tile(base)
    field = box(5, 5, 27, 27, 1.5)
    points = [(8, 9), (14, 7), (21, 9), (10, 16), (17, 15), (26, 14), (7, 23), (14, 23), (23, 20)]
    dots = [disc(x, y, 0) for x, y in points]
    shadow(canvas, field)
    canvas.paint(grown(field, 0.6), colour("#205038"))

    def paint(x, y):
        return mix(colour("#1F4A38"), WHITE, min(dot(x, y) for dot in dots) / 5.5)

    canvas.paint(grown(field, -0.3), paint)
    return canvas


def pattern(base):
    """Checks."""
    canvas = tile(base)
    board = box(5, 5, 27, 27, 1.5)
    shadow(canvas, board)
    canvas.paint(grown(board, 0.6), colour("#205038"))
    canvas.paint(grown(board, -0.3), WHITE)
    for row in range(4):
        for column in range(row % 2, 4, 2):
            left, top = 5 + 5.5 * column, 5 + 5.5 * row
            square = box(left, top, left + 5.5, top + 5.5)
            canvas.paint(common(grown(board, -0.3), square), colour("#2F7A55"))
    return canvas


def normal_maths(base):
    """Two normals on one surface."""
    canvas = tile(base)
    ink = colour("#25255A")
    ground = common(disc(16, 38, 18.5), box(3.5, 0, 28.5, 27.5, 2))
    left, right = arrow((14, 20), (7, 5.5), 2.6, 5), arrow((18, 20), (25, 5.5), 2.6, 5)
    shadow(canvas, union(ground, left, right), 0.45, 4)
    canvas.paint(grown(ground, 0.6), ink)
    canvas.paint(grown(ground, -0.4), down(WHITE, colour("#7F8FD0"), 19, 28))
    for shape, tone in ((left, BLUE), (right, YELLOW)):
        canvas.paint(grown(shape, 0.6), ink)
        canvas.paint(grown(shape, -0.3), tone)
    return canvas


def texture_read(base):
    """A cube with a different colour on each side."""
    canvas = tile(base)
    top = polygon([(16, 4.5), (26, 10), (16, 15.5), (6, 10)])
    left = polygon([(6, 10), (16, 15.5), (16, 27), (6, 21.5)])
    right = polygon([(26, 10), (16, 15.5), (16, 27), (26, 21.5)])
    whole = union(top, left, right)
    shadow(canvas, whole, 0.5, 5)
    canvas.paint(grown(whole, 0.8), colour("#4A4A20"))
    canvas.paint(grown(top, -0.4), colour("#CDEBFA"))
    canvas.paint(grown(left, -0.4), down(colour("#2F7AD0"), colour("#2C7A33"), 12, 25))
    canvas.paint(grown(right, -0.4), down(colour("#8FC0EA"), colour("#B4E05A"), 12, 25))
    return canvas


def uv_transform(base):
    """A square that is turned about its centre."""
    canvas = tile(base)
    ink = colour("#2B2B6B")
    before = box(8, 8, 24, 24)
    canvas.paint(cut(grown(before, 0.5), grown(before, -0.9)), ink, 0.45)
    after = polygon([(16, 5.5), (26.5, 16), (16, 26.5), (5.5, 16)])
    shadow(canvas, after, 0.4)
    canvas.paint(grown(after, 0.6), ink)
    canvas.paint(grown(after, -0.4), down(colour("#FFE34D"), colour("#EE3F5C"), 7, 25))
    canvas.paint(disc(16, 16, 2), ink)
    return canvas


def vector_maths(base):
    """Two vectors from one point, and the one that is perpendicular to both."""
    canvas = tile(base)
    ink, origin = colour("#6B3A0A"), (10, 20)
    ends = [((27, 25), RED), ((24, 12), BLUE), ((10, 4), WHITE)]
    vectors = [(arrow(origin, end, 2.6, 5), tone) for end, tone in ends]
    shadow(canvas, union(*(shape for shape, _ in vectors)))
    for shape, tone in vectors:
        canvas.paint(grown(shape, 0.6), ink)
        canvas.paint(grown(shape, -0.3), tone)
    canvas.paint(disc(*origin, 2.4), ink)
    return canvas


def transform(base):
    """Axes, and the same axes turned and moved."""
    canvas = tile(base)
    ink = colour("#6B3A0A")
    before, after = ((7, 26), (11, 0), colour("#C9A080")), ((17, 19), (8.8, -6.6), WHITE)
    for (x, y), (dx, dy), tone in (before, after):
        axes = union(arrow((x, y), (x + dx, y + dy)), arrow((x, y), (x + dy, y - dx)))
        shadow(canvas, axes)
        canvas.paint(grown(axes, 0.6), ink)
        canvas.paint(grown(axes, -0.3), tone)
    return canvas


# Name, picture, base colour and number of colours with the transparent one.
ICONS = [
    ("ColourAdjust", colour_adjust, "#FFCCFF", 30),
    ("ColourRamp", colour_ramp, "#FFCCFF", 30),
    ("MathsArithmetic", arithmetic, "#FF8080", 30),
    ("MathsTrigonometry", trigonometry, "#FF8080", 30),
    ("NoiseFractal", noise, "#B3FFCC", 30),
    ("NormalMaths", normal_maths, "#B3CCFF", 30),
    ("PatternShapes", pattern, "#B3FFCC", 30),
    ("TextureRead", texture_read, "#FFFF80", 30),
    ("UvTransform", uv_transform, "#CCCCFF", 30),
    ("VectorMaths", vector_maths, "#FFB380", 30),
    ("VectorTransform", transform, "#FFB380", 30),
]
