#!/usr/bin/env python3
"""zol convert with the formats of other programs: what they read of what it writes, and what it
reads of theirs.

    convert_test.py COMMAND SCHEMA [unittest options]
"""

import collections
import copy
import csv
import io
import itertools
import json
import pathlib
import random
import re
import shutil
import sqlite3
import struct
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ElementTree
import zipfile

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

    def imported(self, text, *arguments, status=0):
        """Lines of (name, space, illuminant, observer, axis, value), and what was told."""
        source, target = self.directory / "lab.csv", self.directory / "lab.zol"
        source.write_text(text, "utf-8")
        result = self.expect(status, "convert", "-f", source, target, *arguments)
        rows = self.rows(target, "--to", "csv") if status == 0 else []
        names = ("Name", "Space", "Illuminant", "Observer", "Axis", "Value")
        return [tuple(row[name] for name in names) for row in rows], result.stderr.decode()

    def test_tables_of_laboratories(self):
        """As spreadsheets of measurements are headed."""
        def lab(name, light, observer, *values):
            return [(name, "CIELab", light, observer, axis, value)
                    for axis, value in zip("LAB", values)]
        rows, told = self.imported("Sample ID,Name,L*,a*,b*,R400,R410,Notes\n"
                                   "7,Red tile,53.2,80.1,67.2,0.04,0.05,kept\n,,,,,,,\n")
        self.assertEqual(rows, [*lab("Red tile", "", "", "53.2", "80.1", "67.2"),
                                ("Red tile", "Spectral", "", "", "400", "0.04"),
                                ("Red tile", "Spectral", "", "", "410", "0.05")])
        self.assertEqual(told, "")
        # Two lights side by side, decimal commas, percent, and what is not known.
        rows, told = self.imported(
            "Sample;L* (D65/10°);a* (D65/10°);b* (D65/10°);L* (A/10);a* (A/10);b* (A/10);400 nm;DE00\n"
            "Grün;53,2;80,1;67,2;60;70;71,5;4,1;0,3\n")
        self.assertEqual(rows, [*lab("Grün", "D65", "10", "53.2", "80.1", "67.2"),
                                *lab("Grün", "A", "10", "60", "70", "71.5"),
                                ("Grün", "Spectral", "", "", "400", "0.041")])
        self.assertRegex(told, "(?s)percent.*left out 1 cell of the column DE00")
        rows, _ = self.imported("Measurement,Illuminant,Observer,L,a,b\nBatch 1,D65,10 deg,50,2,-3\n"
                                "Batch 2,D50/2,,51,2,-3\n")
        self.assertEqual([row[2:4] for row in rows[::3]], [("D65", "10"), ("D50", "2")])
        # Capital and small letters are other columns; what the sample is called stays.
        rows, _ = self.imported("Color,x,y,X,Y,Z\nDeep blue,0.1,0.2,20,30,40\n")
        self.assertEqual([(row[0], row[4], row[5]) for row in rows],
                         [("Deep blue", axis, value) for axis, value in zip("XYZ", ("0.2", "0.3", "0.4"))])
        rows, _ = self.imported("Name,x,y,Y\nlight,0.31,0.33,54\n")
        self.assertEqual([row[1:] for row in rows],
                         [("CIExyY", "", "", axis, value)
                          for axis, value in zip("xyY", ("0.31", "0.33", "0.54"))])
        rows, told = self.imported("Colour,Cyan %,Magenta %,Yellow %,Black %,Name\nno,100,80,0,10,yes\n")
        self.assertEqual([(row[0], float(row[5])) for row in rows],
                         [("no", value) for value in (100, 80, 0, 10)])
        self.assertIn("1 cell of the column Name", told)

    def test_spectra_in_columns(self):
        rows, told = self.imported("Wavelength (nm),one,two\n400,0.3,0.5\n410,0.4,0.6\n",
                                   "--illuminant", "D50", "--observer", "2")
        self.assertEqual([(row[0], row[4], row[5]) for row in rows],
                         [("one", "400", "0.3"), ("one", "410", "0.4"), ("two", "400", "0.5"),
                          ("two", "410", "0.6")])
        self.assertIn("each column is a spectrum", told)
        rows, told = self.imported("Farbe;Wavelength;Reflectance\nrot;400;3,5\nrot;410;4\ngrau;400;5\n")
        self.assertEqual([(row[0], row[4], row[5]) for row in rows],
                         [("rot", "400", "0.035"), ("rot", "410", "0.04"), ("grau", "400", "0.05")])
        self.assertIn("the column Farbe has the names", told)
        _, told = self.imported("nm,one\n400,0.3\n410,x\n", status=1)
        self.assertIn("lab.csv:3:5: error", told)

    def test_several_ways_to_be_misused(self):
        for arguments in (["a.zol", "b.nothing"], ["--to", "nothing", "a.zol", "-"],
                          ["--from", "nothing", "a", "-"], ["a.csv", "b.xml"],
                          ["--separator", ",,", "a.zol", "b.csv"], ["--space", "CIELab", "a", "b.csv"]):
            self.expect(2, "convert", *arguments)


class CgatsTest(ConvertTest):
    REFERENCES = pathlib.Path("/usr/share/color/argyll/ref")
    COLORD = pathlib.Path("/usr/share/colord")

    @unittest.skipUnless(REFERENCES.is_dir(), "needs argyll-ref")
    def test_reads_the_references_of_argyll(self):
        paths = [path for suffix in ("cie", "ti1", "ti2", "sp")
                 for path in sorted(self.REFERENCES.glob(f"*.{suffix}"))]
        self.assertGreater(len(paths), 30)
        for path in paths:
            with self.subTest(path.name):
                document = self.directory / "x.zol"
                self.expect(0, "convert", "-f", "--from", "cgats", path, document)
                again = self.directory / "again.zol"
                (self.directory / "x.cgats").write_bytes(self.convert(document, "--to", "cgats"))
                self.expect(0, "convert", "-f", self.directory / "x.cgats", again)
                first, second = (sorted(
                    (row["Name"], row["Space"], row["Axis"], float(row["Value"]))
                    for row in csv.DictReader(io.StringIO(self.convert(name, "--to", "csv").decode()))
                    if row["Axis"] != "ColorDepth") for name in (document, again))
                self.assertEqual(len(first), len(second))
                for one, other in zip(first, second):
                    self.assertEqual(one[:3], other[:3])
                    self.assertAlmostEqual(one[3], other[3], 12)

    @unittest.skipUnless(COLORD.is_dir(), "needs colord-data")
    def test_reads_charts_and_lights_of_another_program(self):
        paths = [path for name in ("ti1/*.ti1", "illuminant/*.sp", "ref/*.sp")
                 for path in sorted(self.COLORD.glob(name))]
        self.assertGreater(len(paths), 20)
        for path in paths:
            with self.subTest(path.name):
                document, again = self.directory / "x.zol", self.directory / "again.zol"
                self.expect(0, "convert", "-f", path, document)
                self.expect(0, "validate", document)
                (self.directory / "x.cgats").write_bytes(self.convert(document, "--to", "cgats"))
                self.expect(0, "convert", "-f", self.directory / "x.cgats", again)
                first, second = (
                    [(row["Space"], row["Axis"], float(row["Value"]))
                     for row in csv.DictReader(io.StringIO(self.convert(name, "--to", "csv").decode()))
                     if row["Axis"] != "ColorDepth"] for name in (document, again))
                self.assertEqual(len(first), len(second))
                for one, other in zip(sorted(first), sorted(second)):
                    self.assertEqual(one[:2], other[:2])
                    self.assertAlmostEqual(one[2], other[2], 12)
                if path.suffix == ".sp" and path.parent.name == "illuminant":
                    self.assertEqual({space for space, *_ in first}, {"EmissiveSpectral"})

    @unittest.skipUnless(all(map(shutil.which, ("txt2ti3", "spec2cie", "colprof", "profcheck"))),
                         "needs argyll")
    def test_argyll_reads_what_is_written(self):
        """From RGB and tristimulus values to a profile, and from spectra to tristimulus values."""
        levels = (0, 64, 128, 192, 255)
        columns = ["Name", "RGB.Red", "RGB.Green", "RGB.Blue", "CIEXYZ.X", "CIEXYZ.Y", "CIEXYZ.Z",
                   *(f"Spectral.{nm}" for nm in range(380, 740, 10))]
        lines = [",".join(columns)]
        expected = {}
        for number, rgb in enumerate(itertools.product(levels, repeat=3), 1):
            linear = [(level / 255) ** 2.2 for level in rgb]
            xyz = [sum(factor * value for factor, value in zip(row, linear))
                   for row in ((0.436, 0.385, 0.143), (0.2225, 0.7169, 0.0606),
                               (0.0139, 0.0971, 0.7141))]
            spectrum = [0.02 + 0.9 * linear[2 - (nm - 380) // 120] for nm in range(380, 740, 10)]
            lines.append(",".join(map(str, [f"patch {number}", *(level / 255 for level in rgb), *xyz,
                                            *spectrum])))
            expected[f"patch {number}"] = spectrum
        source = self.directory / "patches.csv"
        source.write_text("\n".join(lines) + "\n")
        document = self.directory / "patches.zol"
        self.expect(0, "convert", source, document, "--illuminant", "D50", "--observer", "2")
        measured = self.directory / "patches.txt"
        self.expect(0, "convert", "--to", "cgats", document, measured)

        def argyll(*arguments):
            result = subprocess.run(arguments, cwd=self.directory, capture_output=True, text=True,
                                    timeout=120, check=False)
            self.assertEqual(result.returncode, 0, (arguments, result.stdout, result.stderr))
            return result.stdout

        # Its profile is of the tristimulus values, which are not those of the spectra.
        bare = self.directory / "bare.csv"
        bare.write_text("\n".join(",".join(line.split(",")[:7])
                                  for line in source.read_text().splitlines()) + "\n")
        self.expect(0, "convert", "--to", "zol", "--illuminant", "D50", "--observer", "2", bare,
                    self.directory / "bare.zol")
        self.expect(0, "convert", "--to", "cgats", self.directory / "bare.zol",
                    self.directory / "bare.txt")
        argyll("txt2ti3", "-d", "bare.txt", "bare")
        argyll("colprof", "-v", "-ag", "-ql", "bare")
        told = argyll("profcheck", "-k", "bare.ti3", "bare.icc")
        self.assertLess(float(re.search(r"avg\. = ([\d.]+)", told)[1]), 0.5, told)
        argyll("txt2ti3", "patches.txt", "patches")
        argyll("spec2cie", "patches.ti3", "computed.ti3")
        again = self.directory / "computed.zol"
        self.expect(0, "convert", "--from", "cgats", self.directory / "computed.ti3", again)
        rows = list(csv.DictReader(io.StringIO(self.convert(again, "--to", "csv").decode())))
        spectra = {}
        for row in rows:
            if row["Space"] == "Spectral":
                spectra.setdefault(int(row["Color"]), []).append(float(row["Value"]))
        self.assertEqual(len(spectra), len(expected))
        for found, wanted in zip(spectra.values(), expected.values()):
            self.assertEqual(len(found), len(wanted))
            for one, other in zip(found, wanted):
                self.assertAlmostEqual(one, other, 4)

    def test_faults(self):
        source = self.directory / "x.cgats"
        source.write_text("CGATS.17\nBEGIN_DATA_FORMAT\nLAB_L LAB_A LAB_B\nEND_DATA_FORMAT\n"
                          "BEGIN_DATA\n1 2 x\nEND_DATA\n")
        result = self.expect(1, "convert", source, self.directory / "x.zol")
        self.assertIn(b"x.cgats:6:5: error: LAB_B is 'x', a number is expected", result.stderr)
        self.assertFalse((self.directory / "x.zol").exists())


class PaletteTest(ConvertTest):
    GIMP = pathlib.Path("/usr/share/gimp/2.0/palettes")
    MYPAINT = pathlib.Path("/usr/share/mypaint/palettes")

    def swatches(self, document):
        """Name and bytes of each colour with an sRGB."""
        colors = {}
        for row in csv.DictReader(io.StringIO(self.convert(document, "--to", "csv").decode())):
            if row["Space"] == "SRGB" and row["Axis"] != "ColorDepth":
                colors.setdefault((int(row["Color"]), row["Name"]), []).append(float(row["Value"]))
        return [(name, rgb) for (_, name), rgb in colors.items()]

    def document(self):
        return SOURCE / "examples/documents/named-colours.zol"

    @unittest.skipUnless(GIMP.is_dir(), "needs gimp-data")
    def test_reads_the_palettes_of_gimp(self):
        paths = [*sorted(self.GIMP.glob("*.gpl")), *sorted(self.MYPAINT.glob("*.gpl"))]
        self.assertGreater(len(paths), 30)
        for path in paths:
            with self.subTest(path.name):
                document = self.directory / "x.zol"
                self.expect(0, "convert", "-f", path, document)
                self.expect(0, "validate", document)
                expected = []
                for line in path.read_text("utf-8").splitlines():
                    if re.match(r"\s*\d+\s+\d+\s+\d+", line):
                        *rgb, name = (line.split(None, 3) + ["Untitled"])[:4]
                        expected.append((name.strip() or "Untitled", list(map(int, rgb))))
                found = [(name, [round(255 * channel) for channel in rgb])
                         for name, rgb in self.swatches(document)]
                self.assertEqual(found, expected)

    def test_krita_finds_what_it_looks_for(self):
        path = self.directory / "x.kpl"
        self.expect(0, "convert", self.document(), path)
        with zipfile.ZipFile(path) as archive:
            self.assertIsNone(archive.testzip())
            self.assertEqual(archive.namelist()[0], "mimetype")
            self.assertEqual(archive.getinfo("mimetype").compress_type, zipfile.ZIP_STORED)
            root = ElementTree.fromstring(archive.read("colorset.xml"))
        entries = list(root.iter("ColorSetEntry"))
        found = [(entry.get("name"), [float(entry.find("sRGB").get(c)) for c in "rgb"])
                 for entry in entries]
        self.assertEqual(sorted(found), sorted(self.swatches(self.document())))
        places = [(group.get("name"), entry.find("Position").get("row"),
                   entry.find("Position").get("column"))
                  for group in [root, *root.findall("Group")]
                  for entry in group.findall("ColorSetEntry")]
        self.assertEqual(len(set(places)), len(entries))
        path.write_bytes(path.read_bytes()[:-30])
        self.expect(1, "convert", path, self.directory / "y.zol")
        broken = self.directory / "broken.kpl"
        with zipfile.ZipFile(broken, "w") as archive:
            archive.writestr("colorset.xml", '<ColorSet name="x">\n <ColorSetEntry>\n'
                                             '  <sRGB r="0" g="zero" b="0"/></ColorSetEntry></ColorSet>')
        result = self.expect(1, "convert", broken, self.directory / "y.zol")
        self.assertRegex(result.stderr.decode(),
                         r"broken\.kpl\(colorset\.xml\):3:\d+: error: sRGB has g 'zero'")

    def test_style_sheet(self):
        text = self.convert(self.document(), "--to", "css").decode()
        found = re.findall(r"^  --([\w-]+): #([0-9a-f]{6});$", text, re.M)
        expected = self.swatches(self.document())
        self.assertEqual([[int(hexa[i:i + 2], 16) for i in (0, 2, 4)] for _, hexa in found],
                         [[round(255 * channel) for channel in rgb] for _, rgb in expected])
        self.assertEqual(len({name for name, _ in found}), len(found))
        self.expect(2, "convert", "--from", "css", "x.css", "x.zol")

    def test_swatch_exchange_by_another_reader(self):
        data = self.convert(self.document(), "--to", "ase")
        expected = self.swatches(self.document())
        found = list(ase_colors(data))
        self.assertEqual([name for name, _, _ in found], [name for name, _ in expected])
        for (_, model, values), (_, rgb) in zip(found, expected):
            self.assertEqual(model, "RGB ")
            for one, other in zip(values, rgb):
                self.assertAlmostEqual(one, other, 7)

    @unittest.skipUnless((SOURCE / "build/ase-utils").is_dir() and shutil.which("node"),
                         "needs ase-utils of npm")
    def test_swatch_exchange_with_ase_utils(self):
        package = SOURCE / "build/ase-utils/package"
        # It takes the end of a group for a colour, so that there are none.
        source = self.directory / "colours.csv"
        source.write_text("Name,Hex\nred,#ff0000\nCaf\u00e9,#336699\n", "utf-8")
        document = self.directory / "colours.zol"
        self.expect(0, "convert", source, document)
        path = self.directory / "x.ase"
        path.write_bytes(self.convert(document, "--to", "ase"))
        script = ("const decode = require(process.argv[1] + '/decode'), fs = require('fs');"
                  "const read = decode(fs.readFileSync(process.argv[2]));"
                  "console.log(JSON.stringify([].concat(read.colors,"
                  " ...read.groups.map(group => group.colors))));")

        def decoded(name):
            return json.loads(subprocess.run(["node", "-e", script, str(package), str(name)],
                                             capture_output=True, text=True, check=True).stdout)

        self.assertEqual([(color["name"], color["model"], [round(255 * c) for c in color["color"]])
                          for color in decoded(path)],
                         [("red", "RGB", [255, 0, 0]), ("Caf\u00e9", "RGB", [0x33, 0x66, 0x99])])
        # A file of its makers.
        axes = {"RGB": ("Red", "Green", "Blue"), "CMYK": ("Cyan", "Magenta", "Yellow", "Black"),
                "LAB": ("L", "A", "B"), "Gray": ("Red",)}
        rows = list(csv.DictReader(io.StringIO(
            self.convert(package / "test.ase", "--to", "csv").decode())))
        values = {(row["Name"], row["Axis"]): row["Value"] for row in rows}
        others = decoded(package / "test.ase")
        self.assertGreater(len(others), 0)
        for color in others:
            model = color["model"].strip()
            for axis, value in zip(axes[model], color["color"]):
                factor = 100 if model == "CMYK" or axis == "L" else 1
                self.assertAlmostEqual(float(values[(color["name"], axis)]), value * factor, 4)

    def test_palettes_tell_what_they_lose(self):
        result = self.expect(0, "convert", self.document(), self.directory / "x.gpl")
        self.assertRegex(result.stderr.decode(), r"left out .*\d+ rendering in CIELab")


def ase_colors(data):
    """Name, model and values of each colour in an Adobe Swatch Exchange."""
    magic, major, minor, count = struct.unpack_from(">4sHHI", data)
    assert (magic, major, minor) == (b"ASEF", 1, 0)
    at = 12
    for _ in range(count):
        kind, length = struct.unpack_from(">HI", data, at)
        block = data[at + 6:at + 6 + length]
        at += 6 + length
        if kind != 1:
            continue
        (size,) = struct.unpack_from(">H", block)
        name = block[2:2 * size].decode("utf-16-be")
        model = block[2 + 2 * size:6 + 2 * size].decode()
        number = {"RGB ": 3, "CMYK": 4, "LAB ": 3, "Gray": 1}[model]
        yield name, model, struct.unpack_from(f">{number}f", block, 6 + 2 * size)
    assert at == len(data)


class SqliteTest(ConvertTest):
    def setUp(self):
        super().setUp()
        formats = self.run_zol("convert", "--to", "nothing", "a.zol", "-").stderr
        if b"sqlite" not in formats:
            self.skipTest("SQLite was left out")
        path = self.directory / "all.sqlite"
        self.told = self.expect(0, "convert", *SAMPLES, path).stderr.decode()
        self.database = sqlite3.connect(path)
        self.addCleanup(self.database.close)
        page = (SOURCE / "docs/interchange.md").read_text("utf-8")
        self.queries = re.findall(r"```sql\n(.*?)```", page, re.S)

    def ask(self, query, **values):
        return self.database.execute(query, values).fetchall()

    def test_is_sound(self):
        self.assertEqual(self.ask("PRAGMA integrity_check"), [("ok",)])
        self.assertEqual(self.ask("PRAGMA foreign_key_check"), [])
        self.assertEqual(self.ask("SELECT rtreecheck('lab')"), [("ok",)])
        self.assertNotIn("Tolerance", self.told)

    def test_holds_every_value(self):
        rows = list(csv.DictReader(io.StringIO(self.convert(*SAMPLES, "--to", "csv").decode(),
                                               newline="")))
        expected = sorted((row["Document"], row["Name"], row["Space"], row["Axis"], row["Value"])
                          for row in rows)
        found = self.ask("SELECT documents.name, colours.name, space, axis, value FROM colour_values"
                         " JOIN renderings ON renderings.id = rendering JOIN colours ON colours.id ="
                         " colour JOIN documents ON documents.id = document UNION ALL SELECT"
                         " documents.name, colours.name, space, wavelength, value FROM spectra JOIN"
                         " renderings ON renderings.id = rendering JOIN colours ON colours.id ="
                         " colour JOIN documents ON documents.id = document")
        self.assertEqual(len(found), len(expected))

        def plain(value):
            try:
                return float(value)
            except ValueError:
                return value

        def comparable(entries):
            return sorted(tuple(str(plain(value)) for value in entry) for entry in entries)

        # A number that is none has no place in a database.
        def known(entries):
            return [entry for entry in comparable(entries) if entry[-1] not in ("nan", "None")]

        self.assertEqual(known((d, n, s, a, v) for d, n, s, a, v in found if v is not None),
                         known(expected))

    def test_nearest_colours(self):
        query = self.queries[0]
        colors = self.ask("SELECT l, a, b FROM colours WHERE l IS NOT NULL")
        self.assertGreater(len(colors), 300)
        for l, a, b in random.Random(1).sample(colors, 20):
            found = [round(row[2], 6) for row in self.ask(query, l=l, a=a, b=b)]
            nearest = sorted(((x - l) ** 2 + (y - a) ** 2 + (z - b) ** 2) ** 0.5
                             for x, y, z in colors)[:10]
            self.assertEqual(found, [round(d, 6) for d in nearest if d <= 30][:len(found)])
            self.assertEqual(found[0], 0)
        plan = " ".join(row[3] for row in self.ask("EXPLAIN QUERY PLAN " + query, l=1, a=1, b=1))
        self.assertIn("VIRTUAL TABLE INDEX", plan)

    def test_attributes_and_looks_are_there(self):
        self.assertNotIn("CustomAttribute,", self.told)
        names = [attribute[0].text for path in SAMPLES
                 for attribute in ElementTree.parse(path).getroot().iterfind(".//{*}CustomAttribute")
                 if attribute[0].tag.endswith("}Name")]
        found = [name for name, in self.ask("SELECT name FROM attributes ORDER BY id")]
        self.assertGreater(len(found), 50)
        self.assertEqual(sorted(found), sorted(names))
        for path, place in self.ask("SELECT documents.name, place FROM attributes JOIN documents ON"
                                    " documents.id = document WHERE colour IS NOT NULL LIMIT 20"):
            self.expect(0, "get", path, place)
        looks = self.ask("SELECT srgb FROM colours WHERE name = 'red' AND srgb IS NOT NULL")
        self.assertIn(("#ff0000",), looks)

    def test_verdicts_are_those_of_check(self):
        self.ask(self.queries[1])
        checked = list(csv.DictReader(io.StringIO(self.run_zol(
            "check", "--csv", *SAMPLES).stdout.decode())))
        if not checked:
            self.skipTest("the library of colorimetry was left out")
        statuses = collections.Counter(status for status, in
                                       self.ask("SELECT status FROM verdicts"))
        self.assertEqual(statuses, collections.Counter(row["Verdict"] for row in checked
                                                       if row["Verdict"] in statuses))


if __name__ == "__main__":
    COMMAND, SCHEMA = sys.argv[1:3]
    unittest.main(argv=[sys.argv[0], *sys.argv[3:]])
