// Whole documents from and to UTF-16 text.

#include <ostream>
#include <string>
#include <utility>

#include "lmx/internal/string_sink.h"
#include "lmx/reader.h"
#include "lmx/text.h"
#include "lmx/writer.h"
#include "model/Zol.h"
#include "model/sdk_stamp.h"

namespace zol_v2 {

lmx::elmx_error Zol::loadString(const std::wstring& text) {
  std::string utf8;
  lmx::convert(&utf8, text);
  lmx::c_xml_reader_memory reader(utf8.data(), utf8.size());
  return unmarshal(reader);
}

lmx::elmx_error Zol::loadString(zol::port::Utf8Text text) {
  lmx::c_xml_reader_memory reader(text.view().data(), text.view().size());
  return unmarshal(reader);
}

XMLDocumentResult Zol::writeString() const {
  lmx::internal::StringSink sink;
  std::ostream stream(&sink);
  lmx::c_xml_writer writer(stream, lmx::c_xml_writer::include_xml_decl, "\t", "\n");
  // Writing leaves its mark in the document by design.
  SdkStamp().stampWrite(const_cast<Zol&>(*this));
  const lmx::elmx_error error = marshal(writer, k_element_name);
  if (error != lmx::elmx_ok) return XMLDocumentResult(std::wstring(), error);
  std::wstring text;
  sink.move_to(&text);
  return XMLDocumentResult(std::move(text), error);
}

}  // namespace zol_v2
