"""Prints the header of the model, model/Zol.h: every class with its accessors.

What one row contributes stands in rows.py, the bodies in model_source.py.
"""

from model_classes import banner, has_init, overrides_check, overrides_children, \
    overrides_read_attributes, overrides_read_plain, overrides_write_attributes, shapes
from printer import Printer, block, wrap_comment


def emit_header(model):
    out = Printer()
    out.emit("""
        $banner$
        // The document model: one class for each type and element of the format.
        //
        // Every class is built by one pattern. For a row X there are get_X and set_X or assign_X,
        // isset_X and unset_X if it is optional, getenum_X and setenum_X if it is enumerated, and
        // append_X, insert_X, delete_X, clear_X, size_X (back_X for children) if it is a list. A
        // setter gives 0, or the code of the first facet that fails and stores nothing. The non-const
        // get_X of a child marks it as present; that of a list appends until the index exists, as
        // back_X does in an empty list. Past the end the const getters give an empty object and
        // delete_X does nothing. An object owns all that it holds, and a copy is deep. References
        // live until the row they belong to is cleared, replaced or swapped. Text is UTF-16, one
        // unit a wchar_t on every platform. An object belongs to one thread at a time; nothing is
        // shared between objects.
        #pragma once

        #include <cstddef>
        #include <cstdint>
        #include <iosfwd>
        #include <string>

        #include "lmx/binary.h"
        #include "lmx/dates.h"
        #include "lmx/errors.h"
        #include "lmx/internal/pool.h"
        #include "model/document_result.h"
        #include "model/internal/fields.h"
        #include "port/export.h"

        namespace lmx {
        class c_xml_reader;
        class c_xml_writer;
        struct s_event_map;
        struct s_ns_map;
        }  // namespace lmx

        namespace zol_v2 {

        namespace internal {
        struct PlainAccess;
        class PlainReader;
        template <class T, unsigned traits>
        struct Steps;
        }  // namespace internal

        $forward$
        """, banner=banner(template="model_header.py"),
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
        text = f"The element {info.name}, of type {base}."
    elif info.shape == "abstract":
        text = f"The head element {info.name} of its family, which can be read but not written."
    else:
        text = info.comment
    return wrap_comment(text) if text else ""


def row_comment(row):
    """What the accessors below are about: type, occurrence and facets, as in the table."""
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
    if row.length is not None:
        words.append(f"{row.length} character{'s' if row.length != 1 else ''}")
    if row.enum:
        words.append("one of " + (row.enum if row.enum == row.name else f"the {row.enum} values"))
    if row.default:
        words.append(f"default {row.default}")
    return f"// {row.name}: {', '.join(words)}"


def emit_class(out, info):
    base = f" : public {info.schema.base}" if info.schema.base else ""
    if info.is_poly and not base:
        base = " : public lmx::internal::Pooled"
    sections = [special_members(info), lifetime(info), identity(info), element_steps(info),
                document_members(info), facade_members(info), nil_members(info),
                choice_members(info)]
    for shape in shapes(info):
        accessors = shape.accessors()
        if accessors:
            parts = [row_comment(shape.row), shape.types(), accessors]
            sections.append("\n".join(part for part in parts if part))
    if class_comment(info):
        out.raw(class_comment(info))
    out.raw(f"class ZOL_API {info.name}{base} {{")
    for access, text in (("public", "\n\n".join(s.strip("\n") for s in sections if s)),
                         ("protected", protected_steps(info)), ("private", private_members(info))):
        if text:
            if access != "public":
                out.blank()
            out.raw(f" {access}:")
            out.raw(text, indent=2)
    out.raw("};")


def special_members(info):
    out = Printer()
    if info.is_wrapper:
        out.emit("""
            $Class$();
            $Class$(const $Class$& other);
            $Class$& operator=(const $Class$& other);
            """, Class=info.name)
        return out.text()
    before, after = ("", " override") if info.base else ("virtual ", "")
    clone = f"{before}{info.name}* clone() const{after};" if info.is_poly else ""
    out.emit("""
        $Class$();
        $Class$(const $Class$& other);
        $clone$
        $before$~$Class$()$after$;
        $Class$& operator=(const $Class$& other);
        """, Class=info.name, clone=clone, before=before, after=after)
    return out.text()


def lifetime(info):
    if not info.own_lifetime:
        return ""
    out = Printer()
    out.emit("""
        void swap($Class$& other);
        void reset();
        bool is_occurs_ok() const;
        """, Class=info.name)
    return out.text()


def identity(info):
    if info.shape != "poly":
        return ""
    out = Printer()
    if info.base:
        out.emit("""
            // The name of the type, compared by address.
            static const char* id;
            const char* getid() const override;
            bool has_id(const char* identity) const override;
            """)
    else:
        out.emit("""
            // The name of the type, compared by address; has_id() is true for those of the bases too.
            static const char* id;
            virtual const char* getid() const;
            virtual bool has_id(const char* identity) const;
            """)
    if info.factory:
        out.emit("""
            // A new object of the named type, which the caller owns; null if the namespace is not
            // that of the format or the family has no such type.
            static $Class$* factory(int ns_id, const std::string& type_name);
            """, Class=info.name)
    return out.text()


def element_steps(info):
    out = Printer()
    if info.is_substitution or info.shape == "anonymous":
        out.emit("""
            lmx::elmx_error marshal(lmx::c_xml_writer& writer, const char* name) const;
            // Whether the element at hand belongs here; if not, the reader is left as it was.
            static bool is_member(lmx::c_xml_reader& reader, const std::string& name);
            bool unmarshal(lmx::c_xml_reader& reader, std::string* name, lmx::elmx_error* err);
            """)
        return out.text()
    if info.shape == "abstract":
        out.emit("""
            using $Base$::unmarshal;
            lmx::elmx_error unmarshal(lmx::c_xml_reader& reader);
            """, Base=info.schema.base)
        return out.text()
    if info.shape == "element" and not (info.is_document or info.nillable):
        return ""
    before = "virtual " if info.is_poly and not info.base else ""
    after = " override" if info.is_poly and info.base else ""
    out.emit("""
        $before$lmx::elmx_error marshal(lmx::c_xml_writer& writer, const char* name) const$after$;
        $before$lmx::elmx_error unmarshal(lmx::c_xml_reader& reader, const std::string& name)$after$;
        """, before=before, after=after)
    return out.text()


def document_members(info):
    if not info.is_document:
        return ""
    out = Printer()
    out.emit("""
        // The element as a document of its own. A file that cannot be opened gives 1. A document
        // with another root gives 16.
        static constexpr char k_element_name[] = "Zol:$Class$";
        static const lmx::s_ns_map* ns_map();
        $Class$(const char* file, lmx::elmx_error* err);
        $Class$(const char* buffer, std::size_t size, lmx::elmx_error* err);
        $Class$(const std::string& text, lmx::elmx_error* err);
        // A failed marshal leaves no file and the string as it was; a stream keeps the partial text.
        lmx::elmx_error marshal(const char* file) const;
        lmx::elmx_error marshal(std::string* out) const;
        lmx::elmx_error marshal(std::ostream& stream) const;
        // What was read before the first failure stays. A second reading appends to lists and
        // overwrites elements; an attribute that is set gives 3.
        lmx::elmx_error unmarshal(const char* file);
        lmx::elmx_error unmarshal(const char* buffer, std::size_t size);
        lmx::elmx_error unmarshal(const std::string& text);
        lmx::elmx_error unmarshal(lmx::c_xml_reader& reader);
        """, Class=info.name)
    return out.text()


def facade_members(info):
    if not info.has("root"):
        return ""
    out = Printer()
    out.emit("""
        // Whole documents. Reading appends to what the object holds; reset() comes first if that is
        // not wanted. Writing is const and yet stamps the Header with this library's name and
        // version, also if it fails.
        //
        // The text of a document. Its XML declaration is acted on after conversion to UTF-8, so
        // that one which says UTF-16 is a mismatch: 15.
        lmx::elmx_error loadString(const std::wstring& text);
        XMLDocumentResult writeString() const;
        // A path that ends in ".zolz" is an archive whose first entry is the document, any other an
        // XML file. 1: cannot be opened. 1000: the entry of an archive is damaged. What is no
        // archive at all, or cannot be opened as one, throws CZipException; openFile() does not.
        lmx::elmx_error loadFile(const std::wstring& path);
        // ".zol" for XML, ".zolz" for an archive; any other path gives 1001 and touches nothing.
        // An archive goes through a working file of the same name that ends in ".zol", overwriting
        // and then removing what stood there. A failed marshal removes the ".zol" file, which is
        // truncated by then. Gives 0 for ".zol" in a directory that cannot be written, having
        // written nothing; throws CZipException if an archive cannot be created. saveFile() has
        // none of these edges.
        lmx::elmx_error writeFile(const std::wstring& path) const;
        """)
    return out.text()


def nil_members(info):
    if not info.nillable:
        return ""
    out = Printer()
    out.emit("""
        // A nilled element is written as xsi:nil without content. Only reset(), swap(), copying and
        // reading take the mark away again.
        void setnil_$Class$() { nil_ = true; }
        bool isnil_$Class$() const { return nil_; }
        """, Class=info.name)
    return out.text()


def choice_members(info):
    if not info.alternatives:
        return ""
    out = Printer()
    names = [f"chosen_{row.name} = {number}" for number, row in enumerate(info.alternatives)]
    out.emit("""
        enum elmx_chosen : int {
          $names$
        };
        elmx_chosen getchosen() const { return static_cast<elmx_chosen>(chosen_); }
        """, names=",\n".join(names + [f"chosen_none = {info.none}"]))
    return out.text()


def protected_steps(info):
    if info.writes_no_tag:
        return ""
    out = Printer()
    if overrides_write_attributes(info):
        out.emit("void marshal_attributes(lmx::c_xml_writer& writer) const;")
    if overrides_children(info):
        out.emit("lmx::elmx_error marshal_child_elements(lmx::c_xml_writer& writer) const;")
    if overrides_read_attributes(info):
        out.emit("""
            bool unmarshal_attributes(lmx::c_xml_reader& reader, const std::string& name,
                                      lmx::elmx_error* err);
            """)
    if overrides_read_plain(info):
        out.emit("void unmarshal_plain_attributes(internal::PlainReader& in);")
    if overrides_check(info):
        out.emit("lmx::elmx_error unmarshal_attributes_check(lmx::c_xml_reader& reader);")
    if overrides_children(info):
        if info.is_simple:
            out.emit("""
                bool unmarshal_body(lmx::c_xml_reader& reader, std::string* name, lmx::elmx_error* err,
                                    bool has_text);
                """)
        else:
            out.emit("""
                bool unmarshal_body(lmx::c_xml_reader& reader, std::string* name, lmx::elmx_error* err);
                """)
    return out.text() if out.text().strip() else ""


def private_members(info):
    out = Printer()
    if not info.writes_no_tag and (not info.is_wrapper or info.nillable):
        out.emit("""
            template <class T, unsigned traits>
            friend struct internal::Steps;

            """)
        out.blank()
    if info.shape == "simple":
        out.emit("""
            friend struct internal::PlainAccess;
            void unmarshal_plain(internal::PlainReader& in);

            """)
        out.blank()
    if has_init(info):
        out.emit("void init();")
        out.blank()
    if info.is_substitution:
        out.emit("""
            void release_choice();
            // Takes ownership of a new member and makes it the chosen one; null is refused.
            template <class T>
            T* hold(T* member, int selection);
            friend struct internal::PlainAccess;
            static const lmx::s_event_map* member_rows();
            lmx::elmx_error marshal_child_elements(lmx::c_xml_writer& writer) const;

            $Root$* member_ = nullptr;
            int chosen_ = chosen_none;
            """, Root=info.root_type.name)
    elif info.shape == "anonymous":
        out.emit("lmx::elmx_error marshal_child_elements(lmx::c_xml_writer& writer) const;")
        out.blank()
    members = [member for member in (shape.member() for shape in shapes(info)) if member]
    if members:
        out.raw("\n".join(members))
    if info.alternatives and not info.is_substitution:
        out.emit("""
            internal::Slot slot_;
            int chosen_ = chosen_none;
            """)
    if info.nillable:
        out.emit("bool nil_ = false;")
    return out.text() if out.text().strip() else ""
