"""Settles what can be settled about a schema before anything is printed.

Types are looked up, bases and holders checked, classes brought into an order in which C++ can
define them, and every element or attribute name gets its event number. What comes out is a Model,
on which all the emitters work; an emitter decides nothing about the schema any more.
"""

import re

from schema import SIMPLE_TYPES, SchemaError

FIRST_EVENT = 12  # below stand the events of the reader itself


class Model:
    """A schema whose names are all known to mean something.

    classes:  every class by name, in the order of the tables
    ordered:  the same, each behind whatever it is derived from or holds by value
    events:   number by element or attribute name

    The tables do not spell the namespace of the format, which only some outputs need.
    """

    def __init__(self, schema, namespace=None):
        self.schema = schema
        self.namespace = namespace
        self.api = None  # what the flat interface has beside the schema: exports.read_api
        self.helpers = []  # and what was written by hand: exports.read_helpers
        self.enums = schema.enums
        self.classes = {name: ClassInfo(self, c) for name, c in schema.classes.items()}
        _check(self)
        self.ordered = _definition_order(self)
        self.events = _number_events(self)
        for number, info in enumerate(self.classes.values()):
            info.number = number
        _give_meanings(self)

    def __getitem__(self, name):
        return self.classes[name]


class ClassInfo:
    """One class and the facts that follow from its rows, its base and its words."""

    def __init__(self, model, schema_class):
        self.model = model
        self.schema = schema_class
        self.name = schema_class.name
        self.shape = schema_class.shape
        self.comment = schema_class.comment  # of an element that of its type
        self.where = schema_class.where
        self.flags = schema_class.flags
        self.factory = schema_class.factory
        self.rows = [RowInfo(self, row, i) for i, row in enumerate(schema_class.rows)]

    def has(self, flag):
        return flag in self.flags

    @property
    def base(self):
        return self.model.classes.get(self.schema.base)

    @property
    def lineage(self):
        """The class, its base, and so on to the root of the family."""
        result, current = [], self
        while current is not None:
            result.append(current)
            current = current.base
        return result

    @property
    def family_root(self):
        return self.lineage[-1]

    @property
    def is_wrapper(self):
        return self.shape in ("element", "abstract")

    @property
    def is_poly(self):
        return self.family_root.shape == "poly"

    @property
    def is_simple(self):
        return self.family_root.shape == "simple"

    @property
    def is_substitution(self):
        return self.shape == "holder"

    @property
    def writes_no_tag(self):
        return self.shape in ("holder", "anonymous")

    @property
    def nillable(self):
        return self.has("nillable")

    @property
    def is_document(self):
        return self.has("document") or self.has("document-unbridged")

    @property
    def keeps_batch(self):
        """Whether it lets go of what was read with it as a whole: the document proper."""
        return self.has("root")

    @property
    def root_type(self):
        """Of a holder: the root of the family that its members belong to."""
        return self.model[self.schema.root_type]

    @property
    def none(self):
        """The selection of a choice or holder that holds nothing."""
        if self.schema.none is not None:
            return self.schema.none
        return len(self.alternatives)

    @property
    def names_namespaces(self):
        """Whether its start tag carries the namespaces when it is the first of a document."""
        return self.is_poly or self.is_document or self.name.endswith("Type")

    @property
    def attributes(self):
        return [row for row in self.rows if row.kind == "attr"]

    @property
    def elements(self):
        return [row for row in self.rows if row.kind in ("elem", "group", "any", "mark")]

    @property
    def content(self):
        return next((row for row in self.rows if row.kind == "content"), None)

    @property
    def alternatives(self):
        return [row for row in self.rows if row.kind == "alt"]

    @property
    def wants_content(self):
        """Whether an empty element is a fault."""
        if self.has("may-be-empty"):
            return False
        return any(c.shape == "choice" or any(row.required for row in c.elements)
                   for c in self.lineage)

    @property
    def is_blank(self):
        """Whether its element has neither child nor content, whatever its attributes."""
        return not any(c.elements or c.alternatives or c.content for c in self.lineage)

    # Presence. Each single row has a flag in the object, numbered from 1 through the lineage, and a
    # list a number of its own, by which a reader counts it as seen; the nil mark comes last.

    @property
    def flagged(self):
        return [row for row in self.rows if row.kind not in ("alt", "any", "mark")]

    @property
    def first_bit(self):
        return self.base.next_bit if self.base is not None else 1

    @property
    def next_bit(self):
        return self.first_bit + len(self.flagged) + self.nillable

    @property
    def nil_bit(self):
        return self.first_bit + len(self.flagged) if self.nillable else 0

    def _mask(self, wanted):
        return sum(1 << row.bit for c in self.lineage for row in c.flagged if wanted(row))

    @property
    def flag_mask(self):
        nil = sum(1 << c.nil_bit for c in self.lineage if c.nillable)
        return self._mask(lambda row: not row.is_list) | nil

    @property
    def required_mask(self):
        return self._mask(lambda row: row.required and not row.is_list)

    @property
    def required_to_read_mask(self):
        return self._mask(lambda row: row.required and not row.is_holder)

    @property
    def required_attributes_mask(self):
        return self._mask(lambda row: row.required and row.kind == "attr")

    @property
    def has_required_list(self):
        return any(row.required and row.is_list for c in self.lineage for row in c.elements)

    @property
    def owns_heap(self):
        """Whether a row of its own, bases aside, keeps something on the heap by a pointer."""
        return bool(self.alternatives) or any(row.is_pointer for row in self.rows)

    @property
    def owns_heap_anywhere(self):
        """The same with bases, children and texts in place."""
        return any(c.owns_heap or any(row.owns_in_place for row in c.rows) for c in self.lineage)

    @property
    def own_lifetime(self):
        """Whether it has swap, reset and is_occurs_ok of its own: all but the plain wrappers."""
        return not self.is_wrapper or self.nillable

    @property
    def document_bridged(self):
        return self.has("document")

    def find_row(self, name):
        return next((row for row in self.rows if row.name == name), None)


class RowInfo:
    """One row with its types looked up and its names spelled for C++."""

    def __init__(self, owner, row, index):
        self.owner = owner
        self.schema = row
        self.index = index  # among the rows of its class
        self.kind = row.kind
        self.name = row.name
        self.where = row.where
        self.type = row.type
        self.low = row.low
        self.required = row.required
        self.is_list = row.is_list
        self.lower = row.lower
        self.upper = row.upper
        self.enum = row.enum
        self.length = row.length
        self.default = row.default
        self.collapse = row.collapse
        self.zoned = row.zoned
        self.xsi_type = row.xsi_type
        self.adopt = row.adopt
        self.unit = row.unit
        self.note = row.note  # _give_meanings() sees to it that there is one

    @property
    def bit(self):
        """The number of its flag, or the selection of an alternative; 0 for a row without."""
        if self.kind == "alt":
            return self.owner.alternatives.index(self)
        if self in self.owner.flagged:
            return self.owner.first_bit + self.owner.flagged.index(self)
        return 0

    @property
    def is_holder(self):
        return not self.is_simple and self.kind == "elem" and self.type_class.is_substitution

    @property
    def is_pointer(self):
        """Whether its field is a pointer or a list of them."""
        if self.kind == "mark":
            return False
        if self.is_list or self.enum:
            return True
        if self.is_simple:
            return self.type == "string"
        return self.is_holder or not self.required

    @property
    def owns_in_place(self):
        if self.kind in ("alt", "any", "mark") or self.is_pointer:
            return False
        if self.is_simple:
            return self.type == "base64"
        return self.type_class.owns_heap_anywhere

    @property
    def is_simple(self):
        return self.type in SIMPLE_TYPES

    @property
    def type_class(self):
        return self.owner.model.classes.get(self.type)

    @property
    def has_isset(self):
        return self.schema.isset or not (self.required or self.is_list or self.kind == "alt")

    @property
    def enum_values(self):
        return self.owner.model.enums[self.enum].values

    @property
    def enum_notes(self):
        return self.owner.model.enums[self.enum].notes

    @property
    def is_named(self):
        """Whether its name occurs in documents, so that it needs an event."""
        if self.kind in ("content", "group", "any"):
            return False
        return self.is_simple or not self.type_class.is_substitution

    @property
    def member(self):
        return snake_case(self.name) + "_"


def snake_case(name):
    """ReadSDKInformation becomes read_sdk_information."""
    name = re.sub(r"([A-Z]+)([A-Z][a-z])", r"\1_\2", name)
    name = re.sub(r"([a-z0-9])([A-Z])", r"\1_\2", name)
    return re.sub(r"__+", "_", name).lower()


def _check(model):
    for info in model.classes.values():
        _check_class(model, info)
        for row in info.rows:
            _check_row(model, info, row)


def _check_class(model, info):
    base = info.schema.base
    if base is not None:
        if base not in model.classes:
            raise SchemaError(info.where, f"base {base} of {info.name} is missing")
        seen, current = {info.name}, base
        while current is not None and current in model.classes:
            if current in seen:
                raise SchemaError(info.where, f"{info.name} is derived from itself")
            seen.add(current)
            current = model.classes[current].schema.base
        if info.shape == "poly" and model[base].shape != "poly":
            raise SchemaError(info.where, f"{info.name} is polymorphic and its base is not")
        if info.shape in ("plain", "simple", "choice", "holder", "anonymous"):
            raise SchemaError(info.where, f"a {info.shape} class has no base")
    if info.is_wrapper and info.rows:
        raise SchemaError(info.where, f"{info.name} is an element of its type and adds no rows")
    if info.shape == "simple" and info.content is None:
        raise SchemaError(info.where, f"{info.name} has no content row")
    if info.content is not None and info.shape != "simple":
        raise SchemaError(info.content.where, "only a simple class has content")
    if info.shape in ("choice", "holder", "anonymous") and not info.alternatives:
        raise SchemaError(info.where, f"{info.name} has no alternative")
    if info.alternatives and info.shape not in ("choice", "holder", "anonymous"):
        raise SchemaError(info.alternatives[0].where, f"{info.name} is no choice")
    if info.is_substitution:
        _check_holder(model, info)
    for name in info.factory:
        if name not in model.classes:
            raise SchemaError(info.where, f"the factory names {name}, which is missing")
        if info not in model[name].lineage:
            raise SchemaError(info.where, f"the factory names {name}, which is no {info.name}")


def _check_holder(model, info):
    if info.schema.root_type not in model.classes:
        raise SchemaError(info.where, f"the family {info.schema.root_type} is missing")
    if info.none < len(info.alternatives):
        raise SchemaError(info.where, f"no selection cannot be {info.none}: it is an alternative")
    for row in info.alternatives:
        if row.is_simple or row.type not in model.classes \
                or info.root_type not in row.type_class.lineage:
            raise SchemaError(row.where, f"{row.type} is no {info.schema.root_type}")


def _check_row(model, info, row):
    if row.kind != "any" and not row.is_simple and row.type not in model.classes:
        raise SchemaError(row.where, f"unknown type {row.type}")
    if row.kind in ("attr", "content") and not row.is_simple:
        raise SchemaError(row.where, f"row {row.name} needs a simple type")
    if row.kind in ("attr", "content") and row.is_list:
        raise SchemaError(row.where, f"row {row.name} cannot be a list")
    if row.enum is not None and row.enum not in model.enums:
        raise SchemaError(row.where, f"nobody declares the enumeration {row.enum}")
    if row.enum is not None and row.type != "string":
        raise SchemaError(row.where, "only a string is enumerated")
    if row.enum is not None and row.is_list:
        raise SchemaError(row.where, "a list of enumerated values is not known here")
    if row.is_list and row.is_simple:
        _check_value_list(row)
    if row.kind == "alt" and row.is_simple and row.type not in ("string", "double", "int", "uint"):
        raise SchemaError(row.where, f"an alternative that is a {row.type} is not known here")
    if row.type == "dateTime" and not row.zoned:
        raise SchemaError(row.where, "a dateTime without 'zoned' is not known here")
    if row.default is not None and (row.is_list or row.enum is None and row.type != "double"):
        raise SchemaError(row.where, "only an enumerated string or a double has a default")
    if row.length is not None and not 1 <= row.length <= 255:
        raise SchemaError(row.where, "a length is a number from 1 to 255")
    if (row.lower or row.upper) and row.type not in ("double", "int", "uint", "byte"):
        raise SchemaError(row.where, f"a {row.type} has no bounds")
    if row.unit and row.type not in ("double", "int", "uint", "byte"):
        raise SchemaError(row.where, f"a {row.type} has no unit")
    if row.zoned and row.type != "dateTime":
        raise SchemaError(row.where, "only a dateTime is zoned")
    if (row.collapse or row.length is not None) and row.type != "string":
        raise SchemaError(row.where, f"a {row.type} takes neither collapse nor length")
    if row.default is not None and row.enum is not None and row.default not in row.enum_values:
        raise SchemaError(row.where, f"the default {row.default} is not in {row.enum}")
    if (row.xsi_type or row.adopt) and not info.is_substitution:
        raise SchemaError(row.where, "only a holder's alternative names its type")
    if row.kind == "alt" and info.shape == "anonymous" and not row.is_simple:
        raise SchemaError(row.where, "an anonymous group holds simple values")


def _check_value_list(row):
    if row.type not in ("string", "dateTime"):
        raise SchemaError(row.where, f"a list of {row.type} values is not known here")
    if row.length is not None:
        raise SchemaError(row.where, "the setters of a list check no length")


def _held_by_value(info):
    """What must be complete before the class: its base and its required single children."""
    if info.base is not None:
        yield info.base, info.where
    for row in info.elements:
        child = row.type_class
        if child is not None and row.required and not row.is_list and not child.is_substitution:
            yield child, row.where


def _definition_order(model):
    ordered, done, open_ = [], set(), set()

    def visit(info, where):
        if info.name in done:
            return
        if info.name in open_:
            raise SchemaError(where, f"{info.name} would hold itself by value")
        open_.add(info.name)
        for needed, place in _held_by_value(info):
            visit(needed, place)
        open_.discard(info.name)
        done.add(info.name)
        ordered.append(info)

    for info in model.classes.values():
        visit(info, info.where)
    return ordered


def _number_events(model):
    events = {}
    for info in model.classes.values():
        for row in info.rows:
            if row.is_named and row.name not in events:
                events[row.name] = FIRST_EVENT + len(events)
    return events


_AS = re.compile(r"As (\w+)\.(\w+)\.$")


def _give_meanings(model):
    """Sees to it that everything has a meaning, and that each is told in one place."""
    for info in model.classes.values():
        if info.is_wrapper:
            info.comment = info.comment or info.base.comment
        if not info.comment:
            raise SchemaError(info.where, f"nothing tells what {info.name} is")
    for enum in model.enums.values():
        if not enum.comment:
            raise SchemaError(enum.where, f"nothing tells what {enum.name} enumerates")
        for value, note, where in zip(enum.values, enum.notes, enum.places):
            if not note:
                raise SchemaError(where, f"nothing tells what {value} means")
    rows = [row for info in model.classes.values() for row in info.rows]
    _refuse_repetition(model, rows)
    for row in rows:
        if not _AS.match(row.note):
            row.note = row.note or _meaning_of(model, row)
    for row in rows:
        if reference := _AS.match(row.note):
            row.note = _told_at(model, row, *reference.groups())


def _refuse_repetition(model, rows):
    told = {shared.note: shared.where for shared in model.schema.shared.values()}
    for row in rows:
        if row.note and not _AS.match(row.note):
            if row.note in told:
                raise SchemaError(row.where, f"the note of {row.name} stands already at "
                                             f"{told[row.note]}")
            told[row.note] = row.where
    used = {(row.name, row.type) for row in rows if not row.note}
    for key, shared in model.schema.shared.items():
        if key not in used:
            raise SchemaError(shared.where, f"no row takes the note of {' '.join(key)}")


def _meaning_of(model, row):
    """That of its name, of the values that it may have, or of what stands there."""
    if shared := model.schema.shared.get((row.name, row.type)):
        return shared.note
    if row.enum:
        return model.enums[row.enum].comment
    held = row.owner if row.kind == "content" else row.type_class
    if held is None:
        raise SchemaError(row.where, f"nothing tells what {row.name} of {row.owner.name} means")
    return first_sentence(held.comment)


def first_sentence(text):
    """What something is, without what else is to be known of it."""
    return re.split(r"(?<=\.)\s", text, maxsplit=1)[0]


def _told_at(model, row, owner, name):
    told = owner in model.classes and model[owner].find_row(name)
    if not told or _AS.match(told.note):
        raise SchemaError(row.where, f"nothing is told at {owner}.{name}")
    return told.note
