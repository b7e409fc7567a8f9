// Lets other programs drive the library over documents.
//
//   document_probe faults   documents on standard input, each behind its size in bytes on a line of
//                           its own; a line for each: code|item|line
//   document_probe diagnose
//                           the same documents, and for each a line with all that its report says:
//                           code|item|line, and so on behind a tab
//   document_probe write    one document on standard input, and what the library writes of it
//
// Every document is also read byte by byte, which must give the same, and by a reader that passes
// over every fault, which must come to an end.
#include <cstdlib>
#include <iostream>
#include <iterator>

#include "facade/files.h"
#include "model/Zol.h"
#include "model/outcome.h"

namespace {

using zol_test::Outcome;

// Hands over one byte at a time, so that nothing above can take a run.
class ByteSource : public lmx::c_read {
 public:
  explicit ByteSource(const std::string& bytes) : bytes_(bytes) {}
  int read() override {
    return at_ < bytes_.size() ? static_cast<unsigned char>(bytes_[at_++]) : -1;
  }
  void rewind() override { at_ = 0; }

 private:
  const std::string& bytes_;
  std::size_t at_ = 0;
};

Outcome read_document(lmx::c_xml_reader& reader) {
  zol_v2::Zol document;
  const lmx::elmx_error error = document.unmarshal(reader);
  if (error == lmx::elmx_ok) return {};
  return {error, reader.get_error_item_name(), reader.get_line_no()};
}

Outcome probe(const std::string& bytes) {
  lmx::c_xml_reader_memory memory(bytes.data(), bytes.size());
  const Outcome outcome = read_document(memory);
  ByteSource source(bytes);
  lmx::c_xml_reader by_byte(source);
  if (const Outcome other = read_document(by_byte); !(other == outcome)) {
    std::cerr << "byte by byte: " << other << ", from memory: " << outcome << "\n" << bytes;
    std::exit(1);
  }
  zol_test::WaivingReader waiving(bytes.data(), bytes.size());
  zol_v2::Zol waived;
  const lmx::elmx_error left = waived.unmarshal(waiving);
  if (left != lmx::elmx_ok && left != lmx::elmx_unknown_xsi_type) {
    std::cerr << "not waived: " << left << "\n" << bytes;
    std::exit(1);
  }
  // What was read must be an object like any other.
  zol_v2::Zol(waived).swap(waived);
  std::string text;
  (void)waived.marshal(&text);
  return outcome;
}

int probe_all() {
  std::string size;
  while (std::getline(std::cin, size)) {
    std::string bytes(std::stoul(size), '\0');
    std::cin.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    const Outcome outcome = probe(bytes);
    std::cout << outcome.code << '|' << outcome.item << '|' << outcome.line << '\n';
  }
  return 0;
}

// All faults of a report, which must begin with what a reader says, and end where that is all.
int diagnose_all() {
  std::string size;
  while (std::getline(std::cin, size)) {
    std::string bytes(std::stoul(size), '\0');
    std::cin.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    zol_v2::Zol document;
    zol_v2::LoadReport report;
    const lmx::elmx_error code = zol_v2::openText(document, bytes, &report);
    const bool is_told = report.faults.empty() ? code == lmx::elmx_ok
                                               : report.faults.front().code == code &&
                                                     report.faults.front().item == report.item;
    if (!is_told) {
      std::cerr << "the report does not begin with " << code << " of " << report.item << "\n"
                << bytes;
      return 1;
    }
    const char* separator = "";
    for (const zol_v2::Fault& fault : report.faults) {
      std::cout << separator << fault.code << '|' << fault.item << '|' << fault.place.line;
      separator = "\t";
    }
    std::cout << '\n';
  }
  return 0;
}

int write() {
  const std::string bytes(std::istreambuf_iterator<char>(std::cin), {});
  lmx::elmx_error error = lmx::elmx_ok;
  const zol_v2::Zol document(bytes, &error);
  return error != lmx::elmx_ok ? error : document.marshal(std::cout);
}

}  // namespace

int main(int argc, char** argv) {
  const std::string task = argc == 2 ? argv[1] : "";
  if (task == "faults") return probe_all();
  if (task == "diagnose") return diagnose_all();
  if (task == "write") return write();
  std::cerr << "usage: document_probe faults|diagnose|write\n";
  return 2;
}
