"""Prints the C++ of the model: one header, one source for each table file, and the lists of both.

    model/Zol.h                       every class (model_header.py)
    model/Zol_<table file>.cpp        their tables (model_source.py)
    model/internal/enumerations.cpp   the enumerations as tables
    model/internal/classes.cpp        the classes by number
"""

from model_classes import banner
from model_header import emit_header
from model_source import emit_source, source_name
from printer import Printer, block, wrap_list
from rows import quoted


def emit(model):
    """All files as a dictionary from path to text."""
    files = {
        "model/Zol.h": emit_header(model),
        "model/internal/classes.cpp": emit_classes(model),
        "model/internal/enumerations.cpp": emit_enumerations(model),
    }
    for table in model.schema.files:
        files[f"model/{source_name(table)}"] = emit_source(model, table)
    return files


def emit_classes(model):
    out = Printer()
    out.emit("""
        $banner$
        #include "model/Zol.h"

        namespace zol_v2::internal {

        const Class* const k_classes[] = {
          $classes$
        };
        const unsigned k_class_count = $count$;

        }  // namespace zol_v2::internal
        """, banner=banner(), count=len(model.classes),
        classes=wrap_list(f"&{name}::k_class" for name in model.classes))
    return out.cpp_text()


def emit_enumerations(model):
    out = Printer()
    out.emit("""
        $banner$
        #include "model/Zol.h"

        namespace zol_v2::internal {

        namespace {

        // The same texts in the other width.
        template <std::size_t size>
        struct WideTexts {
          explicit WideTexts(const std::string_view (&narrow)[size]) {
            for (std::size_t i = 0; i < size; ++i) text[i].assign(narrow[i].begin(), narrow[i].end());
          }
          std::wstring text[size];
        };

        }  // namespace
        """, banner=banner())
    for name, enum in model.enums.items():
        out.blank()
        out.emit("""
            static constexpr std::string_view k_$name$_narrow[] = {
              $values$
            };
            static const WideTexts k_$name$_wide(k_$name$_narrow);
            static constexpr const char* k_$name$_notes[] = {
              $notes$
            };
            const EnumTable k_$name${k_$name$_wide.text, k_$name$_narrow, k_$name$_notes, $size$};
            """, name=name, size=len(enum.values),
            values=wrap_list(quoted(value) for value in enum.values),
            notes=block(f"{quoted(note)}," for note in enum.notes))
    out.blank()
    out.emit("}  // namespace zol_v2::internal")
    return out.cpp_text()
