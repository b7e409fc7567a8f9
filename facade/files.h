// Document files without surprises: the counterparts of Zol::writeFile and Zol::loadFile that never
// throw, never destroy an older file and say what went wrong.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

#include "facade/faults.h"
#include "lmx/errors.h"
#include "port/export.h"
#include "port/narrow_text.h"

namespace zol_v2 {

class Zol;

namespace internal {
class Object;
}

// Every path is a std::wstring, or a std::filesystem::path, or text in UTF-8. A narrow path that is
// no UTF-8 names no file: 1.
//
// The codes are in the reports too; who looks there may leave the result alone by a cast to void.

// How documents are loaded.
struct LoadOptions {
  // In bytes, unpacked. What is larger is refused before memory is taken for it: a few hundred
  // bytes of an archive may stand for a gigabyte.
  std::uint64_t largest_document = std::uint64_t{1} << 30;
  // Also refuses, with 23, what the reader lets pass but XML 1.0 or its namespaces forbid, so that
  // what is loaded can be handed on to any parser. A fault that the reader finds comes first.
  bool strict = false;
  // How many faults a report keeps; with 0 none is looked for beyond the code.
  std::size_t most_faults = 1000;
  // A document with faults gives what is good in it: values that were refused are not there,
  // elements that are unknown neither. The code is still that of the first fault. Such a document
  // may lack what it needs to be saved.
  bool best_effort = false;
};

// How the loading of a document ended. Texts are UTF-8. Code, line and item are those of a reader,
// which stops at the first fault and counts lines its own way; the list of faults says all of them
// and where they truly stand. It is made when there is a fault, and costs nothing before.
struct LoadReport {
  // What the function gave.
  lmx::elmx_error code = lmx::elmx_ok;
  int line = 0;                    // where reading stopped; 0 if no text was read
  std::string item;                // the element or attribute concerned, if there is one
  std::string message;             // for people; empty if all is well
  std::int32_t archive_cause = 0;  // number of the CZipException behind the code, if any
  std::vector<Fault> faults;      // in the order of the document; one at least unless the code is 0
  std::uint64_t fault_count = 0;  // with those that are more than LoadOptions::most_faults
  // Whether the document was judged to its end. What is no XML any more is not read on from there.
  bool is_complete = true;
};

// How saving ended. Texts are UTF-8.
struct SaveReport {
  // What the function gave.
  lmx::elmx_error code = lmx::elmx_ok;
  std::string message;             // for people; empty if all is well
  std::int32_t archive_cause = 0;  // number of the CZipException behind the code, if any
  // With code 0: whether the new file outlives a loss of power, as far as the system tells. The
  // file itself is on the disk; only the entry of its directory may not be.
  bool is_durable = true;
  // The older file could not be replaced, as one on which another is mounted, so it was written
  // over. With a code other than 0 it is incomplete now.
  bool is_overwritten = false;
  // What kept the document from being written, by rows of objects: the first has the code.
  std::vector<Fault> faults;
};

// How documents are saved.
struct SaveOptions {
  // Keeps what the described form may lose: numbers in the shortest text that reads back equal
  // instead of 14 digits, dates with all decimals of seconds, the zone +00:00 and years before 1,
  // carriage returns and "]]>" in texts and white space in attributes as references. Only NEL, LINE
  // SEPARATOR, which this library always reads as line feeds, and what is no XML stay lost.
  bool is_exact = false;
  // The Header of a document says which library wrote it last.
  bool is_stamped = true;
  // A line for each element, a tab for each level. Otherwise everything stands on one line.
  bool is_indented = true;
  // Before anything is written the document is judged, as check() does, and what would not read
  // back is refused with the code of the first fault.
  bool is_checked = false;
};

// Loads a file, a document or an archive whose first entry is the document. Which of them it is,
// its bytes say, whatever its name. On success the document is what the file holds and nothing
// else; on failure it stays as it was, unless the options ask for what is good. Gives 0; 1 for a
// file that can't be opened or read; 1000 for an archive that is cut, damaged or can't be used, for
// a document that is too large, and when memory runs out; or the code of the fault in the text.
// 16 also for an object whose class is no element that a document may begin with. `report` may be
// null; what was in it is replaced.
[[nodiscard]] ZOL_API lmx::elmx_error openFile(internal::Object& document, const std::wstring& path,
                                               LoadReport* report = nullptr,
                                               const LoadOptions& options = {}) noexcept;
[[nodiscard]] ZOL_API lmx::elmx_error openFile(internal::Object& document, zol::port::FilePath path,
                                               LoadReport* report = nullptr,
                                               const LoadOptions& options = {}) noexcept;

// Writes a file by the rule of Zol::writeFile, the same bytes: ".zol" for XML, ".zolz" for an
// archive. Any object whose class is an element that a document may begin with can be written. The
// new file takes the place of an older one in one step, once it is complete and on the disk; it
// keeps the older one's permissions, access lists and attributes, and a symbolic link stays one.
// Gives 0; 1 if a file can't be made, written or replaced; 1000 if the archive fails otherwise, and
// when memory runs out; 1001 for another suffix; 16 for an object of another class; or the code of
// marshal. After a failure the older file is as it was, but for the one exception that `report`
// tells, and no other file is left behind or touched. Once the new file is there the code is 0.
// Like every writing it stamps the Header of a document, but not with 1001. `report` may be null;
// what was in it is replaced.
[[nodiscard]] ZOL_API lmx::elmx_error saveFile(const internal::Object& document,
                                               const std::wstring& path,
                                               SaveReport* report = nullptr,
                                               const SaveOptions& options = {}) noexcept;
[[nodiscard]] ZOL_API lmx::elmx_error saveFile(const internal::Object& document,
                                               zol::port::FilePath path,
                                               SaveReport* report = nullptr,
                                               const SaveOptions& options = {}) noexcept;

// Writes XML to a stream, whose flags and locale take no part and stay, and flushes it. Gives 1,
// and not only its state, if the stream failed, by an exception too; a part may then be there.
// Other codes as above.
[[nodiscard]] ZOL_API lmx::elmx_error saveStream(const internal::Object& document,
                                                 std::ostream& stream, SaveReport* report = nullptr,
                                                 const SaveOptions& options = {}) noexcept;

// The same as a string in UTF-8; on failure `text` stays as it was.
[[nodiscard]] ZOL_API lmx::elmx_error saveString(const internal::Object& document,
                                                 std::string& text, SaveReport* report = nullptr,
                                                 const SaveOptions& options = {}) noexcept;

#if !defined(_WIN32)
// For a signal handler that is about to end the process while another file is saved: takes the
// unfinished file away, where the file system could not keep it without a name.
ZOL_API void removeWorkingFiles() noexcept;
#endif

// --- The text of a document: its bytes, in whatever encoding ----------------------------------

// What the file at `path` holds, out of the archive if it is one; not judged. Codes as above; on
// failure `text` stays as it was.
[[nodiscard]] ZOL_API lmx::elmx_error readText(std::string& text, const std::wstring& path,
                                               LoadReport* report = nullptr,
                                               const LoadOptions& options = {}) noexcept;
[[nodiscard]] ZOL_API lmx::elmx_error readText(std::string& text, zol::port::FilePath path,
                                               LoadReport* report = nullptr,
                                               const LoadOptions& options = {}) noexcept;

// The same for an archive that is in memory.
[[nodiscard]] ZOL_API lmx::elmx_error unpackText(std::string& text, std::string_view archive,
                                                 LoadReport* report = nullptr,
                                                 const LoadOptions& options = {}) noexcept;

// Loads a document, or an archive, from its bytes, as openFile does.
[[nodiscard]] ZOL_API lmx::elmx_error openText(internal::Object& document, std::string_view bytes,
                                               LoadReport* report = nullptr,
                                               const LoadOptions& options = {}) noexcept;

// The same from a stream, which is read to its end: 1 if it fails before that.
[[nodiscard]] ZOL_API lmx::elmx_error openStream(internal::Object& document, std::istream& stream,
                                                 LoadReport* report = nullptr,
                                                 const LoadOptions& options = {}) noexcept;

// Whether a text is XML by the book, whatever it has to say: the part of `strict` that goes beyond
// the reader, by itself. Judged by libxml2, which is given nothing outside of the text. Gives 0; 23
// at the first fault, also for an encoding that is not known and for entities that expand to more
// than 8 MiB and 100 times the text; 1000 when memory runs out. The report has all faults, up to
// the first that leaves doubt about what follows.
[[nodiscard]] ZOL_API lmx::elmx_error checkText(std::string_view text,
                                                LoadReport* report = nullptr) noexcept;

// Writes the text as it stands, unjudged and without a stamp, as saveFile does.
[[nodiscard]] ZOL_API lmx::elmx_error saveText(std::string_view text, const std::wstring& path,
                                               SaveReport* report = nullptr) noexcept;
[[nodiscard]] ZOL_API lmx::elmx_error saveText(std::string_view text, zol::port::FilePath path,
                                               SaveReport* report = nullptr) noexcept;

}  // namespace zol_v2
