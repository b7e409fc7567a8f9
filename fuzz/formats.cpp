// Any bytes as a file of another program: the first one says of which. What is refused has a reason
// and a place; what is read can be written in every format, and JSON gives it back as it was.

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <string>
#include <string_view>

#include "facade/check.h"
#include "facade/files.h"
#include "interchange/formats.h"
#include "interchange/json.h"
#include "model/Zol.h"

namespace {

using namespace zol_v2;
using namespace zol_v2::interchange;

void require(bool is_true, const char* what) {
  if (is_true) return;
  std::fprintf(stderr, "%s\n", what);
  std::abort();
}

std::string exact_text(const Zol& document) {
  SaveOptions options;
  options.is_exact = true;
  options.is_stamped = false;
  std::string text;
  (void)saveString(document, text, nullptr, options);
  return text;
}

std::string written(const Zol& document, Format format) {
  WriteOptions options;
  options.is_wide = document.size_Color() % 2 == 1;
  const auto writer = make_writer(format, options);
  std::string bytes;
  if (writer == nullptr) return bytes;
  writer->add(document, "document");
  const Report report = writer->finish(&bytes);
  require(report || bytes.empty(), "a fault, and yet something was written");
  return bytes;
}

void exchange(Format format, std::string_view bytes) {
  Zol document;
  ReadOptions options;
  options.time = "2020-01-01T00:00:00Z";
  const Report report = read(bytes, format, options, &document);
  for (const Fault& fault : report.faults) {
    require(!fault.text().empty(), "a fault without a sentence");
  }
  CheckOptions judging;
  judging.level = CheckLevel::reading;
  judging.is_exact = true;
  const bool is_sound = report && check(document, judging).errors == 0;
  require(!report || is_sound || format == Format::json,
          "a document that was made of colours can't be saved");
  if (!is_sound) return;
  for (const FormatInfo& info : formats()) {
    const std::string text = written(document, info.format);
    if (info.format != Format::json) continue;
    Zol again;
    require(static_cast<bool>(read_json(text, &again)), "JSON that is not read again");
    require(exact_text(again) == exact_text(document), "JSON is another document");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr Format k_formats[] = {Format::json, Format::csv, Format::cgats,
                                  Format::gpl,  Format::ase, Format::kpl};
  if (size == 0) return 0;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  const std::size_t number = (data[0] - std::size_t{97}) % std::size(k_formats);  // from a on
  exchange(k_formats[number], bytes.substr(1));
  return 0;
}
