// The mark that this library leaves in the header of a document.
#pragma once

#include "port/export.h"

namespace zol_v2 {

class Zol;

// Name and version of the library, for the header's record of who read and who wrote last. Each
// stamp marks preamble and header as present.
class ZOL_API SdkStamp {
 public:
  // Into ReadSDKInformation.
  void stampRead(Zol& document) const;
  // Into WriteSDKInformation.
  void stampWrite(Zol& document) const;
};

}  // namespace zol_v2
