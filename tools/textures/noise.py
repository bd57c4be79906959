"""Noise that repeats over the unit square, and functions used with it."""

from functools import lru_cache


def mix(a, b, t):
    t = min(max(t, 0), 1)
    return tuple(p + (q - p) * t for p, q in zip(a, b))


def smooth(t):
    t = min(max(t, 0), 1)
    return t * t * (3 - 2 * t)


@lru_cache(maxsize=None)
def lattice(x, y, seed, salt):
    """A pseudorandom number from 0 to 1."""
    n = (x * 374761393 + y * 668265263 + seed * 2246822519 + salt * 3266489917) & 0xFFFFFFFF
    n = ((n ^ (n >> 13)) * 1274126177) & 0xFFFFFFFF
    n = ((n ^ (n >> 16)) * 2246822519) & 0xFFFFFFFF
    return (n ^ (n >> 15)) / 0xFFFFFFFF


class Noise:
    def __init__(self, seed, salt):
        self.seed, self.salt = seed, salt

    def value(self, u, v, cells):
        """Smooth noise from 0 to 1 with the given number of cells along each side."""
        x, y = u * cells, v * cells
        left, top = int(x // 1), int(y // 1)
        fx, fy = smooth(x - left), smooth(y - top)

        def at(i, j):
            return lattice((left + i) % cells, (top + j) % cells, self.seed + cells, self.salt)

        upper = at(0, 0) + (at(1, 0) - at(0, 0)) * fx
        lower = at(0, 1) + (at(1, 1) - at(0, 1)) * fx
        return upper + (lower - upper) * fy

    def fractal(self, u, v, cells, octaves):
        """A weighted mean of octaves, each twice as fine and half as strong as the previous one."""
        total, weight = 0.0, 0.0
        for octave in range(octaves):
            strength = 0.5**octave
            total += strength * self.value(u, v, cells * 2**octave)
            weight += strength
        return total / weight
