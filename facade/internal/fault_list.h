// Faults of a tree on their way into a report, and the way to the object at hand.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "facade/check.h"
#include "facade/faults.h"
#include "model/reflection.h"

namespace zol_v2::internal {

// An element on the way down to the one at hand. Stands on the stack, as the walk does.
struct Level {
  const Level* up = nullptr;
  reflection::Item item;  // the root's has no row
  unsigned depth = 1;

  std::string path() const;
};

// The name of an element or attribute for a sentence: that of the element around it for a content.
std::string_view name_in_words(const reflection::Item& item);

class FaultList {
 public:
  explicit FaultList(std::size_t limit) : limit_(limit) {}

  // Counts one more; null if no more are described. The fault has its place and item, and is to be
  // given rule and words.
  Fault* add_unwritable(lmx::elmx_error code, const Level& level, const reflection::Item& item) {
    return add(unwritable_, Severity::error, code, level, item);
  }
  Fault* add_error(lmx::elmx_error code, const Level& level, const reflection::Item& item) {
    return add(unreadable_, Severity::error, code, level, item);
  }
  Fault* add_warning(const Level& level, const reflection::Item& item) {
    return add(warnings_, Severity::warning, lmx::elmx_ok, level, item);
  }

  CheckReport take();

 private:
  struct Part {
    std::vector<Fault> faults;
    std::size_t count = 0;
  };

  // `item` may be that of the level itself, or one of a row in its object.
  Fault* add(Part& part, Severity severity, lmx::elmx_error code, const Level& level,
             const reflection::Item& item) const;

  const std::size_t limit_;
  Part unwritable_;
  Part unreadable_;
  Part warnings_;
};

}  // namespace zol_v2::internal
