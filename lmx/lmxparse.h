// The XML runtime for clients, in one header: errors, input, tokeniser, reader and writer, and the
// value types that they bring in and out.
#pragma once

#include "lmx/entities.h"
#include "lmx/errors.h"
#include "lmx/input.h"
#include "lmx/lmxtypes.h"
#include "lmx/names.h"
#include "lmx/reader.h"
#include "lmx/tokeniser.h"
#include "lmx/writer.h"
