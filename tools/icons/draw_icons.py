#!/usr/bin/env python3
"""Draws the icons of all plug-ins. Usage: tools/icons/draw_icons.py [folder]

The icons are written to the folders of their plug-ins and to the node files of the standard library,
in this tree or in the given folder. They are committed, and the build does not regenerate them.
"""

import sys
from pathlib import Path

import core_icons
import library_icons
import surface_icons
import xpm
from canvas import colour

FOLDERS = [
    ("plugins/core/icons", core_icons.ICONS),
    ("plugins/surface/icons", surface_icons.ICONS),
]
NODE_FILES = "plugins/library/nodes"


def drawn(icons):
    """The name, the rows and the base colour of each icon."""
    for name, draw, text, count in icons:
        base = colour(text)
        yield name, xpm.reduce_colours(draw(base).rows(), count - 1, base), base


def main():
    root = Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).resolve().parents[2]
    for folder, icons in FOLDERS:
        (root / folder).mkdir(parents=True, exist_ok=True)
        for name, rows, base in drawn(icons):
            xpm.write(root / folder / f"{name}.xpm", f"{name}_xpm", rows, base)
    for name, rows, base in drawn(library_icons.ICONS):
        xpm.write_element(root / NODE_FILES / f"{name}.xml", rows, base)


if __name__ == "__main__":
    main()
