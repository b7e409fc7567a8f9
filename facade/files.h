// Document files without surprises: the counterparts of Zol::writeFile and Zol::loadFile that never
// throw, never destroy an older file and say what went wrong.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "lmx/errors.h"
#include "port/export.h"

namespace zol_v2 {

class Zol;

struct LoadOptions {
  // In bytes, unpacked. What is larger is refused before memory is taken for it: a few hundred
  // bytes of an archive may stand for a gigabyte.
  std::uint64_t largest_document = std::uint64_t{1} << 30;
  // Also refuses, with 23, what the reader lets pass but XML 1.0 or its namespaces forbid, so that
  // what is loaded can be handed on to any parser. A fault that the reader finds comes first.
  bool strict = false;
};

// How the loading of a file ended. Texts are UTF-8.
struct LoadReport {
  lmx::elmx_error code = lmx::elmx_ok;
  int line = 0;         // where reading stopped; 0 if no text was read
  int column = 0;       // of a fault that only `strict` finds, from 1; 0 for others
  std::string item;     // the element or attribute concerned, if there is one
  std::string message;  // for people; empty if all is well
  std::int32_t archive_cause =
      0;  // the number of the CZipException behind the code, if there was one
};

// How saving ended. Texts are UTF-8.
struct SaveReport {
  lmx::elmx_error code = lmx::elmx_ok;
  std::string message;  // for people; empty if all is well
  std::int32_t archive_cause = 0;
  // With code 0: whether the new file outlives a loss of power, as far as the system tells. The
  // file itself is on the disk; only the entry of its directory may not be.
  bool is_durable = true;
  // The older file could not be replaced, as one on which another is mounted, so it was written
  // over. With a code other than 0 it is incomplete now.
  bool is_overwritten = false;
};

// Loads a file by the rule of Zol::loadFile: a path that ends in ".zolz" is an archive whose first
// entry is the document, any other one an XML file. On success the document is what the file holds
// and nothing else; on failure it stays as it was. Gives 0; 1 for a file that can't be opened or
// read; 1000 for an archive that is cut, damaged or can't be used, for a document that is too
// large, and when memory runs out; or the code of the fault in the text. `report` may be null; what
// was in it is replaced.
ZOL_API lmx::elmx_error openFile(Zol& document, const std::wstring& path,
                                 LoadReport* report = nullptr,
                                 const LoadOptions& options = {}) noexcept;

// Writes a file by the rule of Zol::writeFile, the same bytes: ".zol" for XML, ".zolz" for an
// archive. The new file takes the place of an older one in one step, once it is complete and on the
// disk; it keeps the older one's permissions, access lists and attributes, and a symbolic link
// stays one. Gives 0; 1 if a file can't be made, written or replaced; 1000 if the archive fails
// otherwise, and when memory runs out; 1001 for another suffix; or the code of marshal. After a
// failure the older file is as it was, but for the one exception that `report` tells, and no other
// file is left behind or touched. Once the new file is there the code is 0. Like every writing it
// stamps the Header, but not with 1001. `report` may be null; what was in it is replaced.
ZOL_API lmx::elmx_error saveFile(const Zol& document, const std::wstring& path,
                                 SaveReport* report = nullptr) noexcept;

#if !defined(_WIN32)
// For a signal handler that is about to end the process while another file is saved: takes the
// unfinished file away, where the file system could not keep it without a name.
ZOL_API void removeWorkingFiles() noexcept;
#endif

// --- The text of a document: its bytes, in whatever encoding ----------------------------------

// What the file at `path` holds, out of the archive if it is one; not judged. Codes as above; on
// failure `text` stays as it was.
ZOL_API lmx::elmx_error readText(std::string& text, const std::wstring& path,
                                 LoadReport* report = nullptr,
                                 const LoadOptions& options = {}) noexcept;

// The same for an archive that is in memory.
ZOL_API lmx::elmx_error unpackText(std::string& text, std::string_view archive,
                                   LoadReport* report = nullptr,
                                   const LoadOptions& options = {}) noexcept;

// Loads a document from its text, as openFile does. Its size has no limit.
ZOL_API lmx::elmx_error openText(Zol& document, std::string_view text, LoadReport* report = nullptr,
                                 const LoadOptions& options = {}) noexcept;

// Whether a text is XML by the book, whatever it has to say: the part of `strict` that goes beyond
// the reader, by itself. Judged by libxml2, which is given nothing outside of the text. Gives 0; 23
// at the first fault, also for an encoding that is not known and for entities that expand to more
// than 8 MiB and 100 times the text; 1000 when memory runs out.
ZOL_API lmx::elmx_error checkText(std::string_view text, LoadReport* report = nullptr) noexcept;

// Writes the text as it stands, unjudged and without a stamp, as saveFile does.
ZOL_API lmx::elmx_error saveText(std::string_view text, const std::wstring& path,
                                 SaveReport* report = nullptr) noexcept;

}  // namespace zol_v2
