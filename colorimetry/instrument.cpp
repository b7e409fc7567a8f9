#include "colorimetry/internal/instrument.h"

#include "model/Zol.h"

namespace zol_v2::colorimetry::internal {

namespace {

void read_common(const ColorSpaceSpecificationSpectrumType& specification, Stimulus* stimulus) {
  const DeviceFilter& filter = specification.get_DeviceFilter();
  const DevicePolarization& polarisation = specification.get_DevicePolarization();
  if (!filter.isnil_DeviceFilter()) stimulus->filter = filter.getenum_DeviceFilterType();
  if (!polarisation.isnil_DevicePolarization()) {
    stimulus->is_polarised = polarisation.get_DevicePolarization();
  }
  stimulus->quantity = specification.get_Spectrum().getenum_SpectrumType();
}

// Of a specification that need not have a geometry.
template <class Specification>
void read_optional_geometry(const Specification& specification, Stimulus* stimulus) {
  if (specification.isset_GeometryChoice()) {
    stimulus->geometry = Geometry::of(specification.get_GeometryChoice());
  }
}

}  // namespace

void read_instrument(const ColorSpaceSpecificationSpectrumTristimulusType& specification,
                     Stimulus* stimulus) {
  read_common(specification, stimulus);
  read_optional_geometry(specification, stimulus);
}

void read_instrument(const ColorSpaceSpecificationSpectrumSpectralType& specification,
                     Stimulus* stimulus) {
  read_common(specification, stimulus);
  stimulus->geometry = Geometry::of(specification.get_GeometryChoice());
}

void read_instrument(const ColorSpaceSpecificationSpectrumGenericType& specification,
                     Stimulus* stimulus) {
  read_common(specification, stimulus);
  read_optional_geometry(specification, stimulus);
}

std::string difference_of_instruments(const Stimulus& a, const Stimulus& b) {
  if (a.geometry && b.geometry && a.geometry != b.geometry) {
    return "the geometries differ: " + a.geometry.text() + " and " + b.geometry.text();
  }
  if (a.filter != 0 && b.filter != 0 && a.filter != b.filter) return "the filters differ";
  if (a.is_polarised && b.is_polarised && *a.is_polarised != *b.is_polarised) {
    return "one was measured with polarisers and one without";
  }
  if (a.quantity != 0 && b.quantity != 0 && a.quantity != b.quantity) {
    return "they are not of one spectral quantity, such as reflectance";
  }
  return {};
}

std::string fault_of_geometry(const Stimulus& stimulus, const Demands& demands) {
  if (!demands.geometry || stimulus.geometry == demands.geometry) return {};
  if (!stimulus.geometry) return "the geometry is not given";
  return "the geometry is " + stimulus.geometry.text() + ", not " + demands.geometry.text();
}

}  // namespace zol_v2::colorimetry::internal
