#include "facade/version.h"

#define ZOL_TEXT_OF(number) #number
#define ZOL_TEXT(number) ZOL_TEXT_OF(number)

namespace zol_v2 {

unsigned version() noexcept { return ZOL_VERSION; }

const char* versionText() noexcept {
  return ZOL_TEXT(ZOL_VERSION_MAJOR) "." ZOL_TEXT(ZOL_VERSION_MINOR) "." ZOL_TEXT(
      ZOL_VERSION_PATCH);
}

}  // namespace zol_v2
