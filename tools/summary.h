// What is in a document, in numbers and names.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tools/color_values.h"

struct SetSummary {
  std::string name;
  unsigned colors = 0;
};

struct PaletteSummary {
  std::string name;
  std::string version;
  std::vector<SetSummary> sets;
};

struct RecordSummary {
  std::string name;
  unsigned standards = 0;
  unsigned measurements = 0;
  unsigned tolerances = 0;
};

struct Summary {
  // Of the header and the frame, in their order; rows that the document does not have are left out.
  std::vector<std::pair<std::string, std::string>> provenance;
  unsigned own_colors = 0;      // that belong to no palette
  unsigned palette_colors = 0;  // in all palettes
  std::vector<PaletteSummary> palettes;
  std::vector<RecordSummary> records;
  // Of all colours, those in records too.
  std::map<std::string, unsigned> spaces;
  std::map<SpectralRange, unsigned> ranges;
};

Summary summarise(const zol_v2::Zol& document);
