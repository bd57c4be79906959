"""The icons of the surface nodes."""

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
from style import BLACK, BLUE, GREEN, RED, WHITE, arrow, shadow, tile

INK = colour("#1F4E55")


def surface(base):
    """A ball, of which one half is painted and the other half is a grid."""
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


def physical_surface(base):
    """A ball of polished metal under a lamp, above its reflection on a lacquered table."""
    canvas = tile(base)
    whole = disc(16, 15, 10.5)
    shadow(canvas, whole, 0.5, 6, 2)
    canvas.paint(grown(whole, 0.7), colour("#2E2A33"))
    canvas.paint(whole, down(colour("#F4F6FA"), colour("#5B6472"), 5, 17))
    ground = common(whole, disc(16, 33, 17))
    canvas.paint(ground, down(colour("#3A3440"), colour("#B98A4E"), 16, 26))
    canvas.paint(disc(12, 9.8, 2.4), WHITE, 0.95, 1)
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
    """Three overlapping frames, the front one with a play symbol."""
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
    """A curved surface and an arrow perpendicular to it."""
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
    """An eye, and an arrow that points to it."""
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


def object_position(base):
    """A box and a point at its corner."""
    canvas = tile(base)
    front = polygon([(6, 12), (19, 12), (19, 26), (6, 26)])
    top = polygon([(6, 12), (13, 6), (26, 6), (19, 12)])
    side = polygon([(19, 12), (26, 6), (26, 20), (19, 26)])
    whole = union(front, top, side)
    shadow(canvas, whole, 0.45, 5)
    canvas.paint(grown(whole, 0.7), INK)
    canvas.paint(grown(front, -0.3), colour("#7FC4CC"))
    canvas.paint(grown(top, -0.3), colour("#D8F1F2"))
    canvas.paint(grown(side, -0.3), colour("#4F9AA3"))
    canvas.paint(disc(19, 12, 3.9), INK)
    canvas.paint(disc(19, 12, 3.1), ball(colour("#FFC93C"), 19, 12, 3.1))
    return canvas


def on_a_hill(base, start, end, tone, bumps=()):
    """A curved surface with bumps, and an arrow."""
    canvas = tile(base)
    hill = common(disc(16, 36, 18.5), box(3.5, 0, 28.5, 27.5, 2))
    for x, y, radius in bumps:
        hill = union(hill, disc(x, y, radius))
    shape = arrow(start, end, 2.8, 5.5)
    shadow(canvas, union(hill, shape), 0.45, 4)
    canvas.paint(grown(hill, 0.6), INK)
    canvas.paint(grown(hill, -0.4), down(colour("#D7F5EE"), colour("#3E9C94"), 17, 28))
    canvas.paint(grown(shape, 0.6), INK)
    canvas.paint(grown(shape, -0.3), mix(tone, WHITE, 0.2))
    return canvas


def object_normal(base):
    return on_a_hill(base, (16, 20.5), (16, 4), colour("#FFC93C"))


def tangent(base):
    return on_a_hill(base, (8, 16.5), (27, 16.5), RED)


def binormal(base):
    return on_a_hill(base, (9, 22), (22, 8.5), GREEN)


def bumped_normal(base):
    return on_a_hill(base, (13, 19), (7, 4), BLUE, ((10, 20, 3.4), (18, 19, 3.4), (25, 21.5, 3)))


def eye_distance(base):
    """An eye, a wall, and a dimension line between them."""
    canvas = tile(base)
    wall = box(24, 5, 28, 27, 1)
    path = union(arrow((15, 22), (6, 22), 2, 4), arrow((13, 22), (23, 22), 2, 4))
    eye = common(disc(10, 18, 9), disc(10, 6, 9))
    shadow(canvas, union(wall, eye), 0.45, 4)
    canvas.paint(grown(wall, 0.5), INK)
    canvas.paint(grown(wall, -0.5), colour("#4F9AA3"))
    canvas.paint(path, INK)
    canvas.paint(grown(eye, 0.8), INK)
    canvas.paint(grown(eye, -0.4), WHITE)
    canvas.paint(disc(10, 12, 2.7), BLUE)
    return canvas


def screen_uv(base):
    """A screen with its two axes."""
    canvas = tile(base)
    screen = box(4, 6, 28, 24, 2)
    shadow(canvas, screen, 0.45, 5)
    canvas.paint(grown(screen, 0.6), INK)
    canvas.paint(grown(screen, -1), down(colour("#173A52"), colour("#2F6E8F"), 6, 24))
    canvas.paint(box(12, 24, 20, 28, 1), INK)
    canvas.paint(arrow((8, 10), (24, 10), 2, 4), mix(RED, WHITE, 0.3))
    canvas.paint(arrow((8, 10), (8, 21), 2, 4), mix(GREEN, WHITE, 0.3))
    return canvas


def face_sign(base):
    """A leaf with a plus on its front and a minus on its back."""
    canvas = tile(base)
    front = polygon([(5, 7), (16, 4), (16, 26), (5, 29)])
    back = polygon([(16, 4), (27, 7), (27, 29), (16, 26)])
    shadow(canvas, union(front, back), 0.45, 5)
    canvas.paint(grown(union(front, back), 0.6), INK)
    canvas.paint(grown(front, -0.4), colour("#F2FBFB"))
    canvas.paint(grown(back, -0.4), colour("#4F9AA3"))
    canvas.paint(union(box(7, 15.2, 14, 17.4), box(9.4, 12.8, 11.6, 19.8)), RED)
    canvas.paint(box(18, 15.2, 25, 17.4), WHITE)
    return canvas


def light_direction(base):
    """A lamp, and an arrow that points to it."""
    canvas = tile(base)
    lamp = disc(22, 10, 5.2)
    ray = arrow((6, 27), (17, 15), 2.6, 5)
    canvas.paint(grown(lamp, 2.5), colour("#FFF3B0"), 0.8, 4)
    shadow(canvas, ray, 0.45, 4)
    canvas.paint(grown(lamp, 0.7), INK)
    canvas.paint(lamp, ball(colour("#FFD447"), 22, 10, 5.2))
    canvas.paint(grown(ray, 0.6), INK)
    canvas.paint(grown(ray, -0.3), WHITE)
    return canvas


# Name, drawing function, base colour, and number of colours including transparent.
ICONS = [
    ("Surface", surface, "#FFB24D", 240),
    ("SurfacePbr", physical_surface, "#FFB24D", 240),
    ("SurfaceFacingRatio", facing_ratio, "#99E6E6", 200),
    ("SurfaceTime", time, "#99E6E6", 160),
    ("SurfaceFrame", frame, "#99E6E6", 160),
    ("SurfaceWorldPosition", world_position, "#99E6E6", 200),
    ("SurfaceWorldNormal", world_normal, "#99E6E6", 200),
    ("SurfaceViewDirection", view_direction, "#99E6E6", 200),
    ("SurfaceObjectPosition", object_position, "#99E6E6", 160),
    ("SurfaceObjectNormal", object_normal, "#99E6E6", 160),
    ("SurfaceTangent", tangent, "#99E6E6", 160),
    ("SurfaceBinormal", binormal, "#99E6E6", 160),
    ("SurfaceBumpedNormal", bumped_normal, "#99E6E6", 160),
    ("SurfaceEyeDistance", eye_distance, "#99E6E6", 160),
    ("SurfaceScreenUv", screen_uv, "#99E6E6", 160),
    ("SurfaceFaceSign", face_sign, "#99E6E6", 160),
    ("SurfaceLightDirection", light_direction, "#99E6E6", 160),
]
