#!/usr/bin/env python3
"""Checks that every link on the generated reference pages leads to a page and a heading there.

    reference_links.py DIRECTORY
"""

import pathlib
import re
import sys


def main():
    pages = {path.name: path.read_text(encoding="utf-8")
             for path in pathlib.Path(sys.argv[1]).glob("*.md")}
    faults = [] if "README.md" in pages else ["no README.md"]
    anchors = {}
    for name, text in pages.items():
        # As Markdown viewers make them.
        headings = [heading.lower().replace(" ", "-")
                    for heading in re.findall("^#+ (.*)$", text, re.M)]
        faults += [f"{name}: two headings {h}" for h in set(headings) if headings.count(h) > 1]
        anchors[name] = set(headings)
    links = 0
    for name, text in pages.items():
        for target in re.findall(r"\]\(([^)]*)\)", text):
            links += 1
            page, _, anchor = target.partition("#")
            if page not in anchors or anchor and anchor not in anchors[page]:
                faults.append(f"{name}: no {target}")
    print(f"{len(pages)} pages, {links} links", *faults, sep="\n")
    return 1 if faults or not links else 0


if __name__ == "__main__":
    sys.exit(main())
