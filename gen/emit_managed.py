"""Prints the classes Zol.Interop of the managed assembly: a proxy for every wrapped class, over the
flat exports.

    managed/Zol_<table file>.cs      the proxies, with their enumerations
    managed/Native_<table file>.cs   the imports
    managed/DynamicTypes.cs          the proxy of an object by the class that it was made as
    managed/elmx_error.cs            the error codes under both their names, read from where they
                                     are declared

What every proxy shares is written by hand in bridge/managed.
"""

import pathlib
import re

import exports
from emit_bridge import HAND_WRITTEN
from printer import Printer, block
from rows import enumerator

BANNER = "// Generated from {table} by gen/emit_managed.py: edit those, not this."
LMX = pathlib.Path(__file__).parent.parent / "lmx"

# How a kind of argument crosses, and what the caller sees.
NATIVE = {"bool": "bool", "int": "int", "uint": "uint", "byte": "uint", "long": "int",
          "ulong": "uint", "enum": "int", "code": "int", "float": "float", "double": "double",
          "text": "byte[]", "chars": "byte[]", "wide": "string", "bytes": "byte[]",
          "identity": "IntPtr", "handle": "HandleRef", "void": "void"}
NATIVE_RESULTS = {"text": "IntPtr", "wide": "IntPtr", "handle": "IntPtr"}
PUBLIC = {**NATIVE, "byte": "byte", "text": "string", "chars": "string", "code": "elmx_error",
          "handle": "IntPtr", "identity": "TypeIdentity"}

# The managed classes have these by hand, over functions that let no exception out.
GUARDED = ("_CSharp_Zol_loadFile", "_CSharp_Zol_writeFile")
# Readers, writers and tables of namespaces are none of a managed client's.
NATIVE_ONLY = ("destructor", "upcast", "marshal", "unmarshal", "namespace map")


def emit(model):
    """All files as a dictionary from path to text."""
    listed = [e for e in exports.all_exports(model) if e.table != HAND_WRITTEN]
    files = {"managed/elmx_error.cs": emit_errors(), "managed/DynamicTypes.cs": emit_types(model)}
    for table in dict.fromkeys(export.table for export in listed):
        mine = [export for export in listed if export.table == table]
        stem = pathlib.Path(table).stem
        files[f"managed/Native_{stem}.cs"] = emit_imports(table, mine)
        files[f"managed/Zol_{stem}.cs"] = emit_proxies(model, table, mine)
    return files


def error_codes():
    """Names and numbers, and what each says; those of the application have a meaning here."""
    declared = (LMX / "errors.h").read_text(encoding="utf-8")
    body = re.search(r"enum elmx_error[^{]*\{(.*?)\};", declared, re.S)[1]
    texts = dict(re.findall(r'\{(elmx_\w+), "([^"]*)"\}',
                            (LMX / "errors.cpp").read_text(encoding="utf-8")))
    return [(name, number, texts[name]) for name, number in re.findall(r"(elmx_\w+) = (\d+)", body)]


def readable(name):
    """elmx_value_too_big becomes ValueTooBig."""
    words = name[len("elmx_"):].split("_")
    return "".join(APPLICATION_WORDS.get(word, word.capitalize()) for word in words)


APPLICATION_WORDS = {"ok": "None", "dtd": "Dtd", "xml": "Xml", "xsi": "Xsi"}
APPLICATION_CODES = {
    "elmx_user_defined_1": ("Unusable", "The archive cannot be used, the document is too large, "
                            "or memory ran out."),
    "elmx_user_defined_2": ("UnknownSuffix", "The name of a file to write ends neither in .zol nor "
                            "in .zolz."),
}


def emit_errors():
    codes = error_codes()
    named = []
    for name, number, text in codes:
        short, summary = APPLICATION_CODES.get(name, (readable(name), text + "."))
        named.append(f"/// <summary>{escaped(summary)}</summary>\n{short} = {number},")
    out = Printer()
    out.emit("""
        $banner$
        namespace Zol.Interop
        {
          /// <summary>What an operation gives: 0, or why it failed.</summary>
          public enum elmx_error
          {
            $codes$
          }
        }

        namespace Zol
        {
          /// <summary>Why a document was refused, or a value.</summary>
          public enum ErrorCode
          {
            $named$
          }
        }
        """, banner=BANNER.format(table="lmx/errors.h and lmx/errors.cpp"),
        codes=block(f"{name} = {number}," for name, number, _ in codes), named="\n".join(named))
    return out.text()


def emit_types(model):
    """A proxy for each class of a family, by its number; the numbers of its elements are others."""
    out = Printer()
    out.emit("""
        $banner$
        using System;

        namespace Zol.Interop
        {
          internal static partial class Native
          {
            internal const uint Model = $number$;
          }

          internal static class DynamicTypes
          {
            internal static Proxy Wrap(IntPtr handle, bool owned, Proxy parent)
            {
              switch (Native.zol_type_of(new System.Runtime.InteropServices.HandleRef(parent, handle)))
              {
                $cases$
                default: throw new InvalidOperationException("An object of no type.");
              }
            }
          }
        }
        """, banner=BANNER.format(table="model/schema"),
        number=f"{exports.model_number(model):#010x}",
        cases=block(f"case {info.number}: return new {info.name}(handle, owned, parent);"
                    for info in model.classes.values() if info.is_poly))
    return out.text()


def emit_imports(table, listed):
    out = Printer()
    out.emit("""
        $banner$
        using System;
        using System.Runtime.InteropServices;

        namespace Zol.Interop
        {
          internal static partial class Native
          {
        """, banner=BANNER.format(table=table))
    for export in listed:
        name = export.name.replace("_CSharp_", "")
        result = NATIVE_RESULTS.get(export.result, NATIVE[export.result])
        parameters = ", ".join(f"{native_type(export, p)} {p.name}" for p in export.parameters)
        out.raw(f'[DllImport(Library, EntryPoint = Prefix + "{name}", CharSet = CharSet.Unicode)]\n'
                f"internal static extern {result} {name}({parameters});", indent=4)
    out.raw("  }\n}")
    return out.text()


def is_foreign(parameter):
    """An object that the managed side cannot make: it passes on what native code gave it."""
    return parameter.kind == "handle" and parameter.name != "self" and parameter.tested is None


def native_type(export, parameter):
    if parameter.name == "error" and parameter.kind == "handle":
        return "out int"
    if parameter.kind == "identity" and export.family == "id_set":
        return "byte[]"
    return "IntPtr" if is_foreign(parameter) else NATIVE[parameter.kind]


def managed(name):
    """The proxy of a C++ class."""
    return re.sub(r"^tc_", "c_", exports.short(name))


def emit_proxies(model, table, listed):
    out = Printer()
    out.emit("""
        $banner$
        using System;
        using System.Runtime.InteropServices;

        namespace Zol.Interop
        {
        """, banner=BANNER.format(table=table))
    owners = list(dict.fromkeys(export.owner for export in listed))
    for owner in owners:
        mine = [export for export in listed if export.owner == owner]
        if owner != owners[0]:
            out.blank()
        if owner is None:
            emit_functions(out, mine)
        else:
            ProxyClass(model, owner, mine).emit(out)
    out.raw("}")
    return out.text()


def emit_functions(out, listed):
    out.raw("/// <summary>The free functions and constants of the runtime.</summary>\n"
            "public static class lmx\n{", indent=2)
    for export in listed:
        out.raw(method(export, static=True), indent=4)
    out.raw("}", indent=2)


def escaped(text):
    return text.replace("&", "&amp;").replace("<", "&lt;")


class ProxyClass:
    def __init__(self, model, name, listed):
        self.info = model.classes.get(name)
        self.name = name
        self.listed = listed

    def emit(self, out):
        info, name = self.info, self.name
        base = info.schema.base if info and info.schema.base else None
        summary = (info.comment if info else "") or f"The class {name}."
        if base and info.is_wrapper:
            summary = f"The element {name}, of type {base}."
        is_poly = info is not None and info.is_poly
        made = f"({name})DynamicTypes.Wrap(handle, owned, parent)" if is_poly else \
            f"new {name}(handle, owned, parent)"
        end = ""
        if info is None:  # what ends every object of the model does not end this one
            deletes = any(export.family == "destructor" for export in self.listed)
            end = f", own => {{ Native.delete_{name}(new HandleRef(null, own)); }}" if deletes \
                else ", own => { }"
        head = Printer()
        head.emit("""
            /// <summary>$summary$</summary>
            public partial class $Class$ : $Base$
            {
              internal $Class$(IntPtr handle, bool owned, Proxy parent)
                : base(handle, owned, parent$end$) { }

              internal static $new$$Class$ Wrap(IntPtr handle, bool owned, Proxy parent)
              {
                return handle == IntPtr.Zero ? null : $made$;
              }
            """, summary=escaped(summary), Class=name, new="new " if base else "",
            Base=base or "Proxy", made=made,
            end=end)
        out.raw(head.text(), indent=2)
        for text in self.enumerations():
            out.blank()
            out.raw(text, indent=4)
        out.blank()
        for export in self.listed:
            if export.family in NATIVE_ONLY or export.name in GUARDED:
                continue
            if export.family == "constructor":
                out.raw(constructor(self.name, export), indent=4)
                continue
            for text in methods(export, hides=self.hides(export)):
                out.raw(text, indent=4)
        out.raw("  }")

    def enumerations(self):
        if self.info is None:
            return
        for row in self.info.rows:
            if row.enum:
                values = [f"{row.name}_unknown"]
                values += [enumerator(row, value) for value in row.enum_values]
                yield enumeration(f"Eenum_{row.name}", enumerate(values))
        if self.info.alternatives:
            rows = [(number, f"chosen_{row.name}")
                    for number, row in enumerate(self.info.alternatives)]
            yield enumeration("elmx_chosen", rows + [(self.info.none, "chosen_none")])

    def hides(self, export):
        """Whether a base class has an operation of this name and these parameters."""
        if self.info is None or self.info.base is None:
            return False
        lineage = self.info.lineage[1:]
        if export.row is not None:
            return any(base.find_row(export.row.name) is not None for base in lineage)
        operation = exported_operation(export)
        if operation == "swap":
            return False  # takes its own class
        if operation in ("clone", "getid", "has_id", "id_get", "id_set"):
            return True
        if operation == "factory":
            return any(base.factory for base in lineage)
        if operation in ("reset", "is_occurs_ok"):
            return any(base.own_lifetime for base in lineage)
        return False


def enumeration(name, numbered):
    return f"public enum {name}\n{{\n{block([f'{n} = {i},' for i, n in numbered], 2)}\n}}"


def exported_operation(export):
    rest = export.name[len(f"_CSharp_{export.owner}_"):] if export.owner else \
        export.name[len("_CSharp_"):]
    return re.sub(r"__SWIG_\d+$", "", rest)


def public_type(export, parameter):
    if parameter.kind == "handle" and parameter.name == "error":
        return "out elmx_error"
    if parameter.kind == "handle" and parameter.tested:
        return managed(parameter.type)
    if parameter.kind == "identity" and export.family == "id_set":
        return "string"
    if parameter.kind == "enum":
        return f"Eenum_{export.row.name}"
    return PUBLIC[parameter.kind]


def argument(export, parameter):
    name = parameter.name
    if name == "self" and parameter.kind == "handle":
        return "Self"
    if parameter.kind == "handle" and name == "error":
        return "out code"
    if parameter.kind == "handle" and parameter.tested:
        return f"Of({uncut(export, name)})"
    if parameter.kind == "identity" and export.family == "has_id":
        return f"{name}.Address"
    if parameter.kind == "wide" and export.family in ("field set", *LIST_GROWTH):
        return f"Grown({name})"
    if parameter.kind in ("text", "chars") or export.family == "id_set":
        return f"Text.Narrow({name})"
    if parameter.kind in ("enum", "code"):
        return f"(int){name}"
    if parameter.kind == "uint" and name == "size" and has_bytes(export):
        return "Text.Size(" + next(p.name for p in export.parameters if p.kind == "bytes") + ")"
    if name == "index" and export.row is not None:
        return f"{'UpTo' if export.family == 'list insert' else 'Below'}" \
            f"(index, size_{export.row.name}())"
    return name


LIST_GROWTH = ("list append", "list insert")


def uncut(export, name):
    """The argument of an assignment, which must not lose the rows of a derived type."""
    row = export.row
    if export.family != "class-valued assign" or not row.type_class.is_poly:
        return name
    kept = row.type_class.base if row.type_class.is_wrapper else row.type_class
    numbers = [info.number for info in row.owner.model.classes.values()
               if info is kept or info.is_wrapper and info.base is kept]
    how = f"adopt_{row.name} keeps them" if row.adopt else f"only a {kept.name} can stand here"
    return f'Uncut({name}, "{how}", {", ".join(map(str, numbers))})'


def has_bytes(export):
    return any(p.kind == "bytes" for p in export.parameters)


def parameters(export):
    """What the caller passes: neither the object nor the size of an array."""
    return ", ".join(f"{public_type(export, p)} {p.name}" for p in export.parameters
                     if p.name != "self" and not (p.name == "size" and has_bytes(export)))


def call(export):
    name = export.name.replace("_CSharp_", "")
    text = f"Native.{name}({', '.join(argument(export, p) for p in export.parameters)})"
    if any(p.message for p in export.parameters) and export.result != "void":
        return f"Pending.Checked({text})"
    return text


def constructor(name, export):
    if any(p.name == "error" and p.kind == "handle" for p in export.parameters):
        plain = ", ".join(p.name for p in export.parameters if p.name not in ("error", "size"))
        return f"""\
public {name}({parameters(export)}) : this(Make({plain}, out error), true, null) {{ }}
private static IntPtr Make({parameters(export)})
{{
  int code;
  IntPtr handle = {call(export)};
  error = (elmx_error)code;
  return handle;
}}"""
    head = f"public {name}({parameters(export)})"
    chain = f": this({call(export)}, true, null) {{ }}"
    return f"{head} {chain}" if len(head + chain) <= 95 else f"{head}\n  {chain}"


def methods(export, hides=False):
    """What a proxy has for an export: the method itself, and what stands beside it."""
    row = export.row
    number = row_number(row) if row is not None else None
    words = "public " + ("new " if hides else "")
    if row is not None and row.kind == "any" and export.family == "field get":
        yield f"""\
{words}string get_{row.name}(uint index, out string full_name, out string namespace_uri)
{{
  IntPtr name, uri;
  IntPtr text = Native.zol_any_text(Self, Below(index, size_{row.name}()), out name, out uri);
  full_name = Text.TakeNarrow(name);
  namespace_uri = Text.TakeNarrow(uri);
  return Text.TakeNarrow(text);
}}"""
        return
    may_be_absent = export.family == "field get" and row.kind != "any" and not row.is_simple \
        and not row.is_list and (row.has_isset or row.kind == "alt")
    if may_be_absent:
        asked = f"getchosen() == elmx_chosen.chosen_{row.name}" if row.kind == "alt" \
            else f"isset_{row.name}()"
        yield f"""\
/// <summary>Null if there is none.</summary>
{words}{row.type} get_{row.name}()
{{
  return {asked} ? make_{row.name}() : null;
}}
/// <summary>{"Chooses it" if row.kind == "alt" else "Makes it"} if there is none.</summary>"""
        yield method(export, hides=hides, operation=f"make_{row.name}")
        return
    yield method(export, hides=hides)
    if export.family == "class-valued assign" and row.adopt:
        yield f"""\
/// <summary>Holds a copy of the value as the type that it is of. 7 if that cannot be.</summary>
{words}elmx_error adopt_{row.name}({row.type} value)
{{
  if (value == null) throw new ArgumentNullException("value");
  return (elmx_error)Native.zol_assign_member(Self, {number}, Of(value));
}}"""
    if export.family == "list size" and row.type == "string":
        yield f"""\
/// <summary>All at once.</summary>
{words}string[] all_{row.name}() {{ return Text.TakeAll(Native.zol_texts(Self, {number})); }}"""
    if export.family == "list size" and row.type == "dateTime":
        yield f"""\
/// <summary>All at once.</summary>
{words}ZolDateTime[] all_{row.name}()
{{
  var moments = new Moment[size_{row.name}()];
  Native.zol_moments(Self, {number}, moments, (uint)moments.Length);
  return Array.ConvertAll(moments, moment => new ZolDateTime(moment));
}}"""


def row_number(row):
    """As zol_row gives it."""
    return row.owner.number * 256 + row.index


def method(export, static=False, hides=False, operation=None):
    operation = operation or exported_operation(export)
    static = static or not any(p.name == "self" for p in export.parameters)
    words = "public " + ("new " if hides else "") + ("static " if static else "")
    if export.family == "constants":
        name = operation[:-len("_get")]
        return f"public static int {name} {{ get {{ return {call(export)}; }} }}"
    result, value = PUBLIC[export.result], call(export)
    parent = "null" if export.owned or static else "this"
    if export.gives:
        result = managed(export.gives)
        value = f"{result}.Wrap({value}, {str(export.owned).lower()}, {parent})"
    elif export.result in ("text", "wide"):
        value = f"Text.Take{'Narrow' if export.result == 'text' else ''}({value})"
    elif export.result == "enum":
        result = f"Eenum_{export.row.name}"
        value = f"({result}){value}"
    elif export.family == "choice":
        result, value = "elmx_chosen", f"(elmx_chosen){value}"
    elif export.result in ("code", "byte"):
        value = f"({result}){value}"
    elif export.result == "identity":
        value = f"new TypeIdentity({value})"
    if export.family in LIST_GROWTH:
        value = f"Grown({value})"
    elif operation == "loadString":
        value = f"Measured({value})"
    lines = []
    if export.family == "list back":
        lines.append(f"Below(0, size_{export.row.name}());")
    if export.name == "_CSharp_stringncompare":
        lines.append("Text.Position(a, pos);")
    if export.result == "void":
        lines.append(f"{value};")
        if any(p.message for p in export.parameters):
            lines.append("Pending.Check();")
    else:
        lines.append(f"return {value};")
    head = f"{words}{result} {operation}({parameters(export)})"
    short = f"{head} {{ {' '.join(lines)} }}"
    return short if len(short) <= 96 else f"{head}\n{{\n{block(lines, 2)}\n}}"
