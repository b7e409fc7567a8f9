#!/usr/bin/env python3
"""Proves that every processor writes the same bytes of a document.

    same_bytes_check.py PROBE NATIVE DOCUMENT...

PROBE is the program document_probe of another processor, NATIVE that of this machine: without it
there is nothing to compare with, and the exit status is 77.
"""

import os
import subprocess
import sys


def written(probe, path):
    with open(path, "rb") as document:
        return subprocess.run([probe, "write"], stdin=document, stdout=subprocess.PIPE,
                              check=True).stdout


def main():
    probe, native, paths = sys.argv[1], sys.argv[2], sys.argv[3:]
    if not os.path.exists(native):
        print(f"{native} is not built")
        return 77
    others = [path for path in paths if written(probe, path) != written(native, path)]
    print(f"{len(paths)} documents, other bytes of {others}")
    return 1 if others or not paths else 0


if __name__ == "__main__":
    sys.exit(main())
