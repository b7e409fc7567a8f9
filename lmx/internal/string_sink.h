// A stream buffer for texts of unknown length that are to become one string. It grows by chunks,
// which a string that doubles its capacity does not: each doubling copies everything so far, and
// into pages that the system must first clear.
#pragma once

#include <cstddef>
#include <memory>
#include <streambuf>
#include <string>
#include <vector>

namespace lmx::internal {

class StringSink : public std::streambuf {
 public:
  // Replaces `*text` by what was written, and leaves the sink empty. If memory runs out, `*text`
  // stays as it was.
  void move_to(std::string* text);
  // The same with the text converted from UTF-8, as vtostring does it.
  void move_to(std::wstring* text);

 protected:
  int_type overflow(int_type byte) override;

 private:
  struct Chunk {
    std::unique_ptr<char[]> bytes;
    std::size_t size;
  };

  std::size_t size() const;
  void clear();

  std::vector<Chunk> chunks_;  // full, but for the last
};

}  // namespace lmx::internal
