"""Prints zol.xsd: the format as an XML Schema 1.0, for editors and other validators.

The schema asks for everything that the library asks for when it writes. Where the library reads
more, or less, than it says, docs/differences-from-xml-schema.md gives the reason.

Types stand under the names of their classes; enumerations end in "Enum", and the values of simple
content that have facets in "Content", because some share a name with a class. A family of types is
a substitution group. Its root is abstract unless its own factory lists it, since then no document
can name it.
"""

from xml.sax.saxutils import escape, quoteattr

from printer import Printer, block
from rows import INTEGER_LIMITS
from schema import Bound, SchemaError

BUILT_IN = {
    "string": "xs:string",
    "double": "xs:double",
    # Not the types with a number of bits: validators disagree on a plus sign in the unsigned ones,
    # and libxml2 refuses blanks around any of them.
    "int": "xs:integer",
    "uint": "xs:nonNegativeInteger",
    "byte": "xs:nonNegativeInteger",
    "bool": "xs:boolean",
    "dateTime": "xs:dateTime",
    "base64": "xs:base64Binary",
}
ZONED = "ZonedDateTime"


def emit(model):
    """All files as a dictionary from path to text."""
    if model.namespace is None:
        raise SchemaError("zol.xsd", "needs the namespace of the format (--namespace)")
    out = Printer()
    out.emit("""
        <?xml version="1.0" encoding="UTF-8"?>
        <!-- Generated from model/schema by gen/emit_xsd.py: edit those, not this. -->
        <xs:schema xmlns:xs="http://www.w3.org/2001/XMLSchema"
                   xmlns:Zol=$uri$
                   targetNamespace=$uri$
                   elementFormDefault="qualified" attributeFormDefault="unqualified">
        """, uri=quoteattr(model.namespace))
    sections = [("Elements by themselves. A document begins with Zol.", global_elements(model)),
                ("Values.", simple_types(model)), ("Types.", complex_types(model))]
    for title, parts in sections:
        out.blank()
        out.raw(f"<!-- {title} -->", indent=2)
        for before, part in zip([title + "\n", *parts], parts):
            if "\n" in before + part:
                out.blank()
            out.raw(part, indent=2)
    out.blank()
    out.emit("</xs:schema>")
    return {"zol.xsd": out.text()}


def tag(_name, **attributes):
    """An empty element; attributes that are None are left out."""
    return f"<xs:{_name}{spelled(attributes)}/>"


def wrapped(_name, lines, **attributes):
    """An element around lines, of which there may be none."""
    if not lines:
        return [tag(_name, **attributes)]
    inner = ["  " + line for line in lines]
    return [f"<xs:{_name}{spelled(attributes)}>", *inner, f"</xs:{_name}>"]


def spelled(attributes):
    return "".join(f" {name}={quoteattr(str(value))}"
                   for name, value in attributes.items() if value is not None)


def documentation(text):
    return wrapped("annotation", [f"<xs:documentation>{escape(text)}</xs:documentation>"])


def described(row):
    """What the row means and the unit of its number."""
    return f"{row.note} Unit: {row.unit}." if row.unit else row.note


def annotation(row):
    """The same as an element, which makes no difference to a validator."""
    return documentation(described(row))


# Elements.

def is_global(info):
    return info.is_wrapper or info.is_document


def type_name(info):
    """The type of an element of the class: that of a wrapper is the class it wraps."""
    return f"Zol:{info.schema.base if info.is_wrapper else info.name}"


def head_of(model, root):
    """The element at the head of the family, which has the type of the root itself."""
    return next((info for info in model.classes.values()
                 if info.is_wrapper and info.base is root), None)


def global_elements(model):
    parts = []
    for info in model.classes.values():
        if not is_global(info):
            continue
        head = head_of(model, info.family_root) if info.is_wrapper else None
        parts.append(block(wrapped(
            "element", documentation(info.comment), name=info.name, type=type_name(info),
            substitutionGroup=f"Zol:{head.name}" if head not in (None, info) else None,
            abstract="true" if info.shape == "abstract" else None,
            nillable="true" if info.nillable else None)))
    return parts


# Simple types.

def simple_types(model):
    parts = []
    rows = [row for info in model.classes.values() for row in info.rows]
    if any(row.zoned for row in rows):
        parts.append(named_type(ZONED, "A date and time with a time zone.",
                                restriction("xs:dateTime", [
                                    tag("pattern", value=r".+T.+(Z|[+\-].+)")])))
    for name, enum in model.enums.items():
        parts.append(named_type(f"{name}Enum", enum.comment, restriction("xs:string", [
            line for value, note in zip(enum.values, enum.notes)
            for line in wrapped("enumeration", documentation(note), value=value)])))
    for row in rows:
        if row.kind == "content" and facets_of(row):
            parts.append(named_type(f"{row.owner.name}Content", described(row),
                                    restriction(BUILT_IN[row.type], facets_of(row))))
    return parts


def named_type(name, comment, lines):
    return block(wrapped("simpleType", documentation(comment) + lines, name=name))


def restriction(base, facets):
    return wrapped("restriction", facets, base=base)


def facets_of(row):
    """What a row asks of its type beyond the name; an enumeration and a zone have types of their
    own, and collapsed text is a built-in one."""
    facets = []
    if row.length is not None:
        facets.append(tag("length", value=row.length))
    low, high = limits(row)
    if low is not None:
        facets.append(tag("minExclusive" if low.strict else "minInclusive", value=low.number))
    if high is not None:
        facets.append(tag("maxExclusive" if high.strict else "maxInclusive", value=high.number))
    return facets


def limits(row):
    """The bounds of a row; the types of whole numbers have bounds of their own."""
    if row.type not in INTEGER_LIMITS:
        return row.lower, row.upper
    least, most = INTEGER_LIMITS[row.type]
    return row.lower or Bound(str(least), strict=False), row.upper or Bound(str(most), strict=False)


def simple_name(row):
    """The type of a simple row as one name, or None if its facets need a type of their own."""
    if row.enum:
        return f"Zol:{row.enum}Enum"
    if row.zoned:
        return f"Zol:{ZONED}"
    if facets_of(row):
        return None
    return "xs:token" if row.collapse else BUILT_IN[row.type]


# Complex types.

def complex_types(model):
    return [block(complex_type(info)) for info in model.classes.values()
            if not (info.is_wrapper or info.writes_no_tag)]


def complex_type(info):
    attributes = [line for row in info.attributes for line in attribute(row)]
    is_abstract = bool(info.factory) and info.name not in info.factory
    return wrapped("complexType", documentation(info.comment) + content_model(info, attributes),
                   name=info.name, abstract="true" if is_abstract else None)


def content_model(info, attributes):
    if info.is_simple:
        row = info.content
        base = simple_name(row) or f"Zol:{info.name}Content"
        return wrapped("simpleContent",
                       wrapped("extension", annotation(row) + attributes, base=base))
    rows = [line for row in info.elements + info.alternatives for line in element(row)]
    compositor = "choice" if info.shape == "choice" else "sequence"
    body = (wrapped(compositor, rows) if rows else []) + attributes
    if info.base is None:
        return body
    return wrapped("complexContent", wrapped("extension", body, base=f"Zol:{info.base.name}"))


def attribute(row):
    given = {"name": row.name, "type": simple_name(row), "default": row.default,
             "use": "required" if row.required else None}
    return declaration("attribute", given, row)


def element(row):
    occurs = {"minOccurs": None if row.low == 1 else row.low,
              "maxOccurs": "unbounded" if row.is_list else None}
    held = row.type_class
    if row.kind == "any":
        return wrapped("any", annotation(row), namespace="##any", processContents="skip", **occurs)
    if row.kind == "group":
        alternatives = [line for alt in held.alternatives for line in element(alt)]
        return wrapped("choice", annotation(row) + alternatives, **occurs)
    if held is None:
        # A default is what a new object holds. An empty element does not stand for it.
        return declaration("element", {"name": row.name, "type": simple_name(row), **occurs}, row)
    if held.is_substitution:
        head = head_of(row.owner.model, held.root_type).name
        if not row.is_list:
            return wrapped("element", annotation(row), ref=f"Zol:{head}", **occurs)
        # libxml2 lets a head that repeats go back to the rows before it, unless it stands alone.
        return wrapped("sequence", wrapped("element", annotation(row), ref=f"Zol:{head}"), **occurs)
    if is_global(held) and held.name == row.name:
        return wrapped("element", annotation(row), ref=f"Zol:{row.name}", **occurs)
    return wrapped("element", annotation(row), name=row.name, type=type_name(held), **occurs,
                   nillable="true" if held.nillable else None)


def declaration(kind, given, row):
    """An attribute or element with a named type, or with a type of its own inside."""
    inner = []
    if given["type"] is None:
        inner = wrapped("simpleType", restriction(BUILT_IN[row.type], facets_of(row)))
    return wrapped(kind, annotation(row) + inner, **given)
