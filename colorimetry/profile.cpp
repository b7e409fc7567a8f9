#include "colorimetry/internal/profile.h"

#include <lcms2.h>

#include <limits>
#include <utility>

namespace zol_v2::colorimetry::internal {

namespace {

// What a faulty profile makes lcms2 say is told by the refusal.
void ignore_error(cmsContext, cmsUInt32Number, const char*) {}

struct ProfileCloser {
  void operator()(void* profile) const { cmsCloseProfile(profile); }
};
using OpenProfile = std::unique_ptr<void, ProfileCloser>;

struct Format {
  cmsUInt32Number format = 0;
  cmsColorSpaceSignature signature{};
  const char* name = "";
};

Format format_of(DeviceSpace space, std::size_t channels) {
  switch (space) {
    case DeviceSpace::rgb:
      return {TYPE_RGB_DBL, cmsSigRgbData, "RGB"};
    case DeviceSpace::cmyk:
      return {TYPE_CMYK_DBL, cmsSigCmykData, "CMYK"};
    default:
      break;
  }
  constexpr cmsColorSpaceSignature k_inks[] = {cmsSig5colorData, cmsSig6colorData, cmsSig7colorData,
                                               cmsSig8colorData, cmsSig9colorData};
  constexpr std::size_t k_least = 5;
  if (channels < k_least || channels >= k_least + std::size(k_inks)) return {};
  const auto count = static_cast<cmsUInt32Number>(channels);
  const cmsUInt32Number kind = PT_MCH5 + (count - k_least);
  return {FLOAT_SH(1) | COLORSPACE_SH(kind) | CHANNELS_SH(count) | BYTES_SH(0),
          k_inks[channels - k_least], "more than four inks"};
}

}  // namespace

void Profile::Closer::operator()(void* transform) const { cmsDeleteTransform(transform); }
void Profile::ContextCloser::operator()(void* context) const {
  cmsDeleteContext(static_cast<cmsContext>(context));
}

Outcome<std::shared_ptr<const Profile>> Profile::open(const std::vector<unsigned char>& bytes,
                                                      DeviceSpace space, std::size_t channels) {
  const Format format = format_of(space, channels);
  if (format.format == 0) {
    return Refusal{"there are no profiles for " + std::to_string(channels) + " inks"};
  }
  if (bytes.size() > std::numeric_limits<cmsUInt32Number>::max()) {
    return Refusal{"the profile is too large"};
  }
  Profile result;
  result.context_.reset(cmsCreateContext(nullptr, nullptr));
  if (!result.context_) return Refusal{"no memory for the profile"};
  const auto context = static_cast<cmsContext>(result.context_.get());
  cmsSetLogErrorHandlerTHR(context, ignore_error);
  const OpenProfile device(
      cmsOpenProfileFromMemTHR(context, bytes.data(), static_cast<cmsUInt32Number>(bytes.size())));
  if (!device) return Refusal{"the bytes of the profile are no ICC profile"};
  if (cmsGetColorSpace(device.get()) != format.signature) {
    return Refusal{"the profile is not one of " + std::string(format.name)};
  }
  const OpenProfile lab(cmsCreateLab4ProfileTHR(context, nullptr));
  if (!lab) return Refusal{"no memory for the profile"};
  result.transform_.reset(cmsCreateTransformTHR(context, device.get(), format.format, lab.get(),
                                                TYPE_Lab_DBL, INTENT_ABSOLUTE_COLORIMETRIC,
                                                cmsFLAGS_NOCACHE | cmsFLAGS_NOOPTIMIZE));
  if (!result.transform_) return Refusal{"the profile has no usable way to colorimetry"};
  return std::shared_ptr<const Profile>(std::make_shared<Profile>(std::move(result)));
}

Lab Profile::lab_of(const double* values) const {
  cmsCIELab lab{};
  cmsDoTransform(transform_.get(), values, &lab, 1);
  return {lab.L, lab.a, lab.b};
}

}  // namespace zol_v2::colorimetry::internal
