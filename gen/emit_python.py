"""Prints the classes of the package zol, which a Python program works with.

    python/zol/_model.py     the classes and enumerations, an attribute for each row
    python/zol/_model.pyi    their types, for editors and checkers

An attribute is one line: a descriptor that finds the row by its number. What the classes share is
written by hand in python/. Names are those of C# in the spelling of Python.
"""

import keyword
import re

import dotnet_names
from emit_dotnet import content_class, facts, shown_classes, stands_itself, telling_rows
from emit_managed import row_number
from printer import Printer
from resolve import snake_case
from schema import SchemaError

BANNER = "Generated from model/schema by gen/emit_python.py: edit those, not this."
CLASSES = {"ZolDocument": "Document"}
# What a class has beside its rows stands in python/zol/_object.py.
MIXINS = {"Zol": "DocumentParts", "ColorSpaceType": "SpaceParts",
          "ColorSpaceSpectralType": "SpectrumParts", "ColorSpaceEmissiveSpectralType": "SpectrumParts"}
# What every object has, and a choice besides.
TAKEN = {"attributes", "check", "copy", "held", "is_nil", "is_removed", "kind", "parent", "path"}
TYPES = {"string": "str", "double": "float", "int": "int", "uint": "int", "byte": "int",
         "bool": "bool", "base64": "bytes", "dateTime": "datetime", "any": "ForeignElement"}
PLACES = {"attr": "attribute", "content": "content", "alt": "alternative", "group": "group",
          "any": "elements of others"}


def emit(model):
    """All files as a dictionary from path to text."""
    shown = in_order([info for info in shown_classes(model)])
    check_names(model, shown)
    return {"python/zol/_model.py": emit_module(model, shown),
            "python/zol/_model.pyi": emit_stub(model, shown)}


def in_order(shown):
    """Each behind its base."""
    return sorted(shown, key=lambda info: len(info.lineage))


def class_name(info):
    name = dotnet_names.class_name(info)
    return CLASSES.get(name, name)


def attribute_name(row):
    name = snake_case(dotnet_names.property_name(row))
    return name + "_" if keyword.iskeyword(name) else name


def member_names(enum):
    return [snake_case(name).upper() for name in dotnet_names.value_names(enum.values)]


def attributes(row):
    """The names that a class has for a row, each with the way it goes: the choice beside what it
    holds, the text of a date beside the date."""
    name = attribute_name(row)
    if row.kind == "mark":
        return []
    if is_choice(row):
        return [(name, "held"), (name + "_choice", "")]
    if row.type == "dateTime" and not row.is_list:
        return [(name, ""), (name + "_exact", "exact")]
    return [(name, "")]


def is_choice(row):
    held = row.type_class
    return held is not None and held.shape in ("choice", "anonymous") and not row.is_list


def check_names(model, shown):
    names = [class_name(info) for info in shown] + \
        [dotnet_names.enum_name(name) for name in model.enums]
    for name in names:
        if names.count(name) > 1 or keyword.iskeyword(name):
            raise SchemaError(shown[0].where, f"Python cannot have {name} once")
    for info in shown:
        own = [name for owner in info.lineage for row in owner.rows for name, _ in attributes(row)]
        for name in own:
            if own.count(name) > 1 or \
                    (name in TAKEN and (info.alternatives or name not in ("held", "kind"))):
                raise SchemaError(info.where, f"Python cannot have {class_name(info)}.{name}")
    for enum in model.enums.values():
        if len(set(member_names(enum))) != len(enum.values):
            raise SchemaError(enum.where, f"Python has a member of {enum.name} twice")


def quoted(text):
    text = text.replace("\\", "\\\\").replace('"', '\\"').replace("\n", "\\n")
    return f'"{text}"'


def doc_string(text, *, format_name):
    text = f"{text}\n\nIn documents: {format_name}."
    return '"""' + text.replace("\\", "\\\\").replace('"""', '\\"""') + '\n"""'


def short_doc(text):
    """The doc string of a stub, on one line."""
    return '"""' + text.strip().replace("\\", "\\\\").replace('"', '\\"') + '"""'


def in_python(words):
    return re.sub(r"\b[nN]ull\b", "None", words)


def about(row, way):
    """The doc string of an attribute."""
    told = in_python(facts(row))
    place = PLACES.get(row.kind, "element")
    name = "" if row.kind in ("content", "group", "any") else f" {row.name}"
    lines = [row.note, "", f"In documents: {place}{name} of {row.owner.name}. "
             f"Here: {type_of(row, way)}."]
    if told:
        lines.append(told)
    if way == "exact":
        lines.append("As a document has it, as a text.")
    if way == "held":
        lines.append("What the choice holds.")
    return "\n".join(lines)


def emit_module(model, shown):
    out = Printer()
    out.emit('''
        """$banner$"""

        from enum import Enum as _Enum

        from . import _object as _parts
        from ._object import model_class as _class
        from ._zol import field as _field
        ''', banner=BANNER)
    for enum in model.enums.values():
        out.blank()
        out.blank()
        out.emit('''
            class $Name$(_Enum):
                $doc$

                $members$
            ''', Name=dotnet_names.enum_name(enum.name),
            doc=doc_string("\n".join([enum.comment, "", *(
                f"{name}: {note}" for name, note in zip(member_names(enum), enum.notes))]),
                format_name=enum.name),
            members="\n".join(f"{name} = {quoted(value)}"
                              for name, value in zip(member_names(enum), enum.values)))
    for info in shown:
        out.blank()
        emit_class(out, model, info)
    out.blank()
    emit_all(out, model, shown)
    return out.text()


def emit_all(out, model, shown):
    names = [dotnet_names.enum_name(name) for name in model.enums] + \
        [class_name(info) for info in shown]
    out.emit("""
        __all__ = [
            $names$
        ]
        """, names="\n".join(f"{quoted(name)}," for name in sorted(names)))


def bases(info):
    named = []
    if info.name in MIXINS:
        named.append("_parts." + MIXINS[info.name])
    if info.alternatives:
        named.append("_parts.ChoiceParts")
    return named + [class_name(info.base) if info.base else "_parts.Object"]


def emit_class(out, model, info):
    lines = []
    for row in info.rows:
        for name, way in attributes(row):
            members = f", {dotnet_names.enum_name(row.enum)}" if row.enum else ""
            if way:
                members = (members or ", None") + f", {quoted(way)}"
            lines.append(f"{name} = _field({row_number(row)}, {quoted(name)}, "
                         f"{quoted(about(row, way))}{members})")
    telling = [snake_case(name) for name in telling_rows(info)]
    out.emit('''
        @_class($number$, $format$$abstract$)
        class $Name$($bases$):
            $doc$

            __slots__ = ()
            $telling$
            $fields$
        ''', number=info.number, format=quoted(info.name), Name=class_name(info),
        abstract="" if stands_itself(model, info) else ", is_abstract=True",
        bases=", ".join(bases(info)),
        doc=doc_string(info.comment, format_name=info.name),
        telling=f"_telling = {tuple(telling)!r}" if telling else "",
        fields="\n".join(lines))


# --- Types ---------------------------------------------------------------------------------------


def type_of(row, way):
    if row.is_simple or row.kind == "any":
        kind = dotnet_names.enum_name(row.enum) if row.enum else TYPES[row.type]
        if row.is_list or row.kind == "any":
            return f"List[{kind}]"
        if way == "exact":
            kind = "str"
        return kind if row.required and row.kind != "alt" else f"{kind} | None"
    held = row.type_class
    if way == "held":
        kinds = dict.fromkeys(type_of(one, "").removesuffix(" | None")
                              for one in content_class(held).alternatives)
        return " | ".join([*kinds, "None"])
    kind = class_name(held.root_type if held.is_substitution else held)
    if row.is_list:
        return f"List[{kind}]"
    is_there = row.required and row.kind != "alt" and not held.nillable and not held.is_substitution
    return kind if is_there else f"{kind} | None"


def emit_stub(model, shown):
    out = Printer()
    out.emit("""
        # $banner$
        from datetime import datetime
        from enum import Enum

        from ._object import (ChoiceParts, DocumentParts, ForeignElement, List, Object, SpaceParts,
                              SpectrumParts)
        """, banner=BANNER)
    out.blank()
    emit_all(out, model, shown)
    for enum in model.enums.values():
        out.blank()
        out.emit("""
            class $Name$(Enum):
                $doc$
                $members$
            """, Name=dotnet_names.enum_name(enum.name), doc=short_doc(enum.comment),
            members="\n".join(f"{name} = {quoted(value)}\n{short_doc(note)}" for name, value, note
                              in zip(member_names(enum), enum.values, enum.notes)))
    for info in shown:
        own = [f"{name}: {type_of(row, way)}\n{short_doc(f'{row.note} {in_python(facts(row))}')}"
               for row in info.rows for name, way in attributes(row)]
        every = {name: type_of(row, way) for owner in reversed(info.lineage)
                 for row in owner.rows for name, way in attributes(row)}
        words = "".join(f", {name}: {kind if not kind.startswith('List[') else 'object'} = ..."
                        for name, kind in every.items())
        out.blank()
        out.emit("""
            class $Name$($bases$):
                $doc$
                $fields$
                def __init__(self$words$) -> None: ...
                def copy(self) -> $Name$: ...
            """, Name=class_name(info),
            bases=", ".join(base.removeprefix("_parts.") for base in bases(info)),
            doc=short_doc(info.comment), fields="\n".join(own),
            words=", *" + words if words else "")
    return out.text()
