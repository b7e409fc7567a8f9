#!/usr/bin/env python3
"""Proves that documents together contain the whole schema, and that each of them fits it.

    coverage_check.py [--schema DIRECTORY] DOCUMENT...

What must occur at least once, in every class that a document can hold: each attribute, element,
alternative and enumerated value, each type that an element may name as its own, and each nillable
element nilled and not nilled. What must hold of every document: the order and number of rows, and
the form and bounds of values. Prints what is missing or wrong; the exit status is 1 if anything is.
"""

import argparse
import math
import pathlib
import re
import sys
import xml.etree.ElementTree as ElementTree

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "gen"))

import resolve  # noqa: E402  (found by the path above)
import schema  # noqa: E402

INSTANCE = "{http://www.w3.org/2001/XMLSchema-instance}"
NUMBER = r"[-+]?(\d+(\.\d*)?|\.\d+)([eE][-+]?\d+)?"
FORMS = {
    "string": r"(?s:.*)",
    "double": rf"{NUMBER}|-?INF|NaN",
    "int": r"[-+]?\d+",
    "uint": r"\+?\d+",
    "byte": r"\+?\d+",
    "bool": r"true|false|1|0",
    "dateTime": r"-?\d{4,}-\d\d-\d\dT\d\d:\d\d:\d\d(\.\d+)?(Z|[-+]\d\d:\d\d)?",
    "base64": r"(([A-Za-z0-9+/]\s*){4})*(([A-Za-z0-9+/]\s*){3}=|([A-Za-z0-9+/]\s*){2}=\s*=)?",
}
INTEGER_RANGES = {"int": (-2**31, 2**31 - 1), "uint": (0, 2**31 - 1), "byte": (0, 255)}


def rows_of(info):
    """The rows of a class, those of its bases first."""
    return [row for c in reversed(info.lineage) for row in c.rows]


def alternative_types(row):
    """The classes that an alternative's element can be of."""
    if not row.xsi_type:
        return [row.type_class]
    return [row.owner.model[name] for name in row.type_class.factory]


# --- what the schema asks for -----------------------------------------------------------------

class Expectation:
    """Everything that documents with the root class `start` can contain, as printable lines."""

    def __init__(self, model, start):
        self.items = set()
        self._classes = set()
        self._visit(model[start])
        held = {c.name for info in self._classes for c in info.lineage}
        unheld = [info for info in model.classes.values() if info.rows and info.name not in held]
        # A class with rows that no document reaches would otherwise count as covered.
        self.items |= {f"class {info.name}: no document can hold it" for info in unheld}

    def _visit(self, info):
        if info in self._classes:
            return
        self._classes.add(info)
        self.items |= nil_items(info) if info.nillable else set()
        for row in rows_of(info):
            self.items.add(row_item(info, row))
            if row.enum:
                self.items |= {value_item(row, value) for value in row.enum_values}
            if row.xsi_type:
                self.items |= {type_item(row, c) for c in alternative_types(row)}
            if row.kind == "alt" and not row.is_simple:
                for c in alternative_types(row):
                    self._visit(c)
            elif row.type_class is not None:
                self._visit(row.type_class)


def row_item(info, row):
    kind = {"attr": "attribute", "alt": "alternative"}.get(row.kind, "element")
    return f"class {info.name}: {kind} {row.name}"


def value_item(row, value):
    return f"class {row.owner.name}: {row.name} of {value}"


def type_item(row, info):
    return f"class {row.owner.name}: {row.name} of type {info.name}"


def nil_item(info, nil):
    return f"class {info.name}: {'nilled' if nil else 'not nilled'}"


def nil_items(info):
    return {nil_item(info, True), nil_item(info, False)}


# --- what a document has ----------------------------------------------------------------------

class Document:
    """Walks one document along the schema; `seen` and `faults` are what it found."""

    def __init__(self, model, path):
        self.model = model
        self.path = path
        self.seen = set()
        self.faults = []
        self.types = {}
        try:
            root = self._parse()
        except ElementTree.ParseError as error:
            self.faults.append(f"{path}: {error}")
            return
        self.namespace, name = self._split(root.tag)
        if name != "Zol":
            self._fault(root, "is no root of a document")
        else:
            self._object(root, model["Zol"])

    def _parse(self):
        """The tree; the types that elements name are resolved while their prefixes are known."""
        bindings, root = [], None
        for event, item in ElementTree.iterparse(self.path, ("start", "start-ns", "end-ns")):
            if event == "start-ns":
                bindings.append(item)
            elif event == "end-ns":
                bindings.pop()
            else:
                root = item if root is None else root
                if INSTANCE + "type" in item.attrib:
                    prefix, _, local = item.attrib[INSTANCE + "type"].strip().rpartition(":")
                    self.types[item] = (dict(bindings).get(prefix, ""), local)
        return root

    @staticmethod
    def _split(tag):
        namespace, _, name = tag.rpartition("}")
        return namespace.lstrip("{"), name

    def _name(self, node):
        """The local name; an element of another namespace has one that no row has."""
        namespace, name = self._split(node.tag)
        return name if namespace == self.namespace else node.tag

    def _fault(self, node, reason):
        self.faults.append(f"{self.path}: {self._split(node.tag)[1]} {reason}")

    def _object(self, node, info):
        """An element of a class, with attributes, children and content."""
        nil = node.get(INSTANCE + "nil", "false").strip() in ("true", "1")
        if info.nillable:
            self.seen.add(nil_item(info, nil))
        elif nil:
            self._fault(node, "is nilled and cannot be")
        self._attributes(node, info)
        content = [row for row in rows_of(info) if row.kind == "content"]
        if nil:
            if len(node) or (node.text or "").strip():
                self._fault(node, "is nilled and has content")
        elif content:
            self._mark(info, content[0])
            self._text(node, content[0])
        else:
            self._children(node, info)

    def _mark(self, info, row):
        self.seen.add(row_item(info, row))

    def _attributes(self, node, info):
        given = {name for name in node.keys() if not name.startswith(INSTANCE)}
        for row in rows_of(info):
            if row.kind != "attr":
                continue
            if row.name in given:
                given.remove(row.name)
                self._mark(info, row)
                self._value(node, row, node.get(row.name))
            elif row.required:
                self._fault(node, f"lacks the attribute {row.name}")
        for name in sorted(given):
            self._fault(node, f"has an attribute {name}")

    def _children(self, node, info):
        pending = list(node)
        if (node.text or "").strip() or any((child.tail or "").strip() for child in node):
            self._fault(node, "has text between its children")
        if info.shape in ("choice", "holder", "anonymous"):
            self._member(node, info, pending)
        else:
            for row in rows_of(info):
                if row.kind in ("elem", "mark", "any", "group"):
                    self._row(node, info, row, pending)
        for child in pending:
            self._fault(node, f"has {self._name(child)} where no row is left for it")

    def _row(self, node, info, row, pending):
        """Takes from `pending` what belongs to the row."""
        count = 0
        while pending and self._belongs(pending[0], row) and (row.is_list or count == 0):
            count += 1
            if row.type_class is not None and row.type_class.writes_no_tag:
                self._member(node, row.type_class, pending)
            else:
                self._element(pending.pop(0), row)
        if count:
            self._mark(info, row)
        elif row.required:
            self._fault(node, f"lacks {row.name}")

    def _belongs(self, child, row):
        if row.kind == "any":
            return True
        if row.type_class is not None and row.type_class.writes_no_tag:
            return row.type_class.find_row(self._name(child)) is not None
        return self._name(child) == row.name

    def _member(self, node, holder, pending):
        """Takes the one alternative of a choice or holder."""
        row = holder.find_row(self._name(pending[0])) if pending else None
        if row is None:
            self._fault(node, f"has no alternative of {holder.name}")
            return
        self._mark(holder, row)
        self._element(pending.pop(0), row)

    def _element(self, child, row):
        if row.kind == "any":
            return
        if row.is_simple:
            self._plain(child, row)
            return
        info = self._type(child, row)
        if info is not None:
            self._object(child, info)

    def _type(self, child, row):
        """The class of an element, which it may have to name itself."""
        named = self.types.get(child)
        if not row.xsi_type:
            if named and named[1] not in [c.name for c in row.type_class.lineage]:
                self._fault(child, f"names the type {named[1]}, which it is not")
            return row.type_class
        types = {(self.namespace, c.name): c for c in alternative_types(row)}
        if named is None and row.xsi_type == "optional":
            named = (self.namespace, row.type_class.name)
        if named not in types:
            self._fault(child, f"needs a known type and names {named}")
            return None
        self.seen.add(type_item(row, types[named]))
        return types[named]

    def _plain(self, child, row):
        """An element with nothing but a value."""
        for name in child.keys():
            self._fault(child, f"has an attribute {name}")
        self._text(child, row)

    def _text(self, node, row):
        if len(node):
            self._fault(node, "has children and should hold a value")
        self._value(node, row, node.text or "")

    def _value(self, node, row, text):
        if row.enum:
            if text in row.enum_values:
                self.seen.add(value_item(row, text))
            else:
                self._fault(node, f"has {row.name} of {text!r}, which is not listed")
            return
        if row.length is not None and len(text) != row.length:
            self._fault(node, f"has {row.name} of {len(text)} characters")
        value = text if row.type == "string" else text.strip()
        if not re.fullmatch(FORMS[row.type], value):
            self._fault(node, f"has {row.name} of {text!r}, which is no {row.type}")
        elif row.zoned and not re.search(r"(Z|[-+]\d\d:\d\d)$", value):
            self._fault(node, f"has {row.name} of {text!r}, which has no time zone")
        elif row.type in ("double", *INTEGER_RANGES) and not in_bounds(row, value):
            self._fault(node, f"has {row.name} of {text!r}, which is out of bounds")


def in_bounds(row, text):
    value = float(text) if row.type == "double" else int(text)
    low, high = INTEGER_RANGES.get(row.type, (-math.inf, math.inf))
    if not low <= value <= high and not math.isnan(value):
        return False
    # A value that is no number passes no comparison, and so no bound.
    if row.lower:
        limit = float(row.lower.number)
        if not (value > limit if row.lower.strict else value >= limit):
            return False
    if row.upper:
        limit = float(row.upper.number)
        if not (value < limit if row.upper.strict else value <= limit):
            return False
    return True


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--schema", default=ROOT / "model" / "schema", type=pathlib.Path)
    parser.add_argument("documents", nargs="+", metavar="DOCUMENT")
    arguments = parser.parse_args()

    model = resolve.Model(schema.read_directory(arguments.schema))
    expected = Expectation(model, "Zol").items
    documents = [Document(model, path) for path in arguments.documents]
    faults = [fault for document in documents for fault in document.faults]
    missing = sorted(expected - set().union(*(document.seen for document in documents)))
    for line in faults + ["missing: " + item for item in missing]:
        print(line)
    print(f"{len(documents)} documents, {len(expected) - len(missing)} of {len(expected)} items, "
          f"{len(faults)} faults")
    return 1 if faults or missing else 0


if __name__ == "__main__":
    sys.exit(main())
