// The specification of a rendering as texts, and back.
#pragma once

#include <string>

#include "interchange/records.h"
#include "model/reflection.h"

namespace zol_v2::interchange::internal {

// Of a specification that is not nil. `losses`, which may be null, gets what the texts leave out.
Conditions conditions_of(reflection::ConstRef specification, Losses* losses);

// Sets what is said, and what is required beside it, with a note of each thing that had to be
// assumed. A sentence if a text is refused, else nothing.
std::string store_conditions(reflection::Ref specification, const Conditions& conditions,
                             Report* report);

}  // namespace zol_v2::interchange::internal
