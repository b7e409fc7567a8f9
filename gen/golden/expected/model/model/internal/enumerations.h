// Generated from model/schema by gen/emit_model.py: edit those, not this.
// The values of each enumeration, in their order.
#pragma once

#include "model/internal/fields.h"

namespace zol_v2::internal {

extern const EnumTable k_Grade;

}  // namespace zol_v2::internal
