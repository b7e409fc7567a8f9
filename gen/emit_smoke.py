"""Prints a test that calls every function of the flat interface through the interface itself.

    tests/bridge/smoke_<table file>.cpp

Each class is made, used row by row and deleted; whatever raises for null is called with null once.
What a call must give follows from the shape of the row. The verbs of the tests (is, text, raised)
stand in tests/bridge/smoke.h.
"""

import pathlib

import exports
from emit_bridge import BANNER, HAND_WRITTEN
from printer import Printer

DATE = '"2024-02-29T12:30:00Z"'


def emit(model):
    """All files as a dictionary from path to text."""
    listed = exports.all_exports(model)
    files = {}
    for table in dict.fromkeys(export.table for export in listed):
        if table != HAND_WRITTEN:
            files[f"tests/bridge/smoke_{pathlib.Path(table).stem}.cpp"] = emit_source(
                model, table, [export for export in listed if export.table == table])
    return files


def emit_source(model, table, listed):
    out = Printer()
    out.emit("""
        $banner$
        #include "bridge/smoke.h"

        using namespace smoke;
        """, banner=BANNER.format(table=table, template="emit_smoke.py"))
    owners = dict.fromkeys(export.owner for export in listed)
    for owner in owners:
        case = Case(model, owner, [export for export in listed if export.owner == owner])
        out.blank()
        out.emit("""
            TEST_F(Smoke, $name$) {
              $lines$
            }
            """, name=owner or "FreeFunctionsAndConstants", lines="\n".join(case.lines()))
    return out.text()


def sample(row):
    """A value that every facet of the row allows, as the client passes it and as it comes back."""
    if row.enum:
        return f'u"{row.enum_values[0]}"'
    if row.type == "string":
        return 'u"' + "x" * (row.length or 3) + '"'
    if row.type == "bool":
        return "1u"
    low = float(row.lower.number) if row.lower else None
    high = float(row.upper.number) if row.upper else None
    if low is not None and high is not None:
        value = (low + high) / 2
    elif low is not None:
        value = low + 1
    else:
        value = 1.0 if high is None else high - 1
    if row.type == "double":
        return repr(value)
    return f"{int(value)}{'' if row.type == 'int' else 'u'}"


class Case:
    """The statements that use one class."""

    def __init__(self, model, owner, listed):
        self.info = model.classes.get(owner)
        self.owner = owner
        self.listed = listed
        self.by_name = {export.name: export for export in listed}
        self.out = []

    def lines(self):
        constructors = self.take("constructor")
        destructors = self.take("destructor")
        if self.owner is not None:
            self.make(constructors)
        rows = self.info.rows if self.info else []
        for row in rows:
            mine = [e for e in self.listed if e.row is row]
            if mine:
                self.use_row(row, {operation(e): e for e in mine})
        for export in self.listed:
            if export.row is None and export.family not in ("constructor", "destructor"):
                self.use(export)
        if self.owner is not None:
            self.end(constructors, destructors)
        return self.out

    def take(self, family):
        return [export for export in self.listed if export.family == family]

    def add(self, line):
        self.out.append(line)

    def call(self, export, *arguments):
        return f"{export.name}({', '.join(arguments)})"

    def check(self, export, want, *arguments):
        self.add(f'is({self.call(export, *arguments)}, {want}, "{brief(export)}");')

    # Making and ending.

    def make(self, constructors):
        first = constructors[0]
        self.add(f"void* const self = {self.call(first, *self.arguments(first))};")
        self.add(f'made(self, "{brief(first)}");')
        self.raises(first)
        for number, export in enumerate(constructors[1:]):
            self.add(f"void* const other{number} = "
                     f"{self.call(export, *self.arguments(export))};")
            self.add(f'made(other{number}, "{brief(export)}");')
            self.raises(export)

    def end(self, constructors, destructors):
        made = [f"other{number}" for number in range(len(constructors) - 1)] + ["self"]
        for name in made:
            if destructors:
                self.add(f"{self.call(destructors[0], name)};")
            else:
                self.add(f"delete static_cast<lmx::{self.owner}*>({name});")
        if destructors:
            self.add(f"{self.call(destructors[0], 'nullptr')};")

    # Calls with arguments that are made up, and with null.

    def arguments(self, export, null_from=None):
        """Good arguments; all that can be null is null from the parameter with that index on."""
        values = []
        for index, parameter in enumerate(export.parameters):
            if null_from is not None and index >= null_from and parameter.message is not None:
                values.append("nullptr")
            else:
                values.append(self.argument(parameter))
        return values

    def argument(self, parameter):
        if parameter.kind == "handle":
            if parameter.name == "error":
                return "code()"
            if parameter.name == "self":
                return "self"
            if parameter.name == "other" and not any(
                    line.startswith("void* const other0") for line in self.out):
                return "self"
            if parameter.name == "other":
                return "other0"
            raise AssertionError(f"no argument for {parameter}")
        return {"wide": 'u"1"', "text": '"1"', "chars": '"1"', "bytes": "k_bytes",
                "identity": '"1"', "float": "1.5f", "double": "1.5", "bool": "1u", "uint": "1u",
                "byte": "1u", "ulong": "1u"}.get(parameter.kind, "1")

    def raises(self, export, **known):
        """Calls with null in place of each argument that is tested."""
        for index, parameter in enumerate(export.parameters):
            if parameter.message is None:
                continue
            values = [known.get(p.name, None) or self.argument(p) if i < index or p.message is None
                      else "nullptr" for i, p in enumerate(export.parameters)]
            if export.result == "void":
                self.add(f"{self.call(export, *values)};")
            else:
                self.check(export, zero(export.result), *values)
            self.add(f'raised("{parameter.message}");')

    def use(self, export):
        """An operation that belongs to no row."""
        special = getattr(self, "use_" + export.family.replace(" ", "_"), None)
        if special is not None:
            special(export)
            return
        self.raises(export)
        call = self.call(export, *self.arguments(export))
        self.add(f"(void)text({call});" if export.result in ("text", "wide") else f"(void){call};")

    def use_upcast(self, export):
        self.check(export, "self", "self")

    def use_swap(self, export):
        self.raises(export)
        self.add(f"{self.call(export, 'self', 'other0')};")
        self.add(f"{self.call(export, 'self', 'other0')};")

    def use_reset(self, export):
        self.add(f"{self.call(export, 'self')};")

    def use_clone(self, export):
        self.add(f"deleted({self.call(export, 'self')}, _CSharp_delete_{self.owner}, "
                 f'"{brief(export)}");')

    def use_getid(self, export):
        self.check(export, f"_CSharp_{self.owner}_id_get()", "self")

    def use_has_id(self, export):
        self.check(export, "1u", "self", f"_CSharp_{self.owner}_id_get()")
        self.check(export, "0u", "self", '"1"')
        base = self.info.base
        if base is not None:
            self.check(export, "1u", "self", f"_CSharp_{base.name}_id_get()")

    def use_id_get(self, export):
        pass  # with id_set

    def use_id_set(self, export):
        self.add(f"identity_can_be_set(zol_v2::{self.owner}::id, _CSharp_{self.owner}_id_get, "
                 f"{export.name});")

    def use_factory(self, export):
        self.raises(export)
        for name in self.info.factory:
            self.add(f'is_one_of({self.call(export, "1000", chr(34) + name + chr(34))}, '
                     f"_CSharp_{name}_id_get(), _CSharp_{self.owner}_getid, "
                     f'_CSharp_delete_{self.owner}, "{brief(export)}");')
        self.check(export, "nullptr", "1000", '"1"')
        self.check(export, "nullptr", "1", f'"{self.info.factory[0]}"')

    def use_marshal(self, export):
        self.add(f"marshals<zol_v2::{self.owner}>(self, {export.name});")

    def use_unmarshal(self, export):
        self.add(f"unmarshals<zol_v2::{self.owner}>({export.name});")

    def use_namespace_map(self, export):
        self.check(export, "ns_map()")

    def use_nil_test(self, export):
        pass  # with nil set

    def use_nil_set(self, export):
        test = self.by_name[export.name.replace("_setnil_", "_isnil_")]
        self.check(test, "0u", "self")
        self.add(f"{self.call(export, 'self')};")
        self.check(test, "1u", "self")

    def use_choice(self, export):
        self.check(export, str(self.info.none), "self")  # reset came before

    def use_document(self, export):
        if export.result == "handle":
            self.add(f"deleted({self.call(export, 'self')}, _CSharp_delete_XMLDocumentResult, "
                     f'"{brief(export)}");')
            return
        want = {"loadFile": "1", "loadString": "34", "writeFile": "1001"}[operation(export)]
        self.check(export, want, "self", "nullptr")
        self.check(export, want, "self", 'u""')

    # Rows.

    def use_row(self, row, calls):
        if row.kind == "any":
            self.use_any(calls)
        elif "append" in calls:
            self.use_list(row, calls)
        elif row.is_simple:
            self.use_value(row, calls)
        else:
            self.use_child(row, calls)
        if row.kind == "alt":
            chosen = self.by_name[f"_CSharp_{self.owner}_getchosen"]
            self.check(chosen, str(self.info.alternatives.index(row)), "self")
        if "isset" in calls:
            self.check(calls["isset"], "1u", "self")
            self.add(f"{self.call(calls['unset'], 'self')};")
            self.check(calls["isset"], "0u", "self")

    def value_argument(self, row):
        return {"dateTime": "date()", "base64": "binary()"}.get(row.type) or sample(row)

    def holds(self, row, call):
        """That a getter gives what was set."""
        if row.type == "dateTime":
            return f"is_the_date({call});"
        if row.type == "base64":
            return f"is_the_binary({call});"
        shown = f"text({call})" if row.type == "string" else call
        return f'is({shown}, {sample(row)}, "{self.owner}_get_{row.name}");'

    def use_value(self, row, calls):
        self.raises(calls["set"])
        self.check(calls["set"], "0", "self", self.value_argument(row))
        self.add(self.holds(row, self.call(calls["get"], "self")))
        if row.enum:
            count = len(row.enum_values)
            self.check(calls["getenum"], "1", "self")
            self.check(calls["setenum"], "1u", "self", str(count))
            self.check(calls["getenum"], str(count), "self")
            for bad in ("0", str(count + 1), "-1"):
                self.check(calls["setenum"], "0u", "self", bad)

    def use_child(self, row, calls):
        child = f"child_{row.name}"
        self.add(f"void* const {child} = {self.call(calls['get'], 'self')};")
        self.add(f'made({child}, "{brief(calls["get"])}");')
        self.raises(calls["assign"])
        self.check(calls["assign"], "0", "self", child)

    def use_list(self, row, calls):
        if row.is_simple:
            value = self.value_argument(row)
            for name in ("set", "append", "insert"):
                self.raises(calls[name], index="0u")
            self.check(calls["append"], "0", "self", value)
            self.check(calls["insert"], "0", "self", "0u", value)
            self.check(calls["set"], "0", "self", "1u", value)
            self.add(self.holds(row, self.call(calls["get"], "self", "1u")))
        else:
            self.raises(calls["assign"], index="0u")
            at = f"at_{row.name}"
            self.add(f"void* const {at} = {self.call(calls['append'], 'self')};")
            self.check(calls["back"], at, "self")
            self.check(calls["get"], at, "self", "0u")
            self.add(f"void* const first_{row.name} = {self.call(calls['insert'], 'self', '0u')};")
            self.check(calls["get"], f"first_{row.name}", "self", "0u")
            self.check(calls["get"], at, "self", "1u")
            self.check(calls["assign"], "0", "self", "0u", at)
            self.add(f"void* const last_{row.name} = {self.call(calls['insert'], 'self', '100u')};")
            self.check(calls["back"], f"last_{row.name}", "self")
            self.add(f"{self.call(calls['delete'], 'self', '2u')};")
        self.list_end(calls)

    def use_any(self, calls):
        for name in ("append", "insert", "get"):
            self.raises(calls[name], index="0u")
        self.check(calls["append"], "0", "self", '"<a/>"')
        self.check(calls["insert"], "0", "self", "0u", '"<b/>"')
        self.add(self.call(calls["get"], "self", "0u", '""', '""', '""') + ";")
        self.list_end(calls)

    def list_end(self, calls):
        self.check(calls["size"], "2u", "self")
        self.add(f"{self.call(calls['delete'], 'self', '0u')};")
        self.check(calls["size"], "1u", "self")
        self.add(f"{self.call(calls['clear'], 'self')};")
        self.check(calls["size"], "0u", "self")


def zero(kind):
    """What a call that raised gives."""
    return {"void*": "nullptr", "char*": "nullptr", "char16_t*": "nullptr", "unsigned": "0u",
            "double": "0.0"}.get(exports.CROSSING[kind][1], "0")


def brief(export):
    return export.name.replace("_CSharp_", "")


def operation(export):
    """get, set, append, ... of a row's function."""
    return export.name[len(f"_CSharp_{export.owner}_"):].split("_")[0]
