// One document by every road: read from memory as a whole, which may be done without any event, and
// by sources that have so little at hand that it cannot. Nobody may be able to tell them apart by
// the verdict, by what a handler sees, by what is left in the reader, or by the tree.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

#include "lmx/lmxparse.h"

namespace zol_test {

// A source that has nothing but read().
class ByteSource : public lmx::c_read {
 public:
  ByteSource(const char* data, std::size_t size) : text_(data, size) {}
  int read() override { return at_ < text_.size() ? static_cast<unsigned char>(text_[at_++]) : -1; }
  void rewind() override { at_ = 0; }

 protected:
  std::string_view text_;
  std::size_t at_ = 0;
};

// Hardly a tag stands in one of its blocks, and each has storage of its own, which the next call
// frees.
class BlockSource : public ByteSource {
 public:
  using ByteSource::ByteSource;
  std::size_t read_block(const char** begin) override {
    const std::size_t count = std::min(k_block_size, text_.size() - at_);
    block_ = std::make_unique<char[]>(count);
    std::copy_n(text_.data() + at_, count, block_.get());
    at_ += count;
    *begin = block_.get();
    return count;
  }
  void give_back(std::size_t count) override { at_ -= count; }

 private:
  static constexpr std::size_t k_block_size = 7;
  std::unique_ptr<char[]> block_;
};

// No class of our own, which might look at every byte.
using MemorySource = lmx::c_read_memory;

// What to do about a fault.
enum class Handling { stop, waive };

namespace internal {

inline void tell(std::string& out, const char* what, std::string_view text) {
  out.append(what).append(" '").append(text).append("'");
}
inline void tell(std::string& out, const char* what, long long value) {
  out.append(what).append(" ").append(std::to_string(value));
}

// What the reader has at hand.
inline void tell_state(std::string& out, const lmx::c_xml_reader& reader) {
  tell(out, " in line", reader.get_line_no());
  tell(out, ", event", reader.get_current_event());
  tell(out, " at", reader.get_full_name());
  tell(out, " or", reader.get_local_name());
  tell(out, " of namespace", reader.get_ns_id());
  tell(out, reader.get_has_ns_prefix() ? " by a prefix," : " by default,",
       reader.get_element_ns_id());
  tell(out, "; name", reader.name);
  tell(out, ", value", reader.value);
  tell(out, ", attribute", reader.attribute_name);
  lmx::elmx_error_type type = lmx::elmx_none;
  lmx::elmx_error code = lmx::elmx_ok;
  int line = 0;
  if (reader.get_error_info(&type, &code, &line)) {
    tell(out, "; reported", code);
    tell(out, " of type", type);
    tell(out, " in line", line);
  }
  out += '\n';
}

// Tells of each fault, with the place in the reading code that found it.
class WatchedReader : public lmx::c_xml_reader {
 public:
  WatchedReader(lmx::c_read& source, Handling handling, std::string& report)
      : c_xml_reader(source), handling_(handling), report_(report) {}
  using c_xml_reader::user_handle_error;
  lmx::elmx_error user_handle_error(lmx::elmx_error code, const std::string& item, const char* file,
                                    int line) override {
    tell(report_, "fault", code);
    tell(report_, " of", item);
    tell(report_, " found at", file == nullptr ? "" : file);
    tell(report_, ":", line);
    tell_state(report_, *this);
    return handling_ == Handling::waive ? lmx::elmx_ok : code;
  }

 private:
  const Handling handling_;
  std::string& report_;
};

class StringStream : private std::streambuf, public std::ostream {
 public:
  explicit StringStream(std::string& out) : std::ostream(this), out_(out) {}

 private:
  int overflow(int c) override {
    out_ += static_cast<char>(c);
    return c;
  }
  std::streamsize xsputn(const char* text, std::streamsize size) override {
    out_.append(text, static_cast<std::size_t>(size));
    return size;
  }

  std::string& out_;
};

// Writes incomplete objects too.
class PatientWriter : public lmx::c_xml_writer {
 public:
  explicit PatientWriter(std::ostream& stream) : c_xml_writer(stream, "", "\n") {}
  lmx::elmx_error user_handle_error(lmx::elmx_error, const std::string&, const char*,
                                    int) override {
    return lmx::elmx_ok;
  }
};

}  // namespace internal

// What anybody can see of an object that cannot be written whole either.
template <class Document>
std::string tree_of(const Document& document) {
  std::string tree;
  internal::StringStream stream(tree);
  internal::PatientWriter writer(stream);
  const lmx::elmx_error error = document.marshal(writer, "Zol:Root");
  internal::tell(tree, "written with", error);
  return tree;
}

// What anybody can see of reading a document into an object.
template <class Document, class Source>
lmx::elmx_error read_watched(Document& document, std::string_view text, Handling handling,
                             std::string& report) {
  using internal::tell;
  Source source(text.data(), text.size());
  internal::WatchedReader reader(source, handling, report);
  const lmx::elmx_error code = document.unmarshal(reader);
  std::string message;
  tell(report, "gave", code);
  tell(report, " with", reader.get_error_message(&message));
  tell(report, " about", reader.get_error_item_name());
  internal::tell_state(report, reader);
  for (int id = Document::ns_map()->ns_id; reader.find_namespace_from_id(id) != nullptr; ++id) {
    tell(report, "knows", reader.find_namespace_from_id(id));
  }
  // And it goes on from there.
  constexpr int k_steps = 2;
  for (int step = 0; step < k_steps; ++step) {
    lmx::elmx_error error = lmx::elmx_ok;
    reader.get_element_event(nullptr, &error, &reader.name);
    tell(report, "\nthen", error);
    internal::tell_state(report, reader);
  }
  return code;
}

// The same of an object as new, `rounds` times, and the tree that is there at the end.
struct Account {
  lmx::elmx_error code = lmx::elmx_ok;  // of the last round
  std::string report;
  std::string tree;

  bool operator==(const Account& other) const {
    return code == other.code && report == other.report && tree == other.tree;
  }
  bool operator!=(const Account& other) const { return !(*this == other); }
};

template <class Document, class Source>
Account account_of(std::string_view text, Handling handling, int rounds = 1) {
  Account account;
  Document document;
  while (rounds-- > 0) {
    account.code = read_watched<Document, Source>(document, text, handling, account.report);
  }
  account.tree = tree_of(document);
  return account;
}

}  // namespace zol_test
