#!/usr/bin/env python3
"""Looks at a Windows build from outside: what the library exports, what the command gives, and an
installed copy in the hands of a client.

windows_test.py --build DIR --toolchain FILE --objdump OBJDUMP --emulator=WINE --native ZOL
                library|command|client [unittest options]

ZOL is the command of this machine's own system; without it nothing is compared with that. Without an
emulator the client is linked and not run.
"""

import argparse
import contextlib
import json
import os
import pathlib
import re
import shutil
import sqlite3
import subprocess
import sys
import tempfile
import unittest

SOURCE = pathlib.Path(__file__).resolve().parents[2]
CLIENT = SOURCE / "tests/install/client"
SAMPLES = sorted((SOURCE / "examples/documents").glob("*.zol"))
OPTIONS = None
# What every Windows has.
SYSTEM_LIBRARIES = {"advapi32.dll", "kernel32.dll", "msvcrt.dll", "oleaut32.dll"}


def call(*arguments, **options):
    result = subprocess.run(list(map(str, arguments)), stdout=subprocess.PIPE,
                            stderr=subprocess.STDOUT, text=True, **options)
    if result.returncode != 0:
        raise AssertionError(f"{arguments}\n{result.stdout}")
    return result.stdout


def run(program, *arguments, **options):
    """Status, standard output and standard error, as bytes."""
    command = [program] if program == OPTIONS.native else [OPTIONS.emulator, program]
    result = subprocess.run([*map(str, command), *map(str, arguments)], stdout=subprocess.PIPE,
                            stderr=subprocess.PIPE, env={**os.environ, "WINEDEBUG": "-all"},
                            **options)
    return result.returncode, result.stdout, result.stderr


class LibraryTest(unittest.TestCase):
    def setUp(self):
        self.headers = self.headers_of(OPTIONS.build / "bin/zol.dll")

    def headers_of(self, file):
        return call(OPTIONS.objdump, "-p", file)

    def test_exports(self):
        names = re.findall(r"^\s*\[ *\d+\] (\S+)$", self.headers, re.M)
        if not names:  # newer ones show the ordinal, too
            names = re.findall(r"^\s*\[ *\d+\] \+base\[ *\d+\] +\w+ (\S+)$", self.headers, re.M)
        flat = {name for name in names if re.match("_(CSharp|SWIG)", name)}
        listed = (OPTIONS.build / "generated/bridge/zol_exports.txt").read_text().split()
        is_32_bit = "pei-i386" in self.headers
        expected = set(listed) if is_32_bit else {name.split("@")[0] for name in listed}
        self.assertEqual(len(expected), 3993)
        self.assertEqual(flat ^ expected, set())
        declared = re.findall(r"^ZOL_HELPER [^;]*?ZOL_CALL (\w+)\(",
                              (SOURCE / "bridge/zol_helpers.h").read_text(), re.M)
        self.assertIn("zol_text_free", declared)
        self.assertEqual(set(declared) - set(names), set())
        if is_32_bit:
            self.assertIn("_zol_text_free@4", names)

    def test_needs_nothing_beside_it(self):
        for name, others in (("zol.dll", set()), ("zolcolor.dll", {"zol.dll"}),
                             ("zolinterchange.dll", {"zol.dll", "zolcolor.dll"}),
                             ("zol.exe", {"zol.dll", "zolcolor.dll", "zolinterchange.dll"})):
            with self.subTest(name):
                headers = self.headers_of(OPTIONS.build / "bin" / name)
                needed = {name.lower() for name in re.findall(r"DLL Name: (\S+)", headers)}
                self.assertEqual(needed - SYSTEM_LIBRARIES - others, set())


class CommandTest(unittest.TestCase):
    def setUp(self):
        self.zol = OPTIONS.build / "bin/zol.exe"
        self.directory = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.directory)

    def test_gives_the_same_bytes_as_elsewhere(self):
        if not OPTIONS.native.is_file():
            self.skipTest(f"{OPTIONS.native} is not built")
        damaged = self.directory / "damaged.zol"
        damaged.write_bytes(SAMPLES[0].read_bytes().replace(b"Creator>", b"Creador>", 1))
        calls = [("info",), ("info", "--json"), ("list",), ("list", "--csv"),
                 ("validate", "--lint", "--json")]
        if b"report" in run(self.zol, "--help")[1]:  # with colorimetry
            calls += [("list", "--illuminant", "A"), ("check",), ("check", "--json")]
        calls = [(*call, *SAMPLES) for call in calls]
        calls += [("convert", "--rewrite", "--exact", sample, "-") for sample in SAMPLES]
        calls += [("convert", "--to", form, sample, "-")
                  for form in ("json", "csv", "cgats", "css", "gpl", "ase", "kpl")
                  for sample in SAMPLES[:3]]
        calls += [("report", SAMPLES[-1]), ("convert", SAMPLES[0], "-"), ("schema",),
                  ("validate", *SAMPLES, damaged), ("validate", "--sarif", damaged),
                  ("info", "missing.zol"), ("validate", "--help"), ("validate", "--no-such-option")]
        for arguments in calls:
            with self.subTest(arguments):
                given = run(self.zol, *arguments, cwd=self.directory)
                wanted = run(OPTIONS.native, *arguments, cwd=self.directory)
                self.assertTrue(given[:2] == wanted[:2], (given[0], given[1][:500], given[2]))
                # Standard error is text, whose lines end as they do there.
                self.assertEqual(given[2].replace(b"\r\n", b"\n"), wanted[2])

    def test_fills_the_same_database(self):
        if not OPTIONS.native.is_file():
            self.skipTest(f"{OPTIONS.native} is not built")
        # What is computed ends in the rounding of the system's own functions.
        def rounded(value):
            return float(f"{value:.12g}") if isinstance(value, float) else value

        tables = []
        for program in (self.zol, OPTIONS.native):
            file = self.directory / "colours.sqlite"
            status, _, errors = run(program, "convert", *SAMPLES, file.name, cwd=self.directory)
            self.assertEqual(status, 0, errors)
            with contextlib.closing(sqlite3.connect(file)) as database:
                names = database.execute("SELECT name FROM sqlite_master WHERE type = 'table'")
                tables.append({name: [tuple(map(rounded, row))
                                      for row in database.execute(f'SELECT * FROM "{name}"')]
                               for (name,) in names if not name.startswith("lab_")})
            file.unlink()
        self.assertGreater(len(tables[0]["colours"]), 100)
        for name, rows in tables[0].items():
            self.assertTrue(rows == tables[1][name], name)

    def test_spells_paths_as_uris(self):
        (self.directory / "a b").mkdir()
        (self.directory / "a b/x.zol").write_bytes(b"<Zol")
        for path, uri in (("a b\\x.zol", "a%20b/x.zol"), ("a b/x.zol", "a%20b/x.zol"),
                          (f"Z:{self.directory}\\a b/x.zol", f"file:///Z:{self.directory}/a%20b/x.zol")):
            with self.subTest(path):
                status, output, _ = run(self.zol, "validate", "--sarif", path, cwd=self.directory)
                self.assertEqual(status, 1)
                result = json.loads(output)["runs"][0]["results"][0]
                place = result["locations"][0]["physicalLocation"]["artifactLocation"]
                self.assertEqual(place["uri"], uri)

    def test_takes_and_gives_names_in_any_script(self):
        name = "Gr\u00f6\u00dfe \u8272 \U0001F3A8.zol"
        shutil.copy(SAMPLES[0], self.directory / name)
        status, output, _ = run(self.zol, "validate", name, cwd=self.directory)
        self.assertEqual((status, output.decode()), (0, f"{name}: valid\n"))
        packed = name + "z"
        status, _, errors = run(self.zol, "convert", name, packed, cwd=self.directory)
        self.assertEqual((status, errors), (0, b""))
        self.assertEqual(sorted(path.name for path in self.directory.iterdir()), [name, packed])
        status, output, _ = run(self.zol, "convert", packed, "-", cwd=self.directory)
        self.assertEqual((status, output), (0, SAMPLES[0].read_bytes()))


class ClientTest(unittest.TestCase):
    def test_links_and_catches(self):
        directory = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, directory)
        prefix = directory / "prefix"
        call("cmake", "--install", OPTIONS.build, "--prefix", prefix)
        for name in ("bin/zol.dll", "bin/zol.exe", "lib/libzol.dll.a"):
            self.assertTrue((prefix / name).is_file(), name)
        work = directory / "client"
        call("cmake", "-S", CLIENT, "-B", work, "-G", "Ninja", "-DCMAKE_BUILD_TYPE=Release",
             f"-DCMAKE_TOOLCHAIN_FILE={OPTIONS.toolchain}", f"-DZol_DIR={prefix}/lib/cmake/Zol")
        call("cmake", "--build", work)
        if OPTIONS.emulator:
            shutil.copy(prefix / "bin/zol.dll", work)
            status, output, errors = run(work / "client.exe", cwd=work)
            self.assertEqual((status, output), (0, b"read back client\r\n"), errors)


if __name__ == "__main__":
    parser = argparse.ArgumentParser()
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("--toolchain", required=True)
    parser.add_argument("--objdump", required=True)
    parser.add_argument("--emulator", default="")
    parser.add_argument("--native", type=pathlib.Path, required=True)
    parser.add_argument("what", choices=("library", "command", "client"))
    OPTIONS, rest = parser.parse_known_args()
    OPTIONS.build = OPTIONS.build.resolve()
    OPTIONS.native = OPTIONS.native.resolve()
    unittest.main(argv=[sys.argv[0], *rest], defaultTest=f"{OPTIONS.what.capitalize()}Test")
