// The native road that the managed one is compared with: opens a document and saves it again.

#include "facade/files.h"
#include "model/Zol.h"
#include "port/wide_text.h"

int main(int count, char** arguments) {
  if (count != 3) return 2;
  const std::string from = arguments[1], to = arguments[2];
  zol_v2::Zol document;
  if (zol_v2::openFile(document, zol::port::from_utf8(from.data(), from.size())) != 0) return 1;
  return zol_v2::saveFile(document, zol::port::from_utf8(to.data(), to.size())) == 0 ? 0 : 1;
}
