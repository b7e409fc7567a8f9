// Generated from model/schema by gen/emit_model.py: edit those, not this.
#include "model/internal/enumerations.h"

namespace zol_v2::internal {

static const std::wstring k_Grade_wide[] = {
  L"Grade_A",
  L"Grade_B-plus"
};
static const std::string_view k_Grade_narrow[] = {
  "Grade_A",
  "Grade_B-plus"
};
const EnumTable k_Grade{k_Grade_wide, k_Grade_narrow, 2};

}  // namespace zol_v2::internal
