// Documents as JSON: everything in them, and nothing beside.
//
// A document is an object with one member, which is named after its element:
//
//   {"Zol": {"Preamble": {...}, "Color": [{"ColorName": "Red", "ColorSpace": [...]}]}}
//
// An element is an object whose members are its attributes and elements by their names. What may
// repeat is an array, a member of a family an object with the name of its element alone, as in
// {"ColorSpaceCIELab": {...}}. "value" is what stands between the tags of an element with
// attributes, "xsi:type" the type that an element names, "xsi:nil" says that it is nil. Numbers are
// numbers but for "NaN", "INF" and "-INF", all digits of which are kept; dates and bytes are the
// texts of a document, foreign elements their XML. The JSON Schema says the rest.
#pragma once

#include <string>
#include <string_view>

#include "interchange/export.h"
#include "interchange/report.h"
#include "model/internal/object.h"

namespace zol_v2::interchange {

// Appends the text of an object of any class, indented by `indent` blanks a level or, if that is
// negative, on one line. Faults: a text that is no UTF-16 and nesting beyond 512 elements.
ZOL_INTERCHANGE_API Report write_json(const zol_v2::internal::Object& object, std::string* text,
                                      int indent = 1);

// Reads what write_json gives into an object of that class, which is best a new one: after a fault
// part of it may be filled. Members stand in any order. Missing rows are no fault here, those that
// keep a document from being saved show in check().
ZOL_INTERCHANGE_API Report read_json(std::string_view text, zol_v2::internal::Object* object);

}  // namespace zol_v2::interchange
