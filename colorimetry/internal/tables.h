// The compiled-in tables of colorimetry/data, all on one grid of 1 nm.
#pragma once

namespace zol_v2::colorimetry::internal {

constexpr int k_first_nm = 360;
constexpr int k_last_nm = 830;
constexpr int k_wavelengths = k_last_nm - k_first_nm + 1;

// x, y, z of the 2 degree observer, and then of the 10 degree one.
extern const double k_observers[6][k_wavelengths];

struct IlluminantTable {
  const char* name;       // without "Illuminant_"
  int first_nm, last_nm;  // what was published, which may begin before the grid
  double power[k_wavelengths];
};

extern const IlluminantTable k_illuminants[];
extern const int k_illuminant_count;

}  // namespace zol_v2::colorimetry::internal
