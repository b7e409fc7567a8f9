// The value of an element that has none.
#pragma once

#include "port/export.h"

namespace lmx {

class ZOL_API c_empty {};

}  // namespace lmx
