"""Writes PNG files: with a palette if 256 colours suffice, otherwise with three bytes per pixel."""

import struct
import zlib


def filtered(rows, width):
    """Yields the rows, each with the filter that gives the smallest numbers."""
    above = bytes(len(rows[0]))
    for row in rows:
        left = bytes(width) + row[:-width]
        corner = bytes(width) + above[:-width]
        choices = [
            (0, row),
            (1, bytes((p - a) & 255 for p, a in zip(row, left))),
            (2, bytes((p - b) & 255 for p, b in zip(row, above))),
            (4, bytes((p - paeth(a, b, c)) & 255 for p, a, b, c in zip(row, left, above, corner))),
        ]
        kind, best = min(choices, key=lambda choice: sum(min(p, 256 - p) for p in choice[1]))
        yield bytes([kind]) + best
        above = row


def paeth(a, b, c):
    guess = a + b - c
    return min((a, b, c), key=lambda p: abs(guess - p))


def chunk(kind, data):
    body = kind + data
    return struct.pack(">I", len(data)) + body + struct.pack(">I", zlib.crc32(body))


def write(path, pixels):
    """Writes pixels, which are rows of (red, green, blue) from 0 to 255."""
    palette = sorted({pixel for row in pixels for pixel in row})
    is_indexed = len(palette) <= 256
    header = struct.pack(">IIBBBBB", len(pixels[0]), len(pixels), 8, 3 if is_indexed else 2, 0, 0, 0)
    data = b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header)
    if is_indexed:
        index = {colour: i for i, colour in enumerate(palette)}
        # Differences between palette indices have no meaning, so rows are not filtered.
        rows = (b"\0" + bytes(index[pixel] for pixel in row) for row in pixels)
        data += chunk(b"PLTE", bytes(c for colour in palette for c in colour))
    else:
        rows = filtered([bytes(c for pixel in row for c in pixel) for row in pixels], 3)
    data += chunk(b"IDAT", zlib.compress(b"".join(rows), 9)) + chunk(b"IEND", b"")
    path.write_bytes(data)
