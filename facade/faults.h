// What is wrong with a document, told so that a person can mend it.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "lmx/errors.h"
#include "port/export.h"

namespace zol_v2 {

namespace reflection {
class Row;
}

// Whether something keeps a document from being read or written, or is merely suspicious.
enum class Severity : unsigned char { error, warning };

// Where something stands in a source as it is on the disk; of an archive, in the entry as it
// unpacks. A reference to an entity is the place of whatever stands in the entity.
struct SourcePlace {
  std::uint64_t line = 0;    // from 1; 0: not known
  std::uint64_t column = 0;  // from 1, in characters; a mark at the beginning of the file is none
  std::uint64_t offset = 0;  // in bytes, from 0

  // Whether it is known.
  explicit operator bool() const { return line != 0; }
};

// One thing that is wrong. Texts are UTF-8; those that have nothing to say are empty.
struct Fault {
  lmx::elmx_error code = lmx::elmx_ok;  // 0 for a warning
  // Whether it counts.
  Severity severity = Severity::error;
  // What was wrong, for programs: "above-bound". Of static storage, and never renamed.
  std::string_view rule;
  // Of what is concerned, as reflection writes paths: "Zol/Color[12]/ColorSpaceCIELab/L". What is
  // missing has the path that it would have; what is unknown, that of the element around it.
  std::string path;
  // The name that the innermost object on the path bears, and how much of the path leads to that
  // object.
  std::string object;
  std::size_t object_at = 0;
  SourcePlace place;                 // none for a fault in a tree, or in a file as a whole
  std::uint64_t length = 0;          // of what is concerned, in bytes from there
  SourcePlace first;                 // of two that conflict, where the other one stands
  std::string item;                  // the element or attribute, as LoadReport names it
  std::string found;                 // the value or name as it stands, cut at a sensible length
  std::string expected;              // bounds and unit, the right place, the missing row: in words
  std::vector<std::string> allowed;  // what may stand instead, the nearest first
  std::string entry;                 // of an archive, the name

  // One sentence, without a full stop: what was found, and what was wanted.
  ZOL_API std::string text() const;
};

// Why a row refuses a text in UTF-8, for whoever tells it on: `code` is what Ref::set_text gave.
// The fault has no path and no place.
ZOL_API Fault refusal(reflection::Row row, std::string_view text, lmx::elmx_error code);

// Which of the names was probably meant by one that is not among them; empty if none is near.
ZOL_API std::string nearestName(std::string_view found, const std::vector<std::string>& names);

// The line in which a fault stands, to be shown on a terminal. A tab is two blanks there, a control
// character and what is no text a replacement character.
struct Excerpt {
  std::string text;       // UTF-8
  std::size_t begin = 0;  // columns of a terminal before what is concerned
  std::size_t width = 0;  // columns that it takes, one at least
};

// Of the bytes of the source, unpacked, in whatever encoding. A line of more than so many columns
// is cut around the fault, with an ellipsis wherever something is left out. Empty without a place.
ZOL_API Excerpt excerptOf(std::string_view bytes, const Fault& fault, std::size_t columns = 100);

}  // namespace zol_v2
