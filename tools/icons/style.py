"""The style that all icons share: a rounded tile, light from the upper left, soft shadows to the
lower right, arrows, and a few colours."""

from math import sqrt

from canvas import (
    SIZE,
    Canvas,
    box,
    colour,
    common,
    cut,
    down,
    grown,
    line,
    mix,
    moved,
    polygon,
    union,
)

WHITE, BLACK = (255, 255, 255), (0, 0, 0)
RED, GREEN, BLUE = colour("#E5383B"), colour("#2FA84F"), colour("#2F6BE0")


def tile(base, shade=0.14):
    outline = box(0.5, 0.5, 31.5, 31.5, 6.5)
    inside = grown(outline, -1.25)
    canvas = Canvas(outline, base)
    dark = mix(base, BLACK, shade)
    canvas.paint(inside, lambda x, y: mix(base, dark, (x / 3 + y - 26) / 16))
    rim = cut(box(0, 0, SIZE, SIZE), inside)
    canvas.paint(rim, down(mix(base, BLACK, 0.4 - shade), mix(base, BLACK, 0.4 + shade), 0, 32))
    shine = common(cut(inside, moved(inside, 0, 1)), box(0, 0, 32, 12))
    canvas.paint(shine, mix(base, WHITE, 0.6))
    return canvas


def shadow(canvas, shape, opacity=0.4, blur=4, offset=1.2):
    canvas.paint(moved(shape, offset, offset), BLACK, opacity, blur)


def arrow(start, end, width=2.2, head=4.2):
    """A straight arrow from start to end, with its head at end."""
    (ax, ay), (bx, by) = start, end
    length = sqrt((bx - ax) * (bx - ax) + (by - ay) * (by - ay))
    ux, uy = (bx - ax) / length, (by - ay) / length
    nx, ny = bx - ux * head, by - uy * head
    side = head * 0.7
    point = polygon([end, (nx - uy * side, ny + ux * side), (nx + uy * side, ny - ux * side)])
    return union(line([start, (nx, ny)], width), point)
