// Reads an element by the class that its name has in its parent, for when the parent has stopped
// looking.
#pragma once

#include <string>

#include "lmx/errors.h"

namespace lmx {
class c_xml_reader;
}

enum class SiblingState {
  unknown,  // not touched
  read,     // its end tag was the last event
  passed    // the event at hand is what follows it
};

// The element at hand is read for its faults' sake. `parent` is the parent's name as the document
// spells it. Known are the children that are no mere values, but where an element of that name
// would be of one type here and of another there.
SiblingState read_sibling(lmx::c_xml_reader& reader, const std::string& parent,
                          lmx::elmx_error* error);
