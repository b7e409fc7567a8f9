// Documents to measure with: valid, of a wanted size, and the same bytes for the same arguments on
// every machine. They are written without the library, so that it has no part in its own input.
#pragma once

#include <cstddef>
#include <string>

namespace bench {

enum class Profile {
  spectra,   // colours as 31 or 36 points of a spectrum with full measurement conditions
  palettes,  // colour sets of named colours in CIELab and RGB
  mixed      // everything: many spaces, substrates, tags, custom attributes, quality control
};

inline constexpr Profile k_profiles[] = {Profile::spectra, Profile::palettes, Profile::mixed};

const char* name_of(Profile profile);

// UTF-8, a tab for each level, at least `size` bytes and at most a few kilobytes more.
std::string make_document(Profile profile, std::size_t size);

}  // namespace bench
