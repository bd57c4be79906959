#!/usr/bin/env python3
"""Checks that relative links and images in the documents lead to existing files and headings, and
that a snippet whose opening line names a file after the language appears verbatim in that file.

Usage: links_test.py FOLDER_OF_README SOURCE_TREE"""

import re
import sys
from pathlib import Path

root, source = (Path(argument).resolve() for argument in sys.argv[1:])
documents = [root / "README.md", root / "CHANGELOG.md", *sorted(root.glob("docs/**/*.md"))]


def text_of(file):
    return re.sub(r"^```.*?^```$", "", file.read_text(encoding="utf-8"), flags=re.MULTILINE | re.DOTALL)


def anchors_of(file):
    headings = re.findall(r"^#+ (.*)$", text_of(file), re.MULTILINE)
    return {re.sub(r"[^\w\- ]", "", heading.lower()).replace(" ", "-") for heading in headings}


wrong = []
for document in documents:
    for link in re.findall(r"\]\(([^)\s]+)\)", text_of(document)):
        if "://" in link:
            continue
        path, _, anchor = link.partition("#")
        target = (document.parent / path).resolve() if path else document
        if not target.exists():
            wrong.append(f"{document}: {link} does not exist")
        elif anchor and anchor not in anchors_of(target):
            wrong.append(f"{document}: {link} names no heading")
for name in ("README.md", "docs/embedding.md", "docs/engines.md", "docs/plugin-guide.md"):
    text = (root / name).read_text(encoding="utf-8")
    snippets = re.findall(r"^```\S* (\S+)\n(.*?)^```$", text, re.MULTILINE | re.DOTALL)
    wrong += [f"{name}: {file} no longer contains:\n{snippet}" for file, snippet in snippets
              if snippet not in (source / file).read_text(encoding="utf-8")]
    if len(snippets) < 2:
        wrong.append(f"{name} has no snippets")
sys.exit("\n".join(wrong) if wrong else 0)
