"""Prints zol.schema.json: documents as interchange/json.h spells them, as a JSON Schema 2020-12.

It asks for everything that the library asks for when it writes, as zol.xsd does. Types stand under
the names of their classes, with the rows of their bases; one that an element names by xsi:type
stands a second time, with that member.
"""

import json

from rows import INTEGER_LIMITS
from emit_xsd import described, limits
from schema import SchemaError

CONTENT = "value"
NAMED = " by xsi:type"
VALUES = " values"
DATE = (r"^-?[0-9]{4,}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}(\.[0-9]+)?"
        r"(Z|[+-][0-9]{2}:[0-9]{2})$")


def emit(model):
    """All files as a dictionary from path to text."""
    root = next(info for info in model.classes.values() if info.keeps_batch)
    printer = Definitions(model)
    document = {root.name: printer.reference(root.name), "$schema": {"type": "string"}}
    schema = {
        "$schema": "https://json-schema.org/draft/2020-12/schema",
        "$comment": "Generated from model/schema by gen/emit_json_schema.py: edit those, not this.",
        "title": "A colour-data document",
        "type": "object", "properties": document, "required": [root.name],
        "additionalProperties": False,
        "$defs": printer.all(),
    }
    return {"zol.schema.json": json.dumps(schema, indent=1, ensure_ascii=False) + "\n"}


class Definitions:
    """The definitions that are referred to, each printed once."""

    def __init__(self, model):
        self.model = model
        self.printed = {}
        self.wanted = []

    def reference(self, name):
        if name not in self.printed and name not in self.wanted:
            self.wanted.append(name)
        return {"$ref": "#/$defs/" + name.replace(" ", "%20")}

    def all(self):
        while self.wanted:
            name = self.wanted.pop(0)
            self.printed[name] = None
            if name.endswith(VALUES):
                self.printed[name] = values_of(self.model.enums[name.removesuffix(VALUES)])
            else:
                info = self.model[name.removesuffix(NAMED)]
                self.printed[name] = self.type_of(info, is_named=name.endswith(NAMED))
        return dict(sorted(self.printed.items()))

    def type_of(self, info, is_named):
        rows = [row for base in reversed(info.lineage) for row in base.attributes]
        attributes = [row.name for row in rows if row.required]
        needed, choices = [], []
        for base in reversed(info.lineage):
            for row in base.elements:
                if row.kind == "mark":
                    continue
                if row.kind == "group":
                    choices.append([alt.name for alt in row.type_class.alternatives])
                    rows += row.type_class.alternatives
                    continue
                rows.append(row)
                needed += [row.name] * row.required
            if base.content is not None:
                rows.append(base.content)
                needed.append(CONTENT)
        if info.alternatives:
            choices.append([alt.name for alt in info.alternatives])
            rows += info.alternatives
        properties = {}
        if is_named:
            properties["xsi:type"] = {"const": info.name}
            attributes.insert(0, "xsi:type")
        if info.nillable:
            properties["xsi:nil"] = {"type": "boolean"}
        for row in rows:
            name = CONTENT if row.kind == "content" else row.name
            if name in properties:
                raise SchemaError(row.where, f"a second member {name} of {info.name} in JSON")
            properties[name] = self.member(row)
        filled = {}
        if needed:
            filled["required"] = needed
        if choices:
            filled["allOf"] = [{"oneOf": [{"required": [name]} for name in names]}
                               for names in choices]
        result = {"description": info.comment, "type": "object", "properties": properties}
        if info.nillable:
            if attributes:
                result["required"] = attributes
            result |= {"if": {"properties": {"xsi:nil": {"const": True}}, "required": ["xsi:nil"]},
                       "then": True, "else": filled}
        else:
            if attributes or needed:
                result["required"] = attributes + needed
            if choices:
                result["allOf"] = filled["allOf"]
        result["additionalProperties"] = False
        return result

    def member(self, row):
        value = self.value(row)
        if row.is_list:
            value = {"type": "array", "items": value} | ({"minItems": 1} if row.low else {})
        return {"description": described(row)} | value

    def value(self, row):
        if row.kind == "any":
            return {"type": "string", "contentMediaType": "application/xml"}
        if row.type_class is None:
            return self.simple(row)
        plain = self.reference(row.type_class.name)
        if not row.xsi_type:
            return plain
        named = [self.reference(name + NAMED) for name in row.type_class.factory]
        return {"anyOf": [plain] * (row.xsi_type == "optional") + named}

    def simple(self, row):
        if row.enum:
            return self.reference(row.enum + VALUES)
        if row.type == "bool":
            return {"type": "boolean"}
        if row.type == "dateTime":
            return {"type": "string", "pattern": DATE}
        if row.type == "base64":
            return {"type": "string", "contentEncoding": "base64"}
        if row.type == "string":
            length = {} if row.length is None else {"minLength": row.length, "maxLength": row.length}
            return {"type": "string"} | length
        return number(row)


def values_of(enum):
    told = [f"{value}: {note}" for value, note in zip(enum.values, enum.notes)]
    return {"description": "\n".join([enum.comment, *told]), "enum": list(enum.values)}


def number(row):
    low, high = limits(row)
    result = {"type": "integer" if row.type in INTEGER_LIMITS else "number"}
    if low is not None:
        result["exclusiveMinimum" if low.strict else "minimum"] = json.loads(low.number)
    if high is not None:
        result["exclusiveMaximum" if high.strict else "maximum"] = json.loads(high.number)
    words = [word for word, is_lawful in (("NaN", low is None and high is None),
                                          ("INF", high is None), ("-INF", low is None)) if is_lawful]
    if row.type in INTEGER_LIMITS or not words:
        return result
    return {"anyOf": [result, {"enum": words}]}
