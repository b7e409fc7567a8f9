"""Prints a table of every function of the flat interface, for a program that calls what it likes.

    fuzz/bridge_calls.cpp

A row has what the caller must know: the function, what it takes and gives by class, and whether it
leaves the objects as they are. fuzz/bridge_calls.h tells how to read it.
"""

import exports
from emit_bridge import BANNER
from printer import Printer

# Whatever reads or writes files, and what is set for the whole process.
LEFT_OUT = ("registration", "id_set", "document")
QUERIES = ("field get", "presence test", "enumeration get", "nil test", "list size",
           "occurrence check", "getid", "has_id", "choice", "upcast", "clone", "marshal")


def emit(model):
    """The file as a dictionary from path to text."""
    calls = [e for e in exports.all_exports(model)
             if e.family not in LEFT_OUT or e.name.endswith(("_loadString", "_writeString"))]
    # Nothing can end an object of such a class.
    deletable = {e.owner for e in calls if e.family == "destructor"}
    calls = [e for e in calls if not (e.owned and class_of(e.gives) not in deletable)]
    out = Printer()
    out.emit("""
        $banner$
        #include "fuzz/bridge_calls.h"

        #include "bridge/zol_exports.h"

        namespace zol_fuzz {

        const std::vector<Call>& all_calls() {
          static const std::vector<Call> calls = {
              $rows$
          };
          return calls;
        }

        }  // namespace zol_fuzz
        """, banner=BANNER.format(table="model/schema", template="emit_calls.py"),
             rows="\n".join(row(export) for export in calls))
    return {"fuzz/bridge_calls.cpp": out.text()}


def class_of(name):
    """The class that the functions of an object are called by."""
    return exports.short(name or "").replace("tc_", "c_")


def row(export):
    gives = class_of(export.gives)
    own = "owned" if export.owned else "borrowed"
    # A child that is asked for comes into being.
    is_value = export.row is not None and export.row.is_simple
    is_query = export.family in QUERIES and not (
        export.family == "field get" and gives and not is_value)
    effect = "query" if is_query else "change"
    takes = " ".join(parameter(p) for p in export.parameters)
    return (f'{{"{export.name}", bound({export.name}), "{export.result}", "{gives}", '
            f'Given::{own}, Effect::{effect}, "{takes}"}},')


def parameter(taken):
    """A kind, or a class; with an asterisk where null raises."""
    spelled = f"{taken.kind}:{class_of(taken.type)}" if taken.kind == "handle" else taken.kind
    return spelled + ("*" if taken.message else "")
