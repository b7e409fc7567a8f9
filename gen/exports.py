"""Settles which functions the flat interface has, and what each of them takes, calls and gives.

The functions follow from the public face of the classes: a class, a row or a declaration in
bridge/values.api says by its shape what is wrapped. The emitters of the exports, of the managed
classes and of the smoke test all print this one list.
"""

import dataclasses
import pathlib
import re
import zlib
from typing import List, Optional

from schema import SchemaError, Where

# What crosses the boundary: the C type of a parameter, that of a result, and the bytes that a
# parameter takes on a 32-bit stack.
CROSSING = {
    "void": (None, "void", 0),
    "bool": ("unsigned", "unsigned", 4),
    "int": ("int", "int", 4),
    "uint": ("unsigned", "unsigned", 4),
    "byte": ("unsigned", "unsigned", 4),
    "long": ("int", "int", 4),
    "ulong": ("unsigned", "unsigned", 4),
    "enum": ("int", "int", 4),
    "code": ("int", "int", 4),
    "float": ("float", "float", 4),
    "double": ("double", "double", 8),
    "text": ("const char*", "char*", 4),  # narrow; a null argument raises
    "chars": ("const char*", None, 4),  # narrow; a null argument is empty
    "wide": ("const char16_t*", "char16_t*", 4),
    "bytes": ("const unsigned char*", None, 4),
    "identity": ("const char*", "const char*", 4),  # the address of a static name
    "handle": ("void*", "void*", 4),
    "callback": ("ExceptionCallback", None, 4),
    "argument-callback": ("ArgumentCallback", None, 4),
    "string-callback": ("StringCallback", None, 4),
}

# The simple types of the schema, and those whose values are objects.
ROW_CROSSING = {"string": "wide", "double": "double", "int": "int", "uint": "uint", "byte": "byte",
                "bool": "bool"}
ROW_VALUES = {"dateTime": "lmx::tc_datetime", "base64": "lmx::tc_binary"}

# Elements whose constructors from a file and from a buffer are wrapped as well.
PARSING_CONSTRUCTORS = ("ColorSpaceCMYKPlusN",)

FAMILIES = (
    "constructor", "destructor", "upcast", "field get", "field set", "class-valued assign",
    "presence test", "presence clear", "enumeration get", "enumeration set", "nil test", "nil set",
    "list append", "list insert", "list delete", "list clear", "list size", "list back", "swap",
    "occurrence check", "reset", "marshal", "unmarshal", "namespace map", "clone", "getid",
    "has_id", "id_get", "id_set", "choice", "factory", "document", "result", "value class members",
    "free functions", "constants", "registration")


@dataclasses.dataclass
class Parameter:
    kind: str  # a key of CROSSING
    name: str
    type: Optional[str] = None  # of a handle: the qualified C++ class
    tested: Optional[str] = None  # of a handle to a reference: the message for null

    @property
    def message(self):
        return "null string" if self.kind == "text" else self.tested


@dataclasses.dataclass
class Export:
    family: str
    name: str
    table: str  # the file whose declaration it comes from
    owner: Optional[str]  # the wrapped class
    result: str  # a key of CROSSING
    parameters: List[Parameter]
    body: List[str]  # statements of the call, behind the null tests
    row: Optional[object] = None
    gives: Optional[str] = None  # the class of a handle that is given
    owned: bool = False  # whether the client has to delete what is given

    @property
    def bytes(self):
        return sum(CROSSING[p.kind][2] for p in self.parameters)

    @property
    def decorated(self):
        return f"{self.name}@{self.bytes}"


def all_exports(model):
    """Every function, class by class, then what belongs to none."""
    exports, api = [], model.api or Api()
    for info in model.classes.values():
        exports += ModelClass(info).exports()
    for declared in api.classes:
        exports += declared_class(declared)
    exports += [free_function(f) for f in api.functions]
    exports += [constant(name, value, where) for name, value, where in api.constants]
    exports += registrations()
    seen = set()
    for export in exports:
        if export.name in seen:
            raise SchemaError(export.table, f"{export.name} would be exported twice")
        seen.add(export.name)
    return exports


def model_number(model):
    """Another one whenever a function, or the number of a class, a row or a value is."""
    lines = [export.decorated for export in all_exports(model)]
    for info in model.classes.values():
        lines.append(f"{info.number} {info.name} {info.schema.base}")
        lines += [f"{row.index} {row.kind} {row.name} {row.type} {row.low} {row.is_list} {row.enum}"
                  for row in info.rows]
    lines += [f"{enum.name} {' '.join(enum.values)}" for enum in model.enums.values()]
    return zlib.crc32("\n".join(lines).encode())


def qualified(name):
    return name if "::" in name else f"zol_v2::{name}"


class ModelClass:
    """The functions of one class of the model."""

    def __init__(self, info):
        self.info = info
        self.name = info.name
        self.self = Parameter("handle", "self", qualified(info.name))
        self.list = []

    def exports(self):
        info = self.info
        self.lifetime()
        if info.own_lifetime:
            self.common()
        if info.shape == "poly":
            self.identity()
        if info.document_bridged:
            self.document_element()
        if info.has("root"):
            self.document()
        if info.nillable:
            self.nil()
        if info.alternatives:
            self.add("choice", "getchosen", "int", [], "return {self}.getchosen();")
        for row in info.rows:
            self.row(row)
        return self.list

    def add(self, family, operation, result, parameters, body, row=None, static=False, **more):
        lines = [body] if isinstance(body, str) else body
        me = f"as<{self.name}>(self)"
        export = Export(family, f"_CSharp_{self.name}_{operation}", self.info.where.file, self.name,
                        result, list(parameters) if static else [self.self, *parameters],
                        [line.replace("{self}", me) for line in lines], row, **more)
        self.list.append(export)
        return export

    def reference(self, name, type_name, const=True):
        spelled = f"{qualified(type_name)} {'const ' if const else ''}&"
        return Parameter("handle", name, qualified(type_name), f"{spelled} type is null")

    def lifetime(self):
        info = self.info
        self.constructor(0, [], "")
        self.constructor(1, [self.reference("other", self.name)], f"as<{self.name}>(other)")
        if info.name in PARSING_CONSTRUCTORS:
            error = Parameter("handle", "error", "lmx::elmx_error")
            self.constructor(2, [Parameter("chars", "file"), error],
                             "or_empty(file), CodeSlot(error)")
            self.constructor(3, [Parameter("bytes", "buffer"), Parameter("uint", "size"), error],
                             "reinterpret_cast<const char*>(buffer), size_of(buffer, size), "
                             "CodeSlot(error)")
        self.list.append(destructor(self.name, info.where.file, self.self))
        if info.base is not None:
            base = info.base.name
            self.list.append(Export("upcast", f"_CSharp_{self.name}Upcast", info.where.file,
                                    self.name, "handle", [self.self],
                                    [f"return static_cast<{base}*>(&as<{self.name}>(self));"],
                                    gives=base))

    def constructor(self, number, parameters, arguments):
        self.list.append(Export(
            "constructor", f"_CSharp_new_{self.name}__SWIG_{number}", self.info.where.file,
            self.name, "handle", parameters,
            [f"return new {self.name}({arguments});" if arguments else f"return new {self.name};"],
            gives=self.name, owned=True))

    def common(self):
        self.add("swap", "swap", "void", [self.reference("other", self.name, const=False)],
                 f"{{self}}.swap(as<{self.name}>(other));")
        self.add("reset", "reset", "void", [], "{self}.reset();")
        self.add("occurrence check", "is_occurs_ok", "bool", [], "return {self}.is_occurs_ok();")

    def identity(self):
        self.add("clone", "clone", "handle", [], "return {self}.clone();", gives=self.name,
                 owned=True)
        self.add("getid", "getid", "identity", [], "return {self}.getid();")
        self.add("has_id", "has_id", "bool", [Parameter("identity", "identity")],
                 "return {self}.has_id(identity);")
        self.add("id_get", "id_get", "identity", [], f"return {self.name}::id;", static=True)
        self.add("id_set", "id_set", "void", [Parameter("identity", "identity")],
                 f"{self.name}::id = kept_for_ever(identity);", static=True)
        if self.info.factory:
            self.add("factory", "factory", "handle",
                     [Parameter("int", "ns_id"), Parameter("text", "type_name")],
                     f"return {self.name}::factory(ns_id, type_name);", static=True,
                     gives=self.name, owned=True)

    def document_element(self):
        writer = Parameter("handle", "writer", "lmx::c_xml_writer")
        reader = Parameter("handle", "reader", "lmx::c_xml_reader")
        name = Parameter("handle", "name", "std::string")
        self.add("marshal", "marshal__SWIG_0", "code", [writer],
                 f"return {{self}}.marshal(as<lmx::c_xml_writer>(writer), "
                 f"{self.name}::k_element_name);")
        self.add("unmarshal", "unmarshal__SWIG_0", "code", [reader],
                 "return {self}.unmarshal(as<lmx::c_xml_reader>(reader));")
        self.add("unmarshal", "unmarshal__SWIG_1", "code", [reader, name],
                 "return {self}.unmarshal(as<lmx::c_xml_reader>(reader), as<std::string>(name));")
        self.add("namespace map", "ns_map", "handle", [],
                 f"return handle_of(*{self.name}::ns_map());", static=True)

    def document(self):
        path, text = Parameter("wide", "path"), Parameter("wide", "text")
        self.add("document", "loadFile", "code", [path], "return {self}.loadFile(wide(path));")
        self.add("document", "loadString", "code", [text], "return {self}.loadString(wide(text));")
        self.add("document", "writeFile", "code", [path], "return {self}.writeFile(wide(path));")
        self.add("document", "writeString", "handle", [],
                 "return new XMLDocumentResult({self}.writeString());",
                 gives="XMLDocumentResult", owned=True)

    def nil(self):
        self.add("nil set", f"setnil_{self.name}", "void", [], f"{{self}}.setnil_{self.name}();")
        self.add("nil test", f"isnil_{self.name}", "bool", [],
                 f"return {{self}}.isnil_{self.name}();")

    def row(self, row):
        if row.kind == "mark":
            return
        if row.kind == "any":
            self.any_row(row)
        elif not row.is_simple:
            self.children(row) if row.is_list else self.child(row)
        elif row.is_list:
            self.values(row)
        else:
            self.value(row)
        if row.kind != "any" and row.has_isset:
            self.add("presence test", f"isset_{row.name}", "bool", [],
                     f"return {{self}}.isset_{row.name}();", row)
            self.add("presence clear", f"unset_{row.name}", "void", [],
                     f"{{self}}.unset_{row.name}();", row)

    def value_parameter(self, row):
        """How a value of a simple type comes in, and the C++ that the setter is given."""
        if row.type in ROW_VALUES:
            name = ROW_VALUES[row.type]
            return self.reference("value", name), f"as<{name}>(value)"
        kind = ROW_CROSSING[row.type]
        spelled = {"wide": "wide(value)", "bool": "value != 0",
                   "byte": "static_cast<unsigned char>(value)"}.get(kind, "value")
        return Parameter(kind, "value"), spelled

    def getter(self, row, parameters, call):
        if row.type in ROW_VALUES:
            self.add("field get", f"get_{row.name}", "handle", parameters,
                     f"return handle_of({call});", row, gives=ROW_VALUES[row.type])
            return
        kind = ROW_CROSSING[row.type]
        self.add("field get", f"get_{row.name}", kind, parameters,
                 f"return {f'returned({call})' if kind == 'wide' else call};", row)

    def value(self, row):
        name = row.name
        parameter, spelled = self.value_parameter(row)
        self.getter(row, [], f"{{self}}.get_{name}()")
        self.add("field set", f"set_{name}", "code", [parameter],
                 f"return {{self}}.set_{name}({spelled});", row)
        if row.enum:
            self.add("enumeration get", f"getenum_{name}", "enum", [],
                     f"return {{self}}.getenum_{name}();", row)
            self.add("enumeration set", f"setenum_{name}", "bool", [Parameter("enum", "value")],
                     f"return {{self}}.setenum_{name}"
                     f"(static_cast<{self.name}::Eenum_{name}>(value));", row)

    def values(self, row):
        name, index = row.name, Parameter("uint", "index")
        parameter, spelled = self.value_parameter(row)
        self.getter(row, [index], f"{{self}}.get_{name}(index)")
        self.add("field set", f"set_{name}", "code", [index, parameter],
                 f"return {{self}}.set_{name}(index, {spelled});", row)
        self.add("list append", f"append_{name}", "code", [parameter],
                 f"return {{self}}.append_{name}({spelled});", row)
        self.add("list insert", f"insert_{name}", "code", [index, parameter],
                 f"return {{self}}.insert_{name}(index, {spelled});", row)
        self.list_rest(row)

    def list_rest(self, row):
        name, index = row.name, Parameter("uint", "index")
        self.add("list delete", f"delete_{name}", "void", [index],
                 f"{{self}}.delete_{name}(index);", row)
        self.add("list clear", f"clear_{name}", "void", [], f"{{self}}.clear_{name}();", row)
        self.add("list size", f"size_{name}", "uint", [], f"return {{self}}.size_{name}();", row)

    def any_row(self, row):
        name, index = row.name, Parameter("uint", "index")
        outs = [Parameter("text", n) for n in ("full_name", "namespace_uri", "text")]
        self.add("field get", f"get_{name}", "void", [index, *outs],
                 ["std::string out[] = {full_name, namespace_uri, text};",
                  f"{{self}}.get_{name}(index, &out[0], &out[1], &out[2]);"], row)
        text = Parameter("text", "text")
        self.add("list append", f"append_{name}", "code", [text],
                 f"return {{self}}.append_{name}(text);", row)
        self.add("list insert", f"insert_{name}", "code", [index, text],
                 f"return {{self}}.insert_{name}(index, text);", row)
        self.list_rest(row)

    def child(self, row):
        name = row.name
        self.add("field get", f"get_{name}__SWIG_0", "handle", [],
                 f"return &{{self}}.get_{name}();", row, gives=row.type)
        suffix = "__SWIG_0" if row.adopt else ""
        self.add("class-valued assign", f"assign_{name}{suffix}", "code",
                 [self.reference("value", row.type)],
                 [f"{{self}}.assign_{name}(as<{row.type}>(value));", "return 0;"], row)

    def children(self, row):
        name, index = row.name, Parameter("uint", "index")
        self.add("field get", f"get_{name}__SWIG_0", "handle", [index],
                 f"return &{{self}}.get_{name}(index);", row, gives=row.type)
        self.add("class-valued assign", f"assign_{name}", "code",
                 [index, self.reference("value", row.type)],
                 [f"{{self}}.assign_{name}(index, as<{row.type}>(value));", "return 0;"], row)
        self.add("list append", f"append_{name}", "handle", [],
                 [f"{{self}}.append_{name}();", f"return &{{self}}.back_{name}();"], row,
                 gives=row.type)
        self.add("list insert", f"insert_{name}", "handle", [index],
                 [f"const unsigned at = std::min(index, {{self}}.size_{name}());",
                  f"{{self}}.insert_{name}(at);", f"return &{{self}}.get_{name}(at);"], row,
                 gives=row.type)
        self.add("list back", f"back_{name}", "handle", [], f"return &{{self}}.back_{name}();",
                 row, gives=row.type)
        self.list_rest(row)


def destructor(name, table, self):
    return Export("destructor", f"_CSharp_delete_{short(name)}", table, short(name), "void", [self],
                  [f"delete static_cast<{name}*>(self);"])


def short(name):
    return name.rpartition("::")[2]


def registrations():
    kinds = [("Exception", "callback",
              ("application", "arithmetic", "divide_by_zero", "index_out_of_range", "invalid_cast",
               "invalid_operation", "io", "null_reference", "out_of_memory", "overflow", "system")),
             ("ExceptionArgument", "argument-callback",
              ("argument", "argument_null", "argument_out_of_range")),
             ("String", "string-callback", ("text",))]
    result = []
    for what, kind, names in kinds:
        plural = "s" if len(names) > 1 else ""
        result.append(Export("registration", f"_SWIGRegister{what}Callback{plural}_ZolModule",
                             "callbacks", None, "void", [Parameter(kind, n) for n in names], []))
    return result


# Classes and functions that stand in bridge/values.api.

@dataclasses.dataclass
class Declaration:
    """One line of the table: `[static] result name#overload(parameters) [= call]`."""
    result: str
    name: str
    suffix: str
    parameters: List[Parameter]
    call: Optional[str]
    static: bool
    where: Where


@dataclasses.dataclass
class DeclaredClass:
    name: str
    constructors: List[Declaration]
    members: List[Declaration]
    undeletable: bool
    family: str
    where: Where


@dataclasses.dataclass
class Api:
    classes: List[DeclaredClass] = dataclasses.field(default_factory=list)
    functions: List[Declaration] = dataclasses.field(default_factory=list)
    constants: list = dataclasses.field(default_factory=list)


_LINE = re.compile(r"(?P<static>static )?(?:(?P<result>\w+) )?(?P<name>\w+)(?:#(?P<overload>\d+))?"
                   r"\((?P<parameters>[^)]*)\)(?: = (?P<call>.*))?$")


def read_helpers(path):
    """The functions of bridge/zol_helpers.h by their decorated names, without the underscore."""
    names = []
    for name, parameters in re.findall(r"^ZOL_HELPER [^;]*?ZOL_CALL (\w+)\(([^)]*)\);",
                                       pathlib.Path(path).read_text(encoding="ascii"), re.M):
        listed = [p for p in parameters.split(",") if p.strip() != "void"]
        wide = [p for p in listed if "*" not in p and re.search(r"\b(double|long long)\b", p)]
        names.append(f"{name}@{4 * (len(listed) + len(wide))}")
    return names


def read_api(path):
    """The declarations of bridge/values.api, whose head tells how to read it."""
    api, current, path = Api(), None, pathlib.Path(path)
    for number, line in enumerate(path.read_text(encoding="utf-8").splitlines(), 1):
        where = Where(path.name, number)
        text = line.split("//")[0].rstrip()
        if not text:
            continue
        words = text.split()
        if words[0] == "class" and len(words) in (2, 3):
            family = "result" if words[1].startswith("zol_v2") else "value class members"
            current = DeclaredClass(words[1], [], [], words[2:] == ["undeletable"], family, where)
            api.classes.append(current)
        elif words[0] == "constant" and len(words) == 3:
            api.constants.append((words[1], words[2], where))
        else:
            declaration = _declaration(text.strip(), where)
            if not line[0].isspace():
                api.functions.append(declaration)
            elif current is None:
                raise SchemaError(where, "a member before the first class")
            elif declaration.name == "new":
                current.constructors.append(declaration)
            else:
                current.members.append(declaration)
    return api


def _declaration(text, where):
    match = _LINE.match(text)
    if match is None:
        raise SchemaError(where, f"cannot read '{text}'")
    parameters = []
    for part in filter(None, (p.strip() for p in match["parameters"].split(","))):
        kind, _, name = part.rpartition(" ")
        if kind.endswith("&"):
            spelled = kind[:-1].strip()
            parameters.append(Parameter("handle", name, spelled.split()[0],
                                        f"{spelled} & type is null"))
        elif kind in CROSSING:
            parameters.append(Parameter(kind, name))
        else:
            raise SchemaError(where, f"unknown type in '{part}'")
    suffix = f"__SWIG_{match['overload']}" if match["overload"] else ""
    return Declaration(match["result"] or "handle", match["name"], suffix, parameters,
                       match["call"], bool(match["static"]), where)


def argument(parameter):
    """The C++ of an argument."""
    return {"bool": "{} != 0", "byte": "static_cast<unsigned char>({})", "wide": "wide({})",
            "chars": "or_empty({})", "code": "static_cast<lmx::elmx_error>({})",
            "handle": f"as<{parameter.type}>({{}})"}.get(parameter.kind, "{}") \
        .format(parameter.name)


def _arguments(declaration):
    array = next((p.name for p in declaration.parameters if p.kind == "bytes"), None)
    return ", ".join(f"size_of({array}, size)" if array and p.name == "size" else argument(p)
                     for p in declaration.parameters)


def _returning(declaration, call):
    if declaration.result == "void":
        return f"{call};"
    if declaration.result in ("wide", "text"):
        return f"return returned({call});"
    if declaration.result in ("long", "ulong"):
        return f"return static_cast<{CROSSING[declaration.result][1]}>({call});"
    return f"return {call};"


def declared_class(declared):
    name, brief, table = declared.name, short(declared.name), declared.where.file
    me = Parameter("handle", "self", name)
    result = []
    for new in declared.constructors:
        call = new.call or (f"{name}({_arguments(new)})" if new.parameters else name)
        result.append(Export("constructor", f"_CSharp_new_{brief}{new.suffix}", table, brief,
                             "handle", new.parameters, [f"return new {call};"], gives=name,
                             owned=True))
    if not declared.undeletable:
        result.append(destructor(name, table, me))
    for member in declared.members:
        target = f"{name}::" if member.static else f"as<{name}>(self)."
        call = target + (member.call or f"{member.name}({_arguments(member)})")
        result.append(Export(declared.family, f"_CSharp_{brief}_{member.name}{member.suffix}",
                             table, brief, member.result,
                             ([] if member.static else [me]) + member.parameters,
                             [_returning(member, call)]))
    return result


def free_function(function):
    call = "lmx::" + (function.call or f"{function.name}({_arguments(function)})")
    return Export("free functions", f"_CSharp_{function.name}{function.suffix}",
                  function.where.file, None, function.result, function.parameters,
                  [_returning(function, call)])


def constant(name, value, where):
    return Export("constants", f"_CSharp_{name}_get", where.file, None, "int", [],
                  [f"return {value};"])
