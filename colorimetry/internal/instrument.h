// How something was measured, and whether that lets two measurements be compared.
#pragma once

#include <string>

#include "colorimetry/comparison.h"

namespace zol_v2 {
class ColorSpaceSpecificationSpectrumGenericType;
class ColorSpaceSpecificationSpectrumSpectralType;
class ColorSpaceSpecificationSpectrumTristimulusType;
}  // namespace zol_v2

namespace zol_v2::colorimetry::internal {

// Geometry, filter, polarisers and quantity of a specification; nothing else of the stimulus.
void read_instrument(const ColorSpaceSpecificationSpectrumTristimulusType& specification,
                     Stimulus* stimulus);
void read_instrument(const ColorSpaceSpecificationSpectrumSpectralType& specification,
                     Stimulus* stimulus);
void read_instrument(const ColorSpaceSpecificationSpectrumGenericType& specification,
                     Stimulus* stimulus);

// Why the two may not be compared; empty if they may.
std::string difference_of_instruments(const Stimulus& a, const Stimulus& b);
// Why the geometry is not the one that is demanded; empty if it is, or if none is.
std::string fault_of_geometry(const Stimulus& stimulus, const Demands& demands);

}  // namespace zol_v2::colorimetry::internal
