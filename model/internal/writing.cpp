#include "model/internal/writing.h"

#include <cstdio>
#include <fstream>

#include "lmx/internal/lexical.h"
#include "lmx/internal/string_sink.h"
#include "model/internal/document_namespace.h"

namespace zol_v2::internal {

using lmx::c_xml_writer;
using lmx::elmx_error;
using lmx::internal::WriteBlock;

void write_value(WriteBlock& block, const std::wstring& value) { block.append_escaped(value); }
void write_value(WriteBlock& block, double value) { block.append_number(value); }
void write_value(WriteBlock& block, bool value) { block.append_bool(value); }
void write_value(WriteBlock& block, int value) { block.append_integer(value); }
void write_value(WriteBlock& block, unsigned value) { block.append_integer(value); }
void write_value(WriteBlock& block, unsigned char value) { block.append_integer(value); }

void write_value(WriteBlock& block, const lmx::c_datetime& value) {
  char text[lmx::internal::k_max_datetime_text];
  const char* end = lmx::internal::format_datetime(value, text);
  block.append(std::string_view(text, static_cast<std::size_t>(end - text)));
}

void write_value(WriteBlock& block, const lmx::c_binary& value) {
  std::string text;
  lmx::internal::append_base64(&text, value);
  block.append(std::string_view(text));
}

void BodyWriter::open(std::string_view name) {
  writer_.begin_line();
  WriteBlock& block = writer_.block();
  block.append('<');
  block.append(name);
  block.append('>');
}

void BodyWriter::close(std::string_view name) {
  WriteBlock& block = writer_.block();
  block.append(std::string_view("</"));
  block.append(name);
  block.append('>');
  writer_.end_line();
}

void BodyWriter::mark(std::string_view name) {
  if (error_ != lmx::elmx_ok) return;
  writer_.begin_line();
  WriteBlock& block = writer_.block();
  block.append('<');
  block.append(name);
  block.append(std::string_view("/>"));
  writer_.end_line();
}

void BodyWriter::foreign(const List<AnyElement>& list) {
  if (error_ != lmx::elmx_ok) return;
  for (unsigned i = 0; i < list.size(); ++i) {
    writer_.begin_line();
    writer_.block().append(std::string_view(list.at(i).text));
    writer_.end_line();
  }
}

namespace {

void write_type(c_xml_writer& writer, const char* type_name, const char* identity) {
  const char* expected = writer.get_expected_class_identity();
  if (expected == nullptr || expected == identity) return;
  WriteBlock& block = writer.block();
  block.append(std::string_view(" xsi:type=\"Zol:"));
  block.append(std::string_view(type_name));
  block.append('"');
  writer.clear_expected_class_identity();
}

}  // namespace

elmx_error write_element(const void* self, const WriteSteps& steps, c_xml_writer& writer,
                         const char* name, const char* type_name, const char* identity) {
  if (!steps.is_occurs_ok(self)) return lmx::elmx_occurs_on_marshal;
  lmx::internal::MarshalScope scope(writer);
  WriteBlock& block = writer.block();
  const std::string_view tag(name);

  writer.begin_line();
  block.append('<');
  block.append(tag);
  if (steps.names_namespaces) {
    writer.conditionally_select_ns_map(document_ns_map());
    writer.conditionally_write_ns_attrs(true);
  }
  if (type_name != nullptr) write_type(writer, type_name, identity);
  steps.attributes(self, writer);

  if (steps.is_nil != nullptr && steps.is_nil(self)) {
    block.append(std::string_view(" xsi:nil=\"true\"/>"));
    writer.end_line();
    return lmx::elmx_ok;
  }
  if (steps.is_blank) {
    block.append(std::string_view("/>"));
    writer.end_line();
    return lmx::elmx_ok;
  }
  block.append('>');
  if (steps.is_simple) {
    if (const elmx_error error = steps.children(self, writer)) return error;
  } else {
    writer.end_line();
    writer.indent();
    // A child's code leaves the depth raised: the text stops here.
    if (const elmx_error error = steps.children(self, writer)) return error;
    writer.undent();
    writer.begin_line();
  }
  block.append(std::string_view("</"));
  block.append(tag);
  block.append('>');
  writer.end_line();
  return lmx::elmx_ok;
}

elmx_error bad_choice(c_xml_writer& writer, const char* item, int line) {
  return writer.handle_error(lmx::elmx_bad_choice, item, k_model_source, line);
}

elmx_error marshal_to_stream(DocumentSource source, std::ostream& stream) {
  c_xml_writer writer(stream, c_xml_writer::include_xml_decl, "\t", "\n");
  return source.marshal(source.self, writer);
}

elmx_error marshal_to_file(DocumentSource source, const char* file) {
  elmx_error error;
  {
    std::ofstream stream(file);
    if (!stream.is_open()) return lmx::elmx_no_file;
    error = marshal_to_stream(source, stream);
  }
  if (error != lmx::elmx_ok) std::remove(file);
  return error;
}

elmx_error marshal_to_string(DocumentSource source, std::string* out) {
  lmx::internal::StringSink sink;
  std::ostream stream(&sink);
  if (const elmx_error error = marshal_to_stream(source, stream)) return error;
  sink.move_to(out);
  return lmx::elmx_ok;
}

}  // namespace zol_v2::internal
