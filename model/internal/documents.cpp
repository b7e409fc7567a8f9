#include "model/internal/walkers.h"

#include <cstdio>
#include <fstream>
#include <memory>

#include "lmx/internal/string_sink.h"
#include "lmx/reader.h"
#include "lmx/writer.h"
#include "model/internal/document_namespace.h"
#include "model/internal/object.h"
#include "model/internal/strict_reader.h"

namespace zol_v2::internal {

using lmx::elmx_error;

namespace {

// The first tag of a document, which must be the class's element.
elmx_error read_root_tag(const Class& type, lmx::c_xml_reader& reader) {
  const auto judge = [&](elmx_error code) {
    return reader.handle_error(code, reader.name, k_model_source, 0);
  };
  elmx_error error = lmx::elmx_ok;
  reader.get_element_event(nullptr, &error, &reader.name);
  if (error != lmx::elmx_ok && (error = judge(error)) != lmx::elmx_ok) return error;
  if (reader.get_element_ns_id() != k_document_namespace_id ||
      reader.get_local_name() != type.name) {
    return judge(lmx::elmx_element_not_found);
  }
  return lmx::elmx_ok;
}

// Tries the short road, which leaves no trace if it is not to be taken. It is for objects as new,
// since nothing there tells what to append to or to refuse.
bool read_strictly(Object& self, const Class& type, lmx::c_xml_reader& reader) {
  std::string_view text;
  if (&Head::class_of(self) != &type || !is_same(self, type.empty(), type) ||
      !reader.peek_document(&text)) {
    return false;
  }
  // As one that was read as a whole it goes as a whole.
  const bool is_whole = type.keeps_batch() && !type.batch_of(self).is_intact();
  Pool pool(is_whole ? Pool::Kind::batch : Pool::Kind::plain);
  StrictReader strict(text, pool);
  if (!strict.read(self, type)) {
    reset(self, type);
    return false;
  }
  if (is_whole) pool.move_to(&type.batch_of(self));
  reader.take_document({strict.bytes_read(), strict.end_name(), strict.last_value(),
                        strict.last_mode(), strict.last_name(), strict.last_name_ns_id(),
                        &strict.declared()});
  return true;
}

}  // namespace

bool walk_document(const Class& type, std::string_view bytes,
                   const std::function<bool(const Object& piece)>& take) {
  Pool pool;
  const std::unique_ptr<Object> root(type.make(nullptr));
  StrictReader strict(bytes, pool);
  strict.give_entries_to(take);
  return strict.read(*root, type) && take(*root);
}

elmx_error unmarshal_document(Object& self, const Class& type, lmx::c_xml_reader& reader) {
  reader.set_ns_map(document_ns_map());
  if (read_strictly(self, type, reader)) return lmx::elmx_ok;
  lmx::c_xml_reader_local scope(reader);
  if (const elmx_error error = read_root_tag(type, reader)) return error;
  return type.family != nullptr ? type.family->unmarshal(self, reader, reader.name)
                                : read_element(self, type, reader, reader.name);
}

elmx_error unmarshal_file(Object& self, const Class& type, const char* file) {
  lmx::c_xml_reader_file reader(file);
  return reader.is_open() ? unmarshal_document(self, type, reader) : lmx::elmx_no_file;
}

elmx_error unmarshal_memory(Object& self, const Class& type, const char* buffer, std::size_t size) {
  lmx::c_xml_reader_memory reader(buffer, size);
  return unmarshal_document(self, type, reader);
}

elmx_error marshal_root(const Object& self, const Class& type, lmx::c_xml_writer& writer) {
  const std::string element = std::string("Zol:") + type.name;
  return type.family != nullptr ? type.family->marshal(self, writer, element.c_str())
                                : write_element(self, type, writer, element.c_str());
}

elmx_error marshal_document(const Object& self, const Class& type, std::ostream& stream) {
  lmx::c_xml_writer writer(stream, lmx::c_xml_writer::include_xml_decl, "\t", "\n");
  return marshal_root(self, type, writer);
}

elmx_error marshal_document(const Object& self, const Class& type, const char* file) {
  elmx_error error;
  {
    std::ofstream stream(file, std::ios::binary);
    if (!stream.is_open()) return lmx::elmx_no_file;
    error = marshal_document(self, type, stream);
  }
  if (error != lmx::elmx_ok) std::remove(file);
  return error;
}

elmx_error marshal_document(const Object& self, const Class& type, std::string* out) {
  lmx::internal::StringSink sink;
  std::ostream stream(&sink);
  if (const elmx_error error = marshal_document(self, type, stream)) return error;
  sink.move_to(out);
  return lmx::elmx_ok;
}

}  // namespace zol_v2::internal
