#!/usr/bin/env python3
"""Makes the API reference, and fails on whatever Doxygen has to say against it.

    api_reference.py DOXYGEN DOXYFILE
"""

import pathlib
import re
import subprocess
import sys

# What Doxygen puts in for these marks is different on each page.
BODY = '<h1>$title</h1>\n<div id="top">'
STYLES = '<link rel="stylesheet" href="$relpath^$stylesheet">\n$extrastylesheet'
NAVIGATION = """\
<h2>API</h2>
<ul>
<li><a href="$relpath^index.html">Overview</a></li>
<li><a href="$relpath^files.html">Headers</a></li>
<li><a href="$relpath^namespaces.html">Namespaces</a></li>
<li><a href="$relpath^annotated.html">Classes</a></li>
</ul>
<h2>Zol</h2>
<ul>
<li><a href="$relpath^../docs/guide.html">Guide</a></li>
<li><a href="$relpath^../reference/README.html">Reference of the format</a></li>
<li><a href="$relpath^../index.html">All pages</a></li>
</ul>"""


def frame():
    """What stands before and behind the text of a page, as on every page of the site."""
    page = (pathlib.Path(__file__).resolve().parent / "page.html").read_text(encoding="utf-8")
    before, behind = page.format(
        title="$title \N{EN DASH} Zol", root="$relpath^../", styles=STYLES, navigation=NAVIGATION,
        body=BODY, version="$projectnumber").split(BODY)
    return before + BODY + "\n", behind.lstrip()


def main():
    doxygen, doxyfile = sys.argv[1:]
    for name, text in zip(("header", "footer"), frame()):
        pathlib.Path(doxyfile).with_name(f"api_{name}.html").write_text(text, encoding="utf-8")
    text = pathlib.Path(doxyfile).read_text(encoding="utf-8")
    out = re.search(r'^OUTPUT_DIRECTORY +=\s*"([^"]*)"', text, re.M)[1]
    pathlib.Path(out).mkdir(parents=True, exist_ok=True)
    run = subprocess.run([doxygen, doxyfile], capture_output=True, text=True)
    said = (run.stdout + run.stderr).strip()
    print(said, file=sys.stderr)
    if run.returncode != 0 or said:
        sys.exit("the API reference is not complete")


if __name__ == "__main__":
    main()
