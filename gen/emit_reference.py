"""Prints the reference of the format in Markdown: an index, and a page for each table file.

    reference/README.md        how to read the pages; every class and element with its place
    reference/<table>.md       the classes of the table, their rows, elements and enumerations
"""

import pathlib
import re

from printer import Printer, block
from resolve import first_sentence
from rows import enumerator, shape_of

BANNER = ("<!-- Generated from model/schema{table} by gen/emit_reference.py: edit those, "
          "not this. -->")
SHAPES = {
    "plain": "Class",
    "simple": "Class with a value as its content",
    "poly": "Polymorphic class",
    "choice": "Choice: holds one of its alternatives",
    "holder": "Holder: one member of a family, under the member's own element name",
    "anonymous": "Anonymous group: one of its values, with no element around it",
}
KINDS = {"attr": "attribute", "elem": "element", "content": "content", "alt": "alternative",
         "group": "group", "any": "foreign elements", "mark": "mark"}


def emit(model):
    """All files as a dictionary from path to text."""
    files = {"reference/README.md": emit_index(model)}
    for table in model.schema.files:
        files[f"reference/{page_name(table)}"] = emit_page(model, table)
    return files


def page_name(table):
    return f"{pathlib.Path(table).stem}.md"


def title(table):
    return pathlib.Path(table).stem.capitalize()


def link(target, name=None, fragment=None):
    """A reference to a class or enumeration, good on every page."""
    fragment = fragment or target.name
    return f"[`{name or target.name}`]({page_name(target.where.file)}#{fragment.lower()})"


def enum_link(enum):
    return link(enum, fragment=f"values-of-{enum.name}")


def described(info):
    """A class by the heading it stands under: a wrapper stands in the table of elements."""
    return link(info, fragment="elements") if info.is_wrapper else link(info)


def table_of(head, rows):
    return block(["| " + " | ".join(head) + " |", "|---" * len(head) + "|"] +
                 ["| " + " | ".join(row) + " |" for row in rows])


# The index.

def emit_index(model):
    out = Printer()
    out.emit("""
        $banner$
        # Reference of the format

        One page for each part of the format:

        $pages$

        ## How to read the pages

        A class stands with its rows in the order in which they are read and written: attributes,
        elements, the content. A derived class first reads and writes the rows of its base. *Occurs*
        is `1`, `0..1`, `0..n` or `1..n`; an alternative has none, since a choice holds one of them.

        Types are `string`, `double`, `int` (32 bits), `uint` (a positive number), `byte`, `bool`,
        `dateTime` (always with a time zone) and `base64`; any other type is a class. White space
        around a value is dropped, but a `string` keeps every character unless its row says
        "collapsed". Bounds count on reading and in the setter, and a NaN is outside of every bound. A
        unit says what a number counts; documents spell the number alone.

        *Accessors* are prefixes of the row's name: `get set` of a row `Red` are `get_Red()` and
        `set_Red()`. The content of a class goes by the name of the class. What each accessor does
        is said once, at the top of `model/Zol.h`. An enumerated row has an enumerator for each
        value, numbered from 1 in the order given here and named after the value with an underscore
        for each character that is no letter or digit; the name of the row comes before it unless
        the value begins so.

        ## Classes

        $classes$

        ## Elements

        Elements of a type, under their own names. Each stands for the head of its family wherever
        that may stand; an abstract head never stands itself.

        $elements$
        """,
        banner=BANNER.format(table=""),
        pages=block(f"- [{title(t)}]({page_name(t)})" for t in model.schema.files),
        classes=table_of(("Class", "What it is"),
                         [(link(info), as_markdown(first_sentence(info.comment)))
                          for info in by_name(model) if not info.is_wrapper]),
        elements=table_of(("Element", "Type"), [(described(info), link(info.base))
                                                for info in by_name(model) if info.is_wrapper]))
    return out.text()


def by_name(model):
    return sorted(model.classes.values(), key=lambda info: info.name.lower())


# One page.

def emit_page(model, table):
    here = [info for info in model.classes.values() if info.where.file == table]
    out = Printer()
    out.emit("""
        $banner$
        # $title$

        [How to read this page](README.md#how-to-read-the-pages)
        """, banner=BANNER.format(table=f"/{table}"), title=title(table))
    for info in here:
        if not info.is_wrapper:
            emit_class(out, model, info)
    wrappers = [info for info in here if info.is_wrapper]
    if wrappers:
        out.blank()
        out.emit("""
            ## Elements

            $table$
            """, table=table_of(("Element", "Type", "Besides"),
                                [(f"`{info.name}`", link(info.base), "; ".join(words_of(info)))
                                 for info in wrappers]))
    for enum in model.enums.values():
        if enum.where.file == table:
            emit_enumeration(out, model, enum)
    return out.text()


def emit_class(out, model, info):
    paragraphs = [f"## {info.name}", as_markdown(info.comment),
                  block("- " + fact for fact in facts_of(model, info))]
    if info.rows:
        paragraphs.append(rows_table(info))
    for text in filter(None, paragraphs):
        out.blank()
        out.raw(text)


def as_markdown(text):
    """Plain words, with nothing in them that Markdown would take for its own."""
    return re.sub(r"([\\*_|<>`\[\]])", r"\\\1", text)


def rows_table(info):
    return table_of(("Row", "Meaning", "Kind", "Type", "Occurs", "Facets", "Accessors"),
                    [row_cells(row) for row in info.rows])


def facts_of(model, info):
    """The lines between the comment and the rows."""
    first = SHAPES[info.shape]
    if info.base:
        first += f", derived from {link(info.base)}"
    facts = ["; ".join([first] + words_of(info)) + "."]
    listed = (
        ("Its factory builds", [link(model[name]) for name in info.factory]),
        ("Derived from it", [link(c) for c in model.classes.values()
                             if c.base is info and not c.is_wrapper]),
        ("Its elements", [described(c) for c in model.classes.values()
                          if c.is_wrapper and c.base is info]),
        ("Held by", [f"{link(c)}" for c in model.classes.values()
                     if any(holds(row, info) for row in c.rows)]))
    facts += [f"{what}: {', '.join(names)}." for what, names in listed if names]
    if info.alternatives:
        facts.append(f"`getchosen()` gives the number of the alternative, counted from 0; "
                     f"{info.none} is none.")
    return facts


def words_of(info):
    words = []
    if info.shape == "abstract":
        words.append("abstract: never stands itself")
    if info.has("root"):
        words.append("the root of documents")
    elif info.is_document:
        words.append("can be read and written as a document of its own")
    if info.nillable:
        words.append("nillable")
    if info.has("may-be-empty"):
        words.append("loads from an empty element, with its rows missing")
    return words


def holds(row, info):
    held = row.type_class
    return held is info or held is not None and held.is_wrapper and held.base is info


def row_cells(row):
    name = "content" if row.kind == "content" else f"`{row.name}`"
    held = row.type_class
    row_type = "" if row.kind == "any" else f"`{row.type}`" if held is None else described(held)
    accessors = " ".join(accessors_of(row))
    return (name, as_markdown(row.note), KINDS[row.kind], row_type, occurrence(row), ", ".join(facets_of(row)),
            f"`{accessors}`" if accessors else "")


def occurrence(row):
    if row.kind == "alt":
        return ""
    return f"{row.low}..n" if row.is_list else "1" if row.required else "0..1"


def facets_of(row):
    facets = []
    for bound, sign in ((row.lower, ">"), (row.upper, "<")):
        if bound is not None:
            facets.append(f"`{sign}{'' if bound.strict else '='} {bound.number}`"
                          + (" on reading alone" if bound.on_read else ""))
    if row.unit:
        facets.append(f"unit {row.unit}")
    if row.length is not None:
        facets.append(f"exactly {row.length} character{'s' if row.length != 1 else ''}")
    if row.enum:
        facets.append(f"one of {enum_link(row.owner.model.enums[row.enum])}")
    if row.collapse:
        facets.append("collapsed")
    if row.default:
        facets.append(f"default `{row.default}`")
    if row.xsi_type == "required":
        facets.append("must name its type by `xsi:type`")
    elif row.xsi_type == "optional":
        facets.append("may name a derived type by `xsi:type`")
    return facets


def accessors_of(row):
    """The prefixes of the accessors as the header declares them."""
    declared = shape_of(row).accessors() or ""
    return list(dict.fromkeys(re.findall(rf"\b([a-z]+)_{re.escape(row.name)}\(", declared)))


def emit_enumeration(out, model, enum):
    rows = [row for info in model.classes.values() for row in info.rows if row.enum == enum.name]
    shared = {tuple(enumerator(row, value) for value in enum.values) for row in rows}
    head = ["Number", "Value", "Meaning"] + (["Enumerator"] if len(shared) == 1 else [])
    names = next(iter(shared)) if len(shared) == 1 else None
    cells = [[str(i + 1), f"`{value}`", as_markdown(note)] + ([f"`{names[i]}`"] if names else [])
             for i, (value, note) in enumerate(zip(enum.values, enum.notes))]
    places = ", ".join(link(row.owner, f"{row.owner.name}::{row.name}") for row in rows)
    out.blank()
    out.emit("""
        ## Values of $name$

        $comment$ Of $places$.

        $table$
        """, name=enum.name, comment=as_markdown(enum.comment), places=places, table=table_of(head, cells))
