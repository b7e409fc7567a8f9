// Everything of the XML runtime that reads, writes and reports, gathered for clients.
#pragma once

#include "lmx/errors.h"
#include "lmx/input.h"
#include "lmx/names.h"
#include "lmx/writer.h"
