// Generated from model/schema by gen/emit_model.py: edit those, not this.
#include "model/Zol.h"

namespace zol_v2::internal {

namespace {

// The same texts in the other width.
template <std::size_t size>
struct WideTexts {
  explicit WideTexts(const std::string_view (&narrow)[size]) {
    for (std::size_t i = 0; i < size; ++i) text[i].assign(narrow[i].begin(), narrow[i].end());
  }
  std::wstring text[size];
};

}  // namespace

static constexpr std::string_view k_Grade_narrow[] = {
  "Grade_A", "Grade_B-plus"
};
static const WideTexts k_Grade_wide(k_Grade_narrow);
static constexpr const char* k_Grade_notes[] = {
  "The best.",
  "Nearly \"as good\", a | b & <c>.",
};
const EnumTable k_Grade{k_Grade_wide.text, k_Grade_narrow, k_Grade_notes, 2};

}  // namespace zol_v2::internal
