#!/usr/bin/env python3
"""Makes the API reference, and fails on whatever Doxygen has to say against it.

    api_reference.py DOXYGEN DOXYFILE
"""

import pathlib
import re
import subprocess
import sys


def main():
    doxygen, doxyfile = sys.argv[1:]
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
