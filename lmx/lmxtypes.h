// The value classes of the simple types, their text forms and their checks.
#pragma once

#include "lmx/binary.h"
#include "lmx/dates.h"
#include "lmx/decimal.h"
#include "lmx/errors.h"
#include "lmx/facets.h"
#include "lmx/pattern.h"
#include "lmx/text.h"
