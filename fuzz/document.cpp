// Any bytes as a document, from memory in one block and from two sources of our own: one that gives
// a byte at a time, and one whose blocks are so small that hardly a tag stands in one. Memory takes
// shortcuts that the others can't. Nobody may be able to tell: the code, the message, every fault
// that a handler sees and the tree must be the same, with a handler that lets every fault pass and
// without, and also when the document is read into the same object again.

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <sstream>
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

 protected:
  const char* data_;
  std::size_t size_;
  std::size_t at_ = 0;
};

// Each block has storage of its own, which the next call frees.
class BlockSource : public ByteSource {
 public:
  using ByteSource::ByteSource;
  std::size_t read_block(const char** begin) override {
    const std::size_t count = std::min(k_block_size, size_ - at_);
    block_ = std::make_unique<char[]>(count);
    std::copy_n(data_ + at_, count, block_.get());
    at_ += count;
    *begin = block_.get();
    return count;
  }
  void give_back(std::size_t count) override { at_ -= count; }

 private:
  static constexpr std::size_t k_block_size = 7;
  std::unique_ptr<char[]> block_;
};

// Every fault that passed the handler, with the line of the document, and what was left at the end.
struct Verdict {
  std::string report;
  std::string tree;

  bool operator==(const Verdict& other) const {
    return report == other.report && tree == other.tree;
  }
};

class Reader : public lmx::c_xml_reader {
 public:
  Reader(lmx::c_read& source, bool is_patient, std::ostream& report)
      : lmx::c_xml_reader(source), is_patient_(is_patient), report_(report) {}
  lmx::elmx_error user_handle_error(lmx::elmx_error code, const std::string& item, const char*,
                                    int) override {
    report_ << "handled " << code << " '" << item << "' line " << get_line_no() << ", event "
            << get_current_event() << " at '" << get_full_name() << "' " << get_ns_id() << ", '"
            << name << "' '" << value << "' '" << attribute_name << "'\n";
    return is_patient_ ? lmx::elmx_ok : code;
  }

 private:
  bool is_patient_;
  std::ostream& report_;
};

// Writes incomplete objects too.
class PatientWriter : public lmx::c_xml_writer {
 public:
  explicit PatientWriter(std::ostream& stream) : lmx::c_xml_writer(stream, "", "\n") {}
  lmx::elmx_error user_handle_error(lmx::elmx_error, const std::string&, const char*,
                                    int) override {
    return lmx::elmx_ok;
  }
};

template <class Source>
Verdict judge(const char* data, std::size_t size, bool is_patient) {
  std::ostringstream report;
  std::ostringstream tree;
  zol_v2::Zol document;
  for (int round = 0; round < 2; ++round) {
    Source source(data, size);
    Reader reader(source, is_patient, report);
    const lmx::elmx_error code = document.unmarshal(reader);
    std::string message;
    reader.get_error_message(&message);
    report << "gave " << code << " " << message << " at line " << reader.get_line_no() << ", '"
           << reader.name << "' '" << reader.value << "' '" << reader.attribute_name << "'\n";
    lmx::elmx_error_type type = lmx::elmx_none;
    lmx::elmx_error reported = lmx::elmx_ok;
    int line = 0;
    if (reader.get_error_info(&type, &reported, &line)) {
      report << "reported " << reported << " of type " << type << " at line " << line << '\n';
    }
  }
  PatientWriter writer(tree);
  report << "wrote " << document.marshal(writer, "Zol:Zol") << '\n';
  return {report.str(), tree.str()};
}

void expect_same(const char* road, const Verdict& memory, const Verdict& other) {
  if (memory == other) return;
  std::fprintf(stderr, "memory:\n%s%s\n%s:\n%s%s\n", memory.report.c_str(), memory.tree.c_str(),
               road, other.report.c_str(), other.tree.c_str());
  std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const char* const text = reinterpret_cast<const char*>(data);
  for (const bool is_patient : {false, true}) {
    const Verdict memory = judge<lmx::c_read_memory>(text, size, is_patient);
    expect_same("bytes", memory, judge<ByteSource>(text, size, is_patient));
    expect_same("small blocks", memory, judge<BlockSource>(text, size, is_patient));
  }
  return 0;
}
