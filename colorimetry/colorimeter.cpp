#include "colorimetry/colorimeter.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <tuple>
#include <utility>

#include "colorimetry/internal/instrument.h"
#include "colorimetry/internal/profile.h"
#include "colorimetry/internal/text.h"
#include "model/Zol.h"
#include "model/reflection.h"
#include "port/wide_text.h"

namespace zol_v2::colorimetry {

using internal::DeviceSpace;
using internal::number_text;
using internal::Profile;

using TristimulusSpecification = ColorSpaceSpecificationSpectrumTristimulusType;
using GenericSpecification = ColorSpaceSpecificationSpectrumGenericType;

namespace {

// --- Specifications ------------------------------------------------------------------------------

// Calls take(collection) for the set and then the palette, until it gives something.
template <class Take>
auto from_collections(const ColorPlace& place, const Take& take)
    -> decltype(take(std::declval<const CollectionColorSpaceSpecificationType&>())) {
  if (place.set != nullptr && place.set->isset_CollectionColorSpaceSpecification()) {
    if (const auto found = take(place.set->get_CollectionColorSpaceSpecification())) return found;
  }
  if (place.palette != nullptr && place.palette->isset_CollectionColorSpaceSpecification()) {
    if (const auto found = take(place.palette->get_CollectionColorSpaceSpecification())) {
      return found;
    }
  }
  return nullptr;
}

const TristimulusSpecification* shared_tristimulus(const ColorPlace& place) {
  return from_collections(
      place,
      [](const CollectionColorSpaceSpecificationType& shared) -> const TristimulusSpecification* {
        return shared.isset_ColorSpaceSpecificationSpectrumTristimulus()
                   ? &shared.get_ColorSpaceSpecificationSpectrumTristimulus()
                   : nullptr;
      });
}

const TristimulusSpecification* tristimulus_specification(
    const ColorSpaceSpecificationSpectrumTristimulus& own, const ColorPlace& place) {
  return own.isnil_ColorSpaceSpecificationSpectrumTristimulus() ? shared_tristimulus(place) : &own;
}

const GenericSpecification* generic_specification(const ColorSpaceSpecificationSpectrumGeneric& own,
                                                  const ColorPlace& place) {
  if (!own.isnil_ColorSpaceSpecificationSpectrumGeneric()) return &own;
  return from_collections(
      place,
      [](const CollectionColorSpaceSpecificationType& shared) -> const GenericSpecification* {
        return shared.isset_ColorSpaceSpecificationSpectrumGeneric()
                   ? &shared.get_ColorSpaceSpecificationSpectrumGeneric()
                   : nullptr;
      });
}

const ColorSpaceSpecificationSpectrumSpectralType* spectral_specification(
    const ColorSpaceSpecificationSpectrumSpectral& own, const ColorPlace& place) {
  using Spectral = ColorSpaceSpecificationSpectrumSpectralType;
  if (!own.isnil_ColorSpaceSpecificationSpectrumSpectral()) return &own;
  return from_collections(
      place, [](const CollectionColorSpaceSpecificationType& shared) -> const Spectral* {
        return shared.isset_ColorSpaceSpecificationSpectrumSpectral()
                   ? &shared.get_ColorSpaceSpecificationSpectrumSpectral()
                   : nullptr;
      });
}

// --- What a rendering is good for --------------------------------------------------------------

// Best first.
enum Rank : int {
  k_lab,
  k_lch,
  k_xyz,
  k_xyy,
  k_luv,
  k_spectrum,
  k_finish,
  k_standard_rgb,
  k_device,
  k_emissive_xyz,
  k_emissive_xyy,
  k_emissive_spectrum,
  k_nothing
};

Rank rank_of(const sg_ColorSpace& space) {
  switch (space.getchosen()) {
    case sg_ColorSpace::chosen_ColorSpaceCIELab:
      return k_lab;
    case sg_ColorSpace::chosen_ColorSpaceCIELCh:
      return k_lch;
    case sg_ColorSpace::chosen_ColorSpaceCIEXYZ:
      return k_xyz;
    case sg_ColorSpace::chosen_ColorSpaceCIExyY:
      return k_xyy;
    case sg_ColorSpace::chosen_ColorSpaceCIELuv:
      return k_luv;
    case sg_ColorSpace::chosen_ColorSpaceEmissiveCIEXYZ:
      return k_emissive_xyz;
    case sg_ColorSpace::chosen_ColorSpaceEmissiveCIExyY:
      return k_emissive_xyy;
    case sg_ColorSpace::chosen_ColorSpaceSpectral:
      return k_spectrum;
    case sg_ColorSpace::chosen_ColorSpaceEmissiveSpectral:
      return k_emissive_spectrum;
    case sg_ColorSpace::chosen_ColorSpaceOMBRELL:
      return k_finish;
    case sg_ColorSpace::chosen_ColorSpaceSRGB:
    case sg_ColorSpace::chosen_ColorSpaceAdobeRGB:
    case sg_ColorSpace::chosen_ColorSpaceAdobeWideGamutRGB:
      return k_standard_rgb;
    case sg_ColorSpace::chosen_ColorSpaceRGB:
    case sg_ColorSpace::chosen_ColorSpaceCMYK:
    case sg_ColorSpace::chosen_ColorSpaceCMYKPlusN:
    case sg_ColorSpace::chosen_ColorSpaceOMBRELLVantiline:
    case sg_ColorSpace::chosen_ColorSpaceHSL:
    case sg_ColorSpace::chosen_ColorSpaceHSV:
    case sg_ColorSpace::chosen_ColorSpaceYUV:
    case sg_ColorSpace::chosen_ColorSpaceYIQ:
    case sg_ColorSpace::chosen_ColorSpaceYBR:
      return k_device;
    default:
      return k_nothing;
  }
}

bool is_spectral(Rank rank) {
  return rank == k_spectrum || rank == k_emissive_spectrum || rank == k_finish;
}

// As the element is called, without "ColorSpace".
std::string space_name(const sg_ColorSpace& space) {
  constexpr std::string_view k_prefix = "ColorSpace";
  const reflection::Row chosen = reflection::ConstRef(space).chosen();
  return chosen ? std::string(chosen.name().substr(k_prefix.size())) : "nothing";
}

bool is_finite(const Xyz& xyz) {
  return std::isfinite(xyz.x) && std::isfinite(xyz.y) && std::isfinite(xyz.z);
}

bool same(const Conditions& a, const Conditions& b) {
  return a.light == b.light && a.observer == b.observer;
}

// Conditions and white of coordinates. What no white is known for gets that of D50, and says so.
void read_conditions(const TristimulusSpecification* specification, Stimulus* stimulus) {
  const Conditions standard;
  if (specification == nullptr) {
    stimulus->conditions = standard;
    stimulus->has_default_conditions = true;
  } else {
    const int observer = specification->getenum_FieldOfView();
    internal::read_instrument(*specification, stimulus);
    stimulus->conditions.light = Light::of(specification->get_IlluminationOptions());
    stimulus->conditions.observer = observer == 2 ? Observer::degree_10 : Observer::degree_2;
    stimulus->has_default_conditions = observer == 0;
  }
  const Outcome<Xyz> white = stimulus->conditions.light.white(stimulus->conditions.observer);
  if (!white) stimulus->has_default_conditions = true;
  stimulus->white = white ? *white : *standard.light.white(standard.observer);
}

// The stimulus with the rendering that it came from; refused where its numbers are none.
Outcome<Stimulus> checked(Outcome<Stimulus> stimulus, const sg_ColorSpace& space) {
  if (!stimulus) return stimulus;
  if (!is_finite(stimulus->xyz)) {
    return Refusal{"the numbers of " + space_name(space) + " give no colour"};
  }
  stimulus->space = &space;
  return stimulus;
}

// The conditions that spectra of a collection are to be seen under.
Conditions shared_conditions(const ColorPlace& place, bool* is_default) {
  Stimulus shared;
  const TristimulusSpecification* const specification = shared_tristimulus(place);
  if (specification != nullptr) read_conditions(specification, &shared);
  *is_default = specification == nullptr || shared.has_default_conditions ||
                !shared.conditions.light.has_spectrum();
  return *is_default ? Conditions() : shared.conditions;
}

}  // namespace

// --- Geometry and texts --------------------------------------------------------------------------

Geometry Geometry::of(const GeometryChoiceType& choice) {
  Geometry result;
  switch (choice.getchosen()) {
    case GeometryChoiceType::chosen_SphereGeometry:
      result.kind_ =
          choice.getenum_SphereGeometry() == 2 ? Kind::sphere_excluded : Kind::sphere_included;
      break;
    case GeometryChoiceType::chosen_Angle:
      result.kind_ = Kind::angle;
      result.first_ = choice.get_Angle();
      break;
    case GeometryChoiceType::chosen_UnknownGeometry:
      result.kind_ = Kind::named;
      result.words_ = std::make_shared<const std::wstring>(choice.get_UnknownGeometry());
      break;
    case GeometryChoiceType::chosen_BSDFAngle:
      result.kind_ = Kind::angles;
      result.first_ = choice.get_BSDFAngle().get_IlluminantAngle();
      result.second_ = choice.get_BSDFAngle().get_Aspecular();
      break;
    default:
      break;
  }
  return result;
}

std::string Geometry::text() const {
  switch (kind_) {
    case Kind::sphere_included:
      return "sphere, specular included";
    case Kind::sphere_excluded:
      return "sphere, specular excluded";
    case Kind::angle:
      return number_text(first_) + " degrees";
    case Kind::named:
      return zol::port::to_utf8(*words_);
    case Kind::angles:
      return number_text(first_) + " degrees, aspecular " + number_text(second_) + " degrees";
    default:
      return "unknown geometry";
  }
}

bool Geometry::operator==(const Geometry& other) const {
  return kind_ == other.kind_ && first_ == other.first_ && second_ == other.second_ &&
         (kind_ != Kind::named || *words_ == *other.words_);
}

std::string text_of(const Conditions& conditions) {
  return conditions.light.name() + ", " + std::string(name_of(conditions.observer)) + " degrees";
}

Lab Stimulus::lab() const {
  if (!has_white()) return {NAN, NAN, NAN};
  return lab_of(xyz, white);
}

std::string basis_of(const Stimulus& stimulus) {
  std::string text = stimulus.space != nullptr ? space_name(*stimulus.space) : "colour";
  if (stimulus.source == Source::spectrum) text += ": " + description_of(stimulus.method);
  if (stimulus.source == Source::profile) text += " by the document's ICC profile";
  if (stimulus.is_assumed_srgb) text += " without a profile, read as sRGB";
  text += ", for " + text_of(stimulus.conditions);
  if (stimulus.adapted_from) {
    text += std::string(", adapted by ") +
            (stimulus.adaptation == Adaptation::cat02 ? "CAT02" : "Bradford") + " from " +
            text_of(*stimulus.adapted_from);
  }
  if (stimulus.has_default_conditions) {
    text += stimulus.source == Source::spectrum ? " by default" : ", white of D50 by default";
  }
  if (stimulus.is_without_bandpass_correction) text += ", without bandpass correction";
  return text;
}

// --- Displays ------------------------------------------------------------------------------------

Display display_of(const Stimulus& stimulus) {
  Display result;
  Xyz xyz = stimulus.xyz;
  const Xyz display_white = white_of(RgbSpace::srgb);
  if (stimulus.has_white()) {
    const bool is_d65 = stimulus.conditions.light == Light(StandardIlluminant::D65) &&
                        stimulus.conditions.observer == Observer::degree_2;
    result.is_adapted = !is_d65 || stimulus.has_default_conditions;
    xyz = adapted(xyz, stimulus.white, display_white);
  } else {
    const Rgb linear = linear_rgb_of(xyz, RgbSpace::srgb);
    const double full = std::max({linear.r, linear.g, linear.b});
    result.is_scaled = full > 0;
    if (result.is_scaled) xyz = {xyz.x / full, xyz.y / full, xyz.z / full};
  }
  result.rgb = rgb_of(xyz, RgbSpace::srgb);
  result.bytes = bytes_of(result.rgb);
  result.is_in_gamut = is_in_gamut(result.rgb);
  return result;
}

std::string Display::hex() const {
  constexpr char k_digits[] = "0123456789abcdef";
  std::string text = "#";
  for (const unsigned char byte : bytes) {
    text += k_digits[byte >> 4];
    text += k_digits[byte & 15];
  }
  return text;
}

// --- The colorimeter -----------------------------------------------------------------------------

namespace internal {

struct Meter {
  using ProfileKey = std::tuple<const ProfileFile*, DeviceSpace, std::size_t>;
  using OpenedProfile = Outcome<std::shared_ptr<const Profile>>;

  Colorimeter::Options options;
  std::map<ProfileKey, OpenedProfile> profiles;

  Outcome<Stimulus> rendering(const sg_ColorSpace& space, const ColorPlace& place);
  Outcome<Stimulus> spectral(const sg_ColorSpace& space, const Conditions& conditions,
                             const ColorPlace& place);
  Outcome<Stimulus> tristimulus(const sg_ColorSpace& space, const ColorPlace& place);
  Outcome<Stimulus> standard_rgb(const sg_ColorSpace& space);
  Outcome<Stimulus> device(const sg_ColorSpace& space, const ColorPlace& place);
  Outcome<Stimulus> by_profile(const ColorSpaceSpecificationType* specification, DeviceSpace kind,
                               const std::vector<double>& values);
  Outcome<Stimulus> rgb_by_profile(const ColorSpaceSpecificationType* specification,
                                   const Rgb& rgb);
  const OpenedProfile& profile(const ProfileFile& file, DeviceSpace kind, std::size_t channels);
};

}  // namespace internal

namespace {

// Without a rendering to name.
Stimulus stimulus_of_rgb(const Rgb& rgb, RgbSpace space) {
  Stimulus result;
  result.source = Source::rgb;
  result.xyz = xyz_of(rgb, space);
  result.white = white_of(space);
  result.conditions = {
      space == RgbSpace::wide_gamut ? StandardIlluminant::D50 : StandardIlluminant::D65,
      Observer::degree_2};
  return result;
}

template <class Space>
Rgb rgb_in(const Space& space) {
  return {space.get_Red(), space.get_Green(), space.get_Blue()};
}

template <class Space>
std::vector<double> process_inks(const Space& space) {
  return {space.get_Cyan(), space.get_Magenta(), space.get_Yellow(), space.get_Black()};
}

// Coordinates of light sources are in cd/m2 and have no white.
Stimulus stimulus_of_source(const Xyz& xyz,
                            const ColorSpaceSpecificationEmissiveTristimulus& specification) {
  Stimulus result;
  result.xyz = xyz;
  result.is_emissive = true;
  result.has_default_conditions = true;
  if (!specification.isnil_ColorSpaceSpecificationEmissiveTristimulus()) {
    const int observer = specification.getenum_FieldOfView();
    result.has_default_conditions = observer == 0;
    result.conditions.observer = observer == 2 ? Observer::degree_10 : Observer::degree_2;
    result.conditions.light = Light::of(specification.get_IlluminationOptions());
  }
  return result;
}

}  // namespace

const internal::Meter::OpenedProfile& internal::Meter::profile(const ProfileFile& file,
                                                               DeviceSpace kind,
                                                               std::size_t channels) {
  const ProfileKey key = {&file, kind, channels};
  const auto known = profiles.find(key);
  if (known != profiles.end()) return known->second;
  const lmx::c_binary& binary = file.get_ProfileFile();
  std::vector<unsigned char> bytes(binary.size());
  binary.get(bytes.data(), binary.size());
  return profiles.emplace(key, Profile::open(bytes, kind, channels)).first->second;
}

Outcome<Stimulus> internal::Meter::by_profile(const ColorSpaceSpecificationType* specification,
                                              DeviceSpace kind, const std::vector<double>& values) {
  if (specification == nullptr || !specification->isset_Profile()) {
    return Refusal{"device values without a profile have no colour"};
  }
  const ProfileChoice& choice = specification->get_Profile().get_ProfileChoice();
  if (choice.getchosen() != ProfileChoice::chosen_ProfileFile) {
    return Refusal{"the profile is not in the document"};
  }
  const OpenedProfile& opened = profile(choice.get_ProfileFile(), kind, values.size());
  if (!opened) return opened.refusal();
  Stimulus result;
  result.source = Source::profile;
  result.white = *result.conditions.light.white(result.conditions.observer);
  result.xyz = xyz_of((*opened)->lab_of(values.data()), result.white);
  return result;
}

Outcome<Stimulus> internal::Meter::rgb_by_profile(const ColorSpaceSpecificationType* specification,
                                                  const Rgb& rgb) {
  Outcome<Stimulus> result = by_profile(specification, DeviceSpace::rgb, {rgb.r, rgb.g, rgb.b});
  const bool has_profile = specification != nullptr && specification->isset_Profile();
  if (result || has_profile || !options.assume_srgb) return result;
  Stimulus assumed = stimulus_of_rgb(rgb, RgbSpace::srgb);
  assumed.is_assumed_srgb = true;
  return assumed;
}

Outcome<Stimulus> internal::Meter::device(const sg_ColorSpace& space, const ColorPlace& place) {
  const auto transformed = [&](const auto& values, const Rgb& rgb) {
    return rgb_by_profile(
        generic_specification(values.get_ColorSpaceSpecificationSpectrumGeneric(), place), rgb);
  };
  const auto inks = [&](const auto& values, DeviceSpace kind, const std::vector<double>& amounts) {
    return by_profile(
        generic_specification(values.get_ColorSpaceSpecificationSpectrumGeneric(), place), kind,
        amounts);
  };
  switch (space.getchosen()) {
    case sg_ColorSpace::chosen_ColorSpaceRGB: {
      const ColorSpaceRGBType& values = space.get_ColorSpaceRGB();
      return rgb_by_profile(
          tristimulus_specification(values.get_ColorSpaceSpecificationSpectrumTristimulus(), place),
          rgb_in(values));
    }
    case sg_ColorSpace::chosen_ColorSpaceHSL: {
      const ColorSpaceHSLType& v = space.get_ColorSpaceHSL();
      return transformed(v, rgb_of(Hsl{v.get_Hue(), v.get_Saturation(), v.get_Lightness()}));
    }
    case sg_ColorSpace::chosen_ColorSpaceHSV: {
      const ColorSpaceHSVType& v = space.get_ColorSpaceHSV();
      return transformed(v, rgb_of(Hsv{v.get_Hue(), v.get_Saturation(), v.get_Value()}));
    }
    case sg_ColorSpace::chosen_ColorSpaceYUV: {
      const ColorSpaceYUVType& v = space.get_ColorSpaceYUV();
      return transformed(v, rgb_of(Yuv{v.get_Y(), v.get_U(), v.get_V()}));
    }
    case sg_ColorSpace::chosen_ColorSpaceYIQ: {
      const ColorSpaceYIQType& v = space.get_ColorSpaceYIQ();
      return transformed(v, rgb_of(Yiq{v.get_Y(), v.get_I(), v.get_Q()}));
    }
    case sg_ColorSpace::chosen_ColorSpaceYBR: {
      const ColorSpaceYBRType& v = space.get_ColorSpaceYBR();
      return transformed(v, rgb_of(Ybr{v.get_Y(), v.get_B(), v.get_R()}));
    }
    case sg_ColorSpace::chosen_ColorSpaceOMBRELLVantiline: {
      const ColorSpaceOMBRELLVantilineType& v = space.get_ColorSpaceOMBRELLVantiline();
      std::vector<double> amounts = process_inks(v);
      amounts.insert(amounts.end(), {v.get_Orange(), v.get_Green()});
      return inks(v, DeviceSpace::more_inks, amounts);
    }
    default:
      break;
  }
  const ColorSpaceCMYKType& values = space.getchosen() == sg_ColorSpace::chosen_ColorSpaceCMYK
                                         ? space.get_ColorSpaceCMYK()
                                         : space.get_ColorSpaceCMYKPlusN();
  std::vector<double> amounts = process_inks(values);
  const auto* const more = reflection::ConstRef(values).as<ColorSpaceCMYKPlusNType>();
  if (more == nullptr) return inks(values, DeviceSpace::cmyk, amounts);
  for (const Color& channel : more->each_Color()) amounts.push_back(channel.get_Value());
  return inks(values, DeviceSpace::more_inks, amounts);
}

Outcome<Stimulus> internal::Meter::standard_rgb(const sg_ColorSpace& space) {
  switch (space.getchosen()) {
    case sg_ColorSpace::chosen_ColorSpaceSRGB:
      return stimulus_of_rgb(rgb_in(space.get_ColorSpaceSRGB()), RgbSpace::srgb);
    case sg_ColorSpace::chosen_ColorSpaceAdobeRGB:
      return stimulus_of_rgb(rgb_in(space.get_ColorSpaceAdobeRGB()), RgbSpace::adobe_rgb_1998);
    default:
      return stimulus_of_rgb(rgb_in(space.get_ColorSpaceAdobeWideGamutRGB()), RgbSpace::wide_gamut);
  }
}

Outcome<Stimulus> internal::Meter::tristimulus(const sg_ColorSpace& space,
                                               const ColorPlace& place) {
  Stimulus result;
  const auto conditions_of = [&](const auto& values) {
    read_conditions(
        tristimulus_specification(values.get_ColorSpaceSpecificationSpectrumTristimulus(), place),
        &result);
  };
  switch (space.getchosen()) {
    case sg_ColorSpace::chosen_ColorSpaceCIELab: {
      const ColorSpaceCIELabType& v = space.get_ColorSpaceCIELab();
      conditions_of(v);
      result.xyz = xyz_of(Lab{v.get_L(), v.get_A(), v.get_B()}, result.white);
      break;
    }
    case sg_ColorSpace::chosen_ColorSpaceCIELCh: {
      const ColorSpaceCIELChType& v = space.get_ColorSpaceCIELCh();
      conditions_of(v);
      result.xyz = xyz_of(lab_of(Lch{v.get_L(), v.get_C(), v.get_H()}), result.white);
      break;
    }
    case sg_ColorSpace::chosen_ColorSpaceCIEXYZ: {
      const ColorSpaceCIEXYZType& v = space.get_ColorSpaceCIEXYZ();
      conditions_of(v);
      result.xyz = {v.get_X(), v.get_Y(), v.get_Z()};
      break;
    }
    case sg_ColorSpace::chosen_ColorSpaceCIExyY: {
      const ColorSpaceCIExyYType& v = space.get_ColorSpaceCIExyY();
      conditions_of(v);
      result.xyz = xyz_of(Xyy{v.get_X(), v.get_Y(), v.get_CapY()});
      break;
    }
    case sg_ColorSpace::chosen_ColorSpaceCIELuv: {
      const ColorSpaceCIELuvType& v = space.get_ColorSpaceCIELuv();
      conditions_of(v);
      result.xyz = xyz_of(Luv{v.get_L(), v.get_U(), v.get_V()}, result.white);
      break;
    }
    case sg_ColorSpace::chosen_ColorSpaceEmissiveCIEXYZ: {
      const ColorSpaceEmissiveCIEXYZType& v = space.get_ColorSpaceEmissiveCIEXYZ();
      return stimulus_of_source({v.get_X(), v.get_Y(), v.get_Z()},
                                v.get_ColorSpaceSpecificationEmissiveTristimulus());
    }
    default: {
      const ColorSpaceEmissiveCIExyYType& v = space.get_ColorSpaceEmissiveCIExyY();
      return stimulus_of_source(xyz_of(Xyy{v.get_X(), v.get_Y(), v.get_CapY()}),
                                v.get_ColorSpaceSpecificationEmissiveTristimulus());
    }
  }
  return result;
}

Outcome<Stimulus> internal::Meter::spectral(const sg_ColorSpace& space,
                                            const Conditions& conditions, const ColorPlace& place) {
  Stimulus result;
  result.source = Source::spectrum;
  result.conditions = conditions;
  const bool is_emissive = rank_of(space) == k_emissive_spectrum;
  const ColorSpaceSpectralType* spectral = nullptr;
  if (rank_of(space) == k_spectrum) spectral = &space.get_ColorSpaceSpectral();
  if (rank_of(space) == k_finish) {
    const ColorSpaceOMBRELLType& deck = space.get_ColorSpaceOMBRELL();
    if (deck.size_ColorAndFinish() == 0) return Refusal{"the fan deck has no spectrum"};
    spectral = &deck.get_ColorAndFinish(0).get_ColorSpaceSpectral();
  }
  const Outcome<Spectrum> spectrum =
      is_emissive ? Spectrum::of(space.get_ColorSpaceEmissiveSpectral()) : Spectrum::of(*spectral);
  if (!spectrum) return spectrum.refusal();
  const auto weights = is_emissive
                           ? Weights::of_emission(spectrum->grid(), conditions.observer)
                           : Weights::of(spectrum->grid(), conditions.light, conditions.observer);
  if (!weights) return weights.refusal();
  result.space = &space;
  result.method = (*weights)->method();
  result.xyz = (*weights)->apply(spectrum->values().data());
  result.is_emissive = is_emissive;
  if (is_emissive) return result;
  result.white = *conditions.light.white(conditions.observer);
  const auto* const specification =
      spectral_specification(spectral->get_ColorSpaceSpecificationSpectrumSpectral(), place);
  if (specification != nullptr) {
    internal::read_instrument(*specification, &result);
    result.is_without_bandpass_correction = specification->getenum_ASTM_Table() == 2;
  }
  return result;
}

Outcome<Stimulus> internal::Meter::rendering(const sg_ColorSpace& space, const ColorPlace& place) {
  const Rank rank = rank_of(space);
  if (rank == k_nothing) return Refusal{space_name(space) + " has no published way to colorimetry"};
  if (rank == k_device) return checked(device(space, place), space);
  if (rank == k_standard_rgb) return checked(standard_rgb(space), space);
  if (!is_spectral(rank)) return checked(tristimulus(space, place), space);
  bool is_default = false;
  const Conditions conditions = shared_conditions(place, &is_default);
  Outcome<Stimulus> result = spectral(space, conditions, place);
  if (result) result->has_default_conditions = is_default;
  return result;
}

Colorimeter::Colorimeter() : Colorimeter(Options()) {}
Colorimeter::Colorimeter(const Options& options) : meter_(std::make_unique<internal::Meter>()) {
  meter_->options = options;
}
Colorimeter::~Colorimeter() = default;
Colorimeter::Colorimeter(Colorimeter&& other) noexcept = default;
Colorimeter& Colorimeter::operator=(Colorimeter&& other) noexcept = default;

namespace {

// Renderings of the colour by rank, best first, with the reason of the first that failed. What had
// to be assumed gives way to whatever else there is of its rank.
template <class Measure>
Outcome<Stimulus> first_that_measures(const ColorType& color, const Measure& measure) {
  Outcome<Stimulus> result = Refusal{"the colour has no rendering"};
  bool has_reason = false;
  for (int rank = 0; rank <= k_nothing; ++rank) {
    for (unsigned i = 0; i < color.size_ColorSpace(); ++i) {
      const sg_ColorSpace& space = color.get_ColorSpace(i);
      if (rank_of(space) != rank) continue;
      Outcome<Stimulus> measured = measure(space);
      if (measured) {
        measured->space_index = i;
        if (!measured->is_assumed_srgb) return measured;
      }
      if (measured ? !result : !has_reason) result = std::move(measured);
      has_reason = true;
    }
    if (result) return result;
  }
  return result;
}

}  // namespace

Outcome<Stimulus> Colorimeter::measure(const ColorType& color, const ColorPlace& place) {
  return first_that_measures(
      color, [&](const sg_ColorSpace& space) { return meter_->rendering(space, place); });
}

Outcome<Stimulus> Colorimeter::measure(const ColorType& color, const Conditions& conditions,
                                       const ColorPlace& place) {
  Outcome<Stimulus> direct = first_that_measures(
      color, [&](const sg_ColorSpace& space) { return measure(space, conditions, place); });
  if (meter_->options.adaptation == Adaptation::none || (direct && !direct->is_emissive)) {
    return direct;
  }
  const Outcome<Stimulus> own = measure(color, place);
  if (!own || own->is_emissive || own->has_default_conditions) return direct;
  const Outcome<Xyz> white = conditions.light.white(conditions.observer);
  if (!white) return white.refusal();
  Stimulus result = *own;
  result.xyz = adapted(own->xyz, own->white, *white, meter_->options.adaptation);
  result.white = *white;
  result.conditions = conditions;
  result.adapted_from = own->conditions;
  result.adaptation = meter_->options.adaptation;
  if (result.source == Source::tristimulus) result.source = Source::adapted;
  return result;
}

Outcome<Stimulus> Colorimeter::measure(const sg_ColorSpace& space, const Conditions& conditions,
                                       const ColorPlace& place) {
  if (is_spectral(rank_of(space))) return meter_->spectral(space, conditions, place);
  Outcome<Stimulus> result = meter_->rendering(space, place);
  if (!result) return result;
  const bool is_same = result->is_emissive
                           ? result->conditions.observer == conditions.observer
                           : same(result->conditions, conditions) && !result->is_assumed_srgb;
  if (!is_same) {
    return Refusal{"there is no spectrum, and " + space_name(space) + " is for " +
                   text_of(result->conditions)};
  }
  return result;
}

std::vector<Conditions> Colorimeter::conditions_of(const ColorType& color,
                                                   const ColorPlace& place) {
  std::vector<Conditions> result;
  for (int rank = 0; rank <= k_standard_rgb; ++rank) {
    for (const sg_ColorSpace& space : color.each_ColorSpace()) {
      if (rank_of(space) != rank || is_spectral(rank_of(space))) continue;
      const Outcome<Stimulus> stimulus = meter_->rendering(space, place);
      if (!stimulus) continue;
      const auto is_there = [&](const Conditions& c) { return same(c, stimulus->conditions); };
      if (std::none_of(result.begin(), result.end(), is_there)) {
        result.push_back(stimulus->conditions);
      }
    }
  }
  return result;
}

Outcome<Spectrum> Colorimeter::spectrum(const ColorType& color) {
  for (unsigned i = 0; i < color.size_ColorSpace(); ++i) {
    const sg_ColorSpace& space = color.get_ColorSpace(i);
    if (rank_of(space) == k_spectrum) return Spectrum::of(space.get_ColorSpaceSpectral());
    if (rank_of(space) == k_emissive_spectrum) {
      return Spectrum::of(space.get_ColorSpaceEmissiveSpectral());
    }
  }
  return Refusal{"the colour has no spectrum"};
}

}  // namespace zol_v2::colorimetry
