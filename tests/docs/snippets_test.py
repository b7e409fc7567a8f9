#!/usr/bin/env python3
"""Compiles and runs every C++ program that stands in README.md and docs/.

    snippets_test.py COMPILER LIBRARY INCLUDE...

A comment `<!-- run: ARGUMENTS -->` above a program names sample documents or new files for its
command line. A program must end with status 0.
"""

import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
SAMPLES = ROOT / "examples" / "documents"
SNIPPET = re.compile(r"(?:<!-- run:(?P<run>[^\n]*)-->\s*)?```cpp\n(?P<code>.*?)```", re.S)


def snippets():
    for page in [ROOT / "README.md", *sorted((ROOT / "docs").glob("*.md"))]:
        text = page.read_text(encoding="utf-8")
        for match in SNIPPET.finditer(text):
            line = text.count("\n", 0, match.start("code")) + 1
            yield f"{page.name}:{line}", match["code"], (match["run"] or "").split()


class SnippetsTest(unittest.TestCase):
    def test_programs_compile_and_run(self):
        found = list(snippets())
        self.assertGreaterEqual(len(found), 5)
        for where, code, arguments in found:
            with self.subTest(where), tempfile.TemporaryDirectory() as directory:
                self.run_program(pathlib.Path(directory), code, arguments)

    def run_program(self, directory, code, arguments):
        source = directory / "snippet.cpp"
        source.write_text(code, encoding="utf-8")
        program = directory / "snippet"
        library = pathlib.Path(LIBRARY)
        libraries = [str(library)]
        for room, name in (("colorimetry", "libzolcolor.so"),
                           ("interchange", "libzolinterchange.so")):
            if f'"{room}/' not in code:
                continue
            beside = library.with_name(name)
            if not beside.exists():
                self.skipTest(f"{name} was left out")
            libraries.insert(0, str(beside))
        subprocess.run([COMPILER, "-std=c++17", "-Wall", "-Wextra", "-Wpedantic", "-Werror",
                        *(f"-I{path}" for path in INCLUDES), str(source), *libraries,
                        f"-Wl,-rpath,{library.parent}", "-o", str(program)], check=True)
        paths = [str(SAMPLES / name) if (SAMPLES / name).exists() else str(directory / name)
                 for name in arguments]
        subprocess.run([program, *paths], check=True, stdout=subprocess.DEVNULL)


if __name__ == "__main__":
    COMPILER, LIBRARY, *INCLUDES = sys.argv[1:]
    unittest.main(argv=sys.argv[:1])
