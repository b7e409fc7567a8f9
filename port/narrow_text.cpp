#include "port/narrow_text.h"

#include "port/wide_text.h"

namespace zol::port {

std::wstring FilePath::wide() const {
  std::wstring path = from_utf8(utf8_.data(), utf8_.size());
  // With a null character inside it names nothing, and still can be told.
  if (!is_utf8(utf8_.data(), utf8_.size())) path.insert(path.begin(), L'\0');
  return path;
}

}  // namespace zol::port
