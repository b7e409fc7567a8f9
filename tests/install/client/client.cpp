// Writes a document, reads it back, and lets an exception of the library pass into this program.
#include <cstdio>

#include "facade/files.h"
#include "lmx/lmxparse.h"
#include "model/Zol.h"
#include "zip/archive.h"

namespace {

bool is_caught() {
  try {
    CZipArchive archive;
    archive.Open(L"missing.zolz", CZipArchive::modeReadOnly);
  } catch (const CZipException&) {
    return true;
  }
  return false;
}

}  // namespace

int main() {
  zol_v2::Zol document;
  zol_v2::Header& header = document.get_Preamble().get_Header();
  header.set_Creator(L"client");
  header.set_CreatorVersion(L"1");
  header.append_ChangeHistory(lmx::c_datetime("2026-01-02T03:04:05Z"));
  header.set_Purpose(L"test");
  if (zol_v2::saveFile(document, L"client.zolz") != lmx::elmx_ok) return 1;

  zol_v2::Zol again;
  zol_v2::LoadReport report;
  if (zol_v2::openFile(again, L"client.zolz", &report) != lmx::elmx_ok) {
    std::fprintf(stderr, "%s\n", report.message.c_str());
    return 2;
  }
  if (!is_caught()) return 3;

  lmx::c_repository<int> numbers;
  numbers.add("again", again.size_Color());
  int colours = -1;
  if (!numbers.find("again", &colours) || numbers.find_key(colours) == nullptr) return 4;
  std::string creator;
  lmx::convert(&creator, again.get_Preamble().get_Header().get_Creator());
  std::printf("read back %s\n", creator.c_str());
  return 0;
}
