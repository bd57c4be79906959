"""The icons of the surface nodes."""

from math import sqrt

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
    polygon,
    union,
)
from style import BLACK, BLUE, GREEN, RED, WHITE, shadow, tile

INK = colour("#1F4E55")


def arrow(start, end, width=2.2, head=4.2):
    """A straight arrow from start to its point at end."""
    (ax, ay), (bx, by) = start, end
    length = sqrt((bx - ax) * (bx - ax) + (by - ay) * (by - ay))
    ux, uy = (bx - ax) / length, (by - ay) / length
    nx, ny = bx - ux * head, by - uy * head
    side = head * 0.7
    point = polygon([end, (nx - uy * side, ny + ux * side), (nx + uy * side, ny - ux * side)])
    return union(line([start, (nx, ny)], width), point)


def surface(base):
    """A ball, half in paint and half in a grid: a shape that gets its look."""
    canvas = tile(base)
    whole = disc(16, 15.5, 10.5)
    shadow(canvas, whole, 0.5, 6, 2)
    canvas.paint(grown(whole, 0.7), colour("#6B3A0A"))
    canvas.paint(whole, ball(colour("#E8622A"), 16, 15.5, 10.5))
    bare = common(whole, box(16, 0, 32, 32))
    canvas.paint(bare, ball(colour("#D9D4CC"), 16, 15.5, 10.5))
    for bend in (3.5, 7.5):
        meridian = curve((16, 5), (16 + bend * 1.3, 9), (16 + bend * 1.3, 22), (16, 26), 0.9)
        canvas.paint(common(bare, meridian), colour("#7A6A5A"), 0.8)
    for y in (10, 15.5, 21):
        canvas.paint(common(bare, line([(16, y), (28, y)], 0.9)), colour("#7A6A5A"), 0.8)
    return canvas


def facing_ratio(base):
    """A dark ball whose outline glows."""
    canvas = tile(base)
    whole = disc(16, 16, 10.5)
    centre = disc(16, 16, 0)
    canvas.paint(grown(whole, 1.5), colour("#FFF3B0"), 0.8, 5)
    dark, glow = colour("#173A52"), colour("#FFE27A")
    canvas.paint(whole, lambda x, y: mix(dark, glow, (centre(x, y) / 10.5) ** 4))
    canvas.paint(disc(12, 11.5, 2), WHITE, 0.35, 3)
    return canvas


def time(base):
    """A clock."""
    canvas = tile(base)
    face = disc(16, 16, 11)
    shadow(canvas, face, 0.5, 5, 1.8)
    canvas.paint(face, INK)
    canvas.paint(grown(face, -1.8), down(WHITE, colour("#D8ECEC"), 6, 26))
    for x, y in ((16, 8.4), (23.6, 16), (16, 23.6), (8.4, 16)):
        canvas.paint(disc(x, y, 1.1), INK)
    canvas.paint(line([(16, 16), (16, 10)], 2.2), INK)
    canvas.paint(line([(16, 16), (20.5, 18.5)], 2.2), INK)
    canvas.paint(line([(14.2, 19.2), (19.6, 9.8)], 1), RED)
    canvas.paint(disc(16, 16, 1.7), RED)
    return canvas


def frame(base):
    """Frames behind one another, the foremost with a play mark."""
    canvas = tile(base)
    for step, tone in enumerate((0.45, 0.25, 0)):
        left, top = 13 - 4 * step, 5 + 4 * step
        sheet = box(left, top, left + 15, top + 13, 1.5)
        shadow(canvas, sheet, 0.35, 3)
        canvas.paint(grown(sheet, 0.6), INK)
        canvas.paint(grown(sheet, -0.5), mix(colour("#FDFEFE"), colour("#4F9AA3"), tone))
    canvas.paint(polygon([(9.7, 15.6), (9.7, 23.4), (16.6, 19.5)]), RED)
    return canvas


def world_position(base):
    """Three axes and a point between them."""
    canvas = tile(base)
    corner = (12, 20)
    axes = [((28, 23), RED), ((12, 3.5), GREEN), ((4, 27.5), BLUE)]
    shadow(canvas, union(*(arrow(corner, end) for end, _ in axes)), 0.4, 4)
    for end, tone in axes:
        canvas.paint(grown(arrow(corner, end), 0.5), INK)
        canvas.paint(grown(arrow(corner, end), -0.3), mix(tone, WHITE, 0.2))
    canvas.paint(disc(*corner, 1.8), INK)
    canvas.paint(disc(22, 11, 4), INK)
    canvas.paint(disc(22, 11, 3.2), ball(colour("#FFC93C"), 22, 11, 3.2))
    return canvas


def world_normal(base):
    """A bent surface and the arrow that stands on it."""
    canvas = tile(base)
    hill = common(disc(16, 36, 18.5), box(3.5, 0, 28.5, 27.5, 2))
    up = arrow((16, 20.5), (16, 3.5), 2.8, 5.5)
    shadow(canvas, union(hill, up), 0.45, 4)
    canvas.paint(grown(hill, 0.6), INK)
    canvas.paint(grown(hill, -0.4), down(colour("#D7F5EE"), colour("#3E9C94"), 17, 28))
    canvas.paint(grown(up, 0.6), INK)
    canvas.paint(grown(up, -0.3), down(colour("#9DB8FF"), BLUE, 4, 21))
    canvas.paint(line([(16, 17), (19.2, 17), (19.2, 20)], 1), INK)
    return canvas


def view_direction(base):
    """An eye, and the arrow that runs to it."""
    canvas = tile(base)
    eye = common(disc(18, 18.5, 12), disc(18, 2.5, 12))
    ray = arrow((6, 27.5), (15, 16.5), 2.6, 5)
    shadow(canvas, union(eye, ray), 0.45, 4)
    canvas.paint(grown(eye, 0.8), INK)
    canvas.paint(grown(eye, -0.4), down(WHITE, colour("#DDE9E9"), 6, 15))
    iris = common(eye, disc(18, 10.5, 3.6))
    canvas.paint(iris, ball(BLUE, 18, 10.5, 3.6))
    canvas.paint(disc(18, 10.5, 1.6), BLACK)
    canvas.paint(disc(17, 9.4, 0.8), WHITE)
    canvas.paint(grown(cut(ray, eye), 0.6), INK)
    canvas.paint(grown(cut(ray, eye), -0.3), colour("#FFC93C"))
    return canvas


# Name, picture, base colour and number of colours with the transparent one.
ICONS = [
    ("Surface", surface, "#FFB24D", 240),
    ("SurfaceFacingRatio", facing_ratio, "#99E6E6", 200),
    ("SurfaceTime", time, "#99E6E6", 160),
    ("SurfaceFrame", frame, "#99E6E6", 160),
    ("SurfaceWorldPosition", world_position, "#99E6E6", 200),
    ("SurfaceWorldNormal", world_normal, "#99E6E6", 200),
    ("SurfaceViewDirection", view_direction, "#99E6E6", 200),
]
