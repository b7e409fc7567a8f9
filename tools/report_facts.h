// What an object of a document says of itself, in words for people: found by walking the tables of
// the format, so that no row is forgotten.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "model/reflection.h"

struct Fact {
  std::string label;  // "Serial number"
  std::string value;  // with its unit
};

// All values of the object and of what it holds, in the order of the document. Left out are change
// histories, identifiers, and whole devices, colours and colour spaces, which have places of their
// own in a report.
std::vector<Fact> facts_of(zol_v2::reflection::ConstRef object);

// The value of a row for people: "yes", "0.105 mm", "D50" for "Illuminant_D50". `name` is what the
// value is called: content has no name of its own.
std::string readable(zol_v2::reflection::Row row, std::string_view name,
                     const zol_v2::reflection::Value& value);

// "Serial number" for "SerialNumber".
std::string words_of(std::string_view name);
// "2026-03-05 06:30:00 +01:00" for "2026-03-05T06:30:00+01:00".
std::string date_in_words(std::string_view text);
