// Any bytes as a document: as they are, byte by byte through a source of our own, and with a
// handler that lets every fault pass. The three roads must agree where they promise to.

#include <cstdint>
#include <cstdlib>
#include <string>

#include "lmx/lmxparse.h"
#include "model/Zol.h"

namespace {

// A source that has nothing but read().
class ByteSource : public lmx::c_read {
 public:
  ByteSource(const char* data, std::size_t size) : data_(data), size_(size) {}
  int read() override { return at_ < size_ ? static_cast<unsigned char>(data_[at_++]) : -1; }
  void rewind() override { at_ = 0; }

 private:
  const char* data_;
  std::size_t size_;
  std::size_t at_ = 0;
};

template <class Source>
class PatientReader : public lmx::c_xml_reader {
 public:
  explicit PatientReader(Source& source) : lmx::c_xml_reader(source) {}
  lmx::elmx_error user_handle_error(lmx::elmx_error, const std::string&, const char*,
                                    int) override {
    return lmx::elmx_ok;
  }
};

struct Verdict {
  lmx::elmx_error code;
  std::string message;
  int line;

  bool operator==(const Verdict& other) const {
    return code == other.code && message == other.message && line == other.line;
  }
};

Verdict judge(lmx::c_xml_reader& reader) {
  zol_v2::Zol document;
  Verdict verdict{document.unmarshal(reader), {}, 0};
  reader.get_error_message(&verdict.message);
  verdict.line = reader.get_line_no();
  return verdict;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const char* const text = reinterpret_cast<const char*>(data);
  lmx::c_xml_reader_memory in_one_block(text, size);
  ByteSource bytes(text, size);
  lmx::c_xml_reader byte_by_byte(bytes);
  if (!(judge(in_one_block) == judge(byte_by_byte))) std::abort();

  lmx::c_read_memory source(text, size);
  PatientReader<lmx::c_read_memory> patient(source);
  judge(patient);
  return 0;
}
