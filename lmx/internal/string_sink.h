// A stream buffer that appends to a string of the caller's, so that a text written through a
// stream need not be copied out of it.
#pragma once

#include <streambuf>
#include <string>

namespace lmx::internal {

class StringSink : public std::streambuf {
 public:
  // The string stays the caller's and must outlive the sink.
  explicit StringSink(std::string* text) : text_(text) {}

 protected:
  std::streamsize xsputn(const char* bytes, std::streamsize count) override {
    text_->append(bytes, static_cast<std::size_t>(count));
    return count;
  }
  int_type overflow(int_type byte) override {
    if (!traits_type::eq_int_type(byte, traits_type::eof())) {
      text_->push_back(traits_type::to_char_type(byte));
    }
    return traits_type::not_eof(byte);
  }

 private:
  std::string* text_;
};

}  // namespace lmx::internal
