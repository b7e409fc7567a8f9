#!/usr/bin/env python3
"""The generator: what it refuses, and what it prints for a schema with every shape.

    zolgen_test.py [--accept]    with --accept the golden sample takes over what is printed now
"""

import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
GOLDEN = ROOT / "gen" / "golden"
sys.path.insert(0, str(ROOT / "gen"))

import emit_dotnet  # noqa: E402
import emit_python  # noqa: E402
import resolve  # noqa: E402
import schema  # noqa: E402
import zolgen  # noqa: E402

# (rows, what the complaint says behind "bad.rows:LINE: "), the line being the first number
FAULTS = [
    ("thing A", 1, "unknown word 'thing'"),
    ("  elem  X  string  1", 1, "a row before the first class"),
    ("plain", 1, "'plain' needs a name"),
    ("plain A\nplain A", 2, "class A stands already at bad.rows:1"),
    ("plain A  shiny", 1, "cannot read 'shiny' behind class A"),
    ("plain A\n  part  X  string  1", 2, "unknown row kind 'part'"),
    ("plain A\n  elem  X", 2, "row X has no type"),
    ("plain A\n  elem  X  string", 2, "row X needs an occurrence"),
    ("plain A\n  elem  X  string  2..3", 2, "row X needs an occurrence"),
    ("plain A\n  elem  X  string  1\n  elem  X  int  1", 3, "row X stands twice in A"),
    ("plain A\n  elem  X  string  1  loud", 2, "unknown facet 'loud'"),
    ("plain A\n  elem  X  double  1  >= many", 2, "'>=' needs a number"),
    ("plain A\n  elem  X  string  1  length", 2, "'length' needs a value"),
    ("enum E\n  a\n  a", 3, "value a stands twice in enumeration E"),
    ("enum E\n  a\nenum E\n  b", 3, "enumeration E stands already at bad.rows:1"),
    ("holder H of A\n", 1, "a holder needs 'of ROOT' and 'none N'"),
    ("plain A\n  elem  X  B  1", 2, "unknown type B"),
    ("plain A\n  attr  X  A  1", 2, "row X needs a simple type"),
    ("plain A\n  attr  X  string  0..n", 2, "row X cannot be a list"),
    ("plain A\n  elem  X  string  1  enum E", 2, "nobody declares the enumeration E"),
    ("enum E\n  a\nplain A\n  elem  X  int  1  enum E", 4, "only a string is enumerated"),
    ("enum E\n  a\nplain A\n  elem  X  string  1  enum E  default b", 4, "the default b is not in E"),
    ("plain A\n  elem  X  string  1  >= 0", 2, "a string has no bounds"),
    ("plain A\n  elem  X  string  1  unit nm", 2, "a string has no unit"),
    ("plain A\n  elem  X  double  1  unit", 2, "'unit' needs a value"),
    ("plain A\n  # Lost.\n\n  elem  X  string  1", 3, "a note without a row below it"),
    ("plain A\n  elem  X  string  1\n  # Lost.\nplain B", 4, "a note without a row below it"),
    ("plain A\n  elem  X  string  1\n  # Lost.", 4, "a note without a row below it"),
    ("poly A\n  # Lost.\n  factory A", 3, "a note without a row below it"),
    ("enum E\n  # Lost.\n  a", 3, "a note without a row below it"),
    ("shared\n  X  string", 2, "expected a note, and below it 'NAME TYPE'"),
    ("shared\n  # M.\n  X", 3, "expected a note, and below it 'NAME TYPE'"),
    ("shared\n  # M.\n  X  string\n  # N.\n  X  string", 5, "X string is told already at bad.rows:3"),
    ("shared\n  # Lost.\n\n", 3, "a note without a row below it"),
    ("shared\n  # M.\n  X  string\n# A.\nplain A\n  # Own.\n  elem  X  string  1", 3,
     "no row takes the note of X string"),
    ("plain A", 1, "nothing tells what A is"),
    ("# A.\nplain A\n  elem  X  string  1", 3, "nothing tells what X of A means"),
    ("enum E\n  a  One.", 1, "nothing tells what E enumerates"),
    ("# E.\nenum E\n  a  One.\n  b", 4, "nothing tells what b means"),
    ("# A.\nplain A\n  # M.\n  elem  X  int  1\n  # M.\n  elem  Y  int  1", 6,
     "the note of Y stands already at bad.rows:4"),
    ("# A.\nplain A\n  # As A.Y.\n  elem  X  int  1", 4, "nothing is told at A.Y"),
    ("# A.\nplain A\n  # As A.X.\n  elem  X  int  1", 4, "nothing is told at A.X"),
    ("plain A\n  elem  X  string  1  zoned", 2, "only a dateTime is zoned"),
    ("plain A\n  elem  X  int  0..n", 2, "a list of int values is not known here"),
    ("plain A\n  elem  X  string  0..n  length 64", 2, "the setters of a list check no length"),
    ("enum E\n  a\nplain A\n  elem  X  string  0..n  enum E", 4, "a list of enumerated values"),
    ("plain A\n  elem  X  double  0..n  >= 0", 2, "a list of double values is not known here"),
    ("plain A\n  elem  X  dateTime  1", 2, "a dateTime without 'zoned' is not known here"),
    ("plain A\n  elem  X  string  1  default b", 2, "only an enumerated string or a double"),
    ("choice A\n  alt  X  bool", 2, "an alternative that is a bool is not known here"),
    ("choice A\n  alt  X  dateTime  zoned", 2, "an alternative that is a dateTime is not known"),
    ("poly A : B", 1, "base B of A is missing"),
    ("poly A : B\npoly B : A", 1, "A is derived from itself"),
    ("plain B\npoly A : B", 2, "A is polymorphic and its base is not"),
    ("poly B\nplain A : B", 2, "a plain class has no base"),
    ("poly B\nelement A : B\n  elem  X  string  1", 2, "adds no rows"),
    ("simple A\n  attr  X  string  1", 1, "A has no content row"),
    ("plain A\n  content  string  1", 2, "only a simple class has content"),
    ("choice A", 1, "A has no alternative"),
    ("plain A\n  alt  X  string", 2, "A is no choice"),
    ("holder H of A  none 1\n  alt  X  string", 1, "the family A is missing"),
    ("poly A\nplain B\nholder H of A  none 1\n  alt  X  B", 4, "B is no A"),
    ("poly A\nholder H of A  none 0\n  alt  X  A", 2, "no selection cannot be 0"),
    ("poly A\n  factory B", 1, "the factory names B, which is missing"),
    ("poly A\n  factory B\npoly B", 1, "the factory names B, which is no A"),
    ("plain A\n  elem  X  B  1\nplain B\n  elem  Y  A  1", 4, "A would hold itself by value"),
    ("anonymous G\n  alt  X  A\nplain A", 2, "an anonymous group holds simple values"),
]


def with_meanings(text):
    """The same with something told of every class, row and value."""
    lines = []
    for number, line in enumerate(text.split("\n")):
        if len(line.split()) == 1:
            lines.append(f"{line}  Value {number}.")
        else:
            lines += [f"{'  ' * line.startswith(' ')}# Meaning {number}.", line]
    return "\n".join(lines)


class FaultsTest(unittest.TestCase):
    def test_every_fault_names_its_place(self):
        for text, line, reason in FAULTS:
            with self.subTest(text):
                with self.assertRaises(schema.SchemaError) as caught:
                    rows = schema.Schema()
                    schema.read_text(rows, "bad.rows", text)
                    resolve.Model(rows)
                self.assertIn(f"bad.rows:{line}: ", str(caught.exception))
                self.assertIn(reason, str(caught.exception))

    def test_names_that_are_one_in_another_language_are_refused(self):
        for text, reason in (("plain A\nplain AType", "C# has A twice"),
                             ("plain A\n  elem  A  string  1", "C# has A.A twice"),
                             ("plain A\n  elem  x  int  1\n  elem  X  int  1", "C# has A.X twice"),
                             ("enum E\n  a-b\n  a_b", "C# has a value of E twice")):
            with self.subTest(text):
                rows = schema.Schema()
                schema.read_text(rows, "bad.rows", with_meanings(text))
                with self.assertRaisesRegex(schema.SchemaError, reason):
                    emit_dotnet.emit(resolve.Model(rows))

    def test_names_that_python_cannot_have_are_refused(self):
        for text, reason in (("plain A\n  elem  path  string  1", "Python cannot have A.path"),
                             ("plain A\n  elem  ab  int  1\n  elem  Ab  int  1",
                              "Python cannot have A.ab"),
                             ("choice A\n  alt  Kind  string", "Python cannot have A.kind"),
                             ("enum E\n  a-b\n  a_b", "Python has a member of E twice")):
            with self.subTest(text):
                rows = schema.Schema()
                schema.read_text(rows, "bad.rows", with_meanings(text))
                with self.assertRaisesRegex(schema.SchemaError, reason):
                    emit_python.emit(resolve.Model(rows))

    def test_the_command_fails_with_the_complaint(self):
        with tempfile.TemporaryDirectory() as directory:
            (pathlib.Path(directory) / "bad.rows").write_text("plain A\n  elem  X  B  1\n")
            run = subprocess.run([sys.executable, ROOT / "gen" / "zolgen.py", "model", "--schema",
                                  directory, "--out", directory], capture_output=True, text=True)
        self.assertNotEqual(run.returncode, 0)
        self.assertIn("bad.rows:2: unknown type B", run.stderr)


def printed_files():
    """What every emitter prints for the golden sample."""
    model = resolve.Model(schema.read_directory(GOLDEN))
    model.namespace = "http://example.org/golden"
    model.helpers = ["zol_helper@12"]
    files = {}
    for name in sorted(zolgen.EMITTERS):
        files.update({f"{name}/{path}": text for path, text in zolgen.EMITTERS[name](model).items()})
    return files


class GoldenTest(unittest.TestCase):
    maxDiff = None

    def test_prints_the_golden_sample(self):
        files = printed_files()
        expected = {str(path.relative_to(GOLDEN / "expected")) for path in
                    (GOLDEN / "expected").rglob("*") if path.is_file()}
        self.assertEqual(expected, set(files))
        for name, text in files.items():
            with self.subTest(name):
                self.assertEqual((GOLDEN / "expected" / name).read_text(encoding="utf-8"), text)

    def test_the_python_of_the_golden_sample_compiles(self):
        """It has shapes that the real schema lacks."""
        for path in (GOLDEN / "expected" / "python").rglob("*.py*"):
            compile(path.read_text(encoding="utf-8"), str(path), "exec")

    def test_the_order_of_definition_does_not_depend_on_that_of_the_tables(self):
        """A class stands behind what it holds by value, wherever its table stands."""
        model = resolve.Model(schema.read_directory(ROOT / "model" / "schema"))
        place = {info.name: number for number, info in enumerate(model.ordered)}
        for info in model.ordered:
            for needed, _ in resolve._held_by_value(info):
                self.assertLess(place[needed.name], place[info.name])


# What is counted in each unit, as meanings name it.
QUANTITIES = {
    "nm": r"\bwavelength",
    "degree": r"\bangle",
    "percent": r"\btone value|how much of the channel's ink",
    "K": r"\btemperature",
    "mm": r"\bdiameter|\bhow (thick|wide|high)",
    "g/m2": r"\bmass per area",
    "cd/m2": r"\bluminance(?! factor)|\btristimulus value . of the light",
    "W/(sr.m2.nm)": r"\bspectral radiance",
}
# What ambient light is counted in instead, without the solid angle.
AMBIENT = {"cd/m2": "lx", "W/(sr.m2.nm)": "W/(m2.nm)"}


class MeaningsTest(unittest.TestCase):
    """Of the real schema; that each row has one is the generator's to see to."""

    def setUp(self):
        model = resolve.Model(schema.read_directory(ROOT / "model" / "schema"))
        self.rows = [row for info in model.classes.values() for row in info.rows]
        self.assertGreater(len(self.rows), 300)

    def test_a_quantity_has_its_unit(self):
        for row in self.rows:
            if row.type in ("double", "int", "uint", "byte"):
                with self.subTest(f"{row.where}: {row.name}: {row.note}"):
                    found = [unit for unit, words in QUANTITIES.items()
                             if re.search(words, row.note, re.I)]
                    self.assertEqual(found, [row.unit] if row.unit else [])

    def test_a_meaning_names_no_other_unit(self):
        units = {row.unit for row in self.rows if row.unit} | set(AMBIENT.values())
        for row in self.rows:
            named = {unit for unit in units
                     if re.search(rf"(?<![\w/(.]){re.escape(unit)}s?(?![\w/()])", row.note)}
            with self.subTest(f"{row.where}: {row.name}: {row.note}"):
                self.assertLessEqual(named, {row.unit, AMBIENT.get(row.unit)})


def accept():
    for name, text in printed_files().items():
        zolgen.write_if_changed(GOLDEN / "expected" / name, text)


if __name__ == "__main__":
    if "--accept" in sys.argv:
        accept()
    else:
        unittest.main()
