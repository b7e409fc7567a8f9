#include "tools/summary.h"

#include <locale>
#include <sstream>

#include "model/Zol.h"
#include "tools/text.h"

namespace {

using Provenance = std::vector<std::pair<std::string, std::string>>;

std::string date_text(const lmx::c_datetime& date) {
  std::ostringstream stream;
  stream.imbue(std::locale::classic());
  stream << date;
  return stream.str();
}

// "NAME VERSION".
std::string text_of(const zol_v2::SDKType& sdk) {
  return utf8(sdk.get_SDKName()) + ' ' + utf8(sdk.get_SDKVersion().get_SDKVersion());
}

std::string text_of(const zol_v2::PlatformType& platform) {
  return utf8(platform.get_OperatingSystem()) + ' ' + utf8(platform.get_OperatingSystemVersion());
}

void add_header(const zol_v2::Header& header, Provenance* out) {
  out->emplace_back("Creator",
                    utf8(header.get_Creator()) + ' ' + utf8(header.get_CreatorVersion()));
  out->emplace_back("Purpose", utf8(header.get_Purpose()));
  if (header.isset_Name()) out->emplace_back("Name", utf8(header.get_Name()));
  if (header.isset_Comments()) out->emplace_back("Comments", utf8(header.get_Comments()));
  if (const unsigned changes = header.size_ChangeHistory()) {
    out->emplace_back("First change", date_text(header.get_ChangeHistory(0)));
    if (changes > 1) {
      out->emplace_back("Last change", date_text(header.get_ChangeHistory(changes - 1)));
    }
  }
  if (header.isset_WriteSDKInformation()) {
    out->emplace_back("Written with", text_of(header.get_WriteSDKInformation()));
  }
  if (header.isset_WritePlatformInformation()) {
    out->emplace_back("Written on", text_of(header.get_WritePlatformInformation()));
  }
}

void add_owner(const zol_v2::OwnerType& owner, Provenance* out) {
  for (unsigned i = 0; i < owner.size_Person(); ++i) {
    out->emplace_back("Person", utf8(owner.get_Person(i).get_Name()));
  }
  for (unsigned i = 0; i < owner.size_Company(); ++i) {
    out->emplace_back("Company", utf8(owner.get_Company(i)));
  }
  for (unsigned i = 0; i < owner.size_Copyright(); ++i) {
    out->emplace_back("Copyright", utf8(owner.get_Copyright(i)));
  }
}

PaletteSummary summarise(const zol_v2::PaletteType& palette) {
  PaletteSummary result;
  result.name = utf8(palette.get_PaletteName());
  if (palette.isset_PaletteVersion()) result.version = utf8(palette.get_PaletteVersion());
  for (unsigned i = 0; i < palette.size_ColorSet(); ++i) {
    const zol_v2::ColorSetType& set = palette.get_ColorSet(i);
    result.sets.push_back({utf8(set.get_ColorSetName()), set.size_Color()});
  }
  return result;
}

RecordSummary summarise(const zol_v2::ColorQualityControlType& record) {
  RecordSummary result;
  if (record.isset_Name()) result.name = utf8(record.get_Name());
  result.standards = record.size_StandardAndMeasurement();
  for (unsigned i = 0; i < result.standards; ++i) {
    result.measurements += record.get_StandardAndMeasurement(i).size_Measurement();
  }
  result.tolerances = record.size_Tolerance();
  return result;
}

}  // namespace

Summary summarise(const zol_v2::Zol& document) {
  Summary result;
  const zol_v2::Preamble& preamble = document.get_Preamble();
  add_header(preamble.get_Header(), &result.provenance);
  if (preamble.isset_Owner()) add_owner(preamble.get_Owner(), &result.provenance);
  if (preamble.isset_Version()) {
    result.provenance.emplace_back("Version", utf8(preamble.get_Version().get_Version()));
  }

  result.own_colors = document.size_Color();
  for (unsigned i = 0; i < document.size_Palette(); ++i) {
    result.palettes.push_back(summarise(document.get_Palette(i)));
    for (const SetSummary& set : result.palettes.back().sets) result.palette_colors += set.colors;
  }
  for (unsigned i = 0; i < document.size_ColorQualityControl(); ++i) {
    result.records.push_back(summarise(document.get_ColorQualityControl(i)));
  }
  for_each_color(document, [&](const ColorPlace&, const zol_v2::ColorType& color) {
    for (unsigned i = 0; i < color.size_ColorSpace(); ++i) {
      ++result.spaces[space_name(color.get_ColorSpace(i))];
      if (const auto range = spectral_range(color.get_ColorSpace(i))) ++result.ranges[*range];
    }
  });
  return result;
}
