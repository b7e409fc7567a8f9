// What a colour looks like, from its own sRGB or computed where the library of colorimetry is
// there.
#pragma once

#include <array>
#include <memory>
#include <optional>

#include "interchange/records.h"

namespace zol_v2::interchange::internal {

// For the documents of one writer. Colours are those of documents that are still there.
class Display {
 public:
  Display();
  ~Display();

  // Before the colours of another document.
  void forget_document();
  // From 0 to 1, clipped; none if nothing is known. `losses` gets what was clipped, the notes that
  // something was computed.
  std::optional<std::array<double, 3>> rgb_of(const ColorRecord& record, Report* report);
  // CIELAB under D50 for 2 degrees.
  std::optional<std::array<double, 3>> lab_of(const ColorRecord& record);

 private:
  struct Meter;
  std::unique_ptr<Meter> meter_;
};

}  // namespace zol_v2::interchange::internal
