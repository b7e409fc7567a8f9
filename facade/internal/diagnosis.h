// Finds every fault of a document that could not be loaded.
//
// Loading stops at the first fault and is made to be fast. This is the road behind it: it reads the
// document again by the events of the same reader and the tables of the same classes, goes on
// behind each fault as if it had been mended, and notes where in the source it stands. One mistake
// is one fault: what only follows from it is not told.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "facade/faults.h"
#include "model/internal/tables.h"

namespace zol_v2::internal {

class Object;

struct Diagnosis {
  std::vector<Fault> faults;  // in the order of the document
  std::uint64_t count = 0;    // of all, also those beyond the limit
  // Whether the document was read to its end: what is no XML any more ends it.
  bool is_complete = true;
  bool has_root = false;
};

// Keeps `limit` faults. Unless it is null, `tree` is as new and gets what is good in the document.
Diagnosis diagnose(std::string_view bytes, const Class& type, std::size_t limit, Object* tree);

// The attribute by which people call an object of the class; null if it has none.
const Row* name_row(const Class& type);

// What a number of the row may be at least and at most: "less than 360 degree".
std::string lower_bound_words(const Row& row);
std::string upper_bound_words(const Row& row);

// Says in the fault why the row refuses the text with this code.
void describe_value(const Row& row, lmx::elmx_error code, std::string_view text, Fault* fault);

// A text as a fault shows it: on one line, and of a sensible length.
std::string excerpt(std::string_view utf8);

}  // namespace zol_v2::internal
