// What became of a document that was read.
#pragma once

#include <ostream>
#include <string>

#include "lmx/lmxparse.h"

namespace zol_test {

// How a reading ended: 0, or the code, the item it was blamed on and the line the reader was on.
struct Outcome {
  int code = 0;
  std::string item;
  int line = 0;

  bool operator==(const Outcome& other) const {
    return code == other.code && item == other.item && line == other.line;
  }
  friend std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
    return out << outcome.code << " '" << outcome.item << "' in line " << outcome.line;
  }
};

// A reader that passes over every fault, and keeps the first.
class WaivingReader : public lmx::c_xml_reader_memory {
 public:
  using c_xml_reader_memory::c_xml_reader_memory;
  using c_xml_reader_memory::user_handle_error;

  lmx::elmx_error user_handle_error(lmx::elmx_error code, const std::string& item, const char*,
                                    int) override {
    if (count++ == 0) first = {code, item, get_line_no()};
    return lmx::elmx_ok;
  }

  int count = 0;
  Outcome first;
};

}  // namespace zol_test
