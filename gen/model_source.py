"""Prints the sources of the model, one for each table file: the table of each of its classes.

What one row contributes stands in rows.py; what is done with the tables is the business of the
walkers in model/internal.
"""

import pathlib

from model_classes import banner, shapes
from printer import Printer
from rows import quoted

SHAPES = {"poly": "plain", "element": "wrapper", "abstract": "wrapper"}  # others bear their own name


def source_name(table):
    return f"Zol_{pathlib.Path(table).stem}.cpp"


def emit_source(model, table):
    classes = [info for info in model.classes.values() if info.where.file == table]
    out = Printer()
    out.emit("""
        $banner$
        #include "model/Zol.h"
        #include "model/internal/tables.h"
        #include "model/sdk_stamp.h"

        #if defined(__GNUC__)
        // The classes have virtual functions, and yet every field a fixed place.
        #pragma GCC diagnostic ignored "-Winvalid-offsetof"
        #endif

        namespace zol_v2 {

        using internal::Class;
        using internal::End;
        using internal::Kind;
        using internal::NamedType;
        using internal::Place;
        using internal::Row;
        using internal::Shape;
        """, banner=banner(f"model/schema/{table}", "model_source.py"))
    for info in classes:
        out.blank()
        emit_class_source(out, info)
    out.blank()
    out.emit("}  // namespace zol_v2")
    return out.cpp_text()


def emit_class_source(out, info):
    name = info.name
    out.emit(f"// {name}")
    if info.rows:
        out.emit("""
            constexpr Row $Class$::k_rows[] = {
              $rows$
            };
            """, Class=name, rows="\n".join(shape.table_line() for shape in shapes(info)))
    if info.factory:
        out.emit("""
            static const Class* const k_$Class$_factory[] = {
              $types$
            };
            """, Class=name, types=", ".join([f"&{t}::k_class" for t in info.factory] + ["nullptr"]))
    out.emit("""
        constexpr Class $Class$::k_class =
            $words$;
        """.replace("$words$;", "$words$"), Class=name, words=wrap_chain(description(info)) + ";")
    if info.shape == "poly":
        out.emit(f"const char* {name}::id = {quoted(name)};")
    if info.is_document:
        # A Windows library has a constant only where a source of it asks for that.
        out.emit(f"constexpr char {name}::k_element_name[];")
    start = [f"become(k_class, {info.none});" if info.alternatives else "become(k_class);"]
    if info.has("root"):
        start.append("SdkStamp().stampRead(*this);")
    out.emit(f"{name}::{name}() {{ {' '.join(start)} }}")
    if info.own_lifetime:
        out.emit(f"{name}::{name}(const {name}& other) : {name}() "
                 "{ internal::copy(*this, other, k_class); }")
        out.emit(f"{name}::{name}({name}&& other) noexcept "
                 f"{{ {start[0]} internal::swap(*this, other, k_class); }}")
    else:
        base = info.schema.base
        out.emit(f"{name}::{name}(const {name}& other) : {base}(other) {{ become(k_class); }}")
        out.emit(f"{name}::{name}({name}&& other) noexcept : {base}(std::move(other)) "
                 "{ become(k_class); }")
    out.emit(f"{name}::~{name}() " + ("{ internal::release(*this, k_class); }" if info.owns_heap
                                      else "= default;"))


def wrap_chain(words, width=92):
    """Calls on one another, as many to a line as fit."""
    lines = [words[0]]
    for word in words[1:]:
        if len(lines) > 1 and len(lines[-1]) + 1 + len(word) <= width:
            lines[-1] += "." + word
        else:
            lines.append("    ." + word)
    return "\n".join(lines)


def description(info):
    """The class's own entry, word by word."""
    shape = SHAPES.get(info.shape, info.shape)
    words = [f'Class({quoted(info.name)}, Shape::{shape}, {info.number}, '
             f'internal::making<{info.name}>())']
    if info.base is not None:
        words.append(f"derived_from({info.schema.base}::k_class)")
    if info.rows:
        counts = [len(info.attributes), len(info.elements),
                  len(info.alternatives) + (info.content is not None)]
        words.append(f"with(k_rows, {', '.join(map(str, counts))})")
    words.append(f"wants({info.required_mask:#x}, {info.required_to_read_mask:#x}, "
                 f"{info.required_attributes_mask:#x}, {info.flag_mask:#x})")
    if info.nillable:
        words.append(f"nilled_by({info.nil_bit})")
    if info.keeps_batch:
        words.append(f"keeping(offsetof({info.name}, batch_))")
    if info.alternatives:
        words.append(f"unless({info.none})")
    if info.is_poly:
        owner = info.schema.base if info.is_wrapper else info.name
        words.append(f"typed({quoted(owner)}, {owner}::id)")
    family = info.root_type if info.is_substitution else info.family_root if info.is_poly else None
    if family is not None:
        words.append(f"of(internal::k_family<{family.name}>)")
    if info.factory:
        words.append(f"building(k_{info.name}_factory)")
    marks = [mark for mark, holds in (("required_list", info.has_required_list),
                                      ("wants_content", info.wants_content),
                                      ("names_namespaces", info.names_namespaces),
                                      ("blank", info.is_blank),
                                      ("owns_nothing", not info.owns_heap_anywhere),
                                      ("document", info.is_document)) if holds]
    if marks:
        words.append("marked(" + " | ".join(f"Class::k_{mark}" for mark in marks) + ")")
    words.append(f"about({quoted(info.comment)})")
    return words
