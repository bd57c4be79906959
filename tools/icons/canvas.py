"""Shapes and a small canvas on which they are painted.

A shape is a function from a point to its signed distance from the outline, which is negative
inside. The distance is used for smooth edges, soft shadows and bevels. Only operations that IEEE
arithmetic rounds exactly are used, so an image is identical on every machine.
"""

from math import sqrt

SIZE = 32


def colour(text):
    """Parses "#RRGGBB" and returns (red, green, blue)."""
    return tuple(int(text[i : i + 2], 16) for i in (1, 3, 5))


def mix(a, b, t):
    t = min(max(t, 0), 1)
    return tuple(p + (q - p) * t for p, q in zip(a, b))


def smooth(t):
    t = min(max(t, 0), 1)
    return t * t * (3 - 2 * t)


def box(left, top, right, bottom, radius=0):
    cx, cy = (left + right) / 2, (top + bottom) / 2
    half_width, half_height = (right - left) / 2 - radius, (bottom - top) / 2 - radius

    def distance(x, y):
        dx, dy = abs(x - cx) - half_width, abs(y - cy) - half_height
        ox, oy = max(dx, 0), max(dy, 0)
        return sqrt(ox * ox + oy * oy) + min(max(dx, dy), 0) - radius

    return distance


def disc(cx, cy, radius):
    return lambda x, y: sqrt((x - cx) * (x - cx) + (y - cy) * (y - cy)) - radius


def line(points, width):
    """A stroke with round ends through the points."""
    segments = list(zip(points, points[1:]))

    def distance(x, y):
        nearest = SIZE * SIZE * 2
        for (ax, ay), (bx, by) in segments:
            dx, dy, px, py = bx - ax, by - ay, x - ax, y - ay
            t = min(max((px * dx + py * dy) / (dx * dx + dy * dy), 0), 1)
            qx, qy = px - t * dx, py - t * dy
            nearest = min(nearest, qx * qx + qy * qy)
        return sqrt(nearest) - width / 2

    return distance


def curve(start, pull, other_pull, end, width):
    """A stroke along a cubic Bézier curve."""
    steps = 16
    points = []
    for i in range(steps + 1):
        t = i / steps
        s = 1 - t
        weights = (s * s * s, 3 * s * s * t, 3 * s * t * t, t * t * t)
        corners = (start, pull, other_pull, end)
        points.append(tuple(sum(w * c[k] for w, c in zip(weights, corners)) for k in (0, 1)))
    return line(points, width)


def polygon(points):
    """The inside of a closed outline with these corners, in either direction."""
    outline = line(points + points[:1], 0)
    edges = list(zip(points, points[1:] + points[:1]))

    def distance(x, y):
        inside = False
        for (ax, ay), (bx, by) in edges:
            if (ay > y) != (by > y) and x < ax + (bx - ax) * (y - ay) / (by - ay):
                inside = not inside
        return -outline(x, y) if inside else outline(x, y)

    return distance


def union(*shapes):
    return lambda x, y: min(shape(x, y) for shape in shapes)


def cut(shape, hole):
    return lambda x, y: max(shape(x, y), -hole(x, y))


def common(*shapes):
    return lambda x, y: max(shape(x, y) for shape in shapes)


def grown(shape, by):
    return lambda x, y: shape(x, y) - by


def moved(shape, dx, dy):
    return lambda x, y: shape(x - dx, y - dy)


def down(top_colour, bottom_colour, top, bottom):
    """A paint that changes from top to bottom."""
    return lambda x, y: mix(top_colour, bottom_colour, (y - top) / (bottom - top))


def ball(base, cx, cy, radius):
    """A paint that makes a disc look like a ball, lit from the upper left."""
    light, dark = mix(base, (255, 255, 255), 0.65), mix(base, (0, 0, 0), 0.35)
    spot = disc(cx - radius * 0.35, cy - radius * 0.4, 0)

    def paint(x, y):
        t = spot(x, y) / (radius * 1.4)
        return mix(light, base, t * 2) if t < 0.5 else mix(base, dark, t * 2 - 1)

    return paint


class Canvas:
    """SIZE by SIZE pixels; those outside the outline remain transparent."""

    def __init__(self, outline, base):
        self._pixels = {}
        for row in range(SIZE):
            for column in range(SIZE):
                if outline(column + 0.5, row + 0.5) < 0:
                    self._pixels[column, row] = base

    def paint(self, shape, paint, opacity=1, blur=1):
        """Paints the shape with a colour, or with a function from a point to a colour.

        The edge fades over blur pixels, half of them outside.
        """
        for (column, row), below in self._pixels.items():
            x, y = column + 0.5, row + 0.5
            cover = 0.5 - shape(x, y) / blur
            if cover > 0:
                cover = cover if blur == 1 else smooth(cover)
                above = paint(x, y) if callable(paint) else paint
                self._pixels[column, row] = mix(below, above, min(cover, 1) * opacity)

    def rows(self):
        """Returns rows of (red, green, blue) as integers, with None for transparent pixels."""
        return [[self._rounded(column, row) for column in range(SIZE)] for row in range(SIZE)]

    def _rounded(self, column, row):
        pixel = self._pixels.get((column, row))
        return pixel and tuple(int(channel + 0.5) for channel in pixel)
