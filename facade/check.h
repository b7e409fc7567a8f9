// Judges an object before it is written: whether it can be, and whether what is written comes back.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "facade/faults.h"
#include "facade/files.h"
#include "model/internal/object.h"
#include "port/export.h"
#include "port/narrow_text.h"

namespace zol_v2 {

// How far the judgement goes; each includes what stands before it.
enum class CheckLevel : unsigned char {
  // What marshal refuses: 46 for a row that is required and missing, 45 for a member that is none.
  writing,
  // What it writes and no reader gives back: a value out of its bounds (36, 37) or its enumeration
  // (38), of another length (19, 20), a date that is none or has no time zone (35, 22), a plain
  // Function, whose element must name a derived type (44), more than 512 elements in each other
  // (23), and texts that XML cannot hold or that reading changes (28 in attributes, 29): lone
  // surrogates, control characters, "]]>", a carriage return or another line end than the line
  // feed,
  // white space at the edges of a text that does not keep it.
  reading,
  // What is lawful and yet seldom meant, as warnings without a code:
  //   digits-lost           a number, or the seconds of a date, need more digits than are written
  //   attribute-white-space a line feed or tab in an attribute, which other readers take for a
  //   blank
  //   nil-with-content      an element is nil, and what it holds is not written
  //   wavelength-twice      two points of a spectrum are of one wavelength
  //   wavelength-range      a wavelength is below 100 or above 3000 nm
  //   uneven-spectra        a colour set has spectra with different numbers of points
  //   no-illuminant         a colour of CIELab, CIELCh, CIEXYZ, CIExyY or CIELuv has a nil
  //                         specification, and neither its colour set nor its palette has one: no
  //                         illuminant and no observer is known
  //   custom-without-name   a custom illuminant, filter, spectrum or target has no name
  //   unique-id-twice       two colours, sets, palettes, colour spaces, tag values, tolerances or
  //                         records have one UniqueID, or two tags, categories or specifications do
  //                         that differ; alike, those may stand wherever they are used
  //   unknown-unique-id     a nil specification, or a tag or category without a name, stands for
  //                         another one by its UniqueID, and there is none
  warnings
};

// How an object is judged.
struct CheckOptions {
  // How far.
  CheckLevel level = CheckLevel::warnings;
  // No more errors than this are described, and no more warnings; all are counted.
  std::size_t limit = 1000;
  // Judges what SaveOptions::is_exact would have written, which keeps all digits and more of texts.
  bool is_exact = false;
};

// What is wrong with an object: first what keeps it from being written, then what keeps it from
// being read back, then the warnings, each in the order of the document.
struct CheckReport {
  // What is described, as far as the limit allows.
  std::vector<Fault> faults;
  // How many there are, described or not.
  std::size_t errors = 0;
  std::size_t warnings = 0;

  // Whether it can be written and read back; warnings do not count.
  bool is_ok() const { return errors == 0; }
};

// Judges a document, or any other object, whose path begins with the name of its class. What nests
// deeper than a reader follows is not looked at. Takes no memory where all is well, but for the
// identifiers if warnings are wanted. If memory runs out, std::bad_alloc passes.
[[nodiscard]] ZOL_API CheckReport check(const internal::Object& object,
                                        const CheckOptions& options = {});

// Judges a file as openFile loads it, and what it holds as check() does, and keeps nothing: a
// document in order takes no memory but that of its text. Codes and report are those of openFile,
// and 46 for a document that loads and lacks what it needs to be written again. What else would not
// come back is a warning here, like the rest: the document itself is good. `report` may be null.
[[nodiscard]] ZOL_API lmx::elmx_error judgeFile(const std::wstring& path, LoadReport* report,
                                                const LoadOptions& options = {},
                                                CheckLevel level = CheckLevel::writing) noexcept;
[[nodiscard]] ZOL_API lmx::elmx_error judgeFile(zol::port::FilePath path, LoadReport* report,
                                                const LoadOptions& options = {},
                                                CheckLevel level = CheckLevel::writing) noexcept;
// The same for bytes, of a document or an archive.
[[nodiscard]] ZOL_API lmx::elmx_error judgeText(std::string_view bytes, LoadReport* report,
                                                const LoadOptions& options = {},
                                                CheckLevel level = CheckLevel::writing) noexcept;

// Gives faults of a tree the places where they stand in the text that it was loaded from: of the
// attribute or element, or of the element in which it is missing. The bytes are those of the file,
// of an archive those of the document in it; the tree must be as it was loaded.
ZOL_API void locate(std::vector<Fault>& faults, std::string_view bytes);

}  // namespace zol_v2
