"""Reduces an image to a number of colours and writes it as an XPM table."""

import heapq
import re
from collections import Counter

# No quotation mark, backslash or question mark, because the table is also C source.
KEY_CHARACTERS = (
    " .+@#$%&*=-;>,!~^_:<|1234567890"
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ"
)


def reduce_colours(rows, count, pinned):
    """Returns the rows with exactly count opaque colours, one of which is pinned.

    Repeatedly replaces one colour with another, choosing the pair that changes the image least.
    Raises ValueError if the image has too few colours.
    """
    weights = Counter(pixel for row in rows for pixel in row if pixel)
    if pinned not in weights:
        raise ValueError("the image does not contain the base colour")
    if len(weights) < count:
        raise ValueError(f"only {len(weights)} of {count} colours")

    def candidate(a, b):
        kept, lost = sorted((a, b), key=lambda c: (c == pinned, weights[c], c), reverse=True)
        distance = sum((p - q) * (p - q) for p, q in zip(kept, lost))
        change = distance * weights[kept] * weights[lost] / (weights[kept] + weights[lost])
        return change, kept, lost, weights[kept], weights[lost]

    colours = sorted(weights)
    queue = [candidate(a, b) for i, a in enumerate(colours) for b in colours[:i]]
    heapq.heapify(queue)
    replacement = {}
    while len(weights) > count:
        _, kept, lost, *weighed = heapq.heappop(queue)
        if weighed != [weights.get(kept), weights.get(lost)]:
            continue
        replacement[lost] = kept
        weights[kept] += weights.pop(lost)
        for other in weights:
            if other != kept:
                heapq.heappush(queue, candidate(kept, other))

    def last(pixel):
        while pixel in replacement:
            pixel = replacement[pixel]
        return pixel

    return [[last(pixel) for pixel in row] for row in rows]


def write(file, name, rows, base):
    """Writes rows as the static table name."""
    lines = _lines(rows, base)
    # Some readers look for the words "static char", so const must come after them.
    file.write_text(f"/* XPM */\nstatic char const* const {name}[] = {{\n{lines}\n}};\n", "ascii")


def write_element(file, rows, base):
    """Writes rows as the icon of a node file and replaces its previous icon."""
    text = re.sub(r"  <icon>.*?</icon>\n", "", file.read_text("utf-8"), flags=re.DOTALL)
    element = f"  <icon><![CDATA[\n{_lines(rows, base)}\n  ]]></icon>\n"
    file.write_text(text.replace("</node>", element + "</node>"), "utf-8")


def _lines(rows, base):
    """The strings of the table. Its colours are transparent, base, and then the others in order of
    appearance."""
    colours = list(dict.fromkeys([None, base, *(pixel for row in rows for pixel in row)]))
    length = 1 if len(colours) <= len(KEY_CHARACTERS) else 2
    keys = {pixel: _key(index, length) for index, pixel in enumerate(colours)}
    strings = [f"{len(rows[0])} {len(rows)} {len(colours)} {length}"]
    strings += [f"{key}\tc {_text(pixel)}" for pixel, key in keys.items()]
    strings += ["".join(keys[pixel] for pixel in row) for row in rows]
    return ",\n".join(f'"{string}"' for string in strings)


def _key(index, length):
    page, place = divmod(index, len(KEY_CHARACTERS))
    return (KEY_CHARACTERS[place] + KEY_CHARACTERS[page])[:length]


def _text(pixel):
    return "#%02X%02X%02X" % pixel if pixel else "None"
