// How reading or writing another format ended.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "facade/faults.h"
#include "interchange/export.h"

namespace zol_v2::interchange {

// What a format could not hold: how often, of each kind, in the order in which they were met.
class ZOL_INTERCHANGE_API Losses {
 public:
  // One kind of it.
  struct Loss {
    std::string kind;       // "ChangeHistory", "rendering in CIELab"
    std::size_t count = 0;  // how often
  };

  // Counts so many of a kind.
  void add(std::string_view kind, std::size_t count = 1);
  // Of what turns out to be held after all.
  void take_back(std::string_view kind);
  // All kinds, and whether there are none.
  const std::vector<Loss>& all() const { return all_; }
  bool empty() const { return all_.empty(); }

 private:
  std::vector<Loss> all_;
};

// Nothing was written or read if there is a fault. Places are those of the input; the codes of the
// library stand for documents alone, so that faults have none here.
struct ZOL_INTERCHANGE_API Report {
  std::vector<Fault> faults;       // what was wrong
  Losses losses;                   // what the other format could not hold
  std::vector<std::string> notes;  // what had to be assumed, once each

  // Whether it was done.
  explicit operator bool() const { return faults.empty(); }
  // Notes what had to be assumed, once.
  void assume(std::string note);
  // A sentence without a full stop.
  void fail(std::string_view rule, std::string sentence, const SourcePlace& place = {});
};

// Of a byte of a text. Columns count characters of UTF-8.
ZOL_INTERCHANGE_API SourcePlace place_of(std::string_view text, std::size_t offset);

}  // namespace zol_v2::interchange
