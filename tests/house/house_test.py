#!/usr/bin/env python3
"""Holds the rules of the house over every source: house_test.py GENERATED [unittest options]."""

import pathlib
import re
import shutil
import subprocess
import sys
import unittest

SOURCE = pathlib.Path(__file__).resolve().parents[2]
GENERATED = None
ROOMS = ("bridge", "facade", "model", "lmx", "zip", "port", "colorimetry", "interchange", "python",
         "tools")
OTHERS = ("tests", "fuzz", "bench", "examples")

INCLUDE = re.compile(r'^\s*#\s*include\s*([<"])([^>"]+)[>"]', re.M)
# Headers of systems, and standard ones that reach files or the environment of the process.
PLATFORM_HEADER = re.compile(
    r"(aclapi|direct|dirent|dlfcn|fcntl|fileapi|io|poll|process|pthread|pwd|sched|share|signal|"
    r"spawn|termios|unistd|windows)\.h|(sys|linux|mach)/.*|filesystem|fstream|csignal")
PLATFORM_CALL = re.compile(
    r"\b(fopen|freopen|fdopen|tmpfile|getenv|putenv|setenv|setlocale|ifstream|ofstream|"
    r"popen|std::system|std::remove|std::rename)\b\s*(\(|\w+\s*[({])")
CODE_ONLY = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"', re.S)

# What a room still does itself.
PLATFORM_OF_ITS_OWN = {
    "interchange/sqlite.cpp",      # SQLite makes its database in a file that it opens by name
    "model/internal/documents.cpp",  # marshal to a path of the process's code page
    "tools/file_walk.cpp",         # the command's own place for folders
    "tools/terminal.cpp",          # the same for everything else
}


def sources(room):
    roots = [SOURCE / room]
    if GENERATED is not None:
        roots.append(GENERATED / room)
    for root in roots:
        for path in sorted(root.rglob("*")):
            if path.suffix in (".h", ".cpp"):
                yield str(path.relative_to(root.parent)), path.read_text()


def allowed_includes():
    """From the table of ARCHITECTURE.md: the rooms that each room may include."""
    rows = re.findall(r"^\| `(\w+)/` \|[^|]*\| ([^|]*) \|$",
                      (SOURCE / "ARCHITECTURE.md").read_text(), re.M)
    return {room: cell for room, cell in rows}


def installed_headers():
    text = (SOURCE / "cmake/ZolInstall.cmake").read_text()
    headers = set(re.findall(r"\b[\w/]+\.h\b", text))
    rooms = re.search(r"set\(rooms_with_headers ([\w ]+)\)", text)[1].split()
    for room in [*rooms, "colorimetry", "interchange"]:
        headers |= {f"{room}/{path.name}" for path in (SOURCE / room).glob("*.h")}
    return headers | {"model/Zol.h"}


class HouseTest(unittest.TestCase):
    def test_rooms_include_what_they_may(self):
        table = allowed_includes()
        installed = installed_headers()
        self.assertIn("facade/files.h", installed)
        wrong = []
        for room in ROOMS:
            named = set(re.findall(r"`(\w+)`", table[room]))
            self.assertTrue(named or table[room] in ("nothing of ours", "the installed headers"))
            for name, text in sources(room):
                for _, header in INCLUDE.findall(text):
                    other = header.split("/")[0]
                    if other not in ROOMS + OTHERS or other == room:
                        continue
                    is_inner = "/internal/" in header and other not in ("lmx", "model")
                    if table[room] == "the installed headers":
                        is_right = header in installed
                    else:
                        is_right = other in named and not is_inner
                    if not is_right:
                        wrong.append(f"{name}: {header}")
        self.assertEqual(wrong, [])

    def test_platform_is_called_in_port_alone(self):
        found = set()
        for room in ROOMS:
            if room == "port":
                continue
            for name, text in sources(room):
                headers = [header for _, header in INCLUDE.findall(text)]
                code = CODE_ONLY.sub("", text)
                if any(map(PLATFORM_HEADER.fullmatch, headers)) or PLATFORM_CALL.search(code):
                    found.add(name)
        self.assertEqual(found, PLATFORM_OF_ITS_OWN)

    def test_layout(self):
        # Each version has its own idea of some lines.
        if shutil.which("clang-format") is None or b" version 14." not in subprocess.run(
                ["clang-format", "--version"], stdout=subprocess.PIPE, check=True).stdout:
            self.skipTest("needs clang-format 14")
        files = [path for room in ROOMS + OTHERS for path in sorted((SOURCE / room).rglob("*"))
                 if path.suffix in (".h", ".cpp")]
        self.assertGreater(len(files), 100)
        result = subprocess.run(["clang-format", "--dry-run", "--Werror", *map(str, files)],
                                stderr=subprocess.PIPE, text=True)
        wrong = set(re.findall(r"^(\S+?):\d+:\d+: ", result.stderr, re.M))
        self.assertEqual(sorted(str(pathlib.Path(path).relative_to(SOURCE)) for path in wrong), [])


if __name__ == "__main__":
    GENERATED = pathlib.Path(sys.argv[1]) if len(sys.argv) > 1 else None
    unittest.main(argv=[sys.argv[0], *sys.argv[2:]])
