"""What a row of each shape contributes to its class: its field, its accessors and its line of the table.

One class a shape. How a class is put together is the business of model_header.py and
model_source.py; what the accessors call and what walks the table are the hand-written functions of
model/internal.
"""

from printer import Printer, remarked

# Schema type -> (C++ type, parameter, result of the getter, kind of the table)
CPP_TYPES = {
    "string": ("std::wstring", "const std::wstring&", "const std::wstring&", "text"),
    "double": ("double", "double", "double", "real"),
    "int": ("int", "int", "int", "int32"),
    "uint": ("unsigned", "unsigned", "unsigned", "uint32"),
    "byte": ("unsigned char", "unsigned char", "unsigned char", "uint8"),
    "bool": ("bool", "bool", "bool", "truth"),
    "dateTime": ("lmx::c_datetime", "const lmx::c_datetime&", "const lmx::c_datetime&", "datetime"),
    "base64": ("lmx::c_binary", "const lmx::c_binary&", "const lmx::c_binary&", "binary"),
}

# What a getter gives for a row that was never set.
ABSENT = {"string": "an empty text", "double": "0", "int": "0", "uint": "0", "byte": "0",
          "bool": "false", "dateTime": "an untouched date", "base64": "no bytes"}

INTEGER_LIMITS = {"int": (-2147483648, 2147483647), "uint": (0, 4294967295), "byte": (0, 255)}

PLACES = {"attr": "attribute", "alt": "alternative", "content": "content"}  # others are elements


def shape_of(row):
    """The shape object of a row."""
    if row.kind == "alt":
        if row.owner.is_substitution:
            return MemberAlternative(row)
        return ValueAlternative(row) if row.is_simple else ObjectAlternative(row)
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


def quoted(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'


class RowShape:
    """The default is a row that has no field and no accessors."""

    kind = None  # of the table

    def __init__(self, row):
        self.row = row
        self.fields = {
            "Name": row.name,
            "Type": row.type,
            "member": row.member,
            "row": f"k_rows[{row.index}]",
            "bit": row.bit,
        }

    def fill(self, template, **more):
        """A template as text, with the names of the row filled in."""
        out = Printer()
        out.emit(template, **{**self.fields, **more})
        return out.text().rstrip("\n")

    def member(self):
        """The field of the class, or None."""
        return None

    def types(self):
        """Nested types of the class, or None."""
        return None

    def accessors(self):
        return None

    def behaviour(self):
        """What the accessors do, beyond what those of every row do."""
        return ""

    def offset_of(self):
        return f"offsetof({self.row.owner.name}, {self.row.member})"

    def table_line(self):
        """The row as the class's table has it."""
        row = self.row
        place = PLACES.get(row.kind, "element")
        tag = row.name if place == "attribute" else f"Zol:{row.name}"
        line = (f"Row(Place::{place}, Kind::{self.kind}, {quoted(tag)}, {self.offset_of()}, "
                f"{row.owner.model.events.get(row.name, 0)}, __LINE__)")
        return line + "".join(f".{word}" for word in self.words()) + ","

    def words(self):
        row = self.row
        if row.bit:
            yield f"number({row.bit})"
        if row.is_list:
            yield "list()"
        if row.required and row.kind != "alt":
            yield "required()"
        if row.enum:
            yield f"of(internal::k_{row.enum})"
        elif not row.is_simple and row.kind not in ("any", "mark"):
            yield f"of({row.type}::k_class)"
        for word, bound in (("from", row.lower), ("to", row.upper)):
            if bound is not None:
                end = ", End::strict" if bound.strict else ""
                yield f"{word}({bound.number}{end})"
                if bound.on_read:
                    yield "on_read()"
        if row.length is not None:
            yield f"characters({row.length})"
        if row.collapse:
            yield "collapsed()"
        if row.enum and row.default:
            yield f"starts_at({row.enum_values.index(row.default) + 1})"
        if row.xsi_type:
            yield f"named(NamedType::{row.xsi_type})"
        if row.adopt:
            yield "adopting()"
        if row.unit:
            yield f"in({quoted(row.unit)})"
        yield f"about({quoted(row.note)})"


class Enumerable(RowShape):
    """What an enumerated text has besides, in a class or in a choice."""

    def __init__(self, row):
        super().__init__(row)
        self.type, self.param, self.result, self.kind = CPP_TYPES[row.type]
        if row.enum:
            self.kind = "enumerated"
        self.fields.update(Value=self.type, Param=self.param, Result=self.result)

    def types(self):
        if not self.row.enum:
            return None
        values = [remarked(f"{self.row.name}_unknown = 0,", "Not set, or none of these.")]
        values += [remarked(f"{enumerator(self.row, value)} = {i},", note) for i, (value, note)
                   in enumerate(zip(self.row.enum_values, self.row.enum_notes), 1)]
        return self.fill("""
            enum Eenum_$Name$ : int {
              $values$
            };
            """, values="\n".join(values))

    def behaviour(self):
        row = self.row
        unset = "is not chosen" if row.kind == "alt" else "was never set"
        absent = row.default or ABSENT[row.type]
        codes = [f"{code} for {what}" for code, what in self.refusals()]
        told = f"get_{row.name} gives {absent} while it {unset}."
        does = ["chooses it"] * (row.kind == "alt") + [f"gives {', '.join(codes)}"] * bool(codes)
        return told + (f" set_{row.name} {', and '.join(does)}." if does else "")

    def refusals(self):
        """The codes of the setter, with what each refuses."""
        row = self.row
        if row.enum:
            yield 38, "another text"
        if row.length is not None:
            yield 20, "a shorter text"
            yield 19, "a longer one"
        least, most = INTEGER_LIMITS.get(row.type, (None, None))
        is_first = row.type == "double"
        for code, bound, limit, words in (
                (37, row.lower, least, ("no more than", "less than")),
                (36, row.upper, most, ("no less than", "more than"))):
            if bound is None or bound.on_read or bound.number == str(limit):
                continue
            nan = " and NaN" if is_first else ""
            is_first = False
            yield code, f"{words[0] if bound.strict else words[1]} {bound.number}{nan}"

    def by_number(self, text):
        """The accessors by number; `text` is the pointer to the text that is held."""
        return self.fill("""
            Eenum_$Name$ getenum_$Name$() const { return Eenum_$Name$($row$.enumeration->number_at($text$)); }
            bool setenum_$Name$(Eenum_$Name$ value) { return set_number(*this, $row$, value); }
            """, text=text)


class SimpleRow(Enumerable):
    """A single value: an attribute, a child element of simple type, or the content."""

    def member(self):
        row = self.row
        if row.enum:
            initial = "nullptr"
            if row.default:
                initial = f"internal::k_{row.enum}.first + {row.enum_values.index(row.default)}"
            return f"const std::wstring* {row.member} = {initial};"
        if row.type == "string":
            return f"internal::Text {row.member};"
        if row.type in ("dateTime", "base64"):
            return f"{self.type} {row.member};"
        return f"{self.type} {row.member} = {row.default or ('false' if row.type == 'bool' else 0)};"

    def accessors(self):
        row = self.row
        get = row.member
        if row.type == "string":
            get = f"internal::text_of({row.member})" if row.enum else f"{row.member}.get()"
        text = self.fill("""
            $Result$ get_$Name$() const { return $get$; }
            lmx::elmx_error set_$Name$($Param$ value) { return set(*this, $row$, value); }
            """, get=get)
        if row.enum:
            text += "\n" + self.by_number(row.member)
        if row.has_isset:
            text += "\n" + self.fill("""
                bool isset_$Name$() const { return has($bit$); }
                void unset_$Name$() { drop($bit$); }
                """)
        return text


class ValuesRow(RowShape):
    """A list of simple values. Setters of lists check nothing."""

    def __init__(self, row):
        super().__init__(row)
        self.type, self.param, self.result, self.kind = CPP_TYPES[row.type]
        self.fields.update(Value=self.type, Param=self.param, Result=self.result)

    def behaviour(self):
        return (f"Past the end get_{self.row.name} gives {ABSENT[self.row.type]}, and "
                f"set_{self.row.name} appends.")

    def member(self):
        return f"internal::Values<{self.type}> {self.row.member};"

    def accessors(self):
        return self.fill("""
            $Result$ get_$Name$(unsigned index) const { return $member$.at(index); }
            lmx::elmx_error set_$Name$(unsigned index, $Param$ value) { return $member$.set(index, value); }
            lmx::elmx_error append_$Name$($Param$ value) { return $member$.append(value); }
            lmx::elmx_error insert_$Name$(unsigned index, $Param$ value) { return $member$.insert(index, value); }
            void delete_$Name$(unsigned index) { $member$.remove(index); }
            void clear_$Name$() { $member$.clear(); }
            unsigned size_$Name$() const { return $member$.size(); }
            """)


class ChildRow(RowShape):
    """A single child: held in place if it is required, on the heap if not."""

    kind = "object"

    @property
    def is_in_place(self):
        return self.row.required

    def behaviour(self):
        return (f"The const get_{self.row.name} gives an untouched object if there is none; the other "
                "one and the assignment mark it as present.")

    def member(self):
        if self.is_in_place:
            return f"{self.row.type} {self.row.member};"
        return f"internal::Object* {self.row.member} = nullptr;"

    def accessors(self):
        if self.is_in_place:
            text = self.fill("""
                const $Type$& get_$Name$() const { return $member$; }
                $Type$& get_$Name$() { touch($bit$); return $member$; }
                $Type$& assign_$Name$(const $Type$& value) { return get_$Name$() = value; }
                """)
        else:
            text = self.fill("""
                const $Type$& get_$Name$() const { return internal::child_of<$Type$>($member$); }
                $Type$& get_$Name$() { touch($bit$); return internal::made<$Type$>($member$); }
                $Type$& assign_$Name$(const $Type$& value) { return internal::assigned(get_$Name$(), value); }
                """)
        if self.row.has_isset:
            text += "\n" + self.fill("""
                bool isset_$Name$() const { return has($bit$); }
                void unset_$Name$() { drop($bit$); }
                """)
        return text


class ChildrenRow(RowShape):
    """A list of children."""

    kind = "object"

    def behaviour(self):
        return (f"Past the end the const get_{self.row.name} gives an untouched object; the other one "
                "and the assignment append up to there.")

    def member(self):
        return f"internal::List<{self.row.type}> {self.row.member};"

    def accessors(self):
        return self.fill("""
            const $Type$& get_$Name$(unsigned index) const { return $member$.at(index); }
            $Type$& get_$Name$(unsigned index) { return $member$.grow_to(index); }
            $Type$& assign_$Name$(unsigned index, const $Type$& value) { return internal::assigned(get_$Name$(index), value); }
            lmx::elmx_error append_$Name$() { return $member$.append(); }
            lmx::elmx_error insert_$Name$(unsigned index) { return $member$.insert(index); }
            $Type$& back_$Name$() { return $member$.back(); }
            void delete_$Name$(unsigned index) { $member$.remove(index); }
            void clear_$Name$() { $member$.clear(); }
            unsigned size_$Name$() const { return $member$.size(); }
            internal::Each<$Type$> each_$Name$() { return $member$.each(); }
            internal::Each<const $Type$> each_$Name$() const { return $member$.each(); }
            """)


class HolderRow(ChildRow):
    """The member of a substitution group. On the heap, required or not: it may hold its owner."""

    kind = "member"
    is_in_place = False


class HoldersRow(ChildrenRow):
    """A list of members of a substitution group."""

    kind = "member"


class GroupRow(ChildRow):
    """A value with no element around it."""

    kind = "group"


class MarkRow(RowShape):
    """An empty element, always written and never asked for."""

    kind = "mark"

    def offset_of(self):
        return "0"


class AnyRow(RowShape):
    """Foreign elements."""

    kind = "foreign"

    def member(self):
        return f"internal::Values<internal::AnyElement> {self.row.member};"

    def accessors(self):
        return self.fill("""
            // An element's full name, its namespace and its whole text, each unless the pointer is
            // null. An entry that was appended has a text alone. Nothing if there is no such entry.
            void get_$Name$(unsigned index, std::string* full_name, std::string* namespace_uri, std::string* text) const {
              internal::get_foreign($member$, index, full_name, namespace_uri, text);
            }
            // Whole elements as text, which nothing checks; inserted past the end they are appended.
            lmx::elmx_error append_$Name$(const std::string& text) { return $member$.append({{}, {}, text}); }
            lmx::elmx_error insert_$Name$(unsigned index, const std::string& text) {
              return $member$.insert(index, {{}, {}, text});
            }
            void delete_$Name$(unsigned index) { $member$.remove(index); }
            void clear_$Name$() { $member$.clear(); }
            unsigned size_$Name$() const { return $member$.size(); }
            """)


class InSlot:
    """An alternative of a choice: it lives in the slot while it is chosen."""

    def offset_of(self):
        return f"offsetof({self.row.owner.name}, slot_)"


class ObjectAlternative(InSlot, RowShape):
    kind = "object"

    def behaviour(self):
        return (f"The const get_{self.row.name} gives an untouched object unless this is chosen; the "
                "other one and the assignment choose it.")

    def accessors(self):
        return self.fill("""
            const $Type$& get_$Name$() const { return internal::child_of<$Type$>(chosen_ == $bit$ ? slot_.object : nullptr); }
            $Type$& get_$Name$() { return choose_as<$Type$>($row$); }
            $Type$& assign_$Name$(const $Type$& value) { return choose_as($row$, value); }
            """)


class ValueAlternative(InSlot, Enumerable):
    def accessors(self):
        row = self.row
        if row.type == "string":
            held = "enumerated" if row.enum else "text"
            get = f"internal::text_of(chosen_ == {row.bit} ? slot_.{held} : nullptr)"
        else:
            zero = "0.0" if row.type == "double" else "0"
            get = f"chosen_ == {row.bit} ? slot_.{self.kind} : {zero}"
        text = self.fill("""
            $Result$ get_$Name$() const { return $get$; }
            lmx::elmx_error set_$Name$($Param$ value) { return set(*this, $row$, value); }
            """, get=get)
        if row.enum:
            text += "\n" + self.by_number(f"chosen_ == {row.bit} ? slot_.enumerated : nullptr")
        return text


class MemberAlternative(ObjectAlternative):
    """A member of a substitution group."""

    def accessors(self):
        text = super().accessors()
        if self.row.adopt:
            text += "\n" + self.fill("""
                // Takes ownership, so that an object of a derived type can stand here. If the
                // alternative is chosen already, its object is not freed. A null pointer is chosen
                // as it is, and cannot be written: 45.
                $Type$& assign_$Name$($Type$* value) { return adopt_as($row$, value); }
                """)
        return text
