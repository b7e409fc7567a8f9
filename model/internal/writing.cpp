#include "model/internal/walkers.h"

#include <string_view>

#include "lmx/internal/lexical.h"
#include "lmx/internal/write_block.h"
#include "lmx/internal/writer_state.h"
#include "lmx/writer.h"
#include "model/internal/document_namespace.h"
#include "model/internal/object.h"

namespace zol_v2::internal {

using lmx::c_xml_writer;
using lmx::elmx_error;
using lmx::internal::WriteBlock;
using lmx::internal::WriterState;

namespace {

template <class T>
const T& at(const void* field) {
  return *static_cast<const T*>(field);
}

void open_tag(WriteBlock& block, std::string_view tag) {
  block.append('<');
  block.append(tag);
}

void close_tag(WriteBlock& block, std::string_view tag) {
  block.append(std::string_view("</"));
  block.append(tag);
  block.append('>');
}

// What `field` of write_value is for a row with a field of its own, which is no text.
const void* value_of(const Object& self, const Row& row) {
  if (row.kind == Kind::enumerated) return &text_of(row.field<const std::wstring*>(self));
  return &row.field<char>(self);
}

const void* value_of(const Slot& slot, Kind kind) {
  switch (kind) {
    case Kind::text:
    case Kind::enumerated:
      return kind == Kind::text ? slot.text : slot.enumerated;
    case Kind::real:
      return &slot.real;
    case Kind::int32:
      return &slot.int32;
    default:
      return &slot.uint32;
  }
}

template <class Write>
void write_line(WriterState& writer, const Row& row, const Write& write) {
  writer.begin_line();
  WriteBlock& block = writer.block();
  open_tag(block, row.full_name());
  block.append('>');
  write(block);
  close_tag(block, row.full_name());
  writer.end_line();
}

void write_foreign(WriterState& writer, const PointerList& list) {
  for (const void* const entry : list) {
    writer.begin_line();
    writer.block().append(std::string_view(static_cast<const AnyElement*>(entry)->text));
    writer.end_line();
  }
}

void write_type(const Class& type, WriterState& writer) {
  const char* const expected = writer.expected_class_identity();
  if (expected == nullptr || expected == *type.identity) return;
  WriteBlock& block = writer.block();
  block.append(std::string_view(" xsi:type=\"Zol:"));
  block.append(std::string_view(type.type_name));
  block.append('"');
  writer.set_expected_class_identity(nullptr);
}

// The described form, which loses a little of some values, or the exact one. Which of them is
// settled once for an element and not for each value.
template <bool is_exact>
struct ElementWriter {
  static void write_simple(WriterState& writer, const Row& row, const void* field) {
    write_line(writer, row, [&](WriteBlock& block) { write_value(block, row, field); });
  }

  static elmx_error write_list(WriterState& writer, const Row& row, const PointerList& list) {
    for (const void* const entry : list) {
      if (row.is_simple()) {
        write_simple(writer, row, entry);
      } else if (const elmx_error error = write_tagged(*static_cast<const Object*>(entry),
                                                       *row.type, writer, row.full_name())) {
        return error;
      }
    }
    return lmx::elmx_ok;
  }

  static elmx_error write_row(const Object& self, WriterState& writer, const Row& row) {
    if (row.kind == Kind::foreign) {
      write_foreign(writer, row.field<PointerList>(self));
      return lmx::elmx_ok;
    }
    if (row.is_list) return write_list(writer, row, row.field<PointerList>(self));
    if (row.kind == Kind::mark) {
      writer.begin_line();
      open_tag(writer.block(), row.full_name());
      writer.block().append(std::string_view("/>"));
      writer.end_line();
      return lmx::elmx_ok;
    }
    if (!row.is_required && !Head::has(self, row.bit)) return lmx::elmx_ok;
    if (row.is_simple()) {
      write_line(writer, row, [&](WriteBlock& block) { write_field(block, self, row); });
      return lmx::elmx_ok;
    }
    const Object* const child =
        row.is_in_place() ? &row.field<Object>(self) : row.field<Object*>(self);
    return write_tagged(child != nullptr ? *child : row.type->empty(), *row.type, writer,
                        row.full_name());
  }

  static elmx_error write_rows(const Object& self, const Class& type, WriterState& writer) {
    if (type.base != nullptr) {
      if (const elmx_error error = write_rows(self, *type.base, writer)) return error;
    }
    for (const Row& row : type.elements()) {
      if (const elmx_error error = write_row(self, writer, row)) return error;
    }
    return lmx::elmx_ok;
  }

  // 7 goes through the writer's handler: a choice that cannot be written.
  static elmx_error write_alternative(const Object& self, const Class& type, WriterState& writer) {
    const Rows rows = type.alternatives();
    const int chosen = Head::chosen(self);
    if (chosen < 0 || chosen >= rows.last - rows.first) {
      const std::string item = type.shape == Shape::choice   ? std::string("Zol:") + type.name
                               : type.shape == Shape::holder ? type.name
                                                             : "";
      return writer.face().handle_error(lmx::elmx_bad_choice, item, k_model_source,
                                        rows.first->line);
    }
    const Row& row = rows.first[chosen];
    const Slot& slot = row.field<Slot>(self);
    if (row.kind != Kind::object) {
      write_simple(writer, row, value_of(slot, row.kind));
      return lmx::elmx_ok;
    }
    if (type.shape != Shape::holder) {
      return write_tagged(*slot.object, *row.type, writer, row.full_name());
    }
    if (slot.object == nullptr) return lmx::elmx_type_not_set;
    // Where a derived type may stand, the member has to say so.
    if (row.named_type != NamedType::no) writer.set_expected_class_identity(*row.type->identity);
    return type.family->marshal(*slot.object, writer.face(), row.tag);
  }

  static void write_attributes(const Object& self, const Class& type, WriteBlock& block) {
    if (type.base != nullptr) write_attributes(self, *type.base, block);
    for (const Row& row : type.attributes()) {
      if (!row.is_required && !Head::has(self, row.bit)) continue;
      block.append(' ');
      block.append(row.name());
      block.append(std::string_view("=\""));
      write_field(block, self, row);
      block.append('"');
    }
  }

  static elmx_error write_tagged(const Object& self, const Class& type, WriterState& writer,
                                 std::string_view tag) {
    if (!is_occurs_ok(self, type)) return lmx::elmx_occurs_on_marshal;
    const lmx::internal::MarshalScope scope(writer);
    if (type.shape == Shape::holder || type.shape == Shape::anonymous) {
      return write_alternative(self, type, writer);
    }
    WriteBlock& block = writer.block();

    writer.begin_line();
    open_tag(block, tag);
    if (type.is(Class::k_names_namespaces)) {
      writer.conditionally_select_ns_map(document_ns_map());
      writer.conditionally_write_ns_attrs(true);
    }
    if (type.type_name != nullptr) write_type(type, writer);
    write_attributes(self, type, block);

    if (Head::is_nil(self, type)) {
      block.append(std::string_view(" xsi:nil=\"true\"/>"));
      writer.end_line();
      return lmx::elmx_ok;
    }
    if (type.is(Class::k_blank)) {
      block.append(std::string_view("/>"));
      writer.end_line();
      return lmx::elmx_ok;
    }
    block.append('>');
    const Class& root = type.content_class();
    if (root.shape == Shape::simple) {
      write_field(block, self, root.content());
    } else {
      writer.end_line();
      writer.indent();
      // A child's code leaves the depth raised: the text stops here.
      const elmx_error error = root.shape == Shape::choice ? write_alternative(self, root, writer)
                                                           : write_rows(self, root, writer);
      if (error != lmx::elmx_ok) return error;
      writer.undent();
      writer.begin_line();
    }
    close_tag(block, tag);
    writer.end_line();
    return lmx::elmx_ok;
  }

  static void write_field(WriteBlock& block, const Object& self, const Row& row) {
    if (row.kind != Kind::text) return write_value(block, row, value_of(self, row));
    const Text& text = row.field<Text>(self);
    std::string_view utf8;
    if (!text.get_narrow(&utf8)) return write_value(block, row, &text.get());
    if (is_exact) {
      block.append_exact_text(utf8, row.place == Place::attribute);
    } else {
      block.append_escaped(utf8);
    }
  }

  static void write_value(WriteBlock& block, const Row& row, const void* field) {
    if (is_exact && write_exactly(block, row, field)) return;
    switch (row.kind) {
      case Kind::text:
      case Kind::enumerated:
        return block.append_escaped(at<std::wstring>(field));
      case Kind::real:
        return block.append_number(at<double>(field));
      case Kind::int32:
        return block.append_integer(at<int>(field));
      case Kind::uint32:
        return block.append_integer(at<unsigned>(field));
      case Kind::uint8:
        return block.append_integer(at<unsigned char>(field));
      case Kind::truth:
        return block.append_bool(at<bool>(field));
      case Kind::datetime: {
        char text[lmx::internal::k_max_datetime_text];
        const char* const end = lmx::internal::format_datetime(at<lmx::c_datetime>(field), text);
        return block.append(std::string_view(text, static_cast<std::size_t>(end - text)));
      }
      default: {
        std::string text;
        lmx::internal::append_base64(&text, at<lmx::c_binary>(field));
        return block.append(std::string_view(text));
      }
    }
  }

  // The values that the described form may lose something of; false for all others.
  static bool write_exactly(WriteBlock& block, const Row& row, const void* field) {
    switch (row.kind) {
      case Kind::text:
      case Kind::enumerated: {
        std::string utf8;
        lmx::internal::append_narrow(&utf8, at<std::wstring>(field));
        block.append_exact_text(utf8, row.place == Place::attribute);
        return true;
      }
      case Kind::real:
        block.append_exact_number(at<double>(field));
        return true;
      case Kind::datetime: {
        char text[lmx::internal::k_max_datetime_text];
        const char* const end =
            lmx::internal::format_exact_datetime(at<lmx::c_datetime>(field), text);
        block.append(std::string_view(text, static_cast<std::size_t>(end - text)));
        return true;
      }
      default:
        return false;
    }
  }
};

}  // namespace

elmx_error write_element(const Object& self, const Class& type, c_xml_writer& writer,
                         const char* name) {
  WriterState& state = WriterState::of(writer);
  return state.block().is_exact() ? ElementWriter<true>::write_tagged(self, type, state, name)
                                  : ElementWriter<false>::write_tagged(self, type, state, name);
}

}  // namespace zol_v2::internal
