"""Reads the schema tables (model/schema/*.rows) into plain objects.

Nothing is settled here: names stay text, types are not looked up. What is wrong in the text of a
row is refused with its file and line; what is wrong between rows is the business of resolve.py.
"""

import dataclasses
import pathlib
import re
from typing import Dict, List, Optional

SIMPLE_TYPES = ("string", "double", "int", "uint", "byte", "bool", "dateTime", "base64")
CLASS_SHAPES = ("plain", "simple", "poly", "element", "abstract", "choice", "holder", "anonymous")
ROW_KINDS = ("attr", "elem", "content", "alt", "group", "any", "mark")
CLASS_FLAGS = ("document", "document-unbridged", "root", "nillable", "may-be-empty")
OCCURRENCES = {"1": (1, 1), "0..1": (0, 1), "0..n": (0, None), "1..n": (1, None)}

_NAME = re.compile(r"[A-Za-z_][A-Za-z0-9_]*$")
_NUMBER = re.compile(r"[-+]?(\d+\.?\d*|\.\d+)$")


class SchemaError(Exception):
    """A fault in the schema, with the place where a person mends it."""

    def __init__(self, where, reason):
        super().__init__(f"{where}: {reason}")


@dataclasses.dataclass(frozen=True)
class Where:
    file: str
    line: int

    def __str__(self):
        return f"{self.file}:{self.line}"


@dataclasses.dataclass
class Bound:
    number: str
    strict: bool
    on_read: bool = False


@dataclasses.dataclass
class Row:
    kind: str
    name: str
    type: str
    low: int
    high: Optional[int]  # None for no limit
    where: Where
    lower: Optional[Bound] = None
    upper: Optional[Bound] = None
    enum: Optional[str] = None
    length: Optional[int] = None
    default: Optional[str] = None
    xsi_type: Optional[str] = None  # "optional" or "required"
    collapse: bool = False
    zoned: bool = False
    isset: bool = False
    adopt: bool = False
    unit: Optional[str] = None
    note: str = ""  # the indented comment above it

    @property
    def required(self):
        return self.low == 1

    @property
    def is_list(self):
        return self.high is None


@dataclasses.dataclass
class Class:
    shape: str
    name: str
    where: Where
    base: Optional[str] = None
    root_type: Optional[str] = None  # of a holder: the root of the family
    none: Optional[int] = None  # of a holder: the number of no selection
    flags: frozenset = frozenset()
    comment: str = ""
    rows: List[Row] = dataclasses.field(default_factory=list)
    factory: List[str] = dataclasses.field(default_factory=list)


@dataclasses.dataclass
class Enumeration:
    name: str
    where: Where
    comment: str = ""
    values: List[str] = dataclasses.field(default_factory=list)
    notes: List[str] = dataclasses.field(default_factory=list)  # what each value means
    places: List[Where] = dataclasses.field(default_factory=list)


@dataclasses.dataclass
class SharedNote:
    """What rows of a name and type mean wherever nothing else is said of them."""

    note: str
    where: Where


@dataclasses.dataclass
class Schema:
    classes: Dict[str, Class] = dataclasses.field(default_factory=dict)
    enums: Dict[str, Enumeration] = dataclasses.field(default_factory=dict)
    shared: Dict[tuple, SharedNote] = dataclasses.field(default_factory=dict)  # by name and type
    files: List[str] = dataclasses.field(default_factory=list)


def read_directory(directory):
    """The schema of all *.rows files of a directory, in the order of their names."""
    paths = sorted(pathlib.Path(directory).glob("*.rows"))
    if not paths:
        raise SchemaError(directory, "no *.rows file here")
    schema = Schema()
    for path in paths:
        read_text(schema, path.name, path.read_text(encoding="utf-8"))
    return schema


def read_text(schema, file, text):
    """Adds the classes and enumerations of one file's text to the schema."""
    schema.files.append(file)
    comment, note, open_class, open_enum, is_shared = [], [], None, None, False
    for number, line in enumerate(text.splitlines() + [""], 1):  # nothing is left open at the end
        where = Where(file, number)
        stripped = line.strip()
        is_indented = line[:1].isspace()
        if note and not (stripped and is_indented and (open_class is not None or is_shared)):
            raise SchemaError(where, "a note without a row below it")
        if not stripped:
            comment = []
        elif stripped.startswith("#"):
            (note if is_indented else comment).append(stripped.lstrip("# "))
        elif not is_indented:
            open_class, open_enum, is_shared = None, None, False
            words = stripped.split()
            if words[0] == "enum":
                open_enum = _open_enum(schema, words, where)
                open_enum.comment = " ".join(comment)
            elif words == ["shared"]:
                is_shared = True
            else:
                open_class = _open_class(schema, words, where)
                open_class.comment = " ".join(comment)
            comment = []
        elif open_enum is not None:
            _add_value(open_enum, stripped, where)
        elif is_shared:
            _add_shared(schema, stripped.split(), where, " ".join(note))
            note = []
        elif open_class is not None:
            _add_row(open_class, stripped.split(), where, " ".join(note))
            comment, note = [], []
        else:
            raise SchemaError(where, "a row before the first class")


def _open_enum(schema, words, where):
    if len(words) != 2 or not _NAME.match(words[1]):
        raise SchemaError(where, "expected 'enum NAME'")
    if words[1] in schema.enums:
        raise SchemaError(where, f"enumeration {words[1]} stands already at "
                                 f"{schema.enums[words[1]].where}")
    schema.enums[words[1]] = Enumeration(words[1], where)
    return schema.enums[words[1]]


def _add_value(enum, line, where):
    value, _, note = line.partition(" ")
    if value in enum.values:
        raise SchemaError(where, f"value {value} stands twice in enumeration {enum.name}")
    enum.values.append(value)
    enum.notes.append(note.strip())
    enum.places.append(where)


def _add_shared(schema, words, where, note):
    if len(words) != 2 or not note:
        raise SchemaError(where, "expected a note, and below it 'NAME TYPE'")
    if tuple(words) in schema.shared:
        raise SchemaError(where, f"{' '.join(words)} is told already at "
                                 f"{schema.shared[tuple(words)].where}")
    schema.shared[tuple(words)] = SharedNote(note, where)


def _open_class(schema, words, where):
    words = list(words)
    shape = words.pop(0)
    if shape not in CLASS_SHAPES:
        raise SchemaError(where, f"unknown word '{shape}' (expected enum, shared or one of "
                                 f"{', '.join(CLASS_SHAPES)})")
    if not words or not _NAME.match(words[0]):
        raise SchemaError(where, f"'{shape}' needs a name")
    result = Class(shape, words.pop(0), where)
    if result.name in schema.classes:
        raise SchemaError(where, f"class {result.name} stands already at "
                                 f"{schema.classes[result.name].where}")
    flags = set()
    while words:
        word = words.pop(0)
        if word == ":" and words and result.base is None:
            result.base = words.pop(0)
        elif word == "of" and words and shape == "holder":
            result.root_type = words.pop(0)
        elif word == "none" and words and words[0].isdigit() and shape == "holder":
            result.none = int(words.pop(0))
        elif word in CLASS_FLAGS:
            flags.add(word)
        else:
            raise SchemaError(where, f"cannot read '{word}' behind class {result.name}")
    result.flags = frozenset(flags)
    if shape == "holder" and (result.root_type is None or result.none is None):
        raise SchemaError(where, "a holder needs 'of ROOT' and 'none N'")
    if shape in ("element", "abstract") and result.base is None:
        raise SchemaError(where, f"'{shape}' needs a base")
    schema.classes[result.name] = result
    return result


def _add_row(owner, words, where, note):
    words = list(words)
    kind = words.pop(0)
    if kind == "factory":
        if note:
            raise SchemaError(where, "a note without a row below it")
        owner.factory.extend(words)
        return
    if kind not in ROW_KINDS:
        raise SchemaError(where, f"unknown row kind '{kind}' (expected one of "
                                 f"{', '.join(ROW_KINDS)})")
    name = owner.name if kind == "content" else _take_name(words, where)
    if not words:
        raise SchemaError(where, f"row {name} has no type")
    row_type = words.pop(0)
    low, high = (1, 1) if kind == "alt" else _take_occurrence(words, name, where)
    row = Row(kind, name, row_type, low, high, where, note=note)
    while words:
        _take_facet(row, words)
    if any(other.name == name and (other.kind == "attr") == (kind == "attr")
           for other in owner.rows):
        raise SchemaError(where, f"row {name} stands twice in {owner.name}")
    owner.rows.append(row)


def _take_name(words, where):
    if not words or not _NAME.match(words[0]):
        raise SchemaError(where, "a row needs a name")
    return words.pop(0)


def _take_occurrence(words, name, where):
    if not words or words[0] not in OCCURRENCES:
        raise SchemaError(where, f"row {name} needs an occurrence ({', '.join(OCCURRENCES)})")
    return OCCURRENCES[words.pop(0)]


def _take_facet(row, words):
    word = words.pop(0)
    if word in (">=", ">", "<=", "<"):
        if not words or not _NUMBER.match(words[0]):
            raise SchemaError(row.where, f"'{word}' needs a number")
        bound = Bound(words.pop(0), strict=len(word) == 1)
        if words and words[0] == "on-read":
            words.pop(0)
            bound.on_read = True
        if word[0] == ">":
            row.lower = bound
        else:
            row.upper = bound
    elif word in ("enum", "default", "length", "unit", "xsi-type"):
        if not words:
            raise SchemaError(row.where, f"'{word}' needs a value")
        value = words.pop(0)
        if word == "length" and not value.isdigit():
            raise SchemaError(row.where, "'length' needs a number")
        if word == "xsi-type" and value not in ("optional", "required"):
            raise SchemaError(row.where, "'xsi-type' is optional or required")
        setattr(row, word.replace("-", "_"), int(value) if word == "length" else value)
    elif word in ("collapse", "zoned", "isset", "adopt"):
        setattr(row, word, True)
    else:
        raise SchemaError(row.where, f"unknown facet '{word}'")
