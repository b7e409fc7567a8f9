"""Prints the C++ of the model: one header, one source for each table file, and two inner headers.

    model/Zol.h                       every class (model_header.py)
    model/Zol_<table file>.cpp        their bodies (model_source.py)
    model/internal/enumerations.h     the enumerations as tables, with enumerations.cpp
    model/internal/events.h           the number of each element and attribute name
"""

from model_classes import banner
from model_header import emit_header
from model_source import emit_source, source_name
from printer import Printer, block


def emit(model):
    """All files as a dictionary from path to text."""
    files = {
        "model/Zol.h": emit_header(model),
        "model/internal/events.h": emit_events(model),
        "model/internal/enumerations.h": emit_enumerations_header(model),
        "model/internal/enumerations.cpp": emit_enumerations_source(model),
    }
    for table in model.schema.files:
        files[f"model/{source_name(table)}"] = emit_source(model, table)
    return files


def emit_events(model):
    out = Printer()
    out.emit("""
        $banner$
        // One number for each element or attribute name of the schema, as the reader's events.
        #pragma once

        namespace zol_v2::internal::event {

        enum Number : int {
          $names$
        };

        }  // namespace zol_v2::internal::event
        """, banner=banner(),
        names=",\n".join(f"{name} = {number}" for name, number in model.events.items()))
    return out.cpp_text()


def emit_enumerations_header(model):
    out = Printer()
    out.emit("""
        $banner$
        // The values of each enumeration, in their order.
        #pragma once

        #include "model/internal/fields.h"

        namespace zol_v2::internal {

        $tables$

        }  // namespace zol_v2::internal
        """, banner=banner(),
        tables=block(f"extern const EnumTable k_{name};" for name in model.enums))
    return out.cpp_text()


def emit_enumerations_source(model):
    out = Printer()
    out.emit("""
        $banner$
        #include "model/internal/enumerations.h"

        namespace zol_v2::internal {

        """, banner=banner())
    for name, enum in model.enums.items():
        out.blank()
        out.emit("""
            static const std::wstring k_$name$_wide[] = {
              $wide$
            };
            static const std::string_view k_$name$_narrow[] = {
              $narrow$
            };
            const EnumTable k_$name${k_$name$_wide, k_$name$_narrow, $size$};
            """, name=name, size=len(enum.values),
            wide=",\n".join(f'L"{value}"' for value in enum.values),
            narrow=",\n".join(f'"{value}"' for value in enum.values))
    out.blank()
    out.emit("}  // namespace zol_v2::internal")
    return out.cpp_text()
