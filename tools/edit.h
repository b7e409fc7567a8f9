// Changes of a document by paths.
#pragma once

#include <string>
#include <vector>

#include "model/reflection.h"

struct Assignment {
  std::string path;
  std::string value;
};

// Takes all deletions and assignments, whose paths mean the document as it was, and tells those
// that are refused in `faults`, as "PATH: SENTENCE". If any is, the document is in no state to be
// kept.
//
// An assignment makes what is missing on the way: optional rows, the entry behind the last of a
// list, and the alternative of an empty choice. It takes the place of another alternative only
// where both are values.
void edit(zol_v2::reflection::Ref root, const std::vector<Assignment>& assignments,
          const std::vector<std::string>& deletions, std::vector<std::string>* faults);
