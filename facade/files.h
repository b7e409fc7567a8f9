// Document files without surprises: the counterparts of Zol::writeFile and Zol::loadFile that never
// throw, never destroy an older file and say what went wrong.
#pragma once

#include <cstdint>
#include <string>

#include "lmx/errors.h"
#include "port/export.h"

namespace zol_v2 {

class Zol;

// How the loading of a file ended. Texts are UTF-8.
struct LoadReport {
  lmx::elmx_error code = lmx::elmx_ok;
  int line = 0;         // where reading stopped; 0 if no text was read
  std::string item;     // the element or attribute concerned, if there is one
  std::string message;  // for people; empty if all is well
  std::int32_t archive_cause =
      0;  // the number of the CZipException behind the code, if there was one
};

// Loads a file by the rule of Zol::loadFile: a path that ends in ".zolz" is an archive whose first
// entry is the document, any other one an XML file. On success the document is what the file holds
// and nothing else; on failure it stays as it was. Gives 0; 1 for a file that can't be opened or
// read; 1000 for an archive that is damaged or can't be used, and when memory runs out; or the code
// of the fault in the text. `report` may be null; what was in it is replaced.
ZOL_API lmx::elmx_error openFile(Zol& document, const std::wstring& path,
                                 LoadReport* report = nullptr) noexcept;

// Writes a file by the rule of Zol::writeFile, the same bytes: ".zol" for XML, ".zolz" for an
// archive. The new file takes the place of an older one in one step, once it is complete and on the
// disk; it keeps the older one's permissions, and a symbolic link stays one. Gives 0; 1 if a file
// can't be made, written or replaced; 1000 if the archive fails otherwise, and when memory runs
// out; 1001 for another suffix; or the code of marshal. After a failure the older file is as it
// was, and no other file is left behind or touched. Like every writing it stamps the Header, but
// not with 1001.
ZOL_API lmx::elmx_error saveFile(const Zol& document, const std::wstring& path) noexcept;

}  // namespace zol_v2
