"""A document as a tree in which each element knows its row of the schema and its class.

For checks that compare or break documents by what the schema says of them. The document must fit
the schema; coverage_check.py tells whether it does.
"""

import io
import pathlib
import sys
import xml.etree.ElementTree as ElementTree

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "gen"))

import resolve  # noqa: E402  (found by the path above)
import schema  # noqa: E402

INSTANCE = "http://www.w3.org/2001/XMLSchema-instance"


def read_model():
    return resolve.Model(schema.read_directory(ROOT / "model" / "schema"))


def rows_of(info):
    """The rows of a class, those of its bases first."""
    return [row for c in reversed(info.lineage) for row in c.rows]


class Node:
    """An element. `row` is the simple, child or alternative row that it stands for, `info` the class
    of its object and None for a simple row. `xsi` has the attributes of the instance namespace, the
    type as (namespace, name). A foreign element has neither row nor class and keeps its `element`."""

    def __init__(self, name, row=None, info=None):
        self.name = name
        self.row = row
        self.info = info
        self.attributes = {}
        self.xsi = {}
        self.children = []
        self.text = ""
        self.parent = None
        self.element = None

    @property
    def is_nil(self):
        return self.xsi.get("nil", "").strip() in ("true", "1")

    @property
    def content(self):
        """The row of its text: its own if that is simple, or the content of its class."""
        if self.info is None:
            return self.row
        return next((row for row in rows_of(self.info) if row.kind == "content"), None)

    def walk(self):
        yield self
        for child in self.children:
            yield from child.walk()


def read_document(data, model):
    """The root of a document given as bytes."""
    types, bindings, root = {}, [], None
    for event, item in ElementTree.iterparse(io.BytesIO(data), ("start", "start-ns", "end-ns")):
        if event == "start-ns":
            bindings.append(item)
        elif event == "end-ns":
            bindings.pop()
        else:
            root = item if root is None else root
            named = item.attrib.get(f"{{{INSTANCE}}}type")
            if named is not None:
                prefix, _, local = named.strip().rpartition(":")
                types[item] = (dict(bindings).get(prefix, ""), local)
    return _Builder(model, types, split(root.tag)[0]).node(root, None, model["Zol"])


def split(tag):
    """(namespace, local name)"""
    namespace, _, name = tag.rpartition("}")
    return namespace.lstrip("{"), name


class _Builder:
    def __init__(self, model, types, namespace):
        self.model = model
        self.types = types
        self.namespace = namespace

    def node(self, element, row, info):
        node = Node(split(element.tag)[1], row, info)
        for name, value in element.attrib.items():
            namespace, local = split(name)
            if namespace == INSTANCE:
                node.xsi[local] = self.types[element] if local == "type" else value
            else:
                node.attributes[name] = value
        if info is None or node.content is not None:
            node.text = element.text or ""
        else:
            for child in element:
                self._add(node, child)
        return node

    def _add(self, parent, element):
        row = self._row_of(parent.info, split(element.tag)[1])
        if row is None:
            node = Node(split(element.tag)[1])
            node.element = element
        else:
            node = self.node(element, row, self._class_of(element, row))
        node.parent = parent
        parent.children.append(node)

    def _row_of(self, info, name):
        for row in rows_of(info):
            if row.kind in ("attr", "content", "any"):
                continue
            if row.type_class is not None and row.type_class.writes_no_tag:
                found = row.type_class.find_row(name)
                if found is not None:
                    return found
            elif row.name == name:
                return row
        return None

    def _class_of(self, element, row):
        if row.is_simple:
            return None
        if row.xsi_type and element in self.types:
            return self.model[self.types[element][1]]
        return row.type_class


def holder_row(node):
    """The row of the parent's class that a node counts for: its own, or that of its holder."""
    rows = rows_of(node.parent.info)
    if node.row in rows:
        return node.row
    return next(row for row in rows if row.type_class is not None and row.type_class.writes_no_tag
                and node.row in row.type_class.rows)
