#!/usr/bin/env python3
"""Checks that docs/errors.md has each code once, with its enumerator and message.

    errors_page.py ERRORS_HEADER ERRORS_SOURCE ERRORS_PAGE
"""

import pathlib
import re
import sys


def main():
    header, source, page = (pathlib.Path(path).read_text(encoding="utf-8") for path in sys.argv[1:])
    codes = {name: int(code) for name, code in re.findall(r"(elmx_\w+) = (\d+)", header)}
    expected = [(codes[name], name, text)
                for name, text in re.findall(r'\{(elmx_\w+), "([^"]*)"\}', source)]
    found = [(int(code), name, text) for code, name, text in
             re.findall(r"^\| (\d+) \| `(\w+)` \| ([^|]*?) \|", page, re.M)]
    faults = [f"missing or misspelt: {row}" for row in expected if found.count(row) != 1]
    faults += [f"not a code: {row}" for row in found if row not in expected]
    print(f"{len(expected)} codes", *faults, sep="\n")
    return 1 if faults or not expected else 0


if __name__ == "__main__":
    sys.exit(main())
