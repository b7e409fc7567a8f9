// A tour of the library: each document on the command line is loaded, described, changed, written
// and loaded again.

#include <cstdio>
#include <string>

#include "lmx/lmxparse.h"
#include "model/Zol.h"

namespace {

std::string utf8(const std::wstring& text) {
  std::string result;
  return lmx::convert(&result, text);
}

// Reads a document and says where and why it fails, if it does.
bool load(zol_v2::Zol& document, lmx::c_xml_reader& reader, const char* name) {
  if (document.unmarshal(reader) == lmx::elmx_ok) return true;
  std::string message;
  std::fprintf(stderr, "%s: %s\n", name, reader.get_error_message(&message).c_str());
  return false;
}

void describe_color(const zol_v2::ColorType& color) {
  std::printf("      %s", utf8(color.get_ColorName()).c_str());
  unsigned others = 0;
  for (unsigned i = 0; i < color.size_ColorSpace(); ++i) {
    const zol_v2::sg_ColorSpace& space = color.get_ColorSpace(i);
    switch (space.getchosen()) {
      case zol_v2::sg_ColorSpace::chosen_ColorSpaceCIELab: {
        const auto& lab = space.get_ColorSpaceCIELab();
        std::printf("  Lab %.2f %.2f %.2f", lab.get_L(), lab.get_A(), lab.get_B());
        break;
      }
      case zol_v2::sg_ColorSpace::chosen_ColorSpaceSRGB: {
        const auto& rgb = space.get_ColorSpaceSRGB();
        std::printf("  sRGB %.3f %.3f %.3f", rgb.get_Red(), rgb.get_Green(), rgb.get_Blue());
        break;
      }
      case zol_v2::sg_ColorSpace::chosen_ColorSpaceSpectral: {
        const auto& spectrum = space.get_ColorSpaceSpectral();
        const unsigned points = spectrum.size_ReflectancePoint();
        std::printf("  %u points from %g to %g nm", points,
                    spectrum.get_ReflectancePoint(0).get_Wavelength(),
                    spectrum.get_ReflectancePoint(points - 1).get_Wavelength());
        break;
      }
      default:
        ++others;
    }
  }
  if (others != 0) std::printf("  and %u other spaces", others);
  std::printf("\n");
}

void describe(const zol_v2::Zol& document) {
  constexpr unsigned k_shown = 3;
  const zol_v2::Header& header = document.get_Preamble().get_Header();
  std::printf("  by %s %s, %u changes\n", utf8(header.get_Creator()).c_str(),
              utf8(header.get_CreatorVersion()).c_str(), header.size_ChangeHistory());
  for (unsigned i = 0; i < document.size_Palette(); ++i) {
    const zol_v2::PaletteType& palette = document.get_Palette(i);
    std::printf("  palette %s\n", utf8(palette.get_PaletteName()).c_str());
    for (unsigned j = 0; j < palette.size_ColorSet(); ++j) {
      const zol_v2::ColorSetType& set = palette.get_ColorSet(j);
      std::printf("    set %s, %u colours\n", utf8(set.get_ColorSetName()).c_str(),
                  set.size_Color());
      for (unsigned k = 0; k < set.size_Color() && k < k_shown; ++k) {
        describe_color(set.get_Color(k));
      }
    }
  }
  std::printf("  %u colours of their own\n", document.size_Color());
  for (unsigned i = 0; i < document.size_Color() && i < k_shown; ++i) {
    describe_color(document.get_Color(i));
  }
  std::printf("  %u quality-control records\n", document.size_ColorQualityControl());
}

// Adds a colour, as a client that measured one would.
lmx::elmx_error add_measurement(zol_v2::Zol& document) {
  if (const lmx::elmx_error error = document.append_Color()) return error;
  zol_v2::ColorType& color = document.back_Color();
  if (const lmx::elmx_error error = color.set_ColorName(L"Added on tour")) return error;
  (void)color.append_ChangeHistory(lmx::c_datetime("2026-01-02T03:04:05Z"));
  (void)color.append_ColorSpace();
  zol_v2::ColorSpaceCIELabType& lab = color.back_ColorSpace().get_ColorSpaceCIELab();
  (void)lab.append_ChangeHistory(lmx::c_datetime("2026-01-02T03:04:05Z"));
  lab.get_ColorSpaceSpecificationSpectrumTristimulus()
      .setnil_ColorSpaceSpecificationSpectrumTristimulus();
  if (const lmx::elmx_error error = lab.set_L(53.2)) return error;
  if (const lmx::elmx_error error = lab.set_A(80.1)) return error;
  return lab.set_B(67.2);
}

bool tour(const char* name) {
  std::printf("%s\n", name);
  zol_v2::Zol document;
  lmx::c_xml_reader_file file(name);
  if (!file.is_open()) {
    std::fprintf(stderr, "%s: %s\n", name, lmx::get_error_description(lmx::elmx_no_file));
    return false;
  }
  if (!load(document, file, name)) return false;
  describe(document);

  lmx::elmx_error error = add_measurement(document);
  std::string text;
  if (error == lmx::elmx_ok) error = document.marshal(&text);
  if (error != lmx::elmx_ok) {
    std::fprintf(stderr, "%s: %s\n", name, lmx::get_error_description(error));
    return false;
  }
  zol_v2::Zol again;
  lmx::c_xml_reader_memory memory(text.data(), text.size());
  if (!load(again, memory, name)) return false;
  std::printf("  added one, wrote %zu bytes and read %u colours back\n\n", text.size(),
              again.size_Color());
  return again.size_Color() == document.size_Color();
}

}  // namespace

int main(int argc, char** argv) {
  bool is_good = true;
  for (int i = 1; i < argc; ++i) is_good = tour(argv[i]) && is_good;
  return is_good ? 0 : 1;
}
