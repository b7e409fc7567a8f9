#!/usr/bin/env python3
"""Compares what the libraries export with what the installed headers declare.

symbols_test.py --build DIR --work DIR

Both ways. What is exported is declared in an installed header, where a client may call it, or what
is inline in a header does: a private step that nothing there needs is the library's own affair.
And what is declared without a body, for clients, is exported. Names are compared as c++filt spells
them, so that the several symbols of a constructor count as one. The flat names are another test's.
"""

import argparse
import pathlib
import re
import shutil
import subprocess
import sys

import clang.cindex
from clang.cindex import AccessSpecifier, CursorKind

# The library of each room that is not the core's.
BESIDE = {"colorimetry": "zolcolor", "interchange": "zolinterchange"}
FUNCTIONS = (CursorKind.FUNCTION_DECL, CursorKind.CXX_METHOD, CursorKind.CONSTRUCTOR,
             CursorKind.DESTRUCTOR, CursorKind.CONVERSION_FUNCTION)
CLASSES = (CursorKind.CLASS_DECL, CursorKind.STRUCT_DECL)
SCOPES = (CursorKind.NAMESPACE, CursorKind.LINKAGE_SPEC, CursorKind.UNEXPOSED_DECL)
TEMPLATES = (CursorKind.CLASS_TEMPLATE, CursorKind.FUNCTION_TEMPLATE,
             CursorKind.CLASS_TEMPLATE_PARTIAL_SPECIALIZATION)
# Each class of the model has its rows, also those that no accessor of its own asks.
ROWS = re.compile(r"zol_v2::\w+::k_rows")
# What the compiler makes of a class, and of inline functions with statics.
MADE = re.compile(r"(vtable|typeinfo|typeinfo name|VTT|guard variable) for |"
                  r"(non-)?virtual thunk to ")
MAY_LACK = re.compile(
    # The forwarders of what a newer libxml2 does not have.
    r"lmx::xmlUCSIs\w+\(|"
    # Made by the tokeniser alone, of what no client has.
    r"lmx::c_entity_name_reader_for_attribute_data::|"
    # What the classes of a header share with the sources of its room.
    r"(\w+::)*internal::")


def demangled(names):
    names = sorted(names)
    out = subprocess.run(["c++filt"], input="\n".join(names), stdout=subprocess.PIPE, text=True,
                         check=True).stdout.splitlines()
    assert len(out) == len(names)
    return set(out)


def exported(library):
    lines = subprocess.run(["nm", "-D", "--defined-only", library], stdout=subprocess.PIPE,
                           text=True, check=True).stdout.splitlines()
    names = {line.split()[-1].split("@")[0] for line in lines}
    return demangled(name for name in names if name.startswith("_Z"))


def without_arguments(text):
    """The qualified name of a member of a class template: "a::b<int>::c(d)" is "a::b::c"."""
    name, depth = "", 0
    for c in text.replace("operator()", "operator{}"):
        if c == "(" and depth == 0:
            break
        depth += (c == "<") - (c == ">")
        if depth == 0 and c != ">":
            name += c
    return name.replace("[abi:cxx11]", "").replace("{}", "()").strip()


class Declarations:
    def __init__(self, include):
        self.include = str(include)
        self.for_clients = set()
        self.private = set()
        self.called = set()   # by what is inline
        self.wanted = {}      # by library
        self.classes = set()
        self.templates = set()
        text = "".join(f'#include "{path.relative_to(include)}"\n'
                       for path in sorted(include.rglob("*.h")))
        source = str(include / "all.cpp")
        unit = clang.cindex.Index.create().parse(
            source, args=["-std=c++17", f"-I{include}"], unsaved_files=[(source, text)])
        faults = [str(d) for d in unit.diagnostics if d.severity >= d.Error]
        if faults:
            sys.exit("\n".join(faults))
        self.walk(unit.cursor, "")
        for name in ("for_clients", "private", "called"):
            setattr(self, name, demangled(getattr(self, name)))
        self.wanted = {library: demangled(names) for library, names in self.wanted.items()}

    def walk(self, cursor, scope):
        for child in cursor.get_children():
            file = child.location.file
            if file is None or not file.name.startswith(self.include):
                continue
            name = f"{scope}::{child.spelling}" if scope else child.spelling
            if child.kind in SCOPES:
                self.walk(child, name if child.kind == CursorKind.NAMESPACE else scope)
            elif child.kind in CLASSES:
                self.classes.add(name)
                self.walk(child, name)
            elif child.kind in TEMPLATES:
                self.take_template(child, name.split("<")[0])
            elif child.kind in FUNCTIONS or child.kind == CursorKind.VAR_DECL:
                self.take(child)
            elif child.kind == CursorKind.FRIEND_DECL:
                self.walk(child, scope)

    def take_template(self, cursor, name):
        self.templates.add(name)
        self.take_calls(cursor)
        for child in cursor.get_children():
            if child.spelling and child.kind not in (CursorKind.PARM_DECL,
                                                     CursorKind.TEMPLATE_TYPE_PARAMETER):
                self.take_template(child, f"{name}::{child.spelling.split('<')[0]}")

    def take(self, cursor):
        name = cursor.mangled_name
        if not name:
            return
        if cursor.access_specifier == AccessSpecifier.PRIVATE and not cursor.is_virtual_method():
            self.private.add(name)
        else:
            self.for_clients.add(name)
        self.take_calls(cursor)
        is_private = cursor.access_specifier == AccessSpecifier.PRIVATE
        if name.startswith("_Z") and not is_private and not self.has_body(cursor):
            room = cursor.location.file.name[len(self.include) + 1:].split("/")[0]
            self.wanted.setdefault(BESIDE.get(room, "zol"), set()).add(name)

    def take_calls(self, cursor):
        for inner in cursor.walk_preorder():
            if inner.kind.is_expression() and inner.referenced is not None:
                if inner.referenced.kind in FUNCTIONS or inner.referenced.kind == CursorKind.VAR_DECL:
                    self.called.add(inner.referenced.mangled_name)

    @staticmethod
    def has_body(cursor):
        if cursor.kind == CursorKind.VAR_DECL:
            return any(child.kind.is_expression() for child in cursor.get_children())
        if cursor.get_definition() is not None:
            return True
        tokens = [token.spelling for token in cursor.get_tokens()][-2:]
        return tokens in (["=", "delete"], ["=", "0"], ["=", "default"])

    def fault_of(self, symbol):
        """Why the symbol should not be exported; None if it should."""
        if symbol in self.for_clients or symbol in self.called:
            return None
        made = MADE.match(symbol)
        if made is not None:
            subject = symbol[made.end():]
            if subject in self.classes or subject in self.for_clients:
                return None
            symbol = subject
        if symbol in self.private:
            return None if ROWS.fullmatch(symbol) else "private, and nothing inline needs it"
        if without_arguments(symbol) in self.templates:
            return None
        return "not declared"


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("--build", type=pathlib.Path, required=True)
    parser.add_argument("--work", type=pathlib.Path, required=True)
    options = parser.parse_args()

    prefix = options.work / "symbols"
    shutil.rmtree(prefix, ignore_errors=True)
    subprocess.run(["cmake", "--install", options.build, "--prefix", prefix], check=True,
                   stdout=subprocess.DEVNULL)
    declared = Declarations(prefix / "include/zol")
    failures = 0
    for library in ("zol", *BESIDE.values()):
        path = options.build / f"lib{library}.so"
        if not path.exists():
            print(f"No lib{library}: left out")
            continue
        symbols = exported(path)
        wanted = declared.wanted[library]
        faults = [(declared.fault_of(symbol), symbol) for symbol in sorted(symbols)]
        faults = [fault for fault in faults if fault[0] is not None]
        faults += [("declared, and not exported", name) for name in sorted(wanted - symbols)
                   if not MAY_LACK.match(name)]
        print(f"lib{library}: {len(symbols)} exported, {len(wanted)} declared without a body, "
              f"{len(faults)} faults")
        for why, symbol in faults:
            print(f"  {why}: {symbol}")
        failures += len(faults)
    sys.exit(failures != 0)


if __name__ == "__main__":
    main()
