// A reader that notes faults and goes on past those that can be passed over.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "lmx/reader.h"
#include "tools/faults.h"

// Each fault is noted once. What follows from one, as the rows that an element out of its place
// seems to leave missing, is not, and after an element out of its place reading goes on behind its
// parent.
class FaultReader : public lmx::c_xml_reader_memory {
 public:
  // Stops at the fault with the number `limit`; 0 is no limit. The text must outlive the reader.
  FaultReader(const char* data, std::size_t size, std::size_t limit)
      : c_xml_reader_memory(data, size), limit_(limit) {}

  lmx::elmx_error user_handle_error(lmx::elmx_error code, const std::string& item, const char* file,
                                    int line) override;

  // To be told what `unmarshal` gave: some faults don't ask the handler.
  void finish(lmx::elmx_error result);

  const std::vector<Fault>& faults() const { return faults_; }
  // Whether the text was read to its end.
  bool is_complete() const { return is_complete_; }

 private:
  // Where the reader stands in the text, as far as it tells.
  struct Place {
    int line = -1;
    std::size_t depth = 0;
    std::string name;
    bool operator==(const Place& other) const {
      return line == other.line && depth == other.depth && name == other.name;
    }
  };

  Place place();
  bool is_broken() const;
  bool is_follow_up(lmx::elmx_error code, const std::string& item);
  void forget_false_gaps(lmx::elmx_error code);
  lmx::elmx_error go_on(lmx::elmx_error code, const std::string& item);
  bool pass_value(const std::string& element);
  lmx::elmx_error pass_siblings(lmx::elmx_error code, const std::string& parent);

  std::size_t limit_;
  std::vector<Fault> faults_;
  bool is_complete_ = true;
  Place stray_;  // of an element or a text that its parent has no use for
  Place end_tag_;
  std::size_t gaps_ = 0;    // rows that were noted as missing at that end tag
  std::string lost_value_;  // the element whose text could not be read
};
