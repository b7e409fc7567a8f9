"""Prints the header of the model, model/Zol.h: every class with its accessors.

What one row contributes stands in rows.py, the tables in model_source.py.
"""

from model_classes import banner, shapes
from printer import Printer, block, remarked, wrap_comment


def emit_header(model):
    out = Printer()
    out.emit("""
        $banner$
        // The document model: one class for each type and element of the format.
        //
        // Every class is built by one pattern. For a row X there are get_X and set_X or assign_X,
        // isset_X and unset_X if it is optional, getenum_X and setenum_X if it is enumerated, and
        // append_X, insert_X, delete_X, clear_X, size_X (back_X and each_X for children) if it is a
        // list. A setter gives 0, or the code of the first facet that fails and stores nothing. The
        // non-const get_X of a child marks it as present; that of a list appends until the index
        // exists, as back_X does in an empty list. setenum_X is false, and stores nothing, for a number
        // that is no value's. Past the end the const getters give an empty object, delete_X does nothing,
        // and set_X and insert_X of a list append. An object owns all that it holds, and a copy is deep;
        // what was moved from is empty. References live until the row they belong to is cleared, replaced,
        // moved from or swapped. Text is UTF-16, one unit a wchar_t on every platform. An object belongs
        // to one thread at a time; nothing is shared between objects.
        //
        // Every class has swap(), reset(), which makes it as new, and is_occurs_ok(), whether all that
        // is required is there; those that are elements have marshal() and unmarshal() (see
        // model/internal/bases.h). k_class is what the library knows of a class; ask it through
        // model/reflection.h.
        #pragma once

        #include <cstddef>
        #include <iosfwd>
        #include <string>

        #include "lmx/binary.h"
        #include "lmx/dates.h"
        #include "lmx/errors.h"
        #include "model/document_result.h"
        #include "model/internal/bases.h"
        #include "model/internal/object.h"
        #include "model/internal/walkers.h"
        #include "port/export.h"
        #include "port/narrow_text.h"

        namespace zol_v2 {

        namespace internal {
        $enumerations$
        }  // namespace internal

        $forward$
        """, banner=banner(template="model_header.py"),
        enumerations=block(f"extern ZOL_API const EnumTable k_{name};" for name in model.enums),
        forward=block(f"class {info.name};" for info in model.ordered))
    for info in model.ordered:
        out.blank()
        emit_class(out, info)
    out.blank()
    out.emit("}  // namespace zol_v2")
    return out.cpp_text()


def class_comment(info):
    base = info.schema.base
    if info.shape == "element":
        text = f"{info.comment} The element {info.name}, of type {base}."
    elif info.shape == "abstract":
        text = (f"{info.comment} The head element {info.name} of its family, which can be read but "
                "not written.")
    else:
        text = info.comment
    return wrap_comment(text)


def row_comment(shape):
    """What the accessors below are about: meaning, type, occurrence and facets, what is given for
    what is absent, and the codes of a refusal."""
    row = shape.row
    kinds = {"attr": "attribute", "elem": "element", "content": "the content",
             "alt": "alternative", "group": "one value of a group", "any": "foreign elements"}
    words = [kinds[row.kind], row.type] if row.kind != "any" else [kinds[row.kind]]
    if row.kind not in ("alt", "content"):
        words.append({(True, False): "required", (False, False): "optional",
                      (False, True): "any number", (True, True): "at least one"}
                     [(row.required, row.is_list)])
    for bound, sign in ((row.lower, ">"), (row.upper, "<")):
        if bound is not None:
            words.append(f"{sign}{'' if bound.strict else '='} {bound.number}"
                         f"{' on reading' if bound.on_read else ''}")
    if row.unit:
        words.append(f"unit {row.unit}")
    if row.length is not None:
        words.append(f"{row.length} character{'s' if row.length != 1 else ''}")
    if row.enum:
        words.append("one of " + (row.enum if row.enum == row.name else f"the {row.enum} values"))
    if row.default:
        words.append(f"default {row.default}")
    return "\n".join(wrap_comment(text) for text in (
        row.note, f"{row.name}: {', '.join(words)}.", shape.behaviour()) if text)


def emit_class(out, info):
    sections = [special_members(info), identity(info), element_steps(info),
                document_members(info), facade_members(info), nil_members(info),
                choice_members(info)]
    for shape in shapes(info):
        accessors = shape.accessors()
        if accessors:
            parts = [row_comment(shape), shape.types(), accessors]
            sections.append("\n".join(part for part in parts if part))
    out.raw(class_comment(info))
    bases = [base_of(info)] + ([f"internal::Document<{info.name}>"] if info.is_document else [])
    out.raw(f"class ZOL_API {info.name} : public {', public '.join(bases)} {{")
    for access, text in (("public", "\n\n".join(s.strip("\n") for s in sections if s)),
                         ("private", private_members(info))):
        if text:
            if access != "public":
                out.blank()
            out.raw(f" {access}:")
            out.raw(text, indent=2)
    out.raw("};")


def base_of(info):
    """What it derives from: the class of the schema, or what has the operations of its shape."""
    if info.schema.base is not None:
        return info.schema.base
    if info.shape == "poly":
        return "internal::Polymorphic"
    return "internal::Object" if info.writes_no_tag else "internal::Plain"


def special_members(info):
    out = Printer()
    clone = ""
    if info.is_poly:
        before, after = ("", " override") if info.base else ("virtual ", "")
        clone = f"{before}{info.name}* clone() const{after} {{ return new {info.name}(*this); }}"
    copied = "{ return assigned(*this, other, k_class); }" if info.own_lifetime else "= default;"
    moved = "{ return moved(*this, other); }" if info.own_lifetime else "= default;"
    out.emit("""
        // With nothing set$but$.
        $Class$();
        // A deep copy.
        $Class$(const $Class$& other);
        $Class$& operator=(const $Class$& other) $copied$
        $clone$
        // Of what another held, which is then empty.
        $Class$($Class$&& other) noexcept;
        $Class$& operator=($Class$&& other) noexcept $moved$
        // Deletes what it holds.
        ~$Class$() override;
        """, Class=info.name, clone=clone, copied=copied, moved=moved,
             but=" but the read stamp" if info.has("root") else "")
    if info.own_lifetime:
        out.emit("""
            // Exchanges all that the two hold.
            void swap($Class$& other) noexcept { internal::swap(*this, other, k_class); }
            // Makes it as new, with nothing set.
            void reset() { internal::reset(*this, k_class); }
            // Is all there that is required?
            bool is_occurs_ok() const { return internal::is_occurs_ok(*this, k_class); }
            """, Class=info.name)
    out.emit("""
        // What the library knows of the class, for model/reflection.h.
        static const internal::Class k_class;
        """)
    return out.text()


def identity(info):
    if info.shape != "poly":
        return ""
    out = Printer()
    out.emit("""
        // The name that an xsi:type has for the class.
        static const char* id;
        """)
    if info.factory:
        out.emit("""
            // A new object of the named type, which the caller owns; null if the namespace is not
            // that of the format or the family has no such type.
            static $Class$* factory(int ns_id, const std::string& type_name) {
              return static_cast<$Class$*>(internal::make_named(k_class, ns_id, type_name, nullptr));
            }
            """, Class=info.name)
    return out.text()


def element_steps(info):
    out = Printer()
    if info.writes_no_tag:
        out.emit("""
            // Writes what is chosen, under its own name: 46 if nothing is.
            lmx::elmx_error marshal(lmx::c_xml_writer& writer, const char* name) const {
              return internal::write_element(*this, k_class, writer, name);
            }
            // Whether the element at hand belongs here; if not, the reader is left as it was.
            static bool is_member(lmx::c_xml_reader& reader, const std::string&) {
              return internal::is_member(k_class, reader);
            }
            // Reads the element at hand, and gives the name of what follows it. False if the element
            // does not belong here, or with *err set after a failure.
            bool unmarshal(lmx::c_xml_reader& reader, std::string* name, lmx::elmx_error* err) {
              return internal::read_member(*this, k_class, reader, name, err);
            }
            """)
    elif info.shape == "abstract":
        out.emit("""
            using $Base$::unmarshal;
            // Reads a document that begins with this element: 0, or the code of the fault.
            lmx::elmx_error unmarshal(lmx::c_xml_reader& reader) {
              return internal::unmarshal_document(*this, k_class, reader);
            }
            """, Base=info.schema.base)
    return out.text() if out.text().strip() else ""


def document_members(info):
    if not info.is_document:
        return ""
    out = Printer()
    out.emit("""
        // The name of its element.
        static constexpr char k_element_name[] = "Zol:$Class$";
        // From a file, from bytes, or from a text, by unmarshal(), whose code *err gets.
        $Class$(const char* file, lmx::elmx_error* err) : $Class$() { construct(err, file); }
        $Class$(const char* buffer, std::size_t size, lmx::elmx_error* err) : $Class$() {
          construct(err, buffer, size);
        }
        $Class$(const std::string& text, lmx::elmx_error* err) : $Class$() { construct(err, text); }
        using Document::marshal;
        using Document::unmarshal;
        using $Base$::marshal;
        using $Base$::unmarshal;
        """, Class=info.name, Base=base_of(info).replace("internal::", ""))
    return out.text()


def facade_members(info):
    if not info.has("root"):
        return ""
    out = Printer()
    out.emit("""
        // Whole documents. Reading appends to what the object holds; reset() comes first if that is
        // not wanted. Writing is const and yet stamps the Header with this library's name and
        // version, also if it fails. Texts and paths may be narrow, in UTF-8, and a path a
        // std::filesystem::path.
        //
        // The text of a document. Its XML declaration is acted on after conversion to UTF-8, so
        // that one which says UTF-16 is a mismatch: 15.
        lmx::elmx_error loadString(const std::wstring& text);
        lmx::elmx_error loadString(zol::port::Utf8Text text);
        XMLDocumentResult writeString() const;
        // A path that ends in ".zolz" is an archive whose first entry is the document, any other an
        // XML file. 1: cannot be opened. 1000: the entry of an archive is damaged. What is no
        // archive at all, or cannot be opened as one, throws CZipException; openFile() does not.
        lmx::elmx_error loadFile(const std::wstring& path);
        lmx::elmx_error loadFile(zol::port::FilePath path) { return loadFile(path.wide()); }
        // ".zol" for XML, ".zolz" for an archive; any other path gives 1001 and touches nothing.
        // An archive goes through a working file of the same name that ends in ".zol", overwriting
        // and then removing what stood there. A failed marshal removes the ".zol" file, which is
        // truncated by then. Gives 0 also if the ".zol" can't be made or written, and an archive then
        // gets what stands there (see docs/formats.md); throws CZipException if an archive cannot be
        // created. saveFile() has none of these edges.
        lmx::elmx_error writeFile(const std::wstring& path) const;
        lmx::elmx_error writeFile(zol::port::FilePath path) const { return writeFile(path.wide()); }
        """)
    return out.text()


def nil_members(info):
    if not info.nillable:
        return ""
    out = Printer()
    out.emit("""
        // A nilled element is written as xsi:nil without content. Only reset(), swap(), copying and
        // reading take the mark away again.
        void setnil_$Class$() { touch($bit$); }
        bool isnil_$Class$() const { return has($bit$); }
        """, Class=info.name, bit=info.nil_bit)
    return out.text()


def choice_members(info):
    if not info.alternatives:
        return ""
    out = Printer()
    names = [remarked(f"chosen_{row.name} = {number},", row.note)
             for number, row in enumerate(info.alternatives)]
    names.append(remarked(f"chosen_none = {info.none},", "Nothing."))
    out.emit("""
        // Which alternative is held.
        enum elmx_chosen : int {
          $names$
        };
        elmx_chosen getchosen() const { return static_cast<elmx_chosen>(chosen_); }
        """, names="\n".join(names))
    cases = "\n".join(f"case chosen_{row.name}: visitor(get_{row.name}()); return true;"
                      for row in info.alternatives)
    out.emit("""
        // Calls the visitor with what is chosen; false if nothing is.
        template <class Visitor>
        bool visit(Visitor&& visitor) const {
          switch (chosen_) {
            $cases$
            default: return false;
          }
        }
        """, cases=cases)
    return out.text()


def private_members(info):
    out = Printer()
    if info.rows:
        out.emit("static const internal::Row k_rows[];")
        out.blank()
    if info.keeps_batch:
        # Goes last, when nothing can look at its blocks any more.
        out.emit("internal::Batch batch_;")
    members = [member for member in (shape.member() for shape in shapes(info)) if member]
    if members:
        out.raw("\n".join(members))
    if info.alternatives:
        out.emit("internal::Slot slot_;")
    return out.text() if out.text().strip() else ""
