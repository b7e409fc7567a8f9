"""Prints the classes of the namespace Zol, which a .NET program works with.

    dotnet/<Table>.cs     the classes of a table file, and its enumerations
    dotnet/Classes.cs     the class of an object by the number of its type

A property is one line over a function of ZolObject, which finds the row by its number. What they
share is written by hand in bridge/dotnet; what they are called stands in dotnet_names.py.
"""

import pathlib

from dotnet_names import class_name, enum_name, property_name, value_names
from emit_managed import escaped, row_number
from printer import Printer, block
from schema import SchemaError

BANNER = "// Generated from model/schema{table} by gen/emit_dotnet.py: edit those, not this."

# Schema type -> (C# type, the accessors of ZolObject)
VALUES = {"string": ("string", "Text"), "double": ("double", "Number"), "int": ("int", "Integer"),
          "uint": ("int", "Integer"), "byte": ("int", "Integer"), "bool": ("bool", "Truth"),
          "base64": ("ReadOnlyMemory<byte>", "Bytes"), "dateTime": ("ZolDateTime", "Moment")}
LISTS = {"string": ("string", "TextList"), "dateTime": ("ZolDateTime", "MomentList"),
         "any": ("ForeignElement", "ForeignList")}
# What a debugger shows of an object, if it has them.
TELLING = ("Name", "ColorName", "ColorSetName", "PaletteName", "Manufacturer", "Model", "Wavelength")


def emit(model):
    """All files as a dictionary from path to text."""
    shown = shown_classes(model)
    check_names(model, shown)
    files = {"dotnet/Classes.cs": emit_classes(model, shown)}
    for table in model.schema.files:
        stem = pathlib.Path(table).stem.capitalize()
        files[f"dotnet/{stem}.cs"] = emit_table(
            model, table, [info for info in shown if info.where.file == table])
    return files


def shown_classes(model):
    """All but elements, which are of the classes of their types, holders, and marks."""
    marks = {row.type for info in model.classes.values() for row in info.rows if row.kind == "mark"}
    return [info for info in model.classes.values()
            if not info.is_wrapper and not info.is_substitution and info.name not in marks]


def check_names(model, shown):
    places = {}
    for place, name in [(info.where, class_name(info)) for info in shown] + \
            [(enum.where, enum_name(enum.name)) for enum in model.enums.values()]:
        if name in places:
            raise SchemaError(place, f"C# has {name} twice: also of {places[name]}")
        places[name] = place
    for info in shown:
        names = [property_name(row) for owner in info.lineage for row in owner.rows
                 if row.kind != "mark"]
        for name in names:
            if names.count(name) > 1 or name == class_name(info):
                raise SchemaError(info.where, f"C# has {class_name(info)}.{name} twice")
    for enum in model.enums.values():
        names = ["None"] + value_names(enum.values)
        if len(set(names)) != len(names):
            raise SchemaError(enum.where, f"C# has a value of {enum.name} twice")


def content_class(info):
    while info.is_wrapper:
        info = info.base
    return info


def stands_itself(model, info):
    """Whether a document can hold an object of the class and not of a derived one."""
    if not info.is_poly:
        return True
    for owner in model.classes.values():
        for row in owner.rows:
            held = row.type_class
            if held is None or held.is_substitution:
                continue
            if content_class(held) is info and row.xsi_type != "required":
                return True
            if row.xsi_type and info.name in content_class(held).factory and \
                    not (content_class(held) is info and row.xsi_type == "required"):
                return True
    return False


def emit_classes(model, shown):
    cases = []
    for info in model.classes.values():
        shape = content_class(info)
        if shape in shown and stands_itself(model, shape):
            cases.append(f"{info.number} => new {class_name(shape)}(link),")
    out = Printer()
    out.emit("""
        $banner$
        #nullable enable
        using System;

        namespace Zol;

        internal static class Classes
        {
            internal static ZolObject Wrap(uint type, in Link link) => type switch
            {
                $cases$
                _ => throw new InvalidOperationException("An object of no class."),
            };
        }
        """, banner=BANNER.format(table=""), cases=block(cases))
    return out.text()


def emit_table(model, table, shown):
    out = Printer()
    out.emit("""
        $banner$
        #nullable enable
        using System;

        namespace Zol;
        """, banner=BANNER.format(table=f"/{table}"))
    for enum in model.enums.values():
        if enum.where.file == table:
            out.blank()
            emit_enumeration(out, model, enum)
    for info in shown:
        out.blank()
        emit_class(out, model, info)
    return out.text()


def emit_enumeration(out, model, enum):
    values = [f"/// <summary>{escaped(note)} {escaped(value)} in documents.</summary>\n{name} = {i},"
              for i, (name, value, note)
              in enumerate(zip(value_names(enum.values), enum.values, enum.notes), 1)]
    out.emit("""
        /// <summary>$summary$</summary>
        public enum $name$
        {
            /// <summary>Not set, or a text that the format does not list.</summary>
            None = 0,
            $values$
        }
        """, summary=escaped(enum.comment), name=enum_name(enum.name), values="\n".join(values))


def emit_class(out, model, info):
    name, base = class_name(info), info.base
    stands, has_heirs = stands_itself(model, info), bool(heirs(model, info))
    kind = "partial class" if stands and has_heirs else \
        "sealed partial class" if stands else "abstract partial class"
    members = []
    if stands:
        members.append(f"""\
/// <summary>An object of its own, with nothing in it.</summary>
public {name}() : base({info.number}) {{ }}""")
    members.append(f"{'internal' if stands else 'private protected'} {name}(in Link link) "
                   ": base(link) { }")
    if has_heirs:
        members.append(f"private protected {name}(uint type) : base(type) {{ }}")
    if info.alternatives:
        members.append(chosen_property(info))
    for row in info.rows:
        members += properties(info, row)
    if telling := telling_rows(info):
        shown = ", ".join(f'("{p}", {p})' for p in telling)
        members.append('/// <inheritdoc/>\n'
                       "public override string ToString() => IsRemoved\n"
                       f'    ? Removed("{name}") : Describe("{name}", {shown});')
    out.emit("""
        $comment$
        public $kind$ $Class$ : $Base$
        {
            $members$
        }
        """, comment=summary(info.comment), kind=kind,
        Class=name, Base=class_name(base) if base else "ZolObject",
        members="\n\n".join(m.strip("\n") for m in members))
    if info.alternatives:
        out.blank()
        out.emit("""
            /// <summary>What a <see cref="$Class$"/> can hold.</summary>
            public enum $Class$Kind
            {
                /// <summary>Nothing.</summary>
                None = 0,
                $values$
            }
            """, Class=name, values="\n".join(
                f'/// <summary><see cref="{name}.{property_name(row)}"/>: {escaped(row.note)}</summary>\n'
                f"{property_name(row)} = {i}," for i, row in enumerate(info.alternatives, 1)))


def heirs(model, info):
    return [c for c in model.classes.values() if c.base is info and not c.is_wrapper]


def telling_rows(info):
    rows = [row for owner in reversed(info.lineage) for row in owner.rows
            if row.is_simple and not row.is_list and row.type not in ("base64", "dateTime")]
    if info.alternatives:
        return ["Kind"]
    names = [property_name(row) for row in rows if row.name in TELLING]
    numbers = [property_name(row) for row in rows
               if row.required and (row.type == "double" or row.kind == "content")]
    return list(dict.fromkeys(names + numbers))[:5]


def summary(text, tag="summary"):
    return f"/// <{tag}>{escaped(text)}</{tag}>"


def number(bound):
    return f"{float(bound.number):.15g}"


def facts(row):
    """Unit, bounds and the like, for people."""
    words = []
    if row.unit:
        words.append(f"In {row.unit}")
    bounds = []
    if row.lower:
        bounds.append(f"{'more than' if row.lower.strict else 'at least'} {number(row.lower)}")
    if row.upper:
        bounds.append(f"{'less than' if row.upper.strict else 'at most'} {number(row.upper)}")
    words.append(" and ".join(bounds))
    if row.length:
        words.append(f"exactly {row.length} character{'s' if row.length > 1 else ''}")
    if row.default:
        words.append(f"{row.default} unless it is set" if row.required
                     else f"{row.default} is meant where there is none")
    if row.collapse:
        words.append("white space is collapsed")
    if row.is_list:
        words.append("at least one in a document that can be saved" if row.required else "")
    elif row.kind == "alt":
        words.append("null if it is not what is held")
    elif not row.required:
        words.append("null if there is none")
    elif row.type_class is not None and row.type_class.nillable:
        words.append("null if it is marked as nil, which setting null does")
    words = [word for word in words if word]
    if not words:
        return ""
    text = "; ".join(words)
    return text[0].upper() + text[1:] + "."


def documented(row, code, refuses=False):
    lines = [summary(row.note)]
    if text := facts(row):
        lines.append(summary(text, "value"))
    if refuses:
        lines.append('/// <exception cref="ZolException">The value cannot stand there.</exception>')
    return "\n".join(lines + [code])


def chosen_property(info):
    name = class_name(info)
    first = row_number(info.alternatives[0])
    return (f"/// <summary>What it holds.</summary>\n"
            f"public {name}Kind Kind => ({name}Kind)GetChosen({first});\n\n"
            "private protected override bool IsChoice => true;")


def properties(info, row):
    """What a class has for a row."""
    name, at = property_name(row), row_number(row)
    if row.kind == "mark":
        return []
    if row.is_list or row.kind == "any":
        if row.is_simple or row.kind == "any":
            item, made = LISTS[row.type]
            return [documented(row, f"public ZolValueList<{item}> {name} => new {made}(this, {at});")]
        item = family_of(row)
        listed = [documented(row, f"public ZolList<{item}> {name} => new(this, {at});")]
        # What reads a spectrum at once stands in Spectrum.cs.
        return listed + [f"private const uint PointsRow = {at};"] if name == "Points" else listed
    if row.is_simple:
        return simple_properties(row, name, at)
    return [child_property(row, name, at)]


def family_of(row):
    held = row.type_class
    return class_name(held.root_type if held.is_substitution else held)


def simple_properties(row, name, at):
    kind, accessor = VALUES[row.type]
    is_optional = not row.required or row.kind == "alt"
    mark = "?" if is_optional else ""
    get = f"Get{'Optional' if is_optional else ''}{accessor}({at})"
    put = f"Set{accessor}({at}, value)"
    if row.enum:
        kind = enum_name(row.enum)
        get = f"({kind}{mark})Get{'Optional' if is_optional else ''}Integer({at})"
        put = f"SetInteger({at}, (int{mark})value)"
    refuses = not (row.type in ("bool", "base64") or
                   row.type == "double" and not row.lower and not row.upper)
    if row.type != "dateTime":
        return [documented(row, f"public {kind}{mark} {name} {{ get => {get}; set => {put}; }}",
                           refuses)]
    point = f"{get}?.ToDateTimeOffset()" if is_optional else f"{get}.ToDateTimeOffset()"
    return [documented(row, f"public DateTimeOffset{mark} {name}\n"
                       f"{{\n    get => {point};\n    set => {put};\n}}", refuses),
            f"/// <summary><see cref=\"{name}\"/> as a document writes it.</summary>\n"
            f"public ZolDateTime{mark} {name}Exact {{ get => {get}; set => {put}; }}"]


def child_property(row, name, at):
    held = row.type_class
    kind = family_of(row)
    if row.kind != "alt" and row.required and not held.nillable and not held.is_substitution:
        return documented(row, f"public {kind} {name}\n{{\n"
                          f"    get => GetRequired<{kind}>({at}, {held.number});\n"
                          f"    set => SetChild({at}, value ?? throw new ArgumentNullException("
                          "nameof(value)));\n}")
    is_nilled = held.nillable and row.required
    get, put = ("GetNillable", "SetNillable") if is_nilled else ("GetChild", "SetChild")
    more = f", {held.number}" if is_nilled else ""
    code = (f"public {kind}? {name} {{ get => {get}<{kind}>({at}); "
            f"set => {put}({at}, value{more}); }}")
    if len(code) > 110:
        code = (f"public {kind}? {name}\n{{\n    get => {get}<{kind}>({at});\n"
                f"    set => {put}({at}, value{more});\n}}")
    return documented(row, code)
