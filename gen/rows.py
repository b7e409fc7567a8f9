"""What a row of each shape contributes to its class.

One class a shape. A shape knows the C++ of its member and accessors and its line in each of the
functions that walk the rows of a class; how a class is put together is the business of
model_header.py and model_source.py. The helpers that the lines call are the hand-written ones of
model/internal.
"""

from printer import Printer

# Schema type -> (C++ type, parameter, result of the getter)
CPP_TYPES = {
    "string": ("std::wstring", "const std::wstring&", "const std::wstring&"),
    "double": ("double", "double", "double"),
    "int": ("int", "int", "int"),
    "uint": ("unsigned", "unsigned", "unsigned"),
    "byte": ("unsigned char", "unsigned char", "unsigned char"),
    "bool": ("bool", "bool", "bool"),
    "dateTime": ("lmx::c_datetime", "const lmx::c_datetime&", "const lmx::c_datetime&"),
    "base64": ("lmx::c_binary", "const lmx::c_binary&", "const lmx::c_binary&"),
}

INTEGER_LIMITS = {"int": (-2147483648, 2147483647), "uint": (0, 4294967295), "byte": (0, 255)}


def shape_of(row):
    """The shape object of a row."""
    owner = row.owner
    if row.kind == "alt":
        if owner.is_substitution:
            return MemberAlternative(row)
        if row.is_simple:
            return ValueAlternative(row)
        return ObjectAlternative(row)
    if row.kind == "any":
        return AnyRow(row)
    if row.kind == "mark":
        return MarkRow(row)
    if row.kind == "group":
        return GroupRow(row)
    if row.is_simple:
        return ValuesRow(row) if row.is_list else SimpleRow(row)
    if row.type_class.is_substitution:
        return HoldersRow(row) if row.is_list else HolderRow(row)
    return ChildrenRow(row) if row.is_list else ChildRow(row)


def enumerator(row, value):
    """The C++ name of one value of an enumerated row."""
    text = "".join(c if c.isalnum() else "_" for c in value)
    return f"{row.name}_{text}" if not text.startswith(row.name + "_") else text


class RowShape:
    """The default is a row that contributes nothing anywhere."""

    def __init__(self, row):
        self.row = row
        self.fields = {
            "Class": row.owner.name,
            "Name": row.name,
            "member": row.member,
            "Type": row.type,
        }

    def fill(self, template, **more):
        """A template as text, with the names of the row filled in."""
        out = Printer()
        out.emit(template, **{**self.fields, **more})
        return out.text().rstrip("\n")

    # Data member of the class.
    def member(self):
        return None

    # Nested types, and accessors: declarations and one-line bodies for the header.
    def types(self):
        return None

    def accessors(self):
        return None

    # Constants and accessor bodies of the source.
    def constants(self):
        return None

    def bodies(self):
        return None

    # One statement or expression each, or None.
    def initialise(self):
        return None

    def swap(self):
        return f"{self.row.member}.swap(other.{self.row.member});"

    def copy(self):
        return None

    def occurs(self):
        return f"{self.row.member}.set" if self.row.required else None

    def write(self):
        return None

    def read(self, index):
        return None


class Enumerable(RowShape):
    """What an enumerated text has besides, in a class or in a choice."""

    def types(self):
        if not self.row.enum:
            return None
        values = [f"{self.row.name}_unknown"]
        values += [enumerator(self.row, value) for value in self.row.enum_values]
        return self.fill("""
            enum Eenum_$Name$ : int {
              $values$
            };
            """, values=",\n".join(f"{name} = {i}" for i, name in enumerate(values)))

    @property
    def table(self):
        return f"internal::k_{self.row.enum}"


class SimpleRow(Enumerable):
    """A single value: an attribute, a child element of simple type, or the content."""

    def __init__(self, row):
        super().__init__(row)
        self.type, self.param, self.result = CPP_TYPES[row.type]
        self.fields.update(Param=self.param, Result=self.result)

    @property
    def is_text(self):
        return self.row.type == "string"

    def member(self):
        row = self.row
        if row.enum:
            return f"internal::Enumerated {row.member};"
        if self.is_text:
            kind = "Text" if row.required else "OptionalText"
            return f"internal::{kind} {row.member};"
        default = "{" + row.default + "}" if row.default else ""
        return f"internal::Value<{self.type}> {row.member}{default};"

    def accessors(self):
        get = "get()" if self.is_text else "value"
        text = self.fill("""
            $Result$ get_$Name$() const { return $member$.$get$; }
            lmx::elmx_error set_$Name$($Param$ value);
            """, get=get)
        if self.row.enum:
            text += "\n" + self.fill("""
                Eenum_$Name$ getenum_$Name$() const;
                bool setenum_$Name$(Eenum_$Name$ value);
                """)
        if self.row.has_isset:
            text += "\n" + self.fill("""
                bool isset_$Name$() const { return $member$.set; }
                void unset_$Name$() { $member$.set = false; }
                """)
        return text

    def bodies(self):
        text = self.fill("""
            lmx::elmx_error $Class$::set_$Name$($Param$ value) {
              return internal::store($arguments$);
            }
            """, arguments=", ".join([self.row.member, "value"] + self.setter_facets()))
        if self.row.enum:
            text += "\n\n" + self.fill("""
                $Class$::Eenum_$Name$ $Class$::getenum_$Name$() const {
                  return static_cast<Eenum_$Name$>($member$.number($table$));
                }

                bool $Class$::setenum_$Name$(Eenum_$Name$ value) {
                  return internal::store_number($member$, value, $table$);
                }
                """, table=self.table)
        return text

    def constants(self):
        return range_constant(self.row)

    def setter_facets(self):
        if self.row.enum:
            return [self.table]
        if self.row.length is not None:
            return [f"internal::Length{{{self.row.length}}}"]
        return [range_name(self.row)] if has_range(self.row) else []

    def reader_facets(self):
        return self.setter_facets() + (["internal::Collapsed{}"] if self.row.collapse else [])

    def initialise(self):
        if not (self.row.enum and self.row.default):
            return None
        number = self.row.enum_values.index(self.row.default) + 1
        return f"{self.row.member}.store({self.table}, {number});"

    def copy(self):
        how = "required" if self.row.required else "optional"
        arguments = [self.row.member, f"other.{self.row.member}"] + self.setter_facets()
        return f"internal::copy_{how}({', '.join(arguments)});"

    def write(self):
        how = "required" if self.row.required else "optional"
        if self.row.kind == "attr":
            return f'out.{how}("{self.row.name}", {self.row.member});'
        if self.row.kind == "content":
            return f"internal::write_field(writer.block(), {self.row.member});"
        return f'out.{how}("Zol:{self.row.name}", {self.row.member});'

    def read(self, index):
        if self.row.kind in ("attr", "content"):
            return f"read({', '.join([self.row.member] + self.reader_facets())})"
        how = "required" if self.row.required else "optional"
        return f"{how}({', '.join([str(index), self.row.member] + self.reader_facets())})"

    def read_plain(self):
        """Its step on the short road, for an attribute or the content."""
        arguments = ", ".join([self.row.member] + self.reader_facets())
        if self.row.kind == "content":
            return f"in.content({arguments});"
        how = "required" if self.row.required else "optional"
        return f'in.{how}("{self.row.name}", {arguments});'


class ValuesRow(RowShape):
    """A list of simple values. Setters of lists check nothing."""

    def __init__(self, row):
        super().__init__(row)
        self.type, self.param, self.result = CPP_TYPES[row.type]
        self.fields.update(Value=self.type, Param=self.param, Result=self.result)

    def member(self):
        return f"internal::List<{self.type}> {self.row.member};"

    def accessors(self):
        return self.fill("""
            $Result$ get_$Name$(unsigned index) const { return $member$.at(index); }
            lmx::elmx_error set_$Name$(unsigned index, $Param$ value);
            lmx::elmx_error append_$Name$($Param$ value);
            lmx::elmx_error insert_$Name$(unsigned index, $Param$ value);
            void delete_$Name$(unsigned index);
            void clear_$Name$();
            unsigned size_$Name$() const { return $member$.size(); }
            """)

    def bodies(self):
        return self.fill("""
            lmx::elmx_error $Class$::set_$Name$(unsigned index, $Param$ value) {
              return internal::set_value($member$, index, value);
            }

            lmx::elmx_error $Class$::append_$Name$($Param$ value) {
              $member$.append(value);
              return lmx::elmx_ok;
            }

            lmx::elmx_error $Class$::insert_$Name$(unsigned index, $Param$ value) {
              $member$.insert(index, value);
              return lmx::elmx_ok;
            }

            void $Class$::delete_$Name$(unsigned index) { $member$.remove(index); }
            void $Class$::clear_$Name$() { $member$.clear(); }
            """)

    def copy(self):
        return f"internal::copy_list({self.row.member}, other.{self.row.member});"

    def occurs(self):
        return f"!{self.row.member}.empty()" if self.row.required else None

    def write(self):
        return f'out.values("Zol:{self.row.name}", {self.row.member});'

    def read(self, index):
        how = "values_from_one" if self.row.required else "values"
        facets = ", internal::Collapsed{}" if self.row.collapse else ""
        return f"{how}({index}, {self.row.member}{facets})"


class ChildRow(RowShape):
    """A single child: held in place if it is required, on the heap if not."""

    def member(self):
        kind = "Child" if self.row.required else "OptionalChild"
        return f"internal::{kind}<{self.row.type}> {self.row.member};"

    def accessors(self):
        text = self.fill("""
            const $Type$& get_$Name$() const { return $member$.get(); }
            $Type$& get_$Name$();
            $Type$& assign_$Name$(const $Type$& value);
            """)
        if self.row.has_isset:
            text += "\n" + self.fill("""
                bool isset_$Name$() const { return $member$.set; }
                void unset_$Name$() { $member$.set = false; }
                """)
        return text

    def bodies(self):
        return self.fill("""
            $Type$& $Class$::get_$Name$() { return $member$.touch(); }
            $Type$& $Class$::assign_$Name$(const $Type$& value) { return get_$Name$() = value; }
            """)

    def copy(self):
        how = "required" if self.row.required else "optional"
        return f"internal::copy_{how}({self.row.member}, other.{self.row.member});"

    def write(self):
        how = "child" if self.row.required else "optional_child"
        return f'out.{how}("Zol:{self.row.name}", {self.row.member});'

    def read(self, index):
        how = "required_child" if self.row.required else "optional_child"
        return f"{how}({index}, {self.row.member})"


class ChildrenRow(RowShape):
    """A list of children."""

    def member(self):
        return f"internal::List<{self.row.type}> {self.row.member};"

    def accessors(self):
        return self.fill("""
            const $Type$& get_$Name$(unsigned index) const { return $member$.at(index); }
            $Type$& get_$Name$(unsigned index);
            $Type$& assign_$Name$(unsigned index, const $Type$& value);
            lmx::elmx_error append_$Name$();
            lmx::elmx_error insert_$Name$(unsigned index);
            $Type$& back_$Name$() { return $member$.back(); }
            void delete_$Name$(unsigned index);
            void clear_$Name$();
            unsigned size_$Name$() const { return $member$.size(); }
            """)

    def bodies(self):
        return self.fill("""
            $Type$& $Class$::get_$Name$(unsigned index) { return $member$.grow_to(index); }

            $Type$& $Class$::assign_$Name$(unsigned index, const $Type$& value) {
              return get_$Name$(index) = value;
            }

            lmx::elmx_error $Class$::append_$Name$() {
              $member$.append();
              return lmx::elmx_ok;
            }

            lmx::elmx_error $Class$::insert_$Name$(unsigned index) {
              $member$.insert(index);
              return lmx::elmx_ok;
            }

            void $Class$::delete_$Name$(unsigned index) { $member$.remove(index); }
            void $Class$::clear_$Name$() { $member$.clear(); }
            """)

    def copy(self):
        return f"internal::copy_list({self.row.member}, other.{self.row.member});"

    def occurs(self):
        return f"!{self.row.member}.empty()" if self.row.required else None

    def write(self):
        return f'out.children("Zol:{self.row.name}", {self.row.member});'

    def read(self, index):
        how = "children_from_one" if self.row.required else "children"
        return f"{how}({index}, {self.row.member})"


class HolderRow(ChildRow):
    """The member of a substitution group. On the heap, required or not: it may hold its owner."""

    def member(self):
        return f"internal::OptionalChild<{self.row.type}> {self.row.member};"

    def read(self, index):
        return f"holder({index}, {self.row.member})"


class HoldersRow(ChildrenRow):
    """A list of members of a substitution group."""

    def read(self, index):
        return f"holders({index}, {self.row.member})"


class GroupRow(ChildRow):
    """A value with no element around it."""

    def read(self, index):
        return f"group({index}, {self.row.member})"


class MarkRow(RowShape):
    """An empty element, always written and never asked for."""

    def swap(self):
        return None

    def occurs(self):
        return None

    def write(self):
        return f'out.mark("Zol:{self.row.name}");'

    def read(self, index):
        return f"mark({index})"


class AnyRow(RowShape):
    """Foreign elements."""

    def member(self):
        return f"internal::List<internal::AnyElement> {self.row.member};"

    def accessors(self):
        return self.fill("""
            // An element's full name, its namespace and its whole text, each unless the pointer is
            // null. An entry that was appended has a text alone. Nothing if there is no such entry.
            void get_$Name$(unsigned index, std::string* full_name, std::string* namespace_uri,
                         std::string* text) const;
            lmx::elmx_error append_$Name$(const std::string& text);
            lmx::elmx_error insert_$Name$(unsigned index, const std::string& text);
            void delete_$Name$(unsigned index);
            void clear_$Name$();
            unsigned size_$Name$() const { return $member$.size(); }
            """)

    def bodies(self):
        return self.fill("""
            void $Class$::get_$Name$(unsigned index, std::string* full_name, std::string* namespace_uri,
                                std::string* text) const {
              internal::get_foreign($member$, index, full_name, namespace_uri, text);
            }

            lmx::elmx_error $Class$::append_$Name$(const std::string& text) {
              $member$.append().text = text;
              return lmx::elmx_ok;
            }

            lmx::elmx_error $Class$::insert_$Name$(unsigned index, const std::string& text) {
              $member$.insert(index).text = text;
              return lmx::elmx_ok;
            }

            void $Class$::delete_$Name$(unsigned index) { $member$.remove(index); }
            void $Class$::clear_$Name$() { $member$.clear(); }
            """)

    def copy(self):
        return f"internal::copy_list({self.row.member}, other.{self.row.member});"

    def occurs(self):
        return None

    def write(self):
        return f"out.foreign({self.row.member});"

    def read(self, index):
        return f"foreign({self.row.member})"


class Alternative(Enumerable):
    """One alternative of a choice: it lives in the slot while it is chosen."""

    def __init__(self, row):
        super().__init__(row)
        self.selection = f"chosen_{row.name}"
        self.fields.update(chosen=self.selection)

    def swap(self):
        return None

    def occurs(self):
        return None


class ObjectAlternative(Alternative):
    def accessors(self):
        return self.fill("""
            // The const form gives an empty object unless this alternative is chosen; the other two
            // choose it.
            const $Type$& get_$Name$() const;
            $Type$& get_$Name$();
            $Type$& assign_$Name$(const $Type$& value);
            """)

    def bodies(self):
        return self.fill("""
            const $Type$& $Class$::get_$Name$() const {
              return chosen_ == $chosen$ ? slot_.object<$Type$>() : internal::empty_object<$Type$>();
            }

            $Type$& $Class$::get_$Name$() {
              if (chosen_ == $chosen$) return slot_.object<$Type$>();
              return internal::choose(slot_, chosen_, $chosen$, internal::make_owned<$Type$>());
            }

            $Type$& $Class$::assign_$Name$(const $Type$& value) {
              if (chosen_ == $chosen$) return slot_.object<$Type$>() = value;
              // The value may live inside the alternative that goes.
              return internal::choose(slot_, chosen_, $chosen$, internal::make_owned<$Type$>(value));
            }
            """)

    def copy(self):
        return f"(void)assign_{self.row.name}(other.get_{self.row.name}());"

    def write(self):
        return f'out.object("Zol:{self.row.name}", get_{self.row.name}());'

    def read(self, index):
        return f"object<{self.row.type}>(slot_, chosen_, {self.selection})"


class ValueAlternative(Alternative):
    def __init__(self, row):
        super().__init__(row)
        self.type, self.param, self.result = CPP_TYPES[row.type]
        self.fields.update(Value=self.type, Param=self.param, Result=self.result)

    def accessors(self):
        text = self.fill("""
            $Result$ get_$Name$() const;
            lmx::elmx_error set_$Name$($Param$ value);
            """)
        if self.row.enum:
            text += "\n" + self.fill("""
                Eenum_$Name$ getenum_$Name$() const;
                bool setenum_$Name$(Eenum_$Name$ value);
                """)
        return text

    def bodies(self):
        row = self.row
        if row.enum:
            return self.fill("""
                const std::wstring& $Class$::get_$Name$() const {
                  return chosen_ == $chosen$ ? slot_.object<std::wstring>() : internal::empty_text();
                }

                lmx::elmx_error $Class$::set_$Name$(const std::wstring& value) {
                  const int number = $table$.number_of(value);
                  return setenum_$Name$(static_cast<Eenum_$Name$>(number))
                             ? lmx::elmx_ok
                             : lmx::elmx_value_not_enumerated;
                }

                $Class$::Eenum_$Name$ $Class$::getenum_$Name$() const {
                  return static_cast<Eenum_$Name$>($table$.number_of(get_$Name$()));
                }

                bool $Class$::setenum_$Name$(Eenum_$Name$ value) {
                  return internal::choose_number(slot_, chosen_, $chosen$, value, $table$);
                }
                """, table=self.table)
        if row.type == "string":
            return self.fill("""
                const std::wstring& $Class$::get_$Name$() const {
                  return chosen_ == $chosen$ ? slot_.object<std::wstring>() : internal::empty_text();
                }

                lmx::elmx_error $Class$::set_$Name$(const std::wstring& value) {
                  internal::choose(slot_, chosen_, $chosen$, internal::make_owned<std::wstring>(value));
                  return lmx::elmx_ok;
                }
                """)
        get = "slot_.number()" if row.type == "double" else f"static_cast<{self.type}>(slot_.integer())"
        zero = "0.0" if row.type == "double" else "0"
        store = "value" if row.type == "double" else "static_cast<std::int64_t>(value)"
        check = ""
        if has_range(row) and row.type != "int":
            check = (f"if (const lmx::elmx_error error = {range_name(row)}.check(value)) "
                     "return error;")
        return self.fill("""
            $Value$ $Class$::get_$Name$() const { return chosen_ == $chosen$ ? $get$ : $zero$; }

            lmx::elmx_error $Class$::set_$Name$($Value$ value) {
              $check$
              slot_.store($store$);
              chosen_ = $chosen$;
              return lmx::elmx_ok;
            }
            """, get=get, zero=zero, store=store, check=check)

    def constants(self):
        return range_constant(self.row)

    def copy(self):
        if self.row.enum:
            return f"internal::copy_enumerated(slot_, chosen_, other.get_{self.row.name}(), {self.selection}, {self.table});"
        return f"(void)set_{self.row.name}(other.get_{self.row.name}());"

    def write(self):
        return f'out.element("Zol:{self.row.name}", get_{self.row.name}());'

    def read(self, index):
        row = self.row
        target = f"slot_, chosen_, {self.selection}"
        if row.enum:
            return f"enumerated({target}, {self.table})"
        if row.type == "string":
            return f"text({target}{', internal::Collapsed{}' if row.collapse else ''})"
        facets = f", {range_name(row)}" if has_range(row) else ""
        if row.type == "double":
            return f"number({target}{facets})"
        return f"integer<{self.type}>({target}{facets})"


class MemberAlternative(Alternative):
    """A member of a substitution group."""

    def accessors(self):
        text = self.fill("""
            const $Type$& get_$Name$() const;
            $Type$& get_$Name$();
            $Type$& assign_$Name$(const $Type$& value);
            """)
        if self.row.adopt:
            text += "\n" + self.fill("""
                // Takes ownership, so that an object of a derived type can stand here. If the
                // alternative is chosen already, its object is not freed. A null pointer is chosen
                // as it is, and cannot be written: 45.
                $Type$& assign_$Name$($Type$* value);
                """)
        return text

    def bodies(self):
        text = self.fill("""
            const $Type$& $Class$::get_$Name$() const {
              return chosen_ == $chosen$ && member_ != nullptr
                         ? static_cast<const $Type$&>(*member_)
                         : internal::empty_object<$Type$>();
            }

            $Type$& $Class$::get_$Name$() {
              if (chosen_ == $chosen$ && member_ != nullptr) return static_cast<$Type$&>(*member_);
              return *hold(new $Type$, $chosen$);
            }

            $Type$& $Class$::assign_$Name$(const $Type$& value) {
              if (chosen_ == $chosen$ && member_ != nullptr) return get_$Name$() = value;
              // The value may live inside the member that goes.
              return *hold(new $Type$(value), $chosen$);
            }
            """)
        if self.row.adopt:
            text += "\n\n" + self.fill("""
                $Type$& $Class$::assign_$Name$($Type$* value) {
                  if (chosen_ != $chosen$) release_choice();
                  member_ = value;
                  chosen_ = $chosen$;
                  return value != nullptr ? *value : internal::nowhere<$Type$>();
                }
                """)
        return text

    def write(self):
        return f'"Zol:{self.row.name}"'

    def read(self, index):
        row = self.row
        if row.xsi_type == "required":
            made = f"member.make_named<{row.type}>().release()"
        elif row.xsi_type == "optional":
            made = f"member.make_named_or_plain<{row.type}>().release()"
        else:
            made = f"new (reader.pool()) {row.type}"
        return f"return member.read(hold({made}, {self.selection}));"


def has_range(row):
    return (row.lower or row.upper) is not None and row.type in ("double", "int", "uint", "byte") \
        or row.type in INTEGER_LIMITS


def range_name(row):
    return f"k_{row.owner.name}_{row.name}_range"


def range_constant(row):
    """The bounds of a row as a constant, or None."""
    if not has_range(row):
        return None
    if row.type == "double":
        def end(bound):
            return "none" if bound is None else "strict" if bound.strict else "inclusive"
        low = row.lower.number if row.lower else "0"
        high = row.upper.number if row.upper else "0"
        return (f"constexpr Range {range_name(row)}{{Range::{end(row.lower)}, "
                f"Range::{end(row.upper)}, {low}, {high}}};")
    least, most = INTEGER_LIMITS[row.type]
    low = int(row.lower.number) + row.lower.strict if row.lower else least
    high = int(row.upper.number) - row.upper.strict if row.upper else most
    setter = least if row.lower is None or row.lower.on_read else low
    return f"constexpr IntegerRange {range_name(row)}{{{low}, {high}, {setter}}};"
