#!/usr/bin/env python3
"""zol convert with the formats of other programs: what they read of what it writes, and what it
reads of theirs.

    convert_test.py COMMAND SCHEMA [unittest options]
"""

import copy
import csv
import io
import json
import pathlib
import random
import subprocess
import sys
import tempfile
import unittest

try:
    import jsonschema
except ImportError:
    jsonschema = None

SOURCE = pathlib.Path(__file__).resolve().parents[2]
SAMPLES = sorted((SOURCE / "examples/documents").glob("*.zol"))
COMMAND = SCHEMA = None


class ConvertTest(unittest.TestCase):
    def setUp(self):
        directory = tempfile.TemporaryDirectory()
        self.addCleanup(directory.cleanup)
        self.directory = pathlib.Path(directory.name)

    def run_zol(self, *arguments, **options):
        return subprocess.run([COMMAND, *map(str, arguments)], capture_output=True, timeout=120,
                              check=False, **options)

    def expect(self, status, *arguments, **options):
        result = self.run_zol(*arguments, **options)
        self.assertEqual(result.returncode, status, (arguments, result.stderr))
        return result

    def convert(self, *arguments, **options):
        """What is written to standard output."""
        return self.expect(0, "convert", *arguments, "-", **options).stdout

    def exact(self, path):
        return self.convert("--rewrite", "--exact", path)


class JsonTest(ConvertTest):
    def setUp(self):
        super().setUp()
        self.schema = json.loads(pathlib.Path(SCHEMA).read_text("utf-8"))

    def test_schema_is_printed(self):
        self.assertEqual(self.expect(0, "schema", "--json").stdout, pathlib.Path(SCHEMA).read_bytes())

    def test_there_and_back(self):
        for path in SAMPLES:
            with self.subTest(path.name):
                text = self.convert(path, "--to", "json")
                again = self.directory / "again.zol"
                self.expect(0, "convert", "-f", "--from", "json", "-", again, input=text)
                self.assertEqual(self.convert(again, "--to", "json"), text)

    @unittest.skipIf(jsonschema is None, "needs python3-jsonschema")
    def test_schema_holds_for_samples(self):
        jsonschema.Draft202012Validator.check_schema(self.schema)
        validator = jsonschema.Draft202012Validator(self.schema)
        for path in SAMPLES:
            with self.subTest(path.name):
                validator.validate(json.loads(self.convert(path, "--to", "json")))

    @unittest.skipIf(jsonschema is None, "needs python3-jsonschema")
    def test_schema_refuses_what_is_refused(self):
        """Documents with one thing changed: the schema takes those that become documents again."""
        validator = jsonschema.Draft202012Validator(self.schema)
        chance = random.Random(5)
        verdicts = {True: 0, False: 0}
        for name in ("coverage-frame", "coverage-functions", "quality-control"):
            origin = json.loads(self.convert(SOURCE / f"examples/documents/{name}.zol",
                                             "--to", "json"))
            for _ in range(100):
                changed = copy.deepcopy(origin)
                what = change(changed, chance)
                result = self.run_zol("convert", "-f", "--from", "json", "-",
                                      self.directory / "x.zol", input=json.dumps(changed).encode())
                is_good = validator.is_valid(changed)
                verdicts[is_good] += 1
                with self.subTest(name, what=what):
                    self.assertEqual(result.returncode == 0, is_good, result.stderr)
        self.assertGreater(min(verdicts.values()), 25)

    def test_faults(self):
        target = self.directory / "x.zol"
        target.write_text("precious")
        for text, words in (('{"Zol":\n {"Colour": []}}', ":2:13: error: 'Colour' is unknown here"),
                            ("{", ":1:1: error: This is no JSON"),
                            ('{"Zol": {}}', "Zol/Preamble")):
            source = self.directory / "x.json"
            source.write_text(text)
            result = self.expect(1, "convert", "-f", source, target)
            self.assertIn(words, result.stderr.decode())
            self.assertEqual(target.read_text(), "precious")
        self.expect(2, "convert", "-f", self.directory / "none.json", target)
        self.expect(2, "convert", *SAMPLES[:2], self.directory / "y.zol")
        self.expect(1, "convert", *SAMPLES[:2], self.directory / "y.json")
        self.assertFalse((self.directory / "y.json").exists())


def places(value, found):
    """Every container with a key or index in it."""
    for key in (value if isinstance(value, dict) else range(len(value))):
        found.append((value, key))
        if isinstance(value[key], (dict, list)):
            places(value[key], found)
    return found


def change(document, chance):
    """Changes one thing at random, and tells what it was."""
    container, key = chance.choice(places(document["Zol"], []))
    kind = chance.choice(["take", "text", "number", "great", "member", "null", "list"])
    if kind == "take":
        del container[key]
    elif kind == "member" and isinstance(container, dict):
        container["Stranger"] = 1
    else:
        container[key] = {"text": "some text", "number": 1, "great": 1e9, "null": None,
                          "list": [], "member": {}}[kind]
    return kind, key


class TableTest(ConvertTest):
    def rows(self, *arguments, delimiter=",", **options):
        text = self.convert(*arguments, **options).decode("utf-8")
        return list(csv.DictReader(io.StringIO(text, newline=""), delimiter=delimiter, strict=True))

    def test_another_parser_reads_the_same(self):
        for path in SAMPLES:
            with self.subTest(path.name):
                rows = self.rows(path, "--to", "csv")
                self.assertEqual(rows, self.rows(path, "--to", "tsv", delimiter="\t"))
                comma = self.rows(path, "--to", "csv", "--decimal-comma", delimiter=";")
                self.assertEqual([row["Value"].replace(",", ".") for row in comma],
                                 [row["Value"].replace(",", ".") for row in rows])

    def test_conditions_and_units_are_there(self):
        rows = self.rows(SOURCE / "examples/documents/quality-control.zol", "--to", "csv")
        for column in ("Illuminant", "Observer", "Quantity", "Pair", "Group"):
            self.assertTrue(any(row[column] for row in rows), column)
        rows = self.rows(SOURCE / "examples/documents/coverage-spaces.zol", "--to", "csv")
        self.assertIn(("CMYK", "Cyan", "percent"),
                      {(row["Space"], row["Axis"], row["Unit"]) for row in rows})
        # As full as a table of many spaces can be.
        cells = [cell for row in rows for cell in (row["Space"], row["Axis"], row["Value"])]
        self.assertNotIn("", cells)

    def test_losses_are_told(self):
        path = self.directory / "x.csv"
        result = self.expect(0, "convert", SOURCE / "examples/documents/quality-control.zol", path)
        self.assertRegex(result.stderr.decode(), r"x\.csv: left out 1 Preamble, .*\d+ Tolerance")
        path = self.directory / "wide.csv"
        result = self.expect(0, "convert", "--wide", "--space", "CIELab",
                             SOURCE / "examples/documents/named-colours.zol", path)
        self.assertRegex(result.stderr.decode(), r"\d+ rendering in SRGB")

    def test_several_documents_make_one_table(self):
        rows = self.rows(*SAMPLES, "--to", "csv")
        names = {row["Document"] for row in rows}
        self.assertGreater(len(names), 3)
        self.assertLessEqual(names, set(map(str, SAMPLES)))

    def test_import(self):
        source = self.directory / "in.csv"
        source.write_text("Sample;Lightness;a*;b*\nred;53,2;80,1;67,2\n", "utf-8")
        mapping = self.directory / "mapping"
        mapping.write_text("Sample = Name\nLightness = CIELab.L\na* = CIELab.A\nb* = CIELab.B\n")
        target = self.directory / "out.zol"
        result = self.expect(0, "convert", source, target, "--mapping", mapping, "--illuminant",
                             "D65", "--observer", "10")
        self.assertIn(b"assumed", result.stderr)
        self.expect(0, "validate", target)
        (lightness, *_) = self.rows(target, "--to", "csv")
        self.assertEqual([lightness[name] for name in ("Name", "Axis", "Value", "Illuminant",
                                                       "Observer")],
                         ["red", "L", "53.2", "D65", "10"])
        source.write_text("L,a,b\n1,2,x\n")
        target.write_text("precious")
        result = self.expect(1, "convert", "-f", source, target)
        self.assertIn(b"in.csv:2:5: error: B is 'x', a number is expected", result.stderr)
        self.assertEqual(target.read_text(), "precious")

    def test_several_ways_to_be_misused(self):
        for arguments in (["a.zol", "b.nothing"], ["--to", "nothing", "a.zol", "-"],
                          ["--from", "nothing", "a", "-"], ["a.csv", "b.xml"],
                          ["--separator", ",,", "a.zol", "b.csv"], ["--space", "CIELab", "a", "b.csv"]):
            self.expect(2, "convert", *arguments)


if __name__ == "__main__":
    COMMAND, SCHEMA = sys.argv[1:3]
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]])
