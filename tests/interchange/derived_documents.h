// Documents that nobody wrote: the samples, changed at random within what the format allows.
#pragma once

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "model/Zol.h"

namespace zol_test {

// Every sample document, then as many derived ones as are asked for. Each can be saved and reads
// back; the same `seed` gives the same documents.
class DerivedDocuments {
 public:
  explicit DerivedDocuments(unsigned seed = 1);
  std::unique_ptr<zol_v2::Zol> next();

 private:
  std::mt19937 random_;
  std::vector<std::unique_ptr<zol_v2::Zol>> origins_;
};

// What the document says, exactly and without the stamp.
std::string exact_text(const zol_v2::Zol& document);

}  // namespace zol_test
