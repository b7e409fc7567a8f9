#include "model/sdk_stamp.h"

#include "model/Zol.h"

namespace zol_v2 {

namespace {

SDKType this_library() {
  SDKVersion version;
  (void)version.set_SDKVersion(L"2.1");
  SDKType library;
  (void)library.set_SDKName(L"Zol2-LMX-3.8");
  library.assign_SDKVersion(version);
  return library;
}

}  // namespace

void SdkStamp::stampRead(Zol& document) const {
  document.get_Preamble().get_Header().assign_ReadSDKInformation(this_library());
}

void SdkStamp::stampWrite(Zol& document) const {
  SDKType& stamp = document.get_Preamble().get_Header().get_WriteSDKInformation();
  const SDKType library = this_library();
  // A document that bears it already goes on as it was read.
  if (!internal::is_same(stamp, library, SDKType::k_class)) stamp = library;
}

}  // namespace zol_v2
