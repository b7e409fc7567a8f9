// The value of an element that has none.
#pragma once

#include "port/export.h"

namespace lmx {

// Holds nothing: any two are alike.
class ZOL_API c_empty {};

}  // namespace lmx
