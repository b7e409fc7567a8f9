// ICC profiles that documents carry, through lcms2.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "colorimetry/outcome.h"
#include "colorimetry/spaces.h"

namespace zol_v2::colorimetry::internal {

enum class DeviceSpace : unsigned char { rgb, cmyk, more_inks };

// Device values to Lab of the profile connection space: D50, 2 degrees, absolute colorimetric.
class Profile {
 public:
  // `channels` counts the inks of more_inks. Refused: bytes that are no profile, a profile of
  // another space, and one that has no way to colorimetry.
  static Outcome<std::shared_ptr<const Profile>> open(const std::vector<unsigned char>& bytes,
                                                      DeviceSpace space, std::size_t channels);

  // RGB from 0 to 1, inks from 0 to 100, as many as the space has.
  Lab lab_of(const double* values) const;

 private:
  struct Closer {
    void operator()(void* transform) const;
  };
  struct ContextCloser {
    void operator()(void* context) const;
  };
  Profile() = default;

  std::unique_ptr<void, ContextCloser> context_;  // goes last
  std::unique_ptr<void, Closer> transform_;
};

}  // namespace zol_v2::colorimetry::internal
