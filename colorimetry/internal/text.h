// Numbers as people write them; no locale has a say in it.
#pragma once

#include <string>

namespace zol_v2::colorimetry::internal {

// Up to six digits without trailing zeros: "0.3457", "6504".
std::string number_text(double value);

}  // namespace zol_v2::colorimetry::internal
