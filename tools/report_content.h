// What a report tells of a document: its colours as a meter sees them, what they share, and what
// its quality control gives.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "colorimetry/colorimeter.h"
#include "colorimetry/evaluation.h"
#include "model/reflection.h"
#include "tools/report_facts.h"

namespace zol_v2 {
class ColorQualityControlType;
class ColorSetType;
class ColorType;
class DeviceType;
class PaletteType;
class StandardAndMeasurementType;
class Zol;
class sg_ColorSpace;
class sg_Substrate;
}  // namespace zol_v2

// A colour of the document. Texts are UTF-8 and not escaped yet.
struct ReportColor {
  const zol_v2::ColorType* color = nullptr;
  zol_v2::colorimetry::ColorPlace place;
  unsigned number = 0;  // from 1, in the order of the report
  std::string name;     // never empty, of bounded length
  std::string id;       // on the page: "colour-std-red"
  std::string role;     // in a record: "Standard 1", "Measurement 1.2"
  const zol_v2::ColorQualityControlType* record = nullptr;   // that it stands in
  const zol_v2::StandardAndMeasurementType* pair = nullptr;  // in the record

  // None where it has no colour that can be computed, and then the reason.
  std::optional<zol_v2::colorimetry::Stimulus> stimulus;
  std::string reason;
  zol_v2::colorimetry::Display display;  // of a stimulus
  unsigned basis = 0;                    // of a stimulus, by its number among the bases
  std::optional<zol_v2::colorimetry::Spectrum> spectrum;
  bool is_emission = false;  // the spectrum

  bool has_lab() const { return stimulus && stimulus->has_white(); }
};

// Colours that stand together: those of no palette, a colour set, a record.
struct ReportGroup {
  std::string id;
  std::string title;
  std::string subtitle;  // of a set, its palette
  std::vector<Fact> facts;
  std::size_t first = 0, last = 0;  // of the colours, the last one not included
};

// Under which conditions coordinates hold; a row of a table.
struct ReportConditions {
  std::string illuminant, observer, geometry, quantity, filter, polarisation;
  unsigned device = 0;  // by its number from 1; 0 for none
  std::vector<Fact> others;

  bool operator<(const ReportConditions& other) const;
};

struct ReportEvent {
  double instant = 0;  // to order them by
  std::string date;
  std::string what;
};

struct ReportSubstrate {
  std::string kind;  // "Paper"
  std::vector<Fact> facts;
  unsigned uses = 0;
};

struct ReportDevice {
  std::vector<Fact> facts;
  unsigned uses = 0;
};

class ReportContent {
 public:
  // `conditions` are those that all colours are shown under; each has its own if there are none.
  // The document must outlive the content.
  ReportContent(const zol_v2::Zol& document,
                const std::optional<zol_v2::colorimetry::Conditions>& conditions);

  const zol_v2::Zol& document() const { return document_; }
  const std::vector<ReportColor>& colors() const { return colors_; }
  const std::vector<ReportGroup>& groups() const { return groups_; }
  // Judges the records of the document; before that the evaluation is empty.
  void judge();
  const zol_v2::colorimetry::Evaluation& evaluation() const { return evaluation_; }

  // The colour of the report that is this one of the document; null if there is none.
  const ReportColor* find(const zol_v2::ColorType& color) const;

  // How colours were computed, as sentences, each with the number of its colours.
  const std::vector<std::pair<std::string, unsigned>>& bases() const { return bases_; }
  const std::vector<ReportConditions>& conditions() const { return conditions_; }
  const std::vector<ReportDevice>& devices() const { return devices_; }
  const std::vector<ReportSubstrate>& substrates() const { return substrates_; }
  const std::vector<ReportEvent>& events() const { return events_; }

  // By their number from 1; 0 where a rendering, or an object, has none.
  unsigned conditions_of(const zol_v2::sg_ColorSpace& space) const;
  unsigned substrate_of(const zol_v2::ColorType& color) const;
  unsigned device_of(const zol_v2::DeviceType& device) const;

  std::size_t count_out_of_gamut() const;
  std::size_t count_spectra() const;

 private:
  class Gatherer;

  const zol_v2::Zol& document_;
  std::vector<ReportColor> colors_;
  std::vector<ReportGroup> groups_;
  std::unordered_map<const zol_v2::ColorType*, std::size_t> places_;
  zol_v2::colorimetry::Evaluation evaluation_;

  std::vector<std::pair<std::string, unsigned>> bases_;
  std::vector<ReportConditions> conditions_;
  std::vector<ReportDevice> devices_;
  std::vector<ReportSubstrate> substrates_;
  std::vector<ReportEvent> events_;
  // By the object of the document that says it.
  std::unordered_map<const void*, unsigned> numbers_;
};
