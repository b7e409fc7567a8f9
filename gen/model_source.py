"""Prints the sources of the model, one for each table file: the bodies of its classes.

A body is a few lines over the helpers of model/internal; what one row contributes stands in rows.py.
"""

import pathlib

from model_classes import banner, has_init, overrides_check, overrides_children, \
    overrides_read_attributes, overrides_read_plain, overrides_write_attributes, shapes
from printer import Printer
from rows import shape_of


def source_name(table):
    return f"Zol_{pathlib.Path(table).stem}.cpp"


def emit_source(model, table):
    classes = [info for info in model.classes.values() if info.where.file == table]
    out = Printer()
    out.emit("""
        $banner$
        #include <memory>
        #include <ostream>

        #include "lmx/reader.h"
        #include "lmx/writer.h"
        #include "model/Zol.h"
        #include "model/internal/choosing.h"
        #include "model/internal/copying.h"
        #include "model/internal/document_namespace.h"
        #include "model/internal/enumerations.h"
        #include "model/internal/events.h"
        #include "model/internal/steps.h"
        #include "model/sdk_stamp.h"

        namespace zol_v2 {

        namespace event = internal::event;
        using internal::IntegerRange;
        using internal::Range;
        using internal::Steps;
        using lmx::c_xml_reader;
        using lmx::c_xml_writer;
        using lmx::elmx_error;
        using lmx::s_event_map;
        """, banner=banner(f"model/schema/{table}", "model_source.py"))
    for info in classes:
        out.blank()
        emit_class_source(out, info)
    out.blank()
    out.emit("}  // namespace zol_v2")
    return out.cpp_text()


def emit_class_source(out, info):
    out.emit(f"// {info.name}")
    constants(out, info)
    for part in (lifetime_bodies, identity_bodies, holder_bodies, write_bodies, read_bodies,
                 element_bodies, document_bodies):
        text = part(info)
        if text:
            out.blank()
            out.emit("$text$", text=text)
    for shape in shapes(info):
        bodies = shape.bodies()
        if bodies:
            out.blank()
            out.emit("$bodies$", bodies=bodies)


def constants(out, info):
    ranges = [shape.constants() for shape in shapes(info)]
    ranges = [constant for constant in ranges if constant]
    if ranges:
        out.blank()
        out.emit("$ranges$", ranges="\n".join(ranges))
    for kind, rows in (("attributes", info.attributes), ("elements", element_rows(info))):
        if not needs_table(info, kind, rows):
            continue
        lines = [f'{{internal::k_document_namespace_id, "{row.name}", {len(row.name)}, '
                 f'event::{row.name}}},' for row in rows]
        if kind == "attributes":  # an attribute has no prefix, and so no namespace
            lines = [line.replace("internal::k_document_namespace_id", "lmx::k_ns_none")
                     for line in lines]
        out.blank()
        out.emit("""
            constexpr s_event_map k_$Class$_$kind$[] = {
              $rows$
              {0, nullptr, 0, lmx::elxp_unknown}};
            """, Class=info.name, kind=kind, rows="\n".join(lines))


def element_rows(info):
    return [row for row in info.elements + info.alternatives if row.is_named]


def needs_table(info, kind, rows):
    if kind == "attributes":
        return overrides_read_attributes(info) and (bool(rows) or info.nillable)
    return bool(info.elements or info.alternatives)


def lifetime_bodies(info):
    out = Printer()
    name, base = info.name, info.schema.base
    rows = shapes(info)
    if info.is_wrapper:
        out.emit("""
            $Class$::$Class$() = default;
            $Class$::$Class$(const $Class$& other) = default;
            """, Class=name)
        if not info.nillable:
            out.emit("$Class$& $Class$::operator=(const $Class$& other) = default;", Class=name)
            return out.text()
    else:
        init = "{ init(); }" if has_init(info) else "= default;"
        out.emit("""
            $Class$::$Class$() $init$
            $destructor$
            """, Class=name, init=init,
            destructor=f"{name}::~{name}() " + ("{ release_choice(); }" if info.is_substitution
                                                else "= default;"))
        copies = [shape.copy() for shape in rows if not shape.row.kind == "alt"]
        copies = (["init();"] if has_init(info) else []) + [c for c in copies if c]
        if info.nillable:
            copies.append("nil_ = other.nil_;")
        copies += choice_copies(info)
        initialiser = f" : {base}(other)" if base else ""
        out.blank()
        if copies:
            out.emit("""
                $Class$::$Class$(const $Class$& other)$initialiser$ {
                  $copies$
                }
                """, Class=name, initialiser=initialiser, copies="\n".join(copies))
        else:
            parameter = "other" if base else ""
            out.emit(f"{name}::{name}(const {name}& {parameter}){initialiser} {{}}")
    out.blank()
    out.emit("""
        $Class$& $Class$::operator=(const $Class$& other) {
          $Class$ copy(other);
          copy.swap(*this);
          return *this;
        }
        """, Class=name)
    swaps = [f"{base}::swap(other);"] if base else []
    swaps += [s for s in (shape.swap() for shape in rows) if s]
    if info.is_substitution:
        swaps.append("std::swap(member_, other.member_);")
    elif info.alternatives:
        swaps.append("slot_.swap(other.slot_);")
    if info.alternatives:
        swaps.append("std::swap(chosen_, other.chosen_);")
    if info.nillable:
        swaps.append("std::swap(nil_, other.nil_);")
    out.blank()
    if swaps:
        out.emit("""
            void $Class$::swap($Class$& other) {
              $swaps$
            }
            """, Class=name, swaps="\n".join(swaps))
    else:
        out.emit(f"void {name}::swap({name}&) {{}}")
    out.blank()
    out.emit("""
        void $Class$::reset() {
          $Class$ fresh;
          fresh.swap(*this);
        }
        """, Class=name)
    occurs = [f"{base}::is_occurs_ok()"] if base else []
    occurs += [o for o in (shape.occurs() for shape in rows) if o]
    if info.alternatives:
        occurs.append("chosen_ != chosen_none")
    condition = " && ".join(occurs) or "true"
    if info.nillable:
        condition = f"nil_ || ({condition})" if " && " in condition else f"nil_ || {condition}"
    out.blank()
    out.emit("""
        bool $Class$::is_occurs_ok() const { return $condition$; }
        """, Class=name, condition=condition)
    if has_init(info):
        statements = [s for s in (shape.initialise() for shape in rows) if s]
        if info.has("root"):
            statements.append("SdkStamp().stampRead(*this);")
        out.blank()
        out.emit("""
            void $Class$::init() {
              $statements$
            }
            """, Class=name, statements="\n".join(statements))
    return out.text()


def choice_copies(info):
    if info.is_substitution:
        return ["if (other.member_ != nullptr) member_ = other.member_->clone();",
                "chosen_ = other.chosen_;"]
    if not info.alternatives:
        return []
    cases = []
    for shape in shapes(info):
        if shape.row.kind == "alt":
            cases += [f"case {shape.selection}:", f"  {shape.copy()}", "  break;"]
    return ["switch (other.chosen_) {"] + ["  " + line for line in cases] + ["}"]


def identity_bodies(info):
    if info.shape != "poly":
        return ""
    out = Printer()
    inherited = f" || {info.schema.base}::has_id(identity)" if info.base else ""
    out.emit("""
        const char* $Class$::id = "$Class$";
        $Class$* $Class$::clone() const { return new $Class$(*this); }
        const char* $Class$::getid() const { return id; }
        bool $Class$::has_id(const char* identity) const { return identity == id$inherited$; }
        """, Class=info.name, inherited=inherited)
    if info.factory:
        rows = [f'{{"{name}", internal::make_new<{info.name}, {name}>}},' for name in info.factory]
        out.blank()
        out.emit("""
            $Class$* $Class$::factory(int ns_id, const std::string& type_name) {
              static constexpr internal::FactoryRow<$Class$> k_rows[] = {
                $rows$
              };
              return internal::make_from(k_rows, ns_id, type_name);
            }
            """, Class=info.name, rows="\n".join(rows))
    return out.text()


def holder_bodies(info):
    if not info.is_substitution:
        return ""
    out = Printer()
    out.emit("""
        void $Class$::release_choice() { delete member_; }

        template <class T>
        T* $Class$::hold(T* member, int selection) {
          if (member == nullptr) return nullptr;
          release_choice();
          member_ = member;
          chosen_ = selection;
          return member;
        }

        elmx_error $Class$::marshal(c_xml_writer& writer, const char*) const {
          if (!is_occurs_ok()) return lmx::elmx_occurs_on_marshal;
          lmx::internal::MarshalScope scope(writer);
          return marshal_child_elements(writer);
        }

        elmx_error $Class$::marshal_child_elements(c_xml_writer& writer) const {
          static constexpr const char* k_names[] = {
            $names$
          };
          if (chosen_ < 0 || chosen_ >= $count$) return internal::bad_choice(writer, "$Class$", __LINE__);
          if (member_ == nullptr) return lmx::elmx_type_not_set;
          $expect$
          return member_->marshal(writer, k_names[chosen_]);
        }

        const s_event_map* $Class$::member_rows() { return k_$Class$_elements; }

        bool $Class$::is_member(c_xml_reader& reader, const std::string&) {
          return internal::is_in_table(reader, member_rows());
        }

        bool $Class$::unmarshal(c_xml_reader& reader, std::string* name, elmx_error* err) {
          internal::MemberReader member(reader, *name, *err, k_$Class$_elements, __LINE__);
          switch (member.event()) {
            $cases$
            default: return member.skip();
          }
        }
        """, Class=info.name, count=len(info.alternatives),
        names=",\n".join(shape_of(row).write() for row in info.alternatives),
        expect="\n".join(f"if (chosen_ == chosen_{row.name}) "
                         f"writer.set_expected_class_identity({row.type}::id);"
                         for row in info.alternatives if row.xsi_type),
        cases="\n".join(f"case event::{row.name}: {shape_of(row).read(0)}"
                        for row in info.alternatives))
    return out.text()


def write_bodies(info):
    out = Printer()
    base = info.schema.base
    if info.writes_no_tag and info.is_substitution:
        return ""
    if overrides_write_attributes(info) and not info.writes_no_tag:
        lines = [f"{base}::marshal_attributes(writer);"] if base else []
        if info.attributes:
            lines.append("internal::AttributeWriter out(writer);")
            lines += [shape_of(row).write() for row in info.attributes]
        _function(out, info, "void", "marshal_attributes",
                  f"c_xml_writer&{' writer' if lines else ''}", lines, const=True)
    if overrides_children(info):
        lines = []
        if base:
            lines.append(f"if (const elmx_error error = {base}::marshal_child_elements(writer)) "
                         "return error;")
        if info.is_simple:
            lines += [shape_of(info.content).write(), "return lmx::elmx_ok;"]
        elif info.alternatives:
            lines += choice_writer(info)
        elif info.elements:
            lines.append("internal::BodyWriter out(writer);")
            lines += [shape_of(row).write() for row in info.elements]
            lines.append("return out.error();")
        else:
            lines.append("return lmx::elmx_ok;")
        named = " writer" if len(lines) > 1 else ""
        out.blank()
        _function(out, info, "elmx_error", "marshal_child_elements", f"c_xml_writer&{named}", lines,
                  const=True)
    return out.text() if out.text().strip() else ""


def choice_writer(info):
    item = "" if info.shape == "anonymous" else f"Zol:{info.name}"
    lines = ["internal::BodyWriter out(writer);", "switch (chosen_) {"]
    for shape in shapes(info):
        if shape.row.kind == "alt":
            lines.append(f"  case {shape.selection}: {shape.write()} break;")
    lines.append(f'  default: return internal::bad_choice(writer, "{item}", __LINE__);')
    return lines + ["}", "return out.error();"]


def _function(out, info, result, name, parameters, lines, const=False):
    suffix = " const" if const else ""
    if not lines:
        out.emit(f"{result} {info.name}::{name}({parameters}){suffix} {{}}")
        return
    out.emit("""
        $result$ $Class$::$name$($parameters$)$suffix$ {
          $lines$
        }
        """, result=result, Class=info.name, name=name, parameters=parameters, suffix=suffix,
        lines="\n".join(lines))


def read_bodies(info):
    out = Printer()
    if info.is_substitution:
        return ""
    if overrides_read_attributes(info) and not info.writes_no_tag:
        out.emit("$text$", text=attribute_reader(info))
    if overrides_read_plain(info) and not info.writes_no_tag:
        out.blank()
        out.emit("$text$", text=plain_attribute_reader(info))
    if overrides_check(info) and not info.writes_no_tag:
        out.blank()
        out.emit("$text$", text=attribute_check(info))
    if overrides_children(info):
        out.blank()
        if info.alternatives:
            out.emit("$text$", text=choice_reader(info))
        elif info.is_simple:
            steps = [shape_of(row).read_plain() for row in info.attributes + [info.content]]
            out.emit("""
                bool $Class$::unmarshal_body(c_xml_reader& reader, std::string* name, elmx_error* err, bool has_text) {
                  return internal::ContentReader(reader, *name, *err, has_text, __LINE__).$read$;
                }

                void $Class$::unmarshal_plain(internal::PlainReader& in) {
                  $steps$
                }
                """, Class=info.name, read=shape_of(info.content).read(0), steps="\n".join(steps))
        else:
            out.emit("$text$", text=body_reader(info))
    return out.text() if out.text().strip() else ""


def attribute_reader(info):
    out = Printer()
    base = info.schema.base
    otherwise = f"{base}::unmarshal_attributes(reader, name, err)" if base else "false"
    cases = [f"case event::{row.name}: return attribute.{shape_of(row).read(0)};"
             for row in info.attributes]
    if info.nillable:
        cases.append("case lmx::elxp_xsi_nil: return attribute.read_nil(nil_);")
    if not cases:
        out.emit("""
            bool $Class$::unmarshal_attributes(c_xml_reader&, const std::string&, elmx_error*) { return false; }
            """, Class=info.name)
        return out.text()
    out.emit("""
        bool $Class$::unmarshal_attributes(c_xml_reader& reader, const std::string& name, elmx_error* err) {
          internal::AttributeReader attribute(reader, name, *err, k_$Class$_attributes, __LINE__);
          switch (attribute.event()) {
            $cases$
            default: return $otherwise$;
          }
        }
        """, Class=info.name, cases="\n".join(cases), otherwise=otherwise)
    return out.text()


def plain_attribute_reader(info):
    out = Printer()
    lines = [shape_of(row).read_plain() for row in info.attributes]
    if info.schema.base:
        lines.insert(0, f"{info.schema.base}::unmarshal_plain_attributes(in);")
    _function(out, info, "void", "unmarshal_plain_attributes",
              f"internal::PlainReader&{' in' if lines else ''}", lines)
    return out.text()


def attribute_check(info):
    out = Printer()
    base = info.schema.base
    required = [f"{row.member}.set" for row in info.attributes if row.required]
    check = (f'internal::check_attributes(reader, "{info.name}", __LINE__, '
             f'{{{", ".join(required)}}})') if required else "lmx::elmx_ok"
    lines = []
    if base:
        lines.append(f"if (const elmx_error error = {base}::unmarshal_attributes_check(reader)) "
                     "return error;")
    lines.append(f"return {check};")
    named = " reader" if required or base else ""
    _function(out, info, "elmx_error", "unmarshal_attributes_check", f"c_xml_reader&{named}", lines)
    return out.text()


def body_reader(info):
    out = Printer()
    base = info.schema.base
    if not info.elements:
        out.emit("""
            bool $Class$::unmarshal_body(c_xml_reader&, std::string*, elmx_error*) { return true; }
            """, Class=info.name)
        return out.text()
    steps, index = [], 0
    for row in info.elements:
        steps.append(f"body.{shape_of(row).read(index)}")
        index += row.is_named
    out.emit("""
        bool $Class$::unmarshal_body(c_xml_reader& reader, std::string* name, elmx_error* err) {
          $base$
          internal::BodyReader body(reader, *name, *err, $table$, __LINE__);
          return $steps$;
        }
        """, Class=info.name, table=f"k_{info.name}_elements",
        base=f"if (!{base}::unmarshal_body(reader, name, err)) return false;" if base else "",
        steps=" &&\n         ".join(steps))
    return out.text()


def choice_reader(info):
    out = Printer()
    cases = [f"case event::{shape.row.name}: return choice.{shape.read(0)};"
             for shape in shapes(info) if shape.row.kind == "alt"]
    name = "unmarshal" if info.shape == "anonymous" else "unmarshal_body"
    out.emit("""
        bool $Class$::$function$(c_xml_reader& reader, std::string* name, elmx_error* err) {
          internal::ChoiceReader choice(reader, *name, *err, k_$Class$_elements, __LINE__);
          switch (choice.event()) {
            $cases$
            default: return choice.unknown();
          }
        }
        """, Class=info.name, function=name, cases="\n".join(cases))
    return out.text()


def traits(info):
    words = []
    if info.wants_content:
        words.append("internal::k_wants_content")
    if info.names_namespaces:
        words.append("internal::k_names_namespaces")
    if info.is_blank:
        words.append("internal::k_blank")
    if info.is_simple:
        words.append("internal::k_simple")
    if info.nillable:
        words.append("internal::k_nillable")
    return " | ".join(words) or "internal::k_no_trait"


def element_bodies(info):
    out = Printer()
    name = info.name
    if info.shape == "anonymous":
        out.emit("""
            elmx_error $Class$::marshal(c_xml_writer& writer, const char*) const {
              if (!is_occurs_ok()) return lmx::elmx_occurs_on_marshal;
              lmx::internal::MarshalScope scope(writer);
              return marshal_child_elements(writer);
            }

            bool $Class$::is_member(c_xml_reader& reader, const std::string&) {
              return internal::is_in_table(reader, k_$Class$_elements);
            }
            """, Class=name)
        return out.text()
    if info.is_substitution:
        return ""
    if info.shape == "abstract":
        out.emit("""
            elmx_error $Class$::unmarshal(c_xml_reader& reader) {
              reader.set_ns_map(internal::document_ns_map());
              lmx::c_xml_reader_local scope(reader);
              if (const elmx_error error = internal::read_root_tag(reader, "$Class$", __LINE__)) return error;
              return unmarshal(reader, reader.name);
            }
            """, Class=name)
        return out.text()
    if info.is_wrapper and not info.nillable:
        out.emit("""
            elmx_error $Class$::marshal(c_xml_writer& writer, const char* name) const {
              writer.conditionally_select_ns_map(ns_map());
              return $Base$::marshal(writer, name);
            }

            elmx_error $Class$::unmarshal(c_xml_reader& reader, const std::string& name) {
              return $Base$::unmarshal(reader, name);
            }
            """, Class=name, Base=info.schema.base)
        return out.text()
    typed = ""
    if info.is_poly:
        owner = info.schema.base if info.is_wrapper else name
        typed = f', "{owner}", {owner}::id'
    out.emit("""
        using $Class$_steps = Steps<$Class$, $traits$>;

        elmx_error $Class$::marshal(c_xml_writer& writer, const char* name) const {
          return internal::write_element(this, $Class$_steps::k_writing, writer, name$typed$);
        }

        elmx_error $Class$::unmarshal(c_xml_reader& reader, const std::string& name) {
          return internal::read_element(this, $Class$_steps::k_reading, reader, name);
        }
        """, Class=name, traits=traits(info), typed=typed)
    return out.text()


def document_bodies(info):
    if not info.is_document:
        return ""
    out = Printer()
    out.emit("""
        const lmx::s_ns_map* $Class$::ns_map() { return internal::document_ns_map(); }

        $Class$::$Class$(const char* file, elmx_error* err) : $Class$() {
          *err = lmx::elmx_undefined;
          *err = unmarshal(file);
        }
        $Class$::$Class$(const char* buffer, std::size_t size, elmx_error* err) : $Class$() {
          *err = lmx::elmx_undefined;
          *err = unmarshal(buffer, size);
        }
        $Class$::$Class$(const std::string& text, elmx_error* err) : $Class$() {
          *err = lmx::elmx_undefined;
          *err = unmarshal(text);
        }

        elmx_error $Class$::marshal(const char* file) const {
          return internal::marshal_to_file(internal::source_of(*this), file);
        }
        elmx_error $Class$::marshal(std::string* out) const {
          return internal::marshal_to_string(internal::source_of(*this), out);
        }
        elmx_error $Class$::marshal(std::ostream& stream) const {
          return internal::marshal_to_stream(internal::source_of(*this), stream);
        }

        elmx_error $Class$::unmarshal(const char* file) {
          return internal::unmarshal_from_file(internal::target_of(*this), file);
        }
        elmx_error $Class$::unmarshal(const char* buffer, std::size_t size) {
          return internal::unmarshal_from_memory(internal::target_of(*this), buffer, size);
        }
        elmx_error $Class$::unmarshal(const std::string& text) {
          return unmarshal(text.data(), text.size());
        }
        elmx_error $Class$::unmarshal(c_xml_reader& reader) {
          reader.set_ns_map(ns_map());
          lmx::c_xml_reader_local scope(reader);
          if (const elmx_error error = internal::read_root_tag(reader, "$Class$", __LINE__)) return error;
          return unmarshal(reader, reader.name);
        }
        """, Class=info.name)
    return out.text()
