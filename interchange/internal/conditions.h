// The specification of a rendering as texts, and back.
#pragma once

#include <string>
#include <string_view>

#include "interchange/records.h"
#include "model/reflection.h"

namespace zol_v2::interchange::internal {

// Of a specification that is not nil. `losses`, which may be null, gets what the texts leave out.
Conditions conditions_of(reflection::ConstRef specification, Losses* losses);

// Whether the specification of a space, "CIELab", has a row for it.
bool can_have(std::string_view space, Condition condition);

// Sets what is said, and what is required beside it, with a note of each thing that had to be
// assumed. A sentence if a text is refused, else nothing.
std::string store_conditions(reflection::Ref specification, const Conditions& conditions,
                             Report* report);

}  // namespace zol_v2::interchange::internal
